// Small services: the settings file's name and the identifier characters.
#include <iterator>
#include <unistd.h>

#include <climits>

#include "host/framework/config_paths.h"
#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/host/text/utf.h"

namespace {

constexpr char kSettingsFile[] = "settings.ini";

// The user's file if there is one, else the machine's, else where the user's would be.
bool FindSettingsFile(lq::host::PathBuffer& path) noexcept {
    using namespace lq::host;
    const auto isThere = [&path](ConfigOwner owner) {
        return GetConfigPath(owner, kSettingsFile, path) && access(path, R_OK) == 0;
    };
    return isThere(ConfigOwner::kUser) || isThere(ConfigOwner::kMachine) ||
           GetConfigPath(ConfigOwner::kUser, kSettingsFile, path);
}

}  // namespace

// Found anew on each call, so that a file that comes or moves later is seen; the same buffer each
// time.
const char16_t* GetIniName() {
    static constinit char16_t name[PATH_MAX] = {};
    lq::host::PathBuffer path;
    if (!FindSettingsFile(path)) {
        path[0] = 0;
    }
    lq::host::CopyUtf8ToUtf16(path, name, std::size(name));
    return name;
}

int __istcsym(char16_t c) {
    return lq::chars::IsLetter(c) || lq::chars::IsDigit(c) || c == u'_' ? 1 : 0;
}
