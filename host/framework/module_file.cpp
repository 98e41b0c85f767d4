#include "host/framework/module_file.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include "lq_data/host/text/utf.h"

namespace lq::host {

namespace {

bool GetProgramPath(PathBuffer& path) noexcept {
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    path[length > 0 ? length : 0] = 0;
    return length > 0;
}

// The loader names every object by its path but the program itself, for which the name is empty.
bool GetModulePath(HINSTANCE module, PathBuffer& path) noexcept {
    const link_map* object = nullptr;
    if (module && module->loader) {
        dlinfo(module->loader, RTLD_DI_LINKMAP, &object);
    } else if (module && module->address) {
        Dl_info info;
        void* entry = nullptr;
        if (dladdr1(module->address, &info, &entry, RTLD_DL_LINKMAP) != 0) {
            object = static_cast<const link_map*>(entry);
        }
    }
    if (object && object->l_name && *object->l_name) {
        return realpath(object->l_name, path) != nullptr;
    }
    return GetProgramPath(path);
}

}  // namespace

bool FormatPath(PathBuffer& path, const char* format, ...) noexcept {
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(path, sizeof path, format, arguments);
    va_end(arguments);
    return length >= 0 && static_cast<std::size_t>(length) < sizeof path;
}

bool GetModuleFolder(HINSTANCE module, PathBuffer& folder) noexcept {
    if (!GetModulePath(module, folder)) {
        return false;
    }
    char* const slash = std::strrchr(folder, '/');
    if (!slash) {
        return false;
    }
    *(slash == folder ? slash + 1 : slash) = 0;
    return true;
}

}  // namespace lq::host

uint32_t GetModuleFileNameW(HINSTANCE module, char16_t* buffer, uint32_t size) {
    using namespace lq::host;
    if (!buffer || size == 0) {
        return 0;
    }
    buffer[0] = 0;
    PathBuffer path;
    if (module && module->name) {
        PathBuffer folder;
        char name[NAME_MAX];
        if (!CopyUtf16ToUtf8(module->name, name, sizeof name) || !GetModuleFolder(module, folder) ||
            !FormatPath(path, "%s/%s.so", folder, name)) {
            return 0;
        }
    } else if (!GetModulePath(module, path)) {
        return 0;
    }
    // What is cut in front of a pair is a character shorter than the buffer.
    return CopyUtf8ToUtf16(path, buffer, size)
               ? static_cast<uint32_t>(std::char_traits<char16_t>::length(buffer))
               : size - 1;
}
