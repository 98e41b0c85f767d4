// Owning handles: for each object that a Create... operation makes, a std::unique_ptr that releases
// it, and all below it, with the Destroy... of the same family.
//
//   const lq::HeaderPtr header(CreatePOUHeader());
//   if (!header || !LoadPOUHeader(header.get(), id, 0)) ...
//
// A Create... gives null when memory is short, and an empty handle releases nothing. What is set
// into another record belongs to that one: hand it over with release(), once the Set has succeeded.
#pragma once

#include <memory>

#include "lq_data/containers.h"
#include "lq_data/pouh.h"

namespace lq {

template <auto kDestroy>
struct Destroyer {
    template <typename Object>
    void operator()(Object* object) const {
        kDestroy(object);
    }
};

using ListPtr = std::unique_ptr<FLIST, Destroyer<DestroyList>>;
using AssayPtr = std::unique_ptr<_ASSAY, Destroyer<DestroyAssay>>;

using HeaderPtr = std::unique_ptr<POU_HEADER_TYP, Destroyer<DestroyPOUHeader>>;
using InfoPtr = std::unique_ptr<POUH_INFO_TYP, Destroyer<DestroyPOUHInfo>>;
using CommentPtr = std::unique_ptr<POUH_COMMENT_TYP, Destroyer<DestroyPOUHComment>>;
using SymbolTablePtr = std::unique_ptr<SYMBOL_TABLE_TYP, Destroyer<DestroySymbolTable>>;
using DeclListPtr = std::unique_ptr<POUH_DECL_LIST_TYP, Destroyer<DestroyPOUHDeclList>>;
using DeclPtr = std::unique_ptr<DECL_TYP, Destroyer<DestroyDecl>>;

using UnnamedTypePtr = std::unique_ptr<UNNAMED_TYPE_TYP, Destroyer<DestroyUnnamedType>>;
using SimpleSpecPtr = std::unique_ptr<SIMPLE_SPEC_TYP, Destroyer<DestroySimpleSpec>>;
using FBInstSpecPtr = std::unique_ptr<FBINST_SPEC_TYP, Destroyer<DestroyFBInstSpec>>;
using StringSpecPtr = std::unique_ptr<STRING_SPEC_TYP, Destroyer<DestroyStringSpec>>;
using ArraySpecPtr = std::unique_ptr<ARRAY_SPEC_TYP, Destroyer<DestroyArraySpec>>;
using SubrangeSpecPtr = std::unique_ptr<SUBRANGE_SPEC_TYP, Destroyer<DestroySubrangeSpec>>;

using TaskPtr = std::unique_ptr<TASK_TYP, Destroyer<DestroyTask>>;
using TaskInfoPtr = std::unique_ptr<TASK_INFO_TYP, Destroyer<DestroyTaskInfo>>;
using TaskListPtr = std::unique_ptr<TASK_LIST_TYP, Destroyer<DestroyTaskList>>;
using TaskPOUListPtr = std::unique_ptr<TASK_POU_LIST_TYP, Destroyer<DestroyTaskPOUList>>;

}  // namespace lq
