#include "cgtab/search_text.h"

#include <algorithm>
#include <cstring>

#include "cgtab/table_traits.h"
#include "lq_data/detail/chars.h"
#include "lq_data/detail/in_order.h"
#include "lq_data/detail/text_hash.h"

namespace lq::cgtab {

namespace {

constexpr RowOf<tagLocation, char16_t> kLocations[] = {
    {LOC_INPUT, u'I'}, {LOC_OUTPUT, u'Q'}, {LOC_MEMORY, u'M'}};
static_assert(AreInOrder(kLocations, LOC_MEMORY));

constexpr RowOf<tagSize, char16_t> kSizes[] = {
    {SIZE_BIT, u'X'}, {SIZE_BYTE, u'B'}, {SIZE_WORD, u'W'}, {SIZE_DWORD, u'D'}, {SIZE_LWORD, u'L'}};
static_assert(AreInOrder(kSizes, SIZE_LWORD));

// Equal texts of different classes are different constants.
constexpr RowOf<VAL_TYPE, const char16_t*> kClassPrefixes[] = {
    {VT_BOOL, u"BIT"},     {VT_SINT, u"INT8"},  {VT_USINT, u"UINT8"},  {VT_INT, u"INT16"},
    {VT_UINT, u"UINT16"},  {VT_DINT, u"INT32"}, {VT_UDINT, u"UINT32"}, {VT_LINT, u"INT64"},
    {VT_ULINT, u"UINT64"}, {VT_REAL, u"REAL"},  {VT_LREAL, u"LREAL"},  {VT_TIME, u"TIME"},
    {VT_DATE, u"DATE"},    {VT_TOD, u"TOD"},    {VT_DT, u"DT"},        {VT_STRING, u"\r\r"},
};
static_assert(AreInOrder(kClassPrefixes, VT_STRING));

}  // namespace

int32_t PutPrefix(int32_t id, const unsigned char* key, char16_t (&to)[kMaxPrefix]) {
    if (id == CgTab::TAB_ADR) {
        if (key[0] > LOC_MEMORY || key[1] > SIZE_LWORD) {
            return -1;
        }
        to[0] = u'%';
        to[1] = kLocations[key[0]].value;
        to[2] = kSizes[key[1]].value;
        return 3;
    }
    int32_t length = 0;
    if (id == CgTab::TAB_CST && key[0] <= VT_STRING) {
        for (const char16_t* p = kClassPrefixes[key[0]].value; *p != 0; ++p) {
            to[length++] = *p;
        }
    }
    return length;
}

[[gnu::noinline]] bool SearchText::Form(int32_t id, const unsigned char* key, const void* name,
                                        uint32_t length) {
    char16_t prefix[kMaxPrefix];
    const int32_t prefixLength = PutPrefix(id, key, prefix);
    if (prefixLength < 0) {
        return false;
    }
    const auto inFront = static_cast<uint32_t>(prefixLength);
    const uint32_t needed = inFront + length + 1;
    char16_t* text = inline_;
    if (needed > kInline) {
        lq::Release(long_);
        text = long_ = lq::AllocateArray<char16_t>(needed);
    }
    if (!text) {
        return false;
    }
    std::copy_n(prefix, inFront, text);
    if (length != 0) {
        std::memcpy(text + inFront, name, length * sizeof(char16_t));
    }
    text[needed - 1] = 0;
    Take(text, Measure(TraitsOf(id), text));
    return true;
}

}  // namespace lq::cgtab
