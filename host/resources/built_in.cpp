#include <cstring>

#include "host/resources/texts.h"

namespace lq::host {

constinit const LQ_STRING_TABLE kDefaultStrings = {std::size(kEnglish), kEnglish};

#ifdef LQ_HOST_BUILT_IN_TEXTS

namespace {

// The library attaches before static objects exist: constants only.
constinit const LQ_STRING_TABLE japanese = {std::size(kJapanese), kJapanese};

struct Library {
    const char* file;
    LQ_MODULE module;
};
constinit Library libraries[] = {
    {"lq_data_RC_1252.dll", {u"lq_data_RC_1252", nullptr, nullptr, &kDefaultStrings}},
    {"lq_data_RC_932.dll", {u"lq_data_RC_932", nullptr, nullptr, &japanese}},
};

}  // namespace

HINSTANCE FindBuiltIn(const char* file) noexcept {
    for (Library& library : libraries) {
        if (std::strcmp(library.file, file) == 0) {
            return &library.module;
        }
    }
    return nullptr;
}

#endif

}  // namespace lq::host
