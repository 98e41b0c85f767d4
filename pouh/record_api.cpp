// Creation, release and attribute access of every record: the exported names over the engine of
// attributes.h.

#include "lq_data/memory.h"
#include "pouh/attributes.h"
#include "pouh/record_types.h"

namespace {

template <typename Record>
int Get(const Record* record, POUH_ATTRIBUTE_FLAG flag, void* value) {
    return lq::pouh::GetAttribute(record, lq::pouh::FieldsOf(record), flag, value);
}

template <typename Record>
int Set(Record* record, POUH_ATTRIBUTE_FLAG flag, const void* value) {
    return lq::pouh::SetAttribute(record, lq::pouh::FieldsOf(record), flag, value);
}

template <typename Record>
int Destroy(Record* record) {
    if (!record) {
        return 0;
    }
    lq::pouh::ReleaseFields(record, lq::pouh::FieldsOf(record));
    lq::Delete(record);
    return 1;
}

}  // namespace

#define LQ_POUH_CREATE(Record, Name) \
    Record* Create##Name() {         \
        return lq::New<Record>();    \
    }

#define LQ_POUH_SET(Record, Name)                                                      \
    int SetAttrOf##Name(Record* record, POUH_ATTRIBUTE_FLAG flag, const void* value) { \
        return Set(record, flag, value);                                               \
    }

#define LQ_POUH_GET_DESTROY(Record, Name)                                              \
    int GetAttrOf##Name(const Record* record, POUH_ATTRIBUTE_FLAG flag, void* value) { \
        return Get(record, flag, value);                                               \
    }                                                                                  \
    int Destroy##Name(Record* record) {                                                \
        return Destroy(record);                                                        \
    }

#define LQ_POUH_RECORD(Record, Name)  \
    LQ_POUH_CREATE(Record, Name)      \
    LQ_POUH_GET_DESTROY(Record, Name) \
    LQ_POUH_SET(Record, Name)

LQ_POUH_RECORD(POU_HEADER_TYP, POUHeader)
LQ_POUH_RECORD(POUH_INFO_TYP, POUHInfo)
LQ_POUH_RECORD(POUH_DECL_LIST_TYP, POUHDeclList)
LQ_POUH_RECORD(TASK_POU_LIST_TYP, TaskPOUList)
LQ_POUH_RECORD(DECL_TYP, Decl)
LQ_POUH_RECORD(UNNAMED_TYPE_TYP, UnnamedType)
LQ_POUH_RECORD(SIMPLE_SPEC_TYP, SimpleSpec)
LQ_POUH_RECORD(FBINST_SPEC_TYP, FBInstSpec)
LQ_POUH_RECORD(STRING_SPEC_TYP, StringSpec)
LQ_POUH_RECORD(ARRAY_SPEC_TYP, ArraySpec)
LQ_POUH_RECORD(SUBRANGE_SPEC_TYP, SubrangeSpec)
LQ_POUH_RECORD(TASK_TYP, Task)
LQ_POUH_RECORD(TASK_INFO_TYP, TaskInfo)

// CreateTaskList fills the list; it belongs to the task loaders.
LQ_POUH_GET_DESTROY(TASK_LIST_TYP, TaskList)
LQ_POUH_SET(TASK_LIST_TYP, TaskList)

LQ_POUH_CREATE(SYMBOL_TABLE_TYP, SymbolTable)
LQ_POUH_GET_DESTROY(SYMBOL_TABLE_TYP, SymbolTable)

int SetAttrOfSymbolTable(SYMBOL_TABLE_TYP* record, POUH_ATTRIBUTE_FLAG flag, const void* value) {
    return flag == POUH_LIST ? Set(record, flag, value) : 0;
}

LQ_POUH_CREATE(POUH_COMMENT_TYP, POUHComment)
LQ_POUH_GET_DESTROY(POUH_COMMENT_TYP, POUHComment)

int SetAttrOfPOUHComment(POUH_COMMENT_TYP* record, POUH_ATTRIBUTE_FLAG flag,
                         const char16_t* value) {
    return Set(record, flag, value);
}

const char16_t* GetRemarkPointerOfPOUHComment(const POUH_COMMENT_TYP* record) {
    return record->remark ? record->remark : u"";
}

int32_t GetIndexOfDecl(const DECL_TYP* record) {
    return record ? static_cast<int32_t>(record->place) - 1 : -1;
}

uint16_t* DecFlags(DECL_TYP* record) {
    return record ? &record->flags : nullptr;
}
