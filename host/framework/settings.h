// The settings files: where they lie, and how one value is read.
//
// The user's folder is $XDG_CONFIG_HOME/lq_data, or ~/.config/lq_data; the machine's is
// /etc/lq_data. The environment variable LQ_DATA_CONFIG=DIR moves them to DIR/user and DIR/machine.
// Each may hold registry.ini (a section a key, named by its path) and settings.ini.
#pragma once

#include <cstdint>

#include "host/framework/module_file.h"
#include "lq_data/export.h"

namespace lq::host {

enum class ConfigOwner : std::uint8_t { kUser, kMachine };

// The path of `file` in the folder of `owner`, whether or not it exists; false when the user has no
// home.
LQ_DATA_API bool GetConfigPath(ConfigOwner owner, const char* file, PathBuffer& path) noexcept;

enum class IniLookup : std::uint8_t { kNoSection, kNoKey, kFound };

// Room for any value: lines of the file are shorter.
using IniValue = char16_t[256];

// Looks `key` up in `section`, both in any case; the first occurrence counts. A missing or
// unreadable file has no sections. Lines and names longer than the reader's limits (some 200 and 50
// bytes) are skipped. `key` may be null to ask for the section alone. Allocates nothing of its own.
LQ_DATA_API IniLookup FindInIni(const char* path, const char16_t* section, const char16_t* key,
                                IniValue& value) noexcept;

// Reads an integer: decimal with an optional sign, or hexadecimal after 0x, modulo 2^32. `*end`
// receives the first character that is not part of it; it is `text` when there is no integer.
LQ_DATA_API uint32_t ParseInteger(const char16_t* text, const char16_t** end) noexcept;

}  // namespace lq::host
