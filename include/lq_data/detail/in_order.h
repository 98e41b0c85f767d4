// Not part of the interface: what tables of the host layer and the tool are written with.
//
// Tables that an enumeration indexes: each row names its enumerator, and the compiler checks that
// the rows follow the enumeration's order.
#pragma once

#include <cstddef>

namespace lq {

template <typename Enumeration, typename Value>
struct RowOf {
    Enumeration id;
    Value value;
};

// Whether the rows are those of all enumerators from 0 to `last`, in their order.
template <typename Enumeration, typename Value, std::size_t kCount>
consteval bool AreInOrder(const RowOf<Enumeration, Value> (&rows)[kCount], Enumeration last) {
    bool inOrder = kCount == static_cast<std::size_t>(last) + 1;
    for (std::size_t i = 0; i < kCount; ++i) {
        inOrder = inOrder && static_cast<std::size_t>(rows[i].id) == i;
    }
    return inOrder;
}

}  // namespace lq
