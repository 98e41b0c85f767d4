#include "host/framework/config_paths.h"

#include <cstdlib>

namespace lq::host {

namespace {

// An empty variable counts as none.
const char* FromEnvironment(const char* variable) noexcept {
    const char* const value = secure_getenv(variable);
    return value && *value ? value : nullptr;
}

}  // namespace

bool GetConfigPath(ConfigOwner owner, const char* file, PathBuffer& path) noexcept {
    const bool isUser = owner == ConfigOwner::kUser;
    if (const char* moved = FromEnvironment("LQ_DATA_CONFIG")) {
        return FormatPath(path, "%s/%s/%s", moved, isUser ? "user" : "machine", file);
    }
    if (!isUser) {
        return FormatPath(path, "/etc/lq_data/%s", file);
    }
    if (const char* config = FromEnvironment("XDG_CONFIG_HOME")) {
        return FormatPath(path, "%s/lq_data/%s", config, file);
    }
    const char* const home = FromEnvironment("HOME");
    return home && FormatPath(path, "%s/.config/lq_data/%s", home, file);
}

}  // namespace lq::host
