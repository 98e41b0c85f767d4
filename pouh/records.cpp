#include "lq_data/records.h"

#include "pouh/attributes.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

template <typename Record>
const char16_t* Read(const Record* record, POUH_ATTRIBUTE_FLAG flag) {
    const char16_t* text = FindText(record, FieldsOf(record), flag);
    return text ? text : u"";
}

template <typename Record>
FLIST* List(const Record* record) {
    return record ? record->list : nullptr;
}

// The fields that every specification has, wherever its record keeps them.
struct SpecView {
    const char16_t* typeText = nullptr;
    const char16_t* initValue = nullptr;
    const POUH_COMMENT_TYP* comment = nullptr;
    const POUH_COMMENT_TYP* comment2 = nullptr;
};

// The specification record of a type; null for one whose kind has none.
const void* SpecOf(const UNNAMED_TYPE_TYP& type) {
    return FieldsOf(&type).size() > 1 ? type.spec : nullptr;
}

SpecView ViewOf(const DECL_TYP* decl) {
    const UNNAMED_TYPE_TYP* type = decl ? decl->type : nullptr;
    const void* spec = type ? SpecOf(*type) : nullptr;
    if (!spec) {
        return {};
    }
    if (type->kind == DT_SUBRANGE) {
        const auto* s = static_cast<const SUBRANGE_SPEC_TYP*>(spec);
        return {s->name, s->initValue, s->comment, nullptr};
    }
    const auto* s = static_cast<const LQ_TYPE_SPEC*>(spec);
    return {s->typeText, s->initValue, s->comment, s->comment2};
}

const char16_t* OrEmpty(const char16_t* text) {
    return text ? text : u"";
}

}  // namespace

const char16_t* TextOf(const POUH_COMMENT_TYP* record, POUH_ATTRIBUTE_FLAG flag) {
    return Read(record, flag);
}
const char16_t* TextOf(const POUH_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag) {
    return Read(record, flag);
}
const char16_t* TextOf(const DECL_TYP* record, POUH_ATTRIBUTE_FLAG flag) {
    return Read(record, flag);
}
const char16_t* TextOf(const FBINST_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag) {
    return Read(record, flag);
}
const char16_t* TextOf(const TASK_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag) {
    return Read(record, flag);
}

uint32_t TypeKindOf(const DECL_TYP* decl) {
    return decl && decl->type ? decl->type->kind : 0;
}

const char16_t* TypeTextOf(const DECL_TYP* decl) {
    return OrEmpty(ViewOf(decl).typeText);
}

const char16_t* RangeOf(const DECL_TYP* decl) {
    const bool isSubrange = TypeKindOf(decl) == DT_SUBRANGE;
    const void* const spec = isSubrange ? decl->type->spec : nullptr;
    return OrEmpty(spec ? static_cast<const SUBRANGE_SPEC_TYP*>(spec)->range : nullptr);
}

const char16_t* InitValueOf(const DECL_TYP* decl) {
    return OrEmpty(ViewOf(decl).initValue);
}

const char16_t* CommentOf(const DECL_TYP* decl, POUH_ATTRIBUTE_FLAG flag) {
    const SpecView view = ViewOf(decl);
    return Read(flag == POUH_COMMENT2 ? view.comment2 : view.comment, POUH_REMARK);
}

FLIST* ListOf(const SYMBOL_TABLE_TYP* record) {
    return List(record);
}
FLIST* ListOf(const POUH_DECL_LIST_TYP* record) {
    return List(record);
}
FLIST* ListOf(const TASK_LIST_TYP* record) {
    return List(record);
}
FLIST* ListOf(const TASK_POU_LIST_TYP* record) {
    return List(record);
}
FLIST* ListOf(const POU_HEADER_TYP* record) {
    return List(record ? record->declList : nullptr);
}

}  // namespace lq::pouh
