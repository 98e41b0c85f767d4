// Declaration records to their decoded form.
#include "cgtab/declaration.h"

#include "cgtab/shared_scanner.h"
#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_addrcheck.h"
#include "pouh/record_access.h"

using lq::cgtab::BehindWord;
using lq::cgtab::DeclFault;
using lq::cgtab::TextScan;

namespace {

constexpr size_t kNameLimit = 66;  // names are shorter

// Integers in the initial values of these types are bit strings.
bool IsBitType(IEC_TYPE type) {
    return type == IEC_BOOL || type == IEC_BYTE || type == IEC_WORD || type == IEC_DWORD ||
           type == IEC_LWORD || type == IEC_ANY_BIT;
}

bool IsBlankText(const char16_t* text) {
    while (lq::chars::IsBlank(*text)) {
        ++text;
    }
    return *text == 0;
}

// The text must be the name of one type; IEC_NO_TYPE otherwise.
IEC_TYPE NamedType(const char16_t* typeText) {
    IecTypeConv types;
    const char16_t* end = typeText;
    const IEC_TYPE type = types.GetId(typeText, end);
    return types.TypeEnd(end) ? type : IEC_NO_TYPE;
}

// What most initial values are: nothing, or digits of a number that is surely below 2^32. Read as
// the scanner would, without it, which took 2 % off the translation of a project.
bool ReadPlainValue(const char16_t* text, int unsignedOnly, Val& value) {
    constexpr std::ptrdiff_t kSurelyInRange = 9;  // digits
    uint32_t number = 0;
    const char16_t* at = text;
    for (; lq::chars::IsDigit(*at) && at - text < kSurelyInRange; ++at) {
        number = number * 10 + lq::chars::HexValue(*at);
    }
    if (*at != 0) {
        return false;
    }
    if (at == text) {
        value.type = VT_NONE;
        return true;
    }
    if (unsignedOnly) {
        value.Set(number);
    } else {
        value.Set(ANY_INT_32{0, number});
    }
    return true;
}

// The whole text as a constant of the type; the empty text is no value.
bool ReadInitialValue(const char16_t* text, IEC_TYPE type, Val& value) {
    const int unsignedOnly = IsBitType(type) ? 1 : 0;
    if (!lq::cgtab::HasSharedScanner()) {
        return false;  // whatever the value: it was released, and comes back with the next set
    }
    if (ReadPlainValue(text, unsignedOnly, value)) {
        return true;
    }
    TextScan scan(text);
    return value.Set(*scan.Get(), unsignedOnly) &&
           (scan.Get()->IsEOF() || lq::cgtab::NextToken(*scan.Get()).kind == TK_EOF);
}

}  // namespace

bool CgTab::GetTypeAndValue(const DECL_TYP* decl, uint32_t kind, DECL_ASCII& out) {
    const char16_t* const typeText = lq::pouh::TypeTextOf(decl);
    out.initText = lq::pouh::InitValueOf(decl);
    switch (kind) {
        case DT_ELEMENTARY:
            out.type = NamedType(typeText);
            if (out.type == IEC_NO_TYPE) {
                return out.Fail(DeclFault::kTypeName);
            }
            if (out.type == IEC_STRUCTURE) {
                out.typeText = typeText;
            }
            // The default of an in-out parameter may name what it stands for.
            if (out.scope == DS_VAR_IN_OUT && out.initText[0] == u'@') {
                out.initText = u"0";
            }
            return ReadInitialValue(out.initText, out.type, out.init) ||
                   out.Fail(DeclFault::kInitialValue);
        case DT_STRING: {
            out.type = IEC_STRING;
            TextScan scan(BehindWord(typeText));
            out.dsc.strLen = scan.Get() ? lq::cgtab::ScanStringLength(*scan.Get()) : 0;
            return out.dsc.strLen != 0 || out.Fail(DeclFault::kStringLength);
        }
        case DT_ARRAY: {
            out.type = IEC_ARRAY;
            out.dsc.arr = {&arrInfo, 0};
            arrInfo.Clear(ArrInfo::CLEAR_BEGIN);
            TextScan scan(BehindWord(typeText));
            const bool read =
                scan.Get() && lq::cgtab::ScanArrDsc(*scan.Get(), out.dsc.arr, out.elementTypeName);
            out.typeText = out.elementTypeName;
            return read || out.Fail(DeclFault::kArrayType);
        }
        case DT_STRUCTURE:
        case DT_FB_INSTANCE:
            out.type = kind == DT_STRUCTURE ? IEC_STRUCTURE : IEC_FUNCTION_BLOCK;
            out.typeText = typeText;
            return true;
        default:
            return out.Fail(DeclFault::kTypeKind);
    }
}

// The settings and the host's checks have answers for want of memory that are others' as well: a
// declaration that met it is not decoded.
bool CgTab::GetDecl(const DECL_TYP* decl, DECL_ASCII& out) {
    const lq::MemoryWatch watch;
    const bool decoded = DecodeParts(decl, out);
    return watch.WasShort() ? out.Fail(DeclFault::kMemory) : decoded;
}

bool CgTab::DecodeParts(const DECL_TYP* decl, DECL_ASCII& out) {
    out.name = lq::pouh::TextOf(decl, POUH_NAME);
    if (lq::chars::Length(out.name) >= kNameLimit) {
        return out.Fail(DeclFault::kNameTooLong);
    }
    GetAttrOfDecl(decl, POUH_SCOPE, &out.scope);
    if (!GetTypeAndValue(decl, lq::pouh::TypeKindOf(decl), out)) {
        return false;
    }
    if (!lq::cgtab::IsLocatedScope(out.scope)) {
        return true;
    }
    CLQString normalised;
    IsAdressValidOnl(lq::pouh::TextOf(decl, POUH_ADDRESS), 1, 0, &normalised);
    if (normalised.HasFailed()) {
        return out.Fail(DeclFault::kMemory);
    }
    if (!IsBlankText(normalised)) {
        TextScan scan(BehindWord(normalised));
        if (!scan.Get() || !lq::cgtab::GetAdrDsc(*scan.Get(), out.adr, out.addressText)) {
            return out.Fail(DeclFault::kAddress);
        }
    }
    out.adr.text = const_cast<char16_t*>(out.addressText.GetText());  // read, never written
    return true;
}
