// The registered code page, which chooses the language of texts.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_framework.h"

namespace lq::frame {

inline constexpr uint32_t kDefaultCodePage = 1252;
inline constexpr char16_t kUserKey[] = u"SOFTWARE\\Veldrane\\Talmor2\\App";
inline constexpr char16_t kMachineKey[] = u"SOFTWARE\\Veldrane\\Talmor2\\Startup\\App";

// The first of the two keys that can be opened decides. False when there is none, or it has no such
// value.
inline bool ReadRegisteredCodePage(uint32_t& registered) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kUserKey, 0, KEY_READ, &key) != 0 &&
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, kMachineKey, 0, KEY_READ, &key) != 0) {
        return false;
    }
    uint32_t codePage = kDefaultCodePage;
    uint32_t size = sizeof codePage;
    const int32_t result = RegQueryValueExW(key, u"CodePage", nullptr, nullptr,
                                            reinterpret_cast<unsigned char*>(&codePage), &size);
    RegCloseKey(key);
    registered = result == 0 ? codePage : registered;
    return result == 0;
}

// The same, or the default.
inline uint32_t ReadCodePage() {
    uint32_t codePage = kDefaultCodePage;
    ReadRegisteredCodePage(codePage);
    return codePage;
}

}  // namespace lq::frame
