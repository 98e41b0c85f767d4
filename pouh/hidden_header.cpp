// The interfaces of the POUs that sequential function charts use behind the scenes. The user
// adapter may replace all but one of them.

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_useradapt.h"
#include "lq_data/types.h"
#include "pouh/attributes.h"
#include "pouh/declarations.h"
#include "pouh/record_lists.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

constexpr uint32_t kNotAsked = 0;

struct FixedParameter {
    const char16_t* name;  // null for none
    DECL_SCOPE scope;
    const char16_t* typeText;
};

struct HiddenInterface {
    const char16_t* name;
    uint32_t question;  // to the user adapter
    FixedParameter parameters[2];
};

constexpr HiddenInterface kInterfaces[] = {
    {u"_SFCCB", kNotAsked, {{u"A", DS_VAR_IN_OUT, u"BOOL"}, {u"P", DS_VAR_IN_OUT, u"BOOL"}}},
    {u"_STEP", LQ_ASK_SFC_STEP, {{u"X", DS_VAR_OUTPUT, u"BOOL"}}},
    {u"_ACTION", LQ_ASK_SFC_ACTION, {{u"Q", DS_VAR_OUTPUT, u"BOOL"}}},
    {u"_SFC_DEBUG", LQ_ASK_SFC_DEBUG, {{u"BP", DS_VAR_IN_OUT, u"UINT"}}},
};

const HiddenInterface* FindInterface(const char16_t* name) {
    for (const HiddenInterface& entry : kInterfaces) {
        if (chars::Equal(entry.name, name)) {
            return &entry;
        }
    }
    return nullptr;
}

bool AppendParameter(FLIST* list, DECL_SCOPE scope, const char16_t* name, const char16_t* typeText,
                     const char16_t* initValue) {
    DECL_TYP* decl = CreateDecl();
    if (!decl) {
        return false;
    }
    if (!FillSimpleDeclaration(decl, {.scope = scope,
                                      .name = name,
                                      .typeText = typeText,
                                      .initValue = initValue,
                                      .comment = nullptr,
                                      .comment2 = nullptr})) {
        DestroyDecl(decl);
        return false;
    }
    return AddDecl(list, decl, LC_LAST);
}

bool AppendFixed(FLIST* list, const HiddenInterface& hidden) {
    for (const FixedParameter& parameter : hidden.parameters) {
        if (parameter.name &&
            !AppendParameter(list, parameter.scope, parameter.name, parameter.typeText, u"0")) {
            return false;
        }
    }
    return true;
}

// False when the adapter has no answer.
bool AppendAnswer(FLIST* list, uint32_t question) {
    LQ_INTERFACE_REPLY reply = {};
    if (ProcessUserDLLMessage(nullptr, LQ_WM_USER, question, reinterpret_cast<intptr_t>(&reply)) !=
        0) {
        return false;
    }
    const IecTypeConv types;
    const uint32_t count = reply.entries ? reply.count : 0;
    for (uint32_t i = 0; i < count; ++i) {
        const LQ_INTERFACE_ENTRY& entry = reply.entries[i];
        // A parameter that memory is too short for is left out.
        (void)AppendParameter(list, static_cast<DECL_SCOPE>(entry.scope), entry.name,
                              types.GetName(MapBitsetToType(entry.typeBits)), entry.initValue);
    }
    return true;
}

}  // namespace

}  // namespace lq::pouh

int LoadPOUHiddenHeader(POU_HEADER_TYP* header, const char16_t* name) {
    if (!header || !name || !lq::pouh::RenewHeader(*header)) {
        return 0;
    }
    const lq::pouh::HiddenInterface* hidden = lq::pouh::FindInterface(name);
    if (!hidden) {
        return 0;
    }
    header->info->pouType = PT_FUNCTION_BLOCK;
    if (!lq::pouh::StoreText(header->info->name, name)) {
        return 0;
    }
    FLIST* list = header->declList->list;
    if (hidden->question != lq::pouh::kNotAsked && lq::pouh::AppendAnswer(list, hidden->question)) {
        return 1;
    }
    return lq::pouh::AppendFixed(list, *hidden);
}
