// Small services: the settings file's name and the identifier characters.
#include <unistd.h>
#include <utility>

#include <climits>

#include "frame/per_thread.h"
#include "host/framework/settings.h"
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

struct KeptName : lq::frame::PerThread {
    char16_t* name = nullptr;
};
LQ_THREAD_LOCAL KeptName kept;

void Release(lq::frame::PerThread& part) {
    lq::Release(std::exchange(static_cast<KeptName&>(part).name, nullptr));
}

}  // namespace

// Found anew on each call, so that a file that comes or moves later is seen; the same buffer each
// time.
const char16_t* GetIniName() {
    if (!kept.name && lq::frame::KeepForThread(kept, Release)) {
        kept.name = lq::AllocateArray<char16_t>(PATH_MAX);
    }
    if (!kept.name) {
        return u"";
    }
    lq::host::PathBuffer path;
    if (!FindSettingsFile(path)) {
        path[0] = 0;
    }
    lq::host::CopyUtf8ToUtf16(path, kept.name, PATH_MAX);
    return kept.name;
}

int __istcsym(char16_t c) {
    return lq::chars::IsLetter(c) || lq::chars::IsDigit(c) || c == u'_' ? 1 : 0;
}
