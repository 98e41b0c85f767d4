// The lists inside list records.
#pragma once

#include "lq_data/containers.h"
#include "lq_data/pouh.h"

struct LQ_LIST_RECORD;

namespace lq::pouh {

// New lists, of declarations and of names; null when memory is short.
FLIST* NewDeclList();
FLIST* NewNameList();

// Puts `decl` at the place that LC_FIRST or LC_LAST names; the list owns it. False when `decl` is
// null or memory is short: `decl` is destroyed then.
bool AddDecl(FLIST* list, DECL_TYP* decl, LIST_CALLBACK where);

// Appends a copy of `name`. False and no change when memory is short or `list` is no list.
bool AppendName(FLIST* list, const char16_t* name);

// The place of a scope's group in scope order, below kScopeGroups.
inline constexpr unsigned kScopeGroups = 15;
unsigned GroupOf(uint32_t scope);

// Puts the declarations of a list record into scope order; those of one group keep their order. 1;
// 0 and no change when memory is short.
int RegroupByScope(LQ_LIST_RECORD& record);

}  // namespace lq::pouh
