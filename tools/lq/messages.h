// What the tool has to say besides its results, on standard error.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lq_data/cgtab_compiler.h"
#include "lq_data/host/check/check.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/scanner.h"
#include "tools/lq/command.h"

namespace lq::tool {

// Where in an input something is. Both numbers from 1; 0 for the input as a whole.
struct Place {
    std::string file;  // as DisplayName gives it
    uint32_t line = 0;
    uint32_t column = 0;
};

// "plant.xml:12:5", the form that editors jump to.
std::string ToText(const Place& place);

// The place of the character behind `text`, with which the input begins.
Place PlaceBehind(const std::string& file, std::u16string_view text);

// Ends a command because of what stands at a place of the input.
class InputError : public CommandError {
  public:
    InputError(const Place& place, const std::string& text);
};

// "error: what is there [2001 unknown-type]".
std::string WithCode(host::Severity severity, const host::Check& check, const std::string& text);

// "lq: 'x' is no constant". None of these for a user who wants only what ends a command.
void PrintMessage(const std::string& text);
// "plant.xml:12:5: what is there".
void PrintMessage(const Place& place, const std::string& text);
// "plant.xml:12:5: error: what is there [2001 unknown-type]".
void PrintMessage(const Place& place, host::Severity severity, const host::Check& check,
                  const std::string& text);
void PrintMessage(const host::Report& report);
// What ended a command.
void PrintMessage(const CommandError& error);

// Why a declaration was not entered.
std::string FaultText(DeclFault fault);

// What is wrong with the text of an error token.
std::string ScanErrorText(int32_t error);

}  // namespace lq::tool
