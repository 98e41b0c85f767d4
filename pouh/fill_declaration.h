// Filling a new declaration with its type record and specification in one call.
#pragma once

#include "lq_data/pouh.h"

namespace lq::pouh {

// What a declaration consists of. A null text leaves its field empty.
struct DeclContent {
    DECL_SCOPE scope;
    const char16_t* name;
    const char16_t* typeText;
    const char16_t* initValue;
    const char16_t* comment;
    int word;  // POUH_DECLWORD: its low 16 bits
    int set;   // FillFlagsInDeclaration
    const char16_t* comment2;
};

// Each stores a type record of its kind with a specification, both comment records and the
// two words in `decl`, which is new and not null. 1; 0 when memory is short: the parts that were
// made until then belong to `decl`.
int FillSimpleDeclaration(DECL_TYP* decl, const DeclContent& content);
int FillStringDeclaration(DECL_TYP* decl, const DeclContent& content);
int FillArrayDeclaration(DECL_TYP* decl, const DeclContent& content);
int FillStructDeclaration(DECL_TYP* decl, const DeclContent& content);

}  // namespace lq::pouh
