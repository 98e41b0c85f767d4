// The address check's rules, for embedders and tests to set. They start as those of a system
// without device addresses of its own: nothing is one, and every address is normal as it is
// written.
#pragma once

#include "lq_data/env/lq_addrcheck.h"

namespace lq::host {

// A null rule is the default. The parameters are those of the functions in lq_addrcheck.h.
struct AddressRules {
    int (*isCustomAddress)(const char16_t* text, int checkAccess, int flag) = nullptr;
    int (*isOwnConstant)(const char16_t* text, int a, int b) = nullptr;
    // Writes the normalised form; non-zero when the address is valid.
    int (*normalise)(const char16_t* address, CLQString* normalised) = nullptr;
};

// The rules in force. Assign {} to return to the defaults.
LQ_DATA_API AddressRules& GetAddressRules() noexcept;

}  // namespace lq::host
