// Loading a POU header: its info record and its declarations.

#include <memory>

#include "pouh/attributes.h"
#include "pouh/declarations.h"
#include "pouh/record_lists.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

POUH_POU_TYPE PouTypeOf(int32_t kind) {
    switch (kind) {
        case LQ_KIND_FUNCTION:
            return PT_FUNCTION;
        case LQ_KIND_FUNCTION_BLOCK:
            return PT_FUNCTION_BLOCK;
        case LQ_KIND_PROGRAM:
            return PT_PROGRAM;
        case LQ_KIND_DUT:
            return PT_DUT;
        case LQ_KIND_13:
            return PT_KIND_13;
        default:
            return PT_OTHER;
    }
}

// False when memory is short.
bool FillInfo(POUH_INFO_TYP& info, const LQOBJECT& pou, const LQOBJECT& header) {
    info.pouType = PouTypeOf(pou.GetKind());
    if (!StoreText(info.infoText, u"") || !StoreText(info.name, pou.GetName()) ||
        !AddComment(info.comment, header.GetComment(0))) {
        return false;
    }
    const bool hasOwnComment = info.pouType >= PT_FUNCTION && info.pouType <= PT_PROGRAM;
    if (hasOwnComment && !AddComment(info.pouComment, pou.GetComment(0))) {
        return false;
    }
    info.headerFlag = static_cast<uint32_t>(header.QueryValue(LQ_QUERY_HEADER_FLAG));
    return true;
}

// Puts both parameters in front, converted from one object of the model.
bool PrependEnables(FLIST* list) {
    const std::unique_ptr<LQPOUHDECL> decl(LQPOUHDECL::CreateObject());
    if (!decl) {
        return false;
    }
    for (const EnableParameter& parameter : {kEnable, kEnableOut}) {
        DescribeEnable(*decl, parameter);
        if (!PrependEnable(list, *decl, parameter)) {
            return false;
        }
    }
    return true;
}

// The POU of that name, in the project or its libraries, or the data type.
ID FindHeaderObject(LQNAVIOBJECTMAN& manager, const char16_t* name) {
    ID id;
    if (const LQCOLLECTION* pool = manager.GetPOUPool()) {
        id = manager.Find(name, pool->GetId(), LQ_ANY_KIND);
    }
    if (const LQCOLLECTION* pool = manager.GetLibraryPool()) {
        for (const uint32_t kind : {LQ_LOOKUP_FUNCTION, LQ_LOOKUP_FUNCTION_BLOCK}) {
            if (id == ID()) {
                id = pool->Lookup(name, kind);
            }
        }
    }
    if (id == ID()) {
        if (const LQDUT* dut = GetDutByName(name)) {
            id = dut->GetId();
        }
    }
    return id;
}

}  // namespace

HeaderSource OpenHeader(POU_HEADER_TYP& header, LQOBJECT& object) {
    if (!RenewHeader(header)) {
        return {};
    }
    const bool isType = object.GetKind() == LQ_KIND_DUT;
    auto* const pou = isType ? nullptr : dynamic_cast<LQPOU*>(&object);
    LQOBJECT* const owner = isType ? &object : pou ? pou->GetHeader() : nullptr;
    if (owner) {
        // A header without its comments is still a header.
        (void)FillInfo(*header.info, object, *owner);
    }
    return {pou, owner};
}

bool PrependUndeclared(FLIST* list, LQPOU& pou) {
    const int32_t kind = pou.GetKind();
    if (kind == LQ_KIND_FUNCTION) {
        auto* function = dynamic_cast<LQFUN*>(&pou);
        if (!function || !PrependResult(list, *function)) {
            return false;
        }
    }
    return kind == LQ_KIND_PROGRAM || !pou.GetEnoFlag() || PrependEnables(list);
}

bool LoadWhole(POU_HEADER_TYP& header, const HeaderSource& source) {
    FLIST* const list = header.declList->list;
    return LoadDeclarations(list, *source.owner, false) &&
           (!source.pou ||
            (PrependUndeclared(list, *source.pou) && RegroupByScope(*header.declList) != 0));
}

namespace {

int LoadObject(POU_HEADER_TYP& header, LQOBJECT& object) {
    const HeaderSource source = OpenHeader(header, object);
    return source.owner && LoadWhole(header, source) ? 1 : 0;
}

}  // namespace

}  // namespace lq::pouh

int LoadPOUHeader(POU_HEADER_TYP* header, ID id, int fromDeclManager) {
    if (!header || id == ID()) {
        return 0;
    }
    if (fromDeclManager) {
        LQDECLMAN* manager = LQDECLMAN::Get();
        const std::unique_ptr<LQOBJECT> object(manager ? manager->Get(id) : nullptr);
        return object ? lq::pouh::LoadObject(*header, *object) : 0;
    }
    LQNAVIOBJECTMAN* manager = LQNAVIOBJECTMAN::Get();
    LQNAVIOBJECT* object = manager ? manager->Get(id) : nullptr;
    return object ? lq::pouh::LoadObject(*header, *object) : 0;
}

int LoadPOUHeader(POU_HEADER_TYP* header, const char16_t* name) {
    LQNAVIOBJECTMAN* manager = LQNAVIOBJECTMAN::Get();
    if (!header || !name || !manager) {
        return 0;
    }
    return LoadPOUHeader(header, lq::pouh::FindHeaderObject(*manager, name), 0);
}
