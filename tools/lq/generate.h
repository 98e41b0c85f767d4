// What is generated from the definition of the command line.
#pragma once

#include <string>
#include <vector>

#include "lq_data/host/text/message.h"

namespace lq::tool {

class CommandLine;

inline constexpr const char* kGeneratedKinds = host::Message("man, bash, zsh or fish");

// What symbols are sorted by.
inline constexpr const char* kSymbolOrders = host::Message("name or address");

// The man page or a shell's completion script. Throws CommandError for another kind.
std::string Generate(const CommandLine& commandLine, const std::string& kind);

// An option, or an argument.
struct ParameterText {
    std::vector<std::string> names;  // with their dashes, the short one first
    std::string value;               // what its value is; empty when it takes none
    std::string description;
    bool isRepeatable = false;
};

// A command, or lq itself.
struct CommandText {
    std::string name;
    std::string description;
    std::string example;
    std::vector<ParameterText> options;
    std::vector<ParameterText> arguments;
};

struct ProgramText {
    CommandText program;
    std::vector<CommandText> commands;
};

std::string ManPage(const ProgramText& text);
std::string BashCompletion(const ProgramText& text);
std::string ZshCompletion(const ProgramText& text);
std::string FishCompletion(const ProgramText& text);

}  // namespace lq::tool
