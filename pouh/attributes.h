// One engine for the attributes of all records. The table of a record says which attributes it has,
// of what kind, and where its fields are; reading, writing and releasing go through that table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "lq_data/pouh.h"

namespace lq::pouh {

enum class FieldKind : uint8_t {
    kNumber,          // uint32_t
    kReadOnlyNumber,  // uint32_t
    kWord,            // uint16_t
    kRecord,          // a pointer
    kText,            // const char16_t*
    kTextLength,      // of a const char16_t*
};

struct Field {
    POUH_ATTRIBUTE_FLAG flag;
    FieldKind kind;
    std::size_t offset;             // of the field in the record
    int (*release)(void* subtree);  // of an owned record, null for every other kind
};

// Get and Set of the public interface for a record with these fields.
int GetAttribute(const void* record, std::span<const Field> fields, POUH_ATTRIBUTE_FLAG flag,
                 void* value);
int SetAttribute(void* record, std::span<const Field> fields, POUH_ATTRIBUTE_FLAG flag,
                 const void* value);

// The text of attribute `flag` in place, or null when the record is null, has no such attribute or
// holds no text.
const char16_t* FindText(const void* record, std::span<const Field> fields,
                         POUH_ATTRIBUTE_FLAG flag);

// Releases every text and every record that the fields hold; `record` must not be null.
void ReleaseFields(void* record, std::span<const Field> fields);

// Replaces a record's text by a copy of `source`, which may be the old text; null for none. False
// when memory is short: there is no text then.
bool StoreText(const char16_t*& field, const char16_t* source);

// Stores a new comment record with that text in the field of its holder; false when memory is
// short.
bool AddComment(POUH_COMMENT_TYP*& field, const char16_t* text);

// The fields of a record; null selects the fields that every record of the type has. Only the
// fields of an UNNAMED_TYPE_TYP depend on the record: the specification record comes and goes with
// the kind.
std::span<const Field> FieldsOf(const POUH_COMMENT_TYP*);
std::span<const Field> FieldsOf(const POU_HEADER_TYP*);
std::span<const Field> FieldsOf(const POUH_INFO_TYP*);
std::span<const Field> FieldsOf(const SYMBOL_TABLE_TYP*);
std::span<const Field> FieldsOf(const POUH_DECL_LIST_TYP*);
std::span<const Field> FieldsOf(const TASK_LIST_TYP*);
std::span<const Field> FieldsOf(const TASK_POU_LIST_TYP*);
std::span<const Field> FieldsOf(const DECL_TYP*);
std::span<const Field> FieldsOf(const UNNAMED_TYPE_TYP*);
std::span<const Field> FieldsOf(const SIMPLE_SPEC_TYP*);
std::span<const Field> FieldsOf(const FBINST_SPEC_TYP*);
std::span<const Field> FieldsOf(const STRING_SPEC_TYP*);
std::span<const Field> FieldsOf(const ARRAY_SPEC_TYP*);
std::span<const Field> FieldsOf(const SUBRANGE_SPEC_TYP*);
std::span<const Field> FieldsOf(const TASK_TYP*);
std::span<const Field> FieldsOf(const TASK_INFO_TYP*);

}  // namespace lq::pouh
