// Checked arithmetic on sign and magnitude.

#include <limits>

#include "lq_data/types.h"

int AddSub32(int op, ANY_INT_32& a, ANY_INT_32 b) {
    const bool negative = (b.sign != 0) != (op != 0);
    int fits = 1;
    if (negative == (a.sign != 0)) {
        a.magnitude += b.magnitude;
        fits = a.magnitude >= b.magnitude ? 1 : 0;
    } else if (a.magnitude >= b.magnitude) {
        a.magnitude -= b.magnitude;
    } else {
        a.magnitude = b.magnitude - a.magnitude;
        a.sign = negative ? 1 : 0;
    }
    if (a.magnitude == 0) {
        a.sign = 0;
    }
    return fits;
}

int Mul32(ANY_INT_32& a, ANY_INT_32 b) {
    const uint64_t product = uint64_t{a.magnitude} * b.magnitude;
    a.magnitude = static_cast<uint32_t>(product);
    return product <= std::numeric_limits<uint32_t>::max() ? 1 : 0;
}
