// Why the arguments cannot be understood, in the tool's own words and the user's language.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "tools/lq/command.h"

namespace lq::tool {

// The sentence on what the parser threw, with the help of the command that it was in. `last` is the
// last argument. An error without a sentence keeps the parser's words.
CommandError UsageFault(const CLI::App& app, const CLI::ParseError& error, const std::string& last);

}  // namespace lq::tool
