// One row a type: the size of its slot and its comparison. The rest follows from whether the slot
// holds bytes or an owned text.
#include "containers/element_format.h"

#include <cstring>

#include "containers/list_access.h"
#include "lq_data/detail/chars.h"
#include "lq_data/detail/in_order.h"

namespace lq::containers {

namespace {

using Comparison = int (*)(const void* element, const void* key, uint32_t length);

using Ranking = int64_t (*)(const void* element);

struct TypeTraits {
    uint32_t size;
    Comparison compare;
    Ranking rank = nullptr;  // of numbers
};

template <typename T>
T Load(const void* from) {
    T value;
    std::memcpy(&value, from, sizeof(value));
    return value;
}

template <typename T>
int64_t RankOf(const void* element) {
    return Load<T>(element);
}

template <typename T>
int CompareNumbers(const void* element, const void* key, uint32_t) {
    const T a = Load<T>(element);
    const T b = Load<T>(key);
    return (a > b) - (a < b);
}

template <typename T>
constexpr TypeTraits kNumber = {sizeof(T), CompareNumbers<T>, RankOf<T>};

int CompareBytes(const void* element, const void* key, uint32_t length) {
    return std::memcmp(element, key, length);
}

int RankAbove(const void*, const void*, uint32_t) {
    return 1;
}

int CompareLists(const void* element, const void* key, uint32_t) {
    return ListAccess::CompareUserData(Load<FLIST*>(element), Load<FLIST*>(key));
}

template <int (*compare)(const char16_t*, const char16_t*) noexcept>
int CompareTexts(const void* element, const void* key, uint32_t) {
    const char16_t* text = Load<const char16_t*>(element);
    return text ? compare(text, static_cast<const char16_t*>(key)) : 0;
}

constexpr uint32_t kPointer = sizeof(void*);
constexpr uint32_t kPointerInInterface = 4;  // the size that callers may give for a pointer

constexpr TypeTraits kUnsigned = kNumber<uint32_t>;
constexpr TypeTraits kSigned = kNumber<int32_t>;

constexpr RowOf<LIST_ELEMENT_TYPE, TypeTraits> kTraits[] = {
    {LET_MEMORY, {0, CompareBytes}},  // its size comes from the list
    {LET_UNSIGNED_1, kUnsigned},
    {LET_STRING, {kPointer, CompareTexts<chars::Compare>}},
    {LET_UNSIGNED_3, kUnsigned},
    {LET_UNSIGNED_4, kUnsigned},
    {LET_LIST, {kPointer, CompareLists}},
    {LET_UNORDERED, {4, RankAbove}},
    {LET_UNSIGNED_7, kUnsigned},
    {LET_SIGNED_8, kSigned},
    {LET_UNSIGNED_9, kUnsigned},
    {LET_SIGNED_10, kSigned},
    {LET_SIGNED_11, kSigned},
    {LET_CHAR, kNumber<signed char>},
    {LET_STRING_NOCASE, {kPointer, CompareTexts<chars::CompareNoCase>}},
};
static_assert(AreInOrder(kTraits, LET_STRING_NOCASE));
constexpr TypeTraits kUnknown = {0, RankAbove};

const TypeTraits& TraitsOf(LIST_ELEMENT_TYPE type) {
    return type <= LET_STRING_NOCASE ? kTraits[type].value : kUnknown;
}

bool HoldsPointer(LIST_ELEMENT_TYPE type) {
    return type == LET_STRING || type == LET_LIST || type == LET_STRING_NOCASE;
}

char16_t* TextIn(const void* slot) {
    return Load<char16_t*>(slot);
}

void SetText(void* slot, char16_t* text) {
    std::memcpy(slot, &text, sizeof(text));
}

uint32_t TextLength(const char16_t* text) {
    return text ? static_cast<uint32_t>(chars::Length(text)) + 1 : 0;
}

}  // namespace

bool ElementFormat::Make(LIST_ELEMENT_TYPE type, uint32_t given, ElementFormat& format) {
    if (type == LET_MEMORY) {
        format = {type, given};
        return true;
    }
    format = {type, TraitsOf(type).size};
    return given == 0 || given == format.size ||
           (HoldsPointer(type) && given == kPointerInInterface);
}

void* ElementFormat::Argument(void* slot) const {
    return IsText() ? TextIn(slot) : slot;
}

int ElementFormat::Compare(void* slot, const void* key, uint32_t length) const {
    if (!key) {
        return 0;
    }
    const uint32_t compared = length == 0 || length > size ? size : length;
    return TraitsOf(type).compare(slot, key, compared);
}

bool ElementFormat::HasRank() const {
    return TraitsOf(type).rank != nullptr;
}

int64_t ElementFormat::Rank(const void* slot) const {
    const Ranking rank = TraitsOf(type).rank;
    return rank ? rank(slot) : 0;
}

uint32_t ElementFormat::Measure(void* slot) const {
    return IsText() ? TextLength(TextIn(slot)) : size;
}

void ElementFormat::CopyOutAny(void* slot, void* out) const {
    if (!IsText()) {
        std::memcpy(out, slot, size);
        return;
    }
    const char16_t* text = TextIn(slot) ? TextIn(slot) : u"";
    std::memcpy(out, text, TextLength(text) * sizeof(char16_t));
}

bool ElementFormat::WriteAny(void* slot, const void* value) const {
    if (!value) {
        return true;
    }
    if (!IsText()) {
        std::memmove(slot, value, size);
        return true;
    }
    // The value may be the element's own text, so the old copy goes last.
    const std::size_t length = chars::Length(static_cast<const char16_t*>(value)) + 1;
    char16_t* copy = AllocateArray<char16_t>(length);
    if (copy) {
        std::memcpy(copy, value, length * sizeof(char16_t));
    }
    Free(slot);
    SetText(slot, copy);
    return copy != nullptr;
}

void ElementFormat::FreeText(void* slot) {
    Release(TextIn(slot));
    SetText(slot, nullptr);
}

}  // namespace lq::containers
