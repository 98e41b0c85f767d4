// What the element type decides: how an element is stored in its slot, compared, copied and freed.
#pragma once

#include <cstdint>
#include <cstring>

#include "lq_data/containers.h"

namespace lq::containers {

// How elements of one type and size are handled. A slot is the element's data area in its node.
struct ElementFormat {
    // Most lists hold elements of four bytes; those are copied inline, all others by a call.
    static constexpr uint32_t kWord = 4;

    LIST_ELEMENT_TYPE type;
    uint32_t size;  // bytes of a slot

    // The format of a type created with the size `given`; false when the size does not fit it.
    static bool Make(LIST_ELEMENT_TYPE type, uint32_t given, ElementFormat& format);

    bool IsText() const { return type == LET_STRING || type == LET_STRING_NOCASE; }
    // The element as callbacks get it, and as values and keys are given: the text itself for the
    // text types, otherwise the address of its bytes.
    void* Argument(void* slot) const;
    // Below, equal to or above zero: the element against the key. Of LET_MEMORY elements the first
    // `length` bytes are compared; 0, or more than the size, means all of them.
    int Compare(void* slot, const void* key, uint32_t length) const;
    // Whether elements compare as numbers. An element's rank is then its number, so that ranks have
    // the order of Compare; elements of all other types have the rank 0.
    bool HasRank() const;
    int64_t Rank(const void* slot) const;
    // The size of the element; for a text the number of its characters with the terminator, 0
    // when there is no text.
    uint32_t Measure(void* slot) const;
    void CopyOut(void* slot, void* out) const;
    // A null value writes nothing. False when memory is short: the slot then holds no text.
    bool Write(void* slot, const void* value) const;
    // Frees what the slot owns.
    void Free(void* slot) const;

  private:
    void CopyOutAny(void* slot, void* out) const;
    bool WriteAny(void* slot, const void* value) const;
    static void FreeText(void* slot);
};

inline void ElementFormat::CopyOut(void* slot, void* out) const {
    if (size == kWord) {
        std::memcpy(out, slot, kWord);
    } else {
        CopyOutAny(slot, out);
    }
}

inline bool ElementFormat::Write(void* slot, const void* value) const {
    if (size != kWord) {
        return WriteAny(slot, value);
    }
    if (value) {
        std::memmove(slot, value, kWord);
    }
    return true;
}

inline void ElementFormat::Free(void* slot) const {
    if (IsText()) {
        FreeText(slot);
    }
}

}  // namespace lq::containers
