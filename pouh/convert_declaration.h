// One declaration of the project model to one declaration record.
#pragma once

#include "lq_data/pouh.h"

namespace lq::pouh {

class ListMemory;

// A new record, owned by the caller, with its type classified and erroneous texts marked; null when
// memory is short. `isReturn` is for the return value of a function, whose name has a rule of its
// own. An object that is no declaration of a POU or global list has an unknown scope.
DECL_TYP* ConvertDeclaration(LQOBJECT& source, bool isReturn);

// The same for one declaration of a list.
DECL_TYP* ConvertDeclaration(LQOBJECT& source, bool isReturn, ListMemory& memory);

}  // namespace lq::pouh
