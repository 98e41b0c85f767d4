// The string class: a counted, terminated buffer, at first within the object, that grows by
// doubling. Whoever hands the text's own characters back to it is served too: a new buffer is
// filled before the old one goes.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <utility>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/host/framework/string_table.h"
#include "pouh/record_access.h"

namespace {

constexpr std::size_t kMaxLength = 0x7FFFFFFE;

}  // namespace

CLQString::CLQString(const char16_t* text) {
    *this = text;
}

CLQString::CLQString(int capacity) {
    if (capacity > 0) {
        Reserve(static_cast<std::size_t>(capacity));
    }
}

CLQString::CLQString(const CLQString& other) {
    *this = other;
}

CLQString::~CLQString() {
    lq::Release(text_);
}

CLQString& CLQString::operator=(const char16_t* text) {
    const std::size_t length = text ? lq::chars::Length(text) : 0;
    if (HasFailed()) {
        capacity_ = kSmall;
    }
    if (length <= capacity_) {
        std::memmove(Buffer(), length ? text : u"", length * sizeof(char16_t));
        Buffer()[length] = 0;
        length_ = static_cast<uint32_t>(length);
        return *this;
    }
    CLQString fresh;
    fresh.Append(text, length);
    Swap(fresh);
    return *this;
}

CLQString& CLQString::operator=(const CLQString& other) {
    if (this != &other) {
        *this = other.GetText();
        if (other.HasFailed()) {
            Fail();
        }
    }
    return *this;
}

CLQString& CLQString::operator+=(const char16_t* text) {
    if (text) {
        Append(text, lq::chars::Length(text));
    }
    return *this;
}

CLQString& CLQString::operator+=(char16_t c) {
    Append(&c, 1);
    return *this;
}

void CLQString::Empty() {
    *this = u"";
}

int CLQString::LoadStringW(unsigned int id) {
    const char16_t* text = lq::host::FindString(AfxGetResourceHandle(), id);
    *this = text;
    return text && !HasFailed() ? 1 : 0;
}

void CLQString::_gcvt(double value, int digits) {
    char narrow[64];
    const auto [end, error] = std::to_chars(narrow, std::end(narrow), value,
                                            std::chars_format::general, std::clamp(digits, 1, 40));
    char16_t wide[std::size(narrow)];
    char16_t* const wideEnd = std::copy(narrow, end, wide);
    Empty();
    Append(wide, static_cast<std::size_t>(wideEnd - wide));
}

void CLQString::x_MarkErrorString(const char16_t* text) {
    CLQString marked(u"?");
    if (text) {
        marked.Append(text, lq::chars::Length(text));
    }
    marked.Append(u"?", 1);
    Swap(marked);
}

void CLQString::y_GetAttrOfFBInstSpec(void* spec, int flag) {
    *this = lq::pouh::TextOf(static_cast<const FBINST_SPEC_TYP*>(spec),
                             static_cast<POUH_ATTRIBUTE_FLAG>(flag));
}

// Gives an empty text its buffer.
bool CLQString::Reserve(std::size_t capacity) {
    if (capacity <= kSmall) {
        return true;
    }
    text_ = capacity <= kMaxLength ? lq::AllocateArray<char16_t>(capacity + 1) : nullptr;
    if (!text_) {
        Fail();
        return false;
    }
    text_[0] = 0;
    capacity_ = static_cast<uint32_t>(capacity);
    return true;
}

void CLQString::Append(const char16_t* text, std::size_t count) {
    if (HasFailed() || count == 0) {
        return;
    }
    if (count > kMaxLength - length_) {
        Fail();
        return;
    }
    const std::size_t length = length_ + count;
    if (length > capacity_) {
        CLQString grown;
        const std::size_t doubled = std::min(kMaxLength, std::size_t{2} * capacity_);
        if (grown.Reserve(std::max(length, doubled))) {
            grown.Append(GetText(), length_);
            grown.Append(text, count);
        }
        Swap(grown);
        return;
    }
    std::memmove(Buffer() + length_, text, count * sizeof(char16_t));
    Buffer()[length] = 0;
    length_ = static_cast<uint32_t>(length);
}

void CLQString::Fail() {
    lq::Release(text_);
    text_ = nullptr;
    small_[0] = 0;
    length_ = 0;
    capacity_ = kFailed;
}

void CLQString::Swap(CLQString& other) {
    std::swap(text_, other.text_);
    std::swap(length_, other.length_);
    std::swap(capacity_, other.capacity_);
    std::swap(small_, other.small_);
}
