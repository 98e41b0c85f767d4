// Direct addresses as texts: their order, and what is certain of them on every target.
#pragma once

#include <string_view>

namespace lq::host::symbols {

// Below, equal to or above zero: %I before %Q before %M, then by size (none and X, B, W, D, L),
// then number by number. What is not one address comes last, and "" behind that.
int CompareAddresses(std::u16string_view a, std::u16string_view b);

// Whether it names one place: "%QX0.1", not "%Q*", and not what a structure places its members
// with.
bool IsOneAddress(std::u16string_view address);

// The bits of the address's size, 1, 8, 16, 32 or 64; 0 when it is not one address.
unsigned BitsOfAddress(std::u16string_view address);

}  // namespace lq::host::symbols
