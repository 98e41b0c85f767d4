// The tables of all records: which field each attribute is.

#include <cstddef>

#include "lq_data/containers.h"
#include "lq_data/records.h"
#include "pouh/attributes.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

consteval Field Plain(POUH_ATTRIBUTE_FLAG flag, FieldKind kind, std::size_t offset) {
    return {flag, kind, offset, nullptr};
}
consteval Field Number(POUH_ATTRIBUTE_FLAG flag, std::size_t offset) {
    return Plain(flag, FieldKind::kNumber, offset);
}
consteval Field Word(POUH_ATTRIBUTE_FLAG flag, std::size_t offset) {
    return Plain(flag, FieldKind::kWord, offset);
}
consteval Field Text(POUH_ATTRIBUTE_FLAG flag, std::size_t offset) {
    return Plain(flag, FieldKind::kText, offset);
}
consteval Field Length(POUH_ATTRIBUTE_FLAG flag, std::size_t offset) {
    return Plain(flag, FieldKind::kTextLength, offset);
}
consteval Field Owned(POUH_ATTRIBUTE_FLAG flag, std::size_t offset, int (*release)(void*)) {
    return {flag, FieldKind::kRecord, offset, release};
}

template <typename Record, int (*Destroy)(Record*)>
int Release(void* record) {
    return Destroy(static_cast<Record*>(record));
}

constexpr auto ReleaseComment = Release<POUH_COMMENT_TYP, DestroyPOUHComment>;

int ReleaseNames(void* list) {
    return DestroyList(static_cast<FLIST*>(list));
}

int ReleaseDeclarations(void* list) {
    FLIST* decls = static_cast<FLIST*>(list);
    void* slot = nullptr;
    // By the index and not by the declaration, as an element may be null.
    for (uint32_t at = ListGet(decls, slot, nullptr, LC_FIRST, 0); at != 0;
         at = ListGet(decls, slot, nullptr, LC_NEXT, 0)) {
        DestroyDecl(*static_cast<DECL_TYP**>(slot));
    }
    return DestroyList(decls);
}

constexpr Field kComment[] = {
    Text(POUH_REMARK, offsetof(POUH_COMMENT_TYP, remark)),
    Length(POUH_REMARKLEN, offsetof(POUH_COMMENT_TYP, remark)),
};

constexpr Field kHeader[] = {
    Owned(POUH_INFO, offsetof(POU_HEADER_TYP, info), Release<POUH_INFO_TYP, DestroyPOUHInfo>),
    Owned(POUH_DECLLIST, offsetof(POU_HEADER_TYP, declList),
          Release<POUH_DECL_LIST_TYP, DestroyPOUHDeclList>),
};

constexpr Field kInfo[] = {
    Text(POUH_INFOTEXT, offsetof(POUH_INFO_TYP, infoText)),
    Text(POUH_NAME, offsetof(POUH_INFO_TYP, name)),
    Number(POUH_POUTYPE, offsetof(POUH_INFO_TYP, pouType)),
    Owned(POUH_POUCOMMENT, offsetof(POUH_INFO_TYP, pouComment), ReleaseComment),
    Owned(POUH_COMMENT, offsetof(POUH_INFO_TYP, comment), ReleaseComment),
    Number(POUH_HEADERFLAG, offsetof(POUH_INFO_TYP, headerFlag)),
    Number(POUH_EXTRAVALUE, offsetof(POUH_INFO_TYP, extraValue)),
};

constexpr Field kDeclarationList[] = {
    Owned(POUH_LIST, offsetof(LQ_LIST_RECORD, list), ReleaseDeclarations),
};
constexpr Field kNameList[] = {
    Owned(POUH_LIST, offsetof(LQ_LIST_RECORD, list), ReleaseNames),
};

constexpr Field kDecl[] = {
    Number(POUH_SCOPE, offsetof(DECL_TYP, scope)),
    Text(POUH_NAME, offsetof(DECL_TYP, name)),
    Text(POUH_ADDRESS, offsetof(DECL_TYP, address)),
    Owned(POUH_TYPE, offsetof(DECL_TYP, type), Release<UNNAMED_TYPE_TYP, DestroyUnnamedType>),
    Word(POUH_DECLWORD, offsetof(DECL_TYP, word)),
    Word(POUH_DECLFLAGS, offsetof(DECL_TYP, flags)),
};

// The specification records of one shape differ in the attribute that is their type text.
#define LQ_TYPE_SPEC_FIELDS(typeTextFlag)                                           \
    {                                                                               \
        Text(typeTextFlag, offsetof(LQ_TYPE_SPEC, typeText)),                       \
            Text(POUH_INITVALUE, offsetof(LQ_TYPE_SPEC, initValue)),                \
            Length(POUH_INITVALUELEN, offsetof(LQ_TYPE_SPEC, initValue)),           \
            Owned(POUH_COMMENT, offsetof(LQ_TYPE_SPEC, comment), ReleaseComment),   \
            Owned(POUH_COMMENT2, offsetof(LQ_TYPE_SPEC, comment2), ReleaseComment), \
    }
