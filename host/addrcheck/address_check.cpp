#include "lq_data/host/addrcheck/address_check.h"

#include "lq_data/env/lq_base.h"

namespace {

constinit lq::host::AddressRules rules;

}  // namespace

namespace lq::host {

AddressRules& GetAddressRules() noexcept {
    return rules;
}

}  // namespace lq::host

int IsCustomAdress(const char16_t* text, int checkAccess, int flag) {
    return rules.isCustomAddress ? rules.isCustomAddress(text, checkAccess, flag) : 0;
}

int bIsVdConstant(const char16_t* text, int a, int b) {
    return rules.isOwnConstant ? rules.isOwnConstant(text, a, b) : 0;
}

int IsAdressValidOnl(const char16_t* address, int, int32_t, CLQString* normalised) {
    if (rules.normalise) {
        return rules.normalise(address, normalised);
    }
    *normalised = address;
    return 1;
}
