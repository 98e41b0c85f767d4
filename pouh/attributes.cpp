// The attribute engine. Callers' variables are reached with memcpy: they may be of any 32-bit or
// pointer type, an enumeration for instance.

#include "pouh/attributes.h"

#include <cstring>

#include "lq_data/detail/chars.h"
#include "lq_data/memory.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

const Field* FindField(std::span<const Field> fields, POUH_ATTRIBUTE_FLAG flag) {
    for (const Field& field : fields) {
        if (field.flag == flag) {
            return &field;
        }
    }
    return nullptr;
}

const void* Place(const void* record, const Field& field) {
    return static_cast<const char*>(record) + field.offset;
}

void* Place(void* record, const Field& field) {
    return static_cast<char*>(record) + field.offset;
}

// Most comments, addresses and initial values are empty. To save memory all of them are this one
// text, which no record owns.
constexpr char16_t kEmptyText[] = u"";

// A copy of `source`; null for null and when memory is short.
const char16_t* NewText(const char16_t* source) {
    if (!source || *source == 0) {
        return source ? kEmptyText : nullptr;
    }
    const std::size_t size = chars::Length(source) + 1;
    auto* const text = lq::AllocateArray<char16_t>(size);
    return text ? static_cast<char16_t*>(std::memcpy(text, source, size * sizeof(char16_t)))
                : nullptr;
}

void ReleaseText(const char16_t* text) {
    if (text != kEmptyText) {
        lq::Release(const_cast<char16_t*>(text));
    }
}

const char16_t* TextAt(const void* place) {
    return *static_cast<const char16_t* const*>(place);
}

void Store(const void* place, FieldKind kind, void* value) {
    switch (kind) {
        case FieldKind::kNumber:
        case FieldKind::kReadOnlyNumber:
            std::memcpy(value, place, sizeof(uint32_t));
            return;
        case FieldKind::kWord: {
            const uint32_t word = *static_cast<const uint16_t*>(place);
            std::memcpy(value, &word, sizeof(word));
            return;
        }
        case FieldKind::kRecord:
            std::memcpy(value, place, sizeof(void*));
            return;
        case FieldKind::kText:
            if (const char16_t* text = TextAt(place)) {
                std::memcpy(value, text, (chars::Length(text) + 1) * sizeof(char16_t));
            }
            return;
        case FieldKind::kTextLength: {
            const char16_t* text = TextAt(place);
            const auto charCount = static_cast<int32_t>(text ? chars::Length(text) : 0);
            std::memcpy(value, &charCount, sizeof(charCount));
            return;
        }
    }
}

void Load(void* place, FieldKind kind, const void* value) {
    switch (kind) {
        case FieldKind::kNumber:
            std::memcpy(place, value, sizeof(uint32_t));
            return;
        case FieldKind::kWord:
            std::memcpy(place, value, sizeof(uint16_t));
            return;
        case FieldKind::kRecord:
            std::memcpy(place, value, sizeof(void*));
            return;
        case FieldKind::kReadOnlyNumber:
        case FieldKind::kText:
        case FieldKind::kTextLength:
            return;
    }
}

}  // namespace

int GetAttribute(const void* record, std::span<const Field> fields, POUH_ATTRIBUTE_FLAG flag,
                 void* value) {
    if (!record) {
        return 0;
    }
    const Field* field = FindField(fields, flag);
    if (field && value) {
        Store(Place(record, *field), field->kind, value);
    }
    return 1;
}

int SetAttribute(void* record, std::span<const Field> fields, POUH_ATTRIBUTE_FLAG flag,
                 const void* value) {
    if (!record) {
        return 0;
    }
    const Field* field = FindField(fields, flag);
    if (!field) {
        return 1;
    }
    void* place = Place(record, *field);
    if (field->kind == FieldKind::kText) {
        StoreText(*static_cast<const char16_t**>(place), static_cast<const char16_t*>(value));
    } else if (value) {
        Load(place, field->kind, value);
    }
    return 1;
}

const char16_t* FindText(const void* record, std::span<const Field> fields,
                         POUH_ATTRIBUTE_FLAG flag) {
    const Field* field = record ? FindField(fields, flag) : nullptr;
    if (!field || field->kind != FieldKind::kText) {
        return nullptr;
    }
    return TextAt(Place(record, *field));
}

void ReleaseFields(void* record, std::span<const Field> fields) {
    for (const Field& field : fields) {
        void* place = Place(record, field);
        if (field.kind == FieldKind::kText) {
            ReleaseText(*static_cast<const char16_t**>(place));
        } else if (field.release) {
            void* subtree = nullptr;
            std::memcpy(&subtree, place, sizeof(subtree));
            if (subtree) {
                field.release(subtree);
            }
        }
    }
}

bool StoreText(const char16_t*& field, const char16_t* source) {
    const char16_t* copy = NewText(source);
    ReleaseText(field);
    field = copy;
    return copy || !source;
}

bool AddComment(POUH_COMMENT_TYP*& field, const char16_t* text) {
    field = CreatePOUHComment();
    return field && StoreText(field->remark, text);
}

}  // namespace lq::pouh
