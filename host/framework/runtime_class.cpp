// The root object class and the chain of class descriptions, from which objects are made by name.
#include <atomic>
#include <cstring>

#include "lq_data/env/lq_framework.h"

namespace {

// Filled during static initialisation of every module, so it must not need any itself. The loader
// runs one initialisation at a time; other threads read the chain meanwhile.
constinit std::atomic<const CRuntimeClass*> firstClass = nullptr;
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
        cls->next = firstClass.load(std::memory_order_relaxed);
        firstClass.store(cls, std::memory_order_release);
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
    const CRuntimeClass* const first = firstClass.load(std::memory_order_relaxed);
    if (first == cls_) {
        firstClass.store(cls_->next, std::memory_order_relaxed);
        return;
    }
    const CRuntimeClass* before = first;
    while (before->next != cls_) {
        before = before->next;
    }
    const_cast<CRuntimeClass*>(before)->next = cls_->next;
}

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* other) const {
    const CRuntimeClass* cls = this;
    while (cls && cls != other) {
        cls = cls->base;
    }
    return cls != nullptr;
}

const CRuntimeClass* CRuntimeClass::FromName(const char* name) {
    const CRuntimeClass* cls = firstClass.load(std::memory_order_acquire);
    while (cls && std::strcmp(cls->name, name) != 0) {
        cls = cls->next;
    }
    return cls;
}

CObject* CRuntimeClass::CreateObject(const char* name) {
    const CRuntimeClass* cls = FromName(name);
    return cls ? cls->CreateObject() : nullptr;
}
