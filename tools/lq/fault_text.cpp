#include "tools/lq/fault_text.h"

namespace lq::tool {

namespace {

struct ScanErrorName {
    int32_t code;
    const char* text;
};

constexpr ScanErrorName kScanErrors[] = {
    {SE_NO_TOKEN, "no token begins with this character"},
    {SE_DECIMAL, "malformed decimal number, or one that is larger than 4294967295"},
    {SE_BASED, "malformed number with a base, or one that needs more than 32 bits"},
    {SE_REAL, "malformed real number"},
    {SE_IDENTIFIER, "malformed identifier"},
    {SE_LINE_END, "a carriage return without a line feed"},
    {SE_ADDRESS, "malformed direct address"},
    {SE_COMMENT, "the comment does not end"},
    {SE_STRING, "the string does not end, or an escape in it is malformed"},
    {SE_TIME, "no literal begins with this prefix, or a malformed duration"},
    {SE_DATE_AND_TIME, "malformed or invalid date and time"},
    {SE_DATE, "malformed or invalid date"},
    {SE_TIME_OF_DAY, "malformed or invalid time of day"},
};

}  // namespace

std::string FaultText(cgtab::DeclFault fault) {
    using cgtab::DeclFault;
    switch (fault) {
        case DeclFault::kNone:
            break;
        case DeclFault::kNameTooLong:
            return "the name has more than 65 characters";
        case DeclFault::kTypeKind:
            return "the tables hold no declarations of this kind of type";
        case DeclFault::kTypeName:
            return "no type of this name is known";
        case DeclFault::kInitialValue:
            return "the initial value does not read as one constant";
        case DeclFault::kStringLength:
            return "the string has no length";
        case DeclFault::kArrayType:
            return "the array type does not read as bounds and a known element type";
        case DeclFault::kAddress:
            return "the address does not read as one direct address";
        case DeclFault::kScope:
            return "the section is none of globals";
        case DeclFault::kTableType:
            return "no line of the table holds this type";
        case DeclFault::kTextTooLong:
            return "the initial value is too long for its line";
        case DeclFault::kMemory:
            return "the table cannot take the line";
    }
    return "unknown";
}

std::string ScanErrorText(int32_t error) {
    for (const ScanErrorName& name : kScanErrors) {
        if (name.code == error) {
            return name.text;
        }
    }
    return "malformed text";
}

}  // namespace lq::tool
