// Loading libraries by file name, most of all resource libraries: the search for the file and the
// handle of what was loaded.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

#include "host/framework/module_file.h"
#include "lq_data/host/framework/extension_module.h"
#include "lq_data/host/framework/string_table.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/memory.h"

namespace lq::host {

namespace {

void* OpenFile(const char* path) noexcept {
    errno = 0;
    void* const opened = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!opened && errno == ENOMEM) {  // left by malloc, beneath the loader
        ReportShortage();
    }
    return opened;
}

// In the folder of the library's major version, where the installed ones are, or in the folder
// itself.
void* OpenIn(const char* folder, const char* name) noexcept {
    PathBuffer path;
    if (FormatPath(path, "%s/" LQ_DATA_VERSIONED "/%s", folder, name)) {
        if (void* opened = OpenFile(path)) {
            return opened;
        }
    }
    return FormatPath(path, "%s/%s", folder, name) ? OpenFile(path) : nullptr;
}

void* OpenBeside(HINSTANCE module, const char* name) noexcept {
    PathBuffer folder;
    return GetModuleFolder(module, folder) ? OpenIn(folder, name) : nullptr;
}

void* OpenBesideProgram(const char* name) noexcept {
    PathBuffer folder;
    PathBuffer libraries;
    if (!GetModuleFolder(nullptr, folder)) {
        return nullptr;
    }
    if (void* opened = OpenIn(folder, name)) {
        return opened;
    }
    return FormatPath(libraries, "%s/../lib", folder) ? OpenIn(libraries, name) : nullptr;
}

void* Open(const char* name) noexcept {
    if (std::strchr(name, '/')) {
        return OpenFile(name);
    }
    const char* const chosen = secure_getenv("LQ_DATA_RESOURCES");
    if (chosen && *chosen) {
        if (void* opened = OpenIn(chosen, name)) {
            return opened;
        }
    }
    for (const CDynLinkLibrary* library = GetFirstLibrary(); library;
         library = library->nextLibrary) {
        if (void* opened = OpenBeside(library->module, name)) {
            return opened;
        }
    }
    return OpenBesideProgram(name);
}

}  // namespace

}  // namespace lq::host

HINSTANCE AfxLoadLibrary(const char16_t* name) {
    using namespace lq::host;
    PathBuffer file;
    if (!name || *name == 0 || !CopyUtf16ToUtf8(name, file, sizeof file)) {
        return nullptr;
    }
    void* const loader = Open(file);
    if (!loader) {
#ifdef LQ_HOST_BUILT_IN_TEXTS
        return FindBuiltIn(file);
#else
        return nullptr;
#endif
    }
    const auto* strings = static_cast<const LQ_STRING_TABLE*>(dlsym(loader, kStringTableSymbol));
    HINSTANCE module = lq::New<LQ_MODULE>();
    if (!module) {
        dlclose(loader);
        return nullptr;
    }
    module->loader = loader;
    module->strings = strings;
    return module;
}

int AfxFreeLibrary(HINSTANCE module) {
    if (!module || !module->loader) {
        return 0;
    }
    const int closed = dlclose(module->loader);
    lq::Delete(module);
    return closed == 0 ? 1 : 0;
}
