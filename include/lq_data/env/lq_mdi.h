// What the library requires of the editor library: the name behind a POU reference.
#pragma once

#include "lq_data/export.h"

class CLQString;

class LQ_DATA_API CPouRef {
  public:
    virtual ~CPouRef() = default;

    // Writes the POU's name.
    virtual void GetName(CLQString* name) const = 0;
};
