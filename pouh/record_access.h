// The element of a list of declarations that a position code names.
#pragma once

#include "lq_data/export.h"
#include "lq_data/records.h"

namespace lq::pouh {

// Null when the code (LC_FIRST, LC_NEXT ...) names none: for (d = DeclAt(list, LC_FIRST); d;
// d = DeclAt(list, LC_NEXT)).
LQ_DATA_API DECL_TYP* DeclAt(FLIST* list, LIST_CALLBACK code);

}  // namespace lq::pouh
