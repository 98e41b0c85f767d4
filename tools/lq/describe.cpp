#include "tools/lq/describe.h"

#include "lq_data/detail/in_order.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/records.h"

namespace lq::tool {

using host::EncodeUtf8;

namespace {

constexpr RowOf<VAL_TYPE, const char*> kValueClasses[] = {
    {VT_BOOL, "BOOL"},   {VT_SINT, "SINT"}, {VT_USINT, "USINT"}, {VT_INT, "INT"},
    {VT_UINT, "UINT"},   {VT_DINT, "DINT"}, {VT_UDINT, "UDINT"}, {VT_LINT, "LINT"},
    {VT_ULINT, "ULINT"}, {VT_REAL, "REAL"}, {VT_LREAL, "LREAL"}, {VT_TIME, "TIME"},
    {VT_DATE, "DATE"},   {VT_TOD, "TOD"},   {VT_DT, "DT"},       {VT_STRING, "STRING"},
};
static_assert(AreInOrder(kValueClasses, VT_STRING));

constexpr RowOf<tagLocation, char> kLocations[] = {
    {LOC_INPUT, 'I'}, {LOC_OUTPUT, 'Q'}, {LOC_MEMORY, 'M'}};
static_assert(AreInOrder(kLocations, LOC_MEMORY));

constexpr RowOf<tagSize, char> kSizes[] = {
    {SIZE_BIT, 'X'}, {SIZE_BYTE, 'B'}, {SIZE_WORD, 'W'}, {SIZE_DWORD, 'D'}, {SIZE_LWORD, 'L'}};
static_assert(AreInOrder(kSizes, SIZE_LWORD));

std::string Number(ANY_INT_32 n) {
    return (n.sign ? "-" : "") + std::to_string(n.magnitude);
}

std::string TypeName(IEC_TYPE type) {
    if (type == IEC_FUNCTION_BLOCK) {
        return "FUNCTION_BLOCK";
    }
    const std::string name = EncodeUtf8(IecTypeConv().GetName(type));
    return name.empty() ? std::to_string(type) : name;
}

}  // namespace

std::string BoundsText(ArrInfo& info) {
    std::string text = "[";
    ANY_INT_32 ext[2];
    info.Clear(ArrInfo::CLEAR_CURSOR);
    while (info.GetExt(&ext, 0)) {
        ANY_INT_32 upper = ext[0];
        AddSub32(0, upper, ext[1]);
        AddSub32(1, upper, {0, 1});
        text += (text.size() > 1 ? ", " : "") + Number(ext[0]) + ".." + Number(upper);
    }
    return text + "]";
}

std::string ArrayText(const CgTab::ArrDsc& array) {
    CgTab::TYP_DSC element = {};
    element.strLen = array.elemDsc;
    return "ARRAY " + BoundsText(*array.info) + " OF " + TypeText(array.info->elemType, element);
}

std::string TypeText(IEC_TYPE type, const CgTab::TYP_DSC& dsc) {
    if (type == IEC_ARRAY && dsc.arr.info) {
        return ArrayText(dsc.arr);
    }
    if (type == IEC_STRING) {
        return "STRING(" + std::to_string(dsc.strLen) + ")";
    }
    return TypeName(type);
}

std::string AddressText(const CgTab::ADR_LINE& line) {
    const std::string digits = EncodeUtf8(line.text);
    if (digits.empty()) {
        return "";
    }
    if (line.location > LOC_MEMORY || line.size > SIZE_LWORD) {
        return "?" + digits;
    }
    return std::string("%") + kLocations[line.location].value + kSizes[line.size].value + digits;
}

std::string ValueClassName(VAL_TYPE type) {
    return type <= VT_STRING ? kValueClasses[type].value
           : type == VT_NONE ? "none"
                             : std::to_string(type);
}

std::string ValueText(Val value) {
    CLQString text;
    return value.GetCValue_LQ(&text) ? EncodeUtf8(text.GetText()) : "";
}

std::string ScopeText(uint32_t scope) {
    const std::string keyword = EncodeUtf8(pouh::KeywordOfScope(scope));
    return keyword.empty() ? std::to_string(scope) : keyword;
}

}  // namespace lq::tool
