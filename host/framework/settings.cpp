// Integers of a settings file.
#include "host/framework/ini_file.h"
#include "host/framework/module_file.h"
#include "lq_data/env/lq_framework.h"
#include "lq_data/host/text/utf.h"

uint32_t GetPrivateProfileIntW(const char16_t* section, const char16_t* key, int32_t fallback,
                               const char16_t* file) {
    using namespace lq::host;
    PathBuffer path;
    IniValue value;
    if (!section || !key || !file || !CopyUtf16ToUtf8(file, path, sizeof path) ||
        FindInIni(path, section, key, value) != IniLookup::kFound || value[0] == 0) {
        return static_cast<uint32_t>(fallback);
    }
    const char16_t* end = nullptr;
    return ParseInteger(value, &end);
}
