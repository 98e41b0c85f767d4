// The shape of an array type: a list of extents with a reading cursor.

#include <limits>
#include <utility>

#include "lq_data/types.h"

int ArrInfo::Clear(CLEAR_ID mode) {
    if (mode == CLEAR_CURSOR) {
        cursor = head;
        return 1;
    }
    if (mode != CLEAR_END && mode != CLEAR_BEGIN) {
        return 0;
    }
    elemType = IEC_NO_TYPE;
    total = {0, 1};
    while (head) {
        lq::Delete(std::exchange(head, head->next));
        --dims;
    }
    tail = nullptr;
    cursor = nullptr;
    return dims == 0 ? 1 : 0;
}

int ArrInfo::AppendExt(ANY_INT_32 (*ext)[2], int multiply) {
    if (dims == std::numeric_limits<uint8_t>::max()) {
        return 0;
    }
    Extent* const extent = lq::New<Extent>();
    if (!extent) {
        return 0;
    }
    *extent = {(*ext)[0], (*ext)[1], nullptr};
    if (tail) {
        tail->next = extent;
    } else {
        head = extent;
        cursor = extent;
    }
    tail = extent;
    ++dims;
    return multiply ? Mul32(total, extent->count) : 1;
}

int ArrInfo::GetExt(ANY_INT_32 (*ext)[2], int index) {
    if (index >= 1) {
        cursor = head;
        for (int step = 1; cursor && step < index; ++step) {
            cursor = cursor->next;
        }
    }
    if (!cursor) {
        return 0;
    }
    (*ext)[0] = cursor->lower;
    (*ext)[1] = cursor->count;
    cursor = cursor->next;
    return 1;
}

int ArrInfo::Copy(ArrInfo& dst) const {
    if (&dst == this) {
        return 1;
    }
    dst.Clear(CLEAR_END);
    dst.elemType = elemType;
    for (const Extent* extent = head; extent; extent = extent->next) {
        ANY_INT_32 ext[2] = {extent->lower, extent->count};
        const uint8_t before = dst.dims;
        // The total may overflow in the copy as it did here; only an extent that is missing is a
        // failure.
        if (!dst.AppendExt(&ext, 1) && dst.dims == before) {
            return 0;
        }
    }
    return 1;
}

int ArrInfo::Move(ArrInfo& dst) {
    dst.elemType = elemType;
    dst.total = total;
    std::swap(head, dst.head);
    std::swap(tail, dst.tail);
    std::swap(cursor, dst.cursor);
    std::swap(dims, dst.dims);
    return 1;
}
