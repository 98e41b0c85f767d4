// What the loaders of headers, interfaces and symbol tables share.
#pragma once

#include "lq_data/pouh.h"
#include "pouh/implicit_parameters.h"

namespace lq::pouh {

// Appends the declarations of `owner` to `list`, in the model's order. With `onlyParameters` those
// of the interface scopes alone. Identifiers without an object are skipped. False when memory is
// short: the declarations before that stay.
bool LoadDeclarations(FLIST* list, LQOBJECT& owner, bool onlyParameters);

// Puts the return value of a function in front. False when the model or memory has none to give.
bool PrependResult(FLIST* list, LQFUN& function);

// Puts a parameter of the POU with the ENO flag in front, converted from `decl`.
bool PrependEnable(FLIST* list, LQPOUHDECL& decl, const EnableParameter& parameter);

// Destroys the records of `header` and gives it new ones, with an empty list. False when memory is
// short: those that were made are kept.
bool RenewHeader(POU_HEADER_TYP& header);

}  // namespace lq::pouh
