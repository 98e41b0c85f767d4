// Reading records without copies: what the table set, the command-line tool and the loaders use
// where an attribute would need a buffer of unknown size.
//
// A returned text is never null: a missing text, attribute or record reads as the empty text. It
// stays valid until that attribute is set or its record is destroyed.
#pragma once

#include "lq_data/containers.h"
#include "lq_data/export.h"
#include "lq_data/pouh.h"

namespace lq::pouh {

// The text attribute `flag` of a record.
LQ_DATA_API const char16_t* TextOf(const POUH_COMMENT_TYP* record, POUH_ATTRIBUTE_FLAG flag);
LQ_DATA_API const char16_t* TextOf(const POUH_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag);
LQ_DATA_API const char16_t* TextOf(const DECL_TYP* record, POUH_ATTRIBUTE_FLAG flag);
LQ_DATA_API const char16_t* TextOf(const FBINST_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag);
LQ_DATA_API const char16_t* TextOf(const TASK_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag);

// What a declaration says about its type, whichever specification it has. The type kind is 0
// without a type record; the type text of a subrange is its first text.
LQ_DATA_API uint32_t TypeKindOf(const DECL_TYP* decl);
LQ_DATA_API const char16_t* TypeTextOf(const DECL_TYP* decl);
LQ_DATA_API const char16_t* InitValueOf(const DECL_TYP* decl);
// The comments of the specification record, POUH_COMMENT or POUH_COMMENT2.
LQ_DATA_API const char16_t* CommentOf(const DECL_TYP* decl, POUH_ATTRIBUTE_FLAG flag);

// The list of a list record, or of a header's declaration list record; null when there is none.
LQ_DATA_API FLIST* ListOf(const SYMBOL_TABLE_TYP* record);
LQ_DATA_API FLIST* ListOf(const POUH_DECL_LIST_TYP* record);
LQ_DATA_API FLIST* ListOf(const TASK_LIST_TYP* record);
LQ_DATA_API FLIST* ListOf(const TASK_POU_LIST_TYP* record);
LQ_DATA_API FLIST* ListOf(const POU_HEADER_TYP* record);

// The section keyword of a scope; the empty text when it has none.
LQ_DATA_API const char16_t* KeywordOfScope(uint32_t scope);

// The element of a list of declarations that a position code (LC_FIRST, LC_NEXT ...) names, or null
// when it names none: for (d = DeclAt(list, LC_FIRST); d; d = DeclAt(list, LC_NEXT)).
LQ_DATA_API DECL_TYP* DeclAt(FLIST* list, LIST_CALLBACK code);

}  // namespace lq::pouh
