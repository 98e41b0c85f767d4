// The root object class and the chain of class descriptions, from which objects are made by name.
#include <cstring>

#include "lq_data/env/lq_framework.h"

namespace {

// Filled during static initialisation of every module, so it must not need any itself.
constinit const CRuntimeClass* firstClass = nullptr;
constinit AFX_CLASSINIT* firstInit = nullptr;

}  // namespace

CRuntimeClass CObject::classCObject = {"CObject", nullptr, nullptr, nullptr};
static const AFX_CLASSINIT init_classCObject(&CObject::classCObject);

const CRuntimeClass* CObject::GetRuntimeClass() const {
    return &classCObject;
}

// Two modules may share one description, by the loader's binding: then each registers it.
bool AFX_CLASSINIT::IsRegistered(const CRuntimeClass* cls) {
    const AFX_CLASSINIT* init = firstInit;
    while (init && init->cls_ != cls) {
        init = init->next_;
    }
    return init != nullptr;
}

AFX_CLASSINIT::AFX_CLASSINIT(CRuntimeClass* cls) : cls_(cls), next_(nullptr) {
    if (!IsRegistered(cls)) {
        cls->next = firstClass;
        firstClass = cls;
    }
    next_ = firstInit;
    firstInit = this;
}

AFX_CLASSINIT::~AFX_CLASSINIT() {
    AFX_CLASSINIT** init = &firstInit;
    while (*init != this) {
        init = &(*init)->next_;
    }
    *init = next_;
    if (IsRegistered(cls_)) {
        return;
    }
    const CRuntimeClass** link = &firstClass;
    while (*link != cls_) {
        link = &const_cast<CRuntimeClass*>(*link)->next;
    }
    *link = cls_->next;
}

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* other) const {
    const CRuntimeClass* cls = this;
    while (cls && cls != other) {
        cls = cls->base;
    }
    return cls != nullptr;
}

const CRuntimeClass* CRuntimeClass::FromName(const char* name) {
    const CRuntimeClass* cls = firstClass;
    while (cls && std::strcmp(cls->name, name) != 0) {
        cls = cls->next;
    }
    return cls;
}

CObject* CRuntimeClass::CreateObject(const char* name) {
    const CRuntimeClass* cls = FromName(name);
    return cls ? cls->CreateObject() : nullptr;
}
