// Direct addresses as texts: their order, and what is certain of them on every target.
#pragma once

#include <cstddef>
#include <string_view>

#include "lq_data/export.h"

namespace lq::host::symbols {

// "%QX12.3" taken apart; the numbers are digits with dots between them, empty when the text is not
// one address.
struct AddressParts {
    std::size_t location = 0;  // I, Q, M
    std::size_t size = 0;      // X, B, W, D, L
    std::u16string_view numbers;
};
LQ_DATA_API AddressParts PartsOfAddress(std::u16string_view address);

// Below, equal to or above zero: %I before %Q before %M, then by size (none and X, B, W, D, L),
// then number by number. What is not one address comes last, and "" behind that.
LQ_DATA_API int CompareAddresses(std::u16string_view a, std::u16string_view b);

// Whether it names one place: "%QX0.1", not "%Q*", and not what a structure places its members
// with.
LQ_DATA_API bool IsOneAddress(std::u16string_view address);

// The bits of the address's size, 1, 8, 16, 32 or 64; 0 when it is not one address.
LQ_DATA_API unsigned BitsOfAddress(std::u16string_view address);

}  // namespace lq::host::symbols
