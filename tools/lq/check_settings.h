// The settings of `lq check`: what the command line says, and the file .lq.ini nearest above the
// project.
#pragma once

#include <string>

#include "lq_data/host/check/check.h"
#include "tools/lq/commands.h"

namespace lq::tool {

struct CheckSettings {
    host::CheckOptions options;
    host::Severity failOn = host::Severity::kError;  // kOff: nothing fails
};

// What the command line says counts; the file fills in what it does not say, its libraries too,
// which are added to `options.files`. Throws CommandError for what is no code, name, severity,
// setting or section.
CheckSettings SettingsOf(CheckOptions& options);

// The checks of codes, names or families, with commas between them. Throws CommandError where there
// are none.
std::vector<const host::Check*> ChecksOf(const std::vector<std::string>& lists);

}  // namespace lq::tool
