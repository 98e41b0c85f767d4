#include "host/framework/string_table.h"

namespace {

// The library attaches before static objects of other modules exist: constants only.
constinit LQ_MODULE application;
constinit HINSTANCE currentModule = &application;

}  // namespace

HINSTANCE AfxGetResourceHandle() {
    return currentModule;
}

void AfxSetResourceHandle(HINSTANCE module) {
    currentModule = module;
}

namespace lq::host {

const char16_t* FindString(HINSTANCE module, uint32_t id) noexcept {
    if (!module || !module->strings) {
        return nullptr;
    }
    const LQ_STRING_TABLE& table = *module->strings;
    for (uint32_t i = 0; i < table.count; ++i) {
        if (table.strings[i].id == id) {
            return table.strings[i].text;
        }
    }
    return nullptr;
}

HINSTANCE GetApplicationModule() noexcept {
    return &application;
}

void SetApplicationStrings(const LQ_STRING_TABLE* table) noexcept {
    application.strings = table;
}

}  // namespace lq::host
