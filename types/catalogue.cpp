// The names of the IEC types. One table in the order of preference; its lengths are measured once,
// so that a look-up compares characters only where the length agrees.

#include <algorithm>
#include <cstddef>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/frame.h"
#include "lq_data/types.h"

namespace {

constexpr uint32_t kDescriptorCount = 36;

// The keywords that begin a string type and an array type, as resources.
constexpr unsigned kStringKeyword = 6491;
constexpr unsigned kArrayKeyword = 6492;

constinit IEC_TYPE_DSC IEC_TYPE_ARR_INIT[] = {
    {IEC_BOOL, u"BOOL", 0},
    {IEC_SINT, u"SINT", 0},
    {IEC_INT, u"INT", 0},
    {IEC_DINT, u"DINT", 0},
    {IEC_LINT, u"LINT", 0},
    {IEC_USINT, u"USINT", 0},
    {IEC_UINT, u"UINT", 0},
    {IEC_UDINT, u"UDINT", 0},
    {IEC_ULINT, u"ULINT", 0},
    {IEC_REAL, u"REAL", 0},
    {IEC_LREAL, u"LREAL", 0},
    {IEC_TIME, u"TIME", 0},
    {IEC_DATE, u"DATE", 0},
    {IEC_TOD, u"TOD", 0},
    {IEC_TOD, u"TIME_OF_DAY", 0},
    {IEC_DT, u"DT", 0},
    {IEC_DT, u"DATE_AND_TIME", 0},
    {IEC_STRING, u"STRING", 0},
    {IEC_BYTE, u"BYTE", 0},
    {IEC_WORD, u"WORD", 0},
    {IEC_DWORD, u"DWORD", 0},
    {IEC_LWORD, u"LWORD", 0},
    {IEC_ANY, u"ANY", 0},
    {IEC_ANY_NUM, u"ANY_NUM", 0},
    {IEC_ANY_REAL, u"ANY_REAL", 0},
    {IEC_ANY_INT, u"ANY_INT", 0},
    {IEC_ANY_BIT, u"ANY_BIT", 0},
    {IEC_ANY_DATE, u"ANY_DATE", 0},
    {IEC_ANY16, u"ANY16", 0},
    {IEC_ANY32, u"ANY32", 0},
    {IEC_ANY_SIMPLE, u"ANY_SIMPLE", 0},
    {IEC_ANY_DUT, u"ANY_DUT", 0},
    {IEC_ANY_FB, u"ANY_FB", 0},
    {IEC_ARRAY, u"ARRAY", 0},
    {IEC_STRUCTURE, u"STRUCTURE", 0},
    {IEC_DUT_OR_FB, u"..", 0},
};
static_assert(std::size(IEC_TYPE_ARR_INIT) == kDescriptorCount);

// The descriptor whose name is the first `count` characters of `text`, which has as many; or null.
const IEC_TYPE_DSC* FindName(const char16_t* text, std::size_t count) {
    for (const IEC_TYPE_DSC& dsc : IEC_TYPE_ARR_INIT) {
        if (dsc.len == count && std::equal(dsc.name, dsc.name + count, text)) {
            return &dsc;
        }
    }
    return nullptr;
}

const char16_t* SkipBlanks(const char16_t* text) {
    while (lq::chars::IsBlank(*text)) {
        ++text;
    }
    return text;
}

}  // namespace

constinit IEC_TYPE_DSC* IecTypeConv::IecTypeDsc = IEC_TYPE_ARR_INIT;
constinit uint32_t IecTypeConv::wMaxSize = 0;

uint32_t GetIecDscSize() {
    return kDescriptorCount;
}

IEC_TYPE_DSC* GetIecTypeDsc() {
    return IEC_TYPE_ARR_INIT;
}

IecTypeConv::IecTypeConv() {
    if (wMaxSize != 0) {
        return;
    }
    for (IEC_TYPE_DSC& dsc : IEC_TYPE_ARR_INIT) {
        dsc.len = static_cast<uint32_t>(lq::chars::Length(dsc.name));
        wMaxSize = std::max(wMaxSize, dsc.len);
    }
}

IEC_TYPE IecTypeConv::GetId(const char16_t* text, const char16_t*& end) {
    end = text;
    const char16_t* const name = SkipBlanks(text);
    uint32_t count = 0;
    while (count <= wMaxSize && __istcsym(name[count])) {
        ++count;
    }
    if (count != 0 && count <= wMaxSize) {
        if (const IEC_TYPE_DSC* dsc = FindName(name, count)) {
            end = name + count;
            return dsc->id;
        }
    }
    if (FindDUTByName(name) != ID()) {
        end = name + lq::chars::Length(name);
        return IEC_STRUCTURE;
    }
    return IEC_NO_TYPE;
}

IEC_TYPE IecTypeConv::GetId(const char16_t* text) {
    const std::size_t length = lq::chars::Length(text);
    std::size_t count = length;
    if (IsStringType(text)) {
        count = lq::chars::Length(GetResString(kStringKeyword));
    }
    if (IsArrayType(text)) {
        count = lq::chars::Length(GetResString(kArrayKeyword));
    }
    const IEC_TYPE_DSC* dsc = count <= length ? FindName(text, count) : nullptr;
    return dsc ? dsc->id : IEC_NO_TYPE;
}

const char16_t* IecTypeConv::GetName(IEC_TYPE id) const {
    for (const IEC_TYPE_DSC& dsc : IEC_TYPE_ARR_INIT) {
        if (dsc.id == id) {
            return dsc.name;
        }
    }
    return u"";
}

int IecTypeConv::TypeEnd(const char16_t* text) {
    return *SkipBlanks(text) == 0 ? 1 : 0;
}
