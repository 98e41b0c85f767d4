// Constants, declarations and member initial values from arbitrary texts.
#include <cstring>

#include "cgtab/cgtab_access.h"
#include "fuzz/targets.h"
#include "lq_base.h"
#include "lq_data/pouh.h"
#include "lq_data/types.h"

namespace lq::fuzz {

// What reads as an integer or truth value and is printed reads back equal.
void Value(const uint8_t* data, size_t size) {
    Input input(data, size);
    const int unsignedOnly = input.Byte() & 1;
    const std::u16string text = input.Rest();
    Val value;
    const int read = value.Set(text.c_str(), unsignedOnly);
    Require((read != 0) == (value.type != VT_NONE), "no result without a value");
    CLQString printed;
    const int hasText = value.GetCValue_LQ(&printed);
    uint32_t number = 0;
    value.GetAnyNumberValue(number);
    if (!read || !hasText || value.type > VT_UDINT) {
        return;
    }
    Val again;
    Require(again.Set(printed.GetText(), unsignedOnly) != 0, "a printed value reads");
    Require(again.type == value.type && std::memcmp(again.payload, value.payload, 4) == 0,
            "a printed value reads back equal");
}

void Declaration(const uint8_t* data, size_t size) {
    Input input(data, size);
    int ok = 0;
    CgTab tables(ok, nullptr);
    while (!input.IsEmpty()) {
        const uint32_t scope = input.Below(22);
        const uint32_t kind = input.Below(8);
        DECL_TYP* decl = CreateDecl();
        UNNAMED_TYPE_TYP* type = CreateUnnamedType();
        SIMPLE_SPEC_TYP* simple = CreateSimpleSpec();
        // The four specifications of one shape: their type texts are the same field.
        SetAttrOfSimpleSpec(simple, POUH_NAME, input.Text().c_str());
        SetAttrOfSimpleSpec(simple, POUH_INITVALUE, input.Text().c_str());
        SetAttrOfDecl(decl, POUH_SCOPE, &scope);
        SetAttrOfDecl(decl, POUH_NAME, input.Text().c_str());
        SetAttrOfDecl(decl, POUH_ADDRESS, input.Text().c_str());
        SetAttrOfDecl(decl, POUH_TYPE, &type);
        const uint32_t usable = kind == DT_SUBRANGE || kind == 0 || kind > 6 ? 1 : kind;
        SetAttrOfUnnamedType(type, POUH_TYPEKIND, &usable);
        SetAttrOfUnnamedType(type, POUH_TYPESPEC, &simple);
        const int32_t pos = tables.Insert(decl);
        Require(pos < 0 || tables.Insert(decl) == pos, "a global is found again");
        DestroyDecl(decl);
    }
}

void MemberInit(const uint8_t* data, size_t size) {
    Input input(data, size);
    const std::u16string member = input.Text();
    const std::u16string text = input.Rest();
    const DUVMemberInit_C members(text.c_str());
    const char16_t* value = members.FindNewInit(member.c_str());
    Require(!value || std::char_traits<char16_t>::length(value) <= text.size(),
            "a value is a part of the text");
}

}  // namespace lq::fuzz
