#include "pouh/implicit_parameters.h"

namespace lq::pouh {

namespace {

LQPOUHDECL* NewEnable(const EnableParameter& parameter) {
    LQPOUHDECL* decl = LQPOUHDECL::CreateObject();
    if (decl) {
        decl->SetName(parameter.name);
        DescribeEnable(*decl, parameter);
    }
    return decl;
}

}  // namespace

void DescribeEnable(LQPOUHDECL& decl, const EnableParameter& parameter) {
    decl.SetType(u"BOOL");
    decl.SetClass(parameter.declClass);
    decl.SetInitValue(u"FALSE");
}

}  // namespace lq::pouh

LQPOUHDECL* GetRetDecl(const char16_t* name, const char16_t* type) {
    LQPOUHDECL* decl = LQPOUHDECL::CreateObject();
    if (decl) {
        decl->SetName(name);
        decl->SetType(type);
        decl->SetClass(LQ_CLASS_OUTPUT);
        decl->SetClassId(LQ_CLASS_ID_RESULT);
    }
    return decl;
}

LQPOUHDECL* GetEnDecl() {
    return lq::pouh::NewEnable(lq::pouh::kEnable);
}

LQPOUHDECL* GetEnoDecl() {
    return lq::pouh::NewEnable(lq::pouh::kEnableOut);
}