constexpr Field kNamedSpec[] = LQ_TYPE_SPEC_FIELDS(POUH_NAME);
constexpr Field kStringSpec[] = LQ_TYPE_SPEC_FIELDS(POUH_STRINGTYPE);
constexpr Field kArraySpec[] = LQ_TYPE_SPEC_FIELDS(POUH_ARRAYTYPE);
#undef LQ_TYPE_SPEC_FIELDS

constexpr Field kSubrangeSpec[] = {
    Text(POUH_NAME, offsetof(SUBRANGE_SPEC_TYP, name)),
    Text(POUH_RANGE, offsetof(SUBRANGE_SPEC_TYP, range)),
    Text(POUH_INITVALUE, offsetof(SUBRANGE_SPEC_TYP, initValue)),
    Length(POUH_INITVALUELEN, offsetof(SUBRANGE_SPEC_TYP, initValue)),
    Owned(POUH_COMMENT, offsetof(SUBRANGE_SPEC_TYP, comment), ReleaseComment),
    Plain(POUH_COMMENT2, FieldKind::kReadOnlyNumber, offsetof(SUBRANGE_SPEC_TYP, comment2)),
};

constexpr Field kTypeKind = Number(POUH_TYPEKIND, offsetof(UNNAMED_TYPE_TYP, kind));
consteval Field Specification(int (*release)(void*)) {
    return Owned(POUH_TYPESPEC, offsetof(UNNAMED_TYPE_TYP, spec), release);
}
constexpr Field kTypeWithoutSpec[] = {kTypeKind};
constexpr Field kNamedType[] = {kTypeKind,
                                Specification(Release<SIMPLE_SPEC_TYP, DestroySimpleSpec>)};
constexpr Field kFbInstanceType[] = {kTypeKind,
                                     Specification(Release<FBINST_SPEC_TYP, DestroyFBInstSpec>)};
constexpr Field kStringType[] = {kTypeKind,
                                 Specification(Release<STRING_SPEC_TYP, DestroyStringSpec>)};
constexpr Field kArrayType[] = {kTypeKind,
                                Specification(Release<ARRAY_SPEC_TYP, DestroyArraySpec>)};
constexpr Field kSubrangeType[] = {kTypeKind,
                                   Specification(Release<SUBRANGE_SPEC_TYP, DestroySubrangeSpec>)};

constexpr Field kTask[] = {
    Owned(POUH_TASKINFO, offsetof(TASK_TYP, info), Release<TASK_INFO_TYP, DestroyTaskInfo>),
    Owned(POUH_TASKPOUS, offsetof(TASK_TYP, pous), Release<TASK_POU_LIST_TYP, DestroyTaskPOUList>),
};

constexpr Field kTaskInfo[] = {
    Text(POUH_NAME, offsetof(TASK_INFO_TYP, name)),
    Text(POUH_EVENT, offsetof(TASK_INFO_TYP, event)),
    Text(POUH_INTERVAL, offsetof(TASK_INFO_TYP, interval)),
    Text(POUH_PRIORITY, offsetof(TASK_INFO_TYP, priority)),
    Text(POUH_COMMENT, offsetof(TASK_INFO_TYP, comment)),
};

}  // namespace

std::span<const Field> FieldsOf(const POUH_COMMENT_TYP*) {
    return kComment;
}
std::span<const Field> FieldsOf(const POU_HEADER_TYP*) {
    return kHeader;
}
std::span<const Field> FieldsOf(const POUH_INFO_TYP*) {
    return kInfo;
}
std::span<const Field> FieldsOf(const SYMBOL_TABLE_TYP*) {
    return kDeclarationList;
}
std::span<const Field> FieldsOf(const POUH_DECL_LIST_TYP*) {
    return kDeclarationList;
}
std::span<const Field> FieldsOf(const TASK_LIST_TYP*) {
    return kNameList;
}
std::span<const Field> FieldsOf(const TASK_POU_LIST_TYP*) {
    return kNameList;
}
std::span<const Field> FieldsOf(const DECL_TYP*) {
    return kDecl;
}
std::span<const Field> FieldsOf(const SIMPLE_SPEC_TYP*) {
    return kNamedSpec;
}
std::span<const Field> FieldsOf(const FBINST_SPEC_TYP*) {
    return kNamedSpec;
}
std::span<const Field> FieldsOf(const STRING_SPEC_TYP*) {
    return kStringSpec;
}
std::span<const Field> FieldsOf(const ARRAY_SPEC_TYP*) {
    return kArraySpec;
}
std::span<const Field> FieldsOf(const SUBRANGE_SPEC_TYP*) {
    return kSubrangeSpec;
}
std::span<const Field> FieldsOf(const TASK_TYP*) {
    return kTask;
}
std::span<const Field> FieldsOf(const TASK_INFO_TYP*) {
    return kTaskInfo;
}

std::span<const Field> FieldsOf(const UNNAMED_TYPE_TYP* record) {
    switch (record ? record->kind : 0) {
        case DT_ELEMENTARY:
        case DT_STRUCTURE:
            return kNamedType;
        case DT_SUBRANGE:
            return kSubrangeType;
        case DT_STRING:
            return kStringType;
        case DT_ARRAY:
            return kArrayType;
        case DT_FB_INSTANCE:
            return kFbInstanceType;
        default:
            return kTypeWithoutSpec;
    }
}

}  // namespace lq::pouh
