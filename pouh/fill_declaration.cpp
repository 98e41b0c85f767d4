// Filling a new declaration record. Each part is stored in the tree as soon as it exists, so that a
// shortage of memory leaves nothing without an owner.

#include "lq_data/memory.h"
#include "pouh/attributes.h"
#include "pouh/declarations.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

bool FillHead(DECL_TYP& decl, DECL_SCOPE scope, const char16_t* name) {
    decl.scope = scope;
    return StoreText(decl.name, name);
}

template <typename Spec>
bool FillType(DECL_TYP& decl, POUH_TYPE_KIND kind, const DeclContent& content) {
    decl.type = CreateUnnamedType();
    if (!decl.type) {
        return false;
    }
    decl.type->kind = kind;
    Spec* spec = lq::New<Spec>();
    decl.type->spec = spec;
    return spec && StoreText(spec->typeText, content.typeText) &&
           StoreText(spec->initValue, content.initValue) &&
           AddComment(spec->comment, content.comment) &&
           AddComment(spec->comment2, content.comment2);
}

template <typename Spec>
int Fill(DECL_TYP* decl, POUH_TYPE_KIND kind, const DeclContent& content) {
    return FillHead(*decl, content.scope, content.name) && FillType<Spec>(*decl, kind, content);
}

}  // namespace

int FillSimpleDeclaration(DECL_TYP* decl, const DeclContent& content) {
    return Fill<SIMPLE_SPEC_TYP>(decl, DT_ELEMENTARY, content);
}

int FillStringDeclaration(DECL_TYP* decl, const DeclContent& content) {
    return Fill<STRING_SPEC_TYP>(decl, DT_STRING, content);
}

int FillArrayDeclaration(DECL_TYP* decl, const DeclContent& content) {
    return Fill<ARRAY_SPEC_TYP>(decl, DT_ARRAY, content);
}

int FillStructDeclaration(DECL_TYP* decl, const DeclContent& content) {
    return Fill<SIMPLE_SPEC_TYP>(decl, DT_STRUCTURE, content);
}

}  // namespace lq::pouh

int FillFlagsInDeclaration(DECL_TYP* decl, int set) {
    if (!decl) {
        return 0;
    }
    decl->flags = set ? POUH_DECL_MARK : uint16_t{0};
    return 1;
}

int FillFBInstDeclaration(DECL_TYP* decl, DECL_SCOPE scope, const char16_t* name,
                          const char16_t* fbType, const char16_t* comment, int word,
                          const char16_t* comment2) {
    if (!decl) {
        return 0;
    }
    decl->word = static_cast<uint16_t>(word);
    return lq::pouh::FillHead(*decl, scope, name) &&
           lq::pouh::FillType<FBINST_SPEC_TYP>(*decl, DT_FB_INSTANCE,
                                               {.scope = scope,
                                                .name = name,
                                                .typeText = fbType,
                                                .initValue = nullptr,
                                                .comment = comment,
                                                .comment2 = comment2});
}
