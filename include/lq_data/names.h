// The global names of the interface as names of namespace lq: new code that says lq::Time,
// lq::Token or lq::Val means the library's, whatever else has such names.
//
// The global names stay, and a translation unit can have one owner of each. Where another header
// declares some of them for itself, as that of X11 does Time, it is included behind the library's
// headers, since it may define macros, too, and between these two:
//
//     #include <lq_data/lq_data.h>
//
//     #include <lq_data/foreign_begin.h>
//     #include <X11/Xlib.h>
//     #include <lq_data/foreign_end.h>
//
// In between, the names that follow here as aliases mean other ones, Time for example ForeignTime,
// by which the type of that header can be named from then on. This is for headers of C, whose
// functions are linked without the names of types, and for C++ that is templates and inline
// functions alone; of another C++ library the functions would not be found. What that header
// includes is to be included before, where a member or function of it has one of the names. Macros
// stay: behind X11 Project::Below of the host model needs an undef of Below.
//
// There is no such way for the framework's names, which lq_data/env/lq_framework.h lists.
#pragma once

#include "lq_data/cgtab.h"
#include "lq_data/containers.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/scanner.h"
#include "lq_data/types.h"

namespace lq {

using ::Address;
using ::ArrInfo;
using ::BufferPair;
using ::CgTab;
using ::HashTable;
using ::ID;
using ::Lit;
using ::Scanner;
using ::Time;
using ::Token;
using ::Val;

}  // namespace lq
