// Constants, declarations, member initial values and PLCopen documents from arbitrary texts.
#include <cmath>
#include <cstring>
#include <sstream>

#include "cgtab/cgtab_access.h"
#include "fuzz/targets.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/pouh.h"
#include "lq_data/types.h"

namespace lq::fuzz {

namespace {

// Whether what a value was printed as has been read as the same value. Durations, dates and times
// of day print as plain counts, which read as integers of that number.
bool IsSame(const Val& value, const Val& again) {
    Val a = value;
    Val b = again;
    uint32_t number = 0;
    uint32_t count = 0;
    if (value.type >= VT_TIME) {
        return b.GetAnyNumberValue(count) && a.GetAnyNumberValue(number) && count == number;
    }
    if (value.type != VT_LREAL) {
        return again.type == value.type && std::memcmp(again.payload, value.payload, 4) == 0;
    }
    double printed = 0;
    double read = 0;
    std::memcpy(&printed, value.payload, sizeof printed);
    std::memcpy(&read, again.payload, sizeof read);
    // Sixteen digits are one short of what tells any two neighbours apart.
    return again.type == VT_LREAL && std::abs(read - printed) <= std::abs(printed) * 1e-15;
}

}  // namespace

// A constant that is printed reads back equal.
void Value(const uint8_t* data, size_t size) {
    Input input(data, size);
    const int unsignedOnly = input.Byte() & 1;
    const std::u16string text = input.Rest();
    Val value;
    const int read = value.Set(text.c_str(), unsignedOnly);
    Require((read != 0) == (value.type != VT_NONE), "no result without a value");
    CLQString printed;
    const int hasText = value.GetCValue_LQ(&printed);
    Require(hasText == read, "what was read has a text");
    const std::u16string_view form = printed.GetText();
    // A whole or infinite real prints as no IEC real.
    if (!read || (value.type == VT_LREAL && form.find(u'.') == form.npos)) {
        return;
    }
    Val again;
    // A negative real or count has a sign, which an unsigned constant may not have.
    Require(again.Set(printed.GetText(), value.type < VT_LREAL ? unsignedOnly : 0) != 0,
            "a printed value reads");
    Require(IsSame(value, again), "a printed value reads back equal");
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
        Require(CgTabAccess::Check(tables), "the tables are sound");
        DestroyDecl(decl);
    }
}

// A value is a part of the text when blanks do not count.
void MemberInit(const uint8_t* data, size_t size) {
    const auto withoutBlanks = [](std::u16string text) {
        std::erase_if(text, [](char16_t c) {
            return std::u16string_view(u" \t\r\n").find(c) != std::u16string_view::npos;
        });
        return text;
    };
    Input input(data, size);
    const std::u16string member = input.Text();
    const std::u16string text = input.Rest();
    const DUVMemberInit_C members(text.c_str());
    if (const char16_t* value = members.FindNewInit(member.c_str())) {
        Require(withoutBlanks(text).find(withoutBlanks(value)) != text.npos,
                "a value is a part of the text");
    }
}

// A document is read, or refused with a report.
void Plcopen(const uint8_t* data, size_t size) {
    std::istringstream document(std::string(reinterpret_cast<const char*>(data), size));
    host::Project project;
    std::vector<host::Report> reports;
    const bool whole = host::ReadPlcopen(document, "input", project, reports);
    Require(whole || (!reports.empty() && reports.back().error), "a refusal has a reason");
}

}  // namespace lq::fuzz
