// Which function block an instance name stands for: the POU's own declarations come before the
// global ones.

#include <memory>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/pouh.h"
#include "lq_data/records.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

// The specification record of the function block instance of that name, or null.
void* FindInstance(FLIST* list, const char16_t* name) {
    for (const Declaration decl : Declarations(list)) {
        if (decl.TypeKind() == DT_FB_INSTANCE && chars::EqualNoCase(decl.Name().data(), name)) {
            return decl.Record()->type->spec;
        }
    }
    return nullptr;
}

bool FindInPou(const char16_t* instance, const char16_t* pou, CLQString& fbType) {
    POU_HEADER_TYP* header = CreatePOUHeader();
    void* spec = LoadPOUHeader(header, pou) ? FindInstance(ListOf(header), instance) : nullptr;
    if (spec) {
        fbType.y_GetAttrOfFBInstSpec(spec, POUH_NAME);
    }
    DestroyPOUHeader(header);
    return spec != nullptr;
}

bool NamesFunctionBlock(const char16_t* type) {
    const ID id = FindPOUByName(type);
    LQNAVIOBJECTMAN* manager = LQNAVIOBJECTMAN::Get();
    const LQNAVIOBJECT* pou = manager && id != ID() ? manager->Get(id) : nullptr;
    return pou && pou->GetKind() == LQ_KIND_FUNCTION_BLOCK;
}

bool FindInGlobals(const char16_t* instance, CLQString& fbType) {
    const std::unique_ptr<LQDECL> global(FindGVLDeclByName(instance));
    if (!global || !NamesFunctionBlock(global->GetType())) {
        return false;
    }
    fbType = global->GetType();
    return true;
}

}  // namespace

}  // namespace lq::pouh

int FindFBName(const char16_t* instance, const char16_t* pou, CLQString* fbType) {
    if (!instance || !fbType) {
        return 0;
    }
    const lq::MemoryWatch watch;
    if (lq::pouh::FindInPou(instance, pou, *fbType)) {
        return 1;
    }
    // When memory ran short, the POU may have an instance of that name all the same, which would
    // hide the global one.
    return !watch.WasShort() && lq::pouh::FindInGlobals(instance, *fbType);
}
