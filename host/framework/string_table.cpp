#include "lq_data/host/framework/string_table.h"

#include "host/framework/built_in_texts.h"

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

namespace {

const char16_t* FindIn(const LQ_STRING_TABLE* table, uint32_t id) noexcept {
    for (uint32_t i = 0; table && i < table->count; ++i) {
        if (table->strings[i].id == id) {
            return table->strings[i].text;
        }
    }
    return nullptr;
}

}  // namespace

const char16_t* FindString(HINSTANCE module, uint32_t id) noexcept {
    const char16_t* const text = module ? FindIn(module->strings, id) : nullptr;
    return text || module != &application ? text : FindIn(&kDefaultStrings, id);
}

HINSTANCE GetApplicationModule() noexcept {
    return &application;
}

void SetApplicationStrings(const LQ_STRING_TABLE* table) noexcept {
    application.strings = table;
}

}  // namespace lq::host
