#include "cgtab/search_text.h"

#include <cstring>

#include "frame/chars.h"

namespace lq::cgtab {

namespace {

constexpr char16_t kLocations[] = u"IQM";  // in the order of tagLocation
constexpr char16_t kSizes[] = u"XBWDL";    // in the order of tagSize

// By value class. Equal texts of different classes are different constants.
constexpr const char16_t* kClassPrefixes[] = {
    u"BIT",    u"INT8", u"UINT8", u"INT16", u"UINT16", u"INT32", u"UINT32", u"INT64",
    u"UINT64", u"REAL", u"LREAL", u"TIME",  u"DATE",   u"TOD",   u"DT",     u"\r\r",
};

// Writes the prefix to `to` and returns its length, or -1 when the key bytes mean nothing.
int32_t PutPrefix(int32_t id, const unsigned char* key, char16_t* to) {
    if (id == CgTab::TAB_ADR) {
        if (key[0] > LOC_MEMORY || key[1] > SIZE_LWORD) {
            return -1;
        }
        to[0] = u'%';
        to[1] = kLocations[key[0]];
        to[2] = kSizes[key[1]];
        return 3;
    }
    int32_t length = 0;
    if (id == CgTab::TAB_CST && key[0] <= VT_STRING) {
        for (const char16_t* p = kClassPrefixes[key[0]]; *p != 0; ++p) {
            to[length++] = *p;
        }
    }
    return length;
}

}  // namespace

bool SearchText::Form(int32_t id, const unsigned char* key, const void* name, uint32_t length) {
    char16_t prefix[kMaxPrefix];
    const int32_t prefixLength = PutPrefix(id, key, prefix);
    if (prefixLength < 0) {
        return false;
    }
    const uint32_t needed = static_cast<uint32_t>(prefixLength) + length + 1;
    if (text_ != inline_) {
        lq::Release(text_);
    }
    text_ = needed <= kInline ? inline_ : lq::AllocateArray<char16_t>(needed);
    if (!text_) {
        text_ = inline_;
        return false;
    }
    std::memcpy(text_, prefix, static_cast<uint32_t>(prefixLength) * sizeof(char16_t));
    if (length != 0) {
        std::memcpy(text_ + prefixLength, name, length * sizeof(char16_t));
    }
    text_[needed - 1] = 0;
    return true;
}

}  // namespace lq::cgtab
