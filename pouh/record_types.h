// The records behind include/lq_data/pouh.h. Only pouh/ sees their fields; everybody else goes
// through attributes or lq_data/records.h.
//
// Hundreds of thousands of declarations are held at once, so a record has its fields and nothing
// else, and a text is a terminated copy of just its size, null when there is none. The order of the
// fields is that of the interface.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_base.h"
#include "lq_data/pouh.h"

struct POUH_COMMENT_TYP {
    const char16_t* remark;
};

// The shape of every list record. It owns the list and what the list's elements point to.
struct LQ_LIST_RECORD {
    FLIST* list;
};
struct SYMBOL_TABLE_TYP : LQ_LIST_RECORD {};
struct POUH_DECL_LIST_TYP : LQ_LIST_RECORD {};
struct TASK_LIST_TYP : LQ_LIST_RECORD {};
struct TASK_POU_LIST_TYP : LQ_LIST_RECORD {};

struct POUH_INFO_TYP {
    const char16_t* infoText;
    const char16_t* name;
    uint32_t pouType;
    POUH_COMMENT_TYP* pouComment;
    POUH_COMMENT_TYP* comment;
    uint32_t headerFlag;
    uint32_t extraValue;
};

struct POU_HEADER_TYP {
    POUH_INFO_TYP* info;
    POUH_DECL_LIST_TYP* declList;
};

struct DECL_TYP {
    uint32_t scope;  // DECL_SCOPE
    const char16_t* name;
    const char16_t* address;
    UNNAMED_TYPE_TYP* type;
    uint16_t word;
    uint16_t flags;
    uint32_t place;  // among its owner's declarations, from 1; 0 for none
};

struct UNNAMED_TYPE_TYP {
    uint32_t kind;  // POUH_TYPE_KIND
    void* spec;     // the specification record of that kind
};

// Every specification but that of a subrange, so that one destruction serves all.
struct LQ_TYPE_SPEC {
    const char16_t* typeText;
    const char16_t* initValue;
    POUH_COMMENT_TYP* comment;
    POUH_COMMENT_TYP* comment2;
};
struct SIMPLE_SPEC_TYP : LQ_TYPE_SPEC {};
struct FBINST_SPEC_TYP : LQ_TYPE_SPEC {};
struct STRING_SPEC_TYP : LQ_TYPE_SPEC {};
struct ARRAY_SPEC_TYP : LQ_TYPE_SPEC {};

struct SUBRANGE_SPEC_TYP {
    const char16_t* name;
    const char16_t* range;
    const char16_t* initValue;
    POUH_COMMENT_TYP* comment;
    uint32_t comment2;  // read and never written
};

struct TASK_INFO_TYP {
    const char16_t* name;
    const char16_t* event;
    const char16_t* interval;
    const char16_t* priority;
    const char16_t* comment;
};

struct TASK_TYP {
    TASK_INFO_TYP* info;
    TASK_POU_LIST_TYP* pous;
};
