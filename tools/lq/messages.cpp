#include "tools/lq/messages.h"

#include <algorithm>
#include <iostream>
#include <unistd.h>

#include "lq_data/host/text/message.h"
#include "tools/lq/escape.h"
#include "tools/lq/output.h"
#include "tools/lq/output_file.h"
#include "tools/lq/progress.h"
#include "tools/lq/terminal.h"

namespace lq::tool {

using host::Message;
using host::Say;

namespace {

// The line is composed first and written in one piece: were memory short in between, half a line
// would be printed. When it cannot be written there is nowhere left to say so.
void PrintLineOf(const std::string& origin, const std::string& text) {
    const auto pause = Progress::Hide();
    std::cout.flush();  // what was printed before it comes before it
    WriteAll(STDERR_FILENO, Bold(Stream::kMessages, origin + ":") + ' ' + OneLine(text) + '\n');
}

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

std::string ToText(const Place& place) {
    const auto number = [](uint32_t n) { return n == 0 ? "" : ":" + std::to_string(n); };
    return OneLine(place.file) + number(place.line) + number(place.column);
}

Place PlaceBehind(const std::string& file, std::u16string_view text) {
    const size_t lineStart = text.rfind(u'\n') + 1;  // 0 when there is none
    const auto isFirstHalf = [](char16_t c) { return c >= 0xD800 && c <= 0xDBFF; };
    const auto line = std::count(text.begin(), text.end(), u'\n') + 1;
    const std::u16string_view rest = text.substr(lineStart);
    const auto pairs = std::count_if(rest.begin(), rest.end(), isFirstHalf);
    return {file, static_cast<uint32_t>(line),
            static_cast<uint32_t>(rest.size() - static_cast<size_t>(pairs) + 1)};
}

InputError::InputError(const Place& place, const std::string& text)
    : CommandError(ToText(place), text) {}

void PrintMessage(const std::string& text) {
    if (!IsQuiet()) {
        PrintLineOf("lq", text);
    }
}

void PrintMessage(const Place& place, const std::string& text) {
    if (IsQuiet()) {
        return;
    }
    PrintLineOf(ToText(place), text);
}

std::string WithCode(host::Severity severity, const host::Check& check, const std::string& text) {
    return std::string(host::Translated(NameOf(severity))) + ": " + text + " [" +
           host::CodeText(check.code) + ' ' + check.name + ']';
}

void PrintMessage(const Place& place, host::Severity severity, const host::Check& check,
                  const std::string& text) {
    PrintMessage(place, WithCode(severity, check, text));
}

void PrintMessage(const host::Report& report) {
    const host::Check& check = host::CheckOf(report);
    host::Report rest = report;
    rest.file.clear();
    rest.line = 0;
    rest.error = false;                           // the severity says so
    const std::string text = host::ToText(rest);  // ": the rest"
    PrintMessage(Place{report.file, report.line, report.column}, check.severity, check,
                 text.substr(2));
}

void PrintMessage(const CommandError& error) {
    PrintLineOf(error.Origin(), error.what());
}

std::string FaultText(DeclFault fault) {
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
