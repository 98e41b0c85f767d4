#include "host/symbols/address.h"

#include <algorithm>

#include "lq_data/detail/chars.h"

namespace lq::host::symbols {

namespace {

using std::u16string_view;

constexpr u16string_view kLocations = u"IQM";
constexpr u16string_view kSizes = u"XBWDL";
constexpr unsigned kBits[] = {1, 8, 16, 32, 64};

bool AreNumbers(u16string_view text) {
    bool isBehindDigit = false;
    for (const char16_t c : text) {
        if (c == u'.' ? !isBehindDigit : !chars::IsDigit(c)) {
            return false;
        }
        isBehindDigit = c != u'.';
    }
    return isBehindDigit;
}

// The first number without leading zeros; it goes from `numbers`.
u16string_view TakeNumber(u16string_view& numbers) {
    const std::size_t dot = std::min(numbers.find(u'.'), numbers.size());
    u16string_view number = numbers.substr(0, dot);
    numbers.remove_prefix(std::min(dot + 1, numbers.size()));
    number.remove_prefix(std::min(number.find_first_not_of(u'0'), number.size()));
    return number;
}

int Compare(std::size_t a, std::size_t b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

// Of any length: a longer number is a larger one.
int CompareNumbers(u16string_view a, u16string_view b) {
    while (!a.empty() && !b.empty()) {
        const u16string_view first = TakeNumber(a);
        const u16string_view second = TakeNumber(b);
        const int bySize = Compare(first.size(), second.size());
        const int order = bySize != 0 ? bySize : first.compare(second);
        if (order != 0) {
            return order;
        }
    }
    return Compare(a.size(), b.size());
}

}  // namespace

AddressParts PartsOfAddress(u16string_view text) {
    if (text.size() < 3 || text[0] != u'%') {
        return {};
    }
    const std::size_t location = kLocations.find(chars::ToUpper(text[1]));
    const std::size_t size = kSizes.find(chars::ToUpper(text[2]));
    const u16string_view numbers = text.substr(size == u16string_view::npos ? 2 : 3);
    if (location == u16string_view::npos || !AreNumbers(numbers)) {
        return {};
    }
    return {location, size == u16string_view::npos ? 0 : size, numbers};
}

int CompareAddresses(u16string_view a, u16string_view b) {
    const AddressParts first = PartsOfAddress(a);
    const AddressParts second = PartsOfAddress(b);
    if (first.numbers.empty() || second.numbers.empty()) {
        const auto rank = [](u16string_view text, const AddressParts& address) {
            return !address.numbers.empty() ? 0u : text.empty() ? 2u : 1u;
        };
        const int order = Compare(rank(a, first), rank(b, second));
        return order != 0 ? order : a.compare(b);
    }
    const int byLocation = Compare(first.location, second.location);
    const int bySize = Compare(first.size, second.size);
    return byLocation != 0 ? byLocation
           : bySize != 0   ? bySize
                           : CompareNumbers(first.numbers, second.numbers);
}

bool IsOneAddress(u16string_view address) {
    return !PartsOfAddress(address).numbers.empty();
}

unsigned BitsOfAddress(u16string_view address) {
    const AddressParts parsed = PartsOfAddress(address);
    return parsed.numbers.empty() ? 0 : kBits[parsed.size];
}

}  // namespace lq::host::symbols
