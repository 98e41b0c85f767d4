// The tests' way to what a table set keeps to itself.
#pragma once

#include "cgtab/declaration.h"
#include "lq_data/cgtab_compiler.h"

class LQ_DATA_API CgTabAccess : public CgTabCompiler {
  public:
    // Whether the invariants of all tables hold, whose lines were all appended: no image was read.
    static bool Check(CgTab& tables);
};
