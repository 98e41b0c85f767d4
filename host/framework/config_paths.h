// The configuration files.
//
// The user's folder is $XDG_CONFIG_HOME/lq_data, or ~/.config/lq_data; the machine's is
// /etc/lq_data. The environment variable LQ_DATA_CONFIG=DIR moves them to DIR/user and DIR/machine.
// Each may hold registry.ini (a section a key, named by its path) and settings.ini.
#pragma once

#include <cstdint>

#include "host/framework/module_file.h"

namespace lq::host {

enum class ConfigOwner : std::uint8_t { kUser, kMachine };

// The path of `file` in the folder of `owner`, whether or not it exists; false when the user has no
// home.
LQ_DATA_API bool GetConfigPath(ConfigOwner owner, const char* file, PathBuffer& path) noexcept;

}  // namespace lq::host
