#include "pouh/list_memory.h"

#include <algorithm>

#include "frame/chars.h"

namespace lq::pouh {

bool ListMemory::Known::Is(const char16_t* text) const {
    return *text != 0 && chars::Equal(text_.data(), text);
}

void ListMemory::Known::Set(const char16_t* text) {
    const std::size_t size = chars::Length(text) + 1;
    text_[0] = 0;
    if (size <= kRoom) {
        std::copy_n(text, size, text_.begin());
    }
}

// What an elementary type is does not depend on the project, only on the keywords.
Classification ListMemory::ClassifyType(const char16_t* text, TypeClass& type) {
    if (std::ranges::any_of(elementary_, [text](const Known& known) { return known.Is(text); })) {
        type = TypeClass::kElementary;
        return Classification::kAccepted;
    }
    const Classification result = pouh::ClassifyType(text, type);
    if (result == Classification::kAccepted && type == TypeClass::kElementary) {
        elementary_[oldest_].Set(text);
        oldest_ = (oldest_ + 1) % elementary_.size();
    }
    return result;
}

DECL_SCOPE ListMemory::GetDeclScope(const char16_t* keyword) {
    if (!keyword || !section_.Is(keyword)) {
        scope_ = ::GetDeclScope(keyword);
        section_.Set(keyword ? keyword : u"");
    }
    return scope_;
}

}  // namespace lq::pouh
