// Owning pointers to the interface records.
#pragma once

#include <memory>

#include "lq_data/pouh.h"

namespace lq::tool {

template <typename Record, int (*Destroy)(Record*)>
struct RecordDeleter {
    void operator()(Record* record) const { Destroy(record); }
};
template <typename Record, int (*Destroy)(Record*)>
using RecordPtr = std::unique_ptr<Record, RecordDeleter<Record, Destroy>>;

using HeaderPtr = RecordPtr<POU_HEADER_TYP, DestroyPOUHeader>;
using DeclListPtr = RecordPtr<POUH_DECL_LIST_TYP, DestroyPOUHDeclList>;
using SymbolTablePtr = RecordPtr<SYMBOL_TABLE_TYP, DestroySymbolTable>;
using TaskPtr = RecordPtr<TASK_TYP, DestroyTask>;

}  // namespace lq::tool
