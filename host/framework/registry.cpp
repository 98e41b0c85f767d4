// The registry over two INI files: one key a section. A value that is a whole integer is a number,
// any other a text.
#include <cstring>
#include <iterator>

#include "host/framework/config_paths.h"
#include "host/framework/ini_file.h"
#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_framework.h"

struct LQ_REGISTRY_KEY {
    lq::host::ConfigOwner owner;
    char16_t path[128];  // empty for a root
};

namespace lq::host {

namespace {

constexpr char kRegistryFile[] = "registry.ini";

constinit LQ_REGISTRY_KEY currentUser{ConfigOwner::kUser, {}};
constinit LQ_REGISTRY_KEY localMachine{ConfigOwner::kMachine, {}};

bool IsRoot(HKEY key) noexcept {
    return key == &currentUser || key == &localMachine;
}

IniLookup Find(const LQ_REGISTRY_KEY& key, const char16_t* name, IniValue& value) noexcept {
    PathBuffer path;
    return GetConfigPath(key.owner, kRegistryFile, path) ? FindInIni(path, key.path, name, value)
                                                         : IniLookup::kNoSection;
}

struct RegistryValue {
    uint32_t type;
    uint32_t size;  // in bytes
    const void* data;
};

int32_t CopyValue(const RegistryValue& value, uint32_t* type, unsigned char* data,
                  uint32_t* size) noexcept {
    if (type) {
        *type = value.type;
    }
    const uint32_t capacity = size ? *size : 0;
    if (size) {
        *size = value.size;
    }
    if (!data) {
        return ERROR_SUCCESS;
    }
    if (capacity < value.size) {
        return ERROR_MORE_DATA;
    }
    std::memcpy(data, value.data, value.size);
    return ERROR_SUCCESS;
}

}  // namespace

}  // namespace lq::host

using namespace lq::host;

constinit const HKEY HKEY_CURRENT_USER = &currentUser;
constinit const HKEY HKEY_LOCAL_MACHINE = &localMachine;

int32_t RegOpenKeyExW(HKEY root, const char16_t* path, uint32_t, uint32_t, HKEY* key) {
    if (!key) {
        return ERROR_INVALID_PARAMETER;
    }
    *key = nullptr;
    if (!IsRoot(root)) {
        return ERROR_INVALID_HANDLE;
    }
    LQ_REGISTRY_KEY wanted{root->owner, {}};
    const std::size_t length = path ? lq::chars::Length(path) : 0;
    if (length == 0 || length >= std::size(wanted.path)) {
        return ERROR_FILE_NOT_FOUND;
    }
    std::memcpy(wanted.path, path, length * sizeof(char16_t));
    IniValue ignored;
    if (Find(wanted, nullptr, ignored) == IniLookup::kNoSection) {
        return ERROR_FILE_NOT_FOUND;
    }
    *key = lq::New<LQ_REGISTRY_KEY>(wanted);
    return *key ? ERROR_SUCCESS : ERROR_NOT_ENOUGH_MEMORY;
}

int32_t RegQueryValueExW(HKEY key, const char16_t* name, uint32_t*, uint32_t* type,
                         unsigned char* data, uint32_t* size) {
    if (!key) {
        return ERROR_INVALID_HANDLE;
    }
    if (!name || (data && !size)) {
        return ERROR_INVALID_PARAMETER;
    }
    IniValue text;
    if (Find(*key, name, text) != IniLookup::kFound) {
        return ERROR_FILE_NOT_FOUND;
    }
    const char16_t* end = nullptr;
    const uint32_t number = ParseInteger(text, &end);
    if (end != text && *end == 0) {
        return CopyValue({REG_DWORD, sizeof number, &number}, type, data, size);
    }
    const std::size_t bytes = (lq::chars::Length(text) + 1) * sizeof(char16_t);
    return CopyValue({REG_SZ, static_cast<uint32_t>(bytes), text}, type, data, size);
}

int32_t RegCloseKey(HKEY key) {
    if (!key) {
        return ERROR_INVALID_HANDLE;
    }
    if (!IsRoot(key)) {
        lq::Delete(key);
    }
    return ERROR_SUCCESS;
}
