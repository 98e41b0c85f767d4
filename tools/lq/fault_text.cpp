#include "tools/lq/fault_text.h"

#include "lq_data/host/text/message.h"

namespace lq::tool {

using host::Message;
using host::Say;

namespace {

struct ScanErrorName {
    int32_t code;
    const char* text;
};

constexpr ScanErrorName kScanErrors[] = {
    {SE_NO_TOKEN, Message("no token begins with this character")},
    {SE_DECIMAL, Message("malformed decimal number, or one that is larger than 4294967295")},
    {SE_BASED, Message("malformed number with a base, or one that needs more than 32 bits")},
    {SE_REAL, Message("malformed real number")},
    {SE_IDENTIFIER, Message("malformed identifier")},
    {SE_LINE_END, Message("a carriage return without a line feed")},
    {SE_ADDRESS, Message("malformed direct address")},
    {SE_COMMENT, Message("the comment does not end")},
    {SE_STRING, Message("the string does not end, or an escape in it is malformed")},
    {SE_TIME, Message("no literal begins with this prefix, or a malformed duration")},
    {SE_DATE_AND_TIME, Message("malformed or invalid date and time")},
    {SE_DATE, Message("malformed or invalid date")},
    {SE_TIME_OF_DAY, Message("malformed or invalid time of day")},
};

}  // namespace

std::string FaultText(cgtab::DeclFault fault) {
    using cgtab::DeclFault;
    switch (fault) {
        case DeclFault::kNone:
            break;
        case DeclFault::kNameTooLong:
            return Say("the name has more than 65 characters");
        case DeclFault::kTypeKind:
            return Say("the tables hold no declarations of this kind of type");
        case DeclFault::kTypeName:
            return Say("no type of this name is known");
        case DeclFault::kInitialValue:
            return Say("the initial value does not read as one constant");
        case DeclFault::kStringLength:
            return Say("the string has no length");
        case DeclFault::kArrayType:
            return Say("the array type does not read as bounds and a known element type");
        case DeclFault::kAddress:
            return Say("the address does not read as one direct address");
        case DeclFault::kScope:
            return Say("the section is none of globals");
        case DeclFault::kTableType:
            return Say("no line of the table holds this type");
        case DeclFault::kTextTooLong:
            return Say("the initial value is too long for its line");
        case DeclFault::kMemory:
            return Say("the table cannot take the line");
    }
    return Say("unknown");
}

std::string ScanErrorText(int32_t error) {
    for (const ScanErrorName& name : kScanErrors) {
        if (name.code == error) {
            return Say(name.text);
        }
    }
    return Say("malformed text");
}

}  // namespace lq::tool
