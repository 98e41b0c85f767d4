#include "lq_data/host/framework/extension_module.h"

#include <atomic>

namespace {

// Needed before and after the life of static objects: the libraries enter it at load and leave it
// at unload, one at a time. Other threads read the chain meanwhile.
constinit std::atomic<CDynLinkLibrary*> firstLibrary = nullptr;

}  // namespace

LQ_IMPLEMENT_DYNAMIC(CDynLinkLibrary, CObject, nullptr)

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& state)
    : module(state.hModule), nextLibrary(firstLibrary.load(std::memory_order_relaxed)) {
    firstLibrary.store(this, std::memory_order_release);
}

CDynLinkLibrary::~CDynLinkLibrary() {
    CDynLinkLibrary* before = firstLibrary.load(std::memory_order_relaxed);
    if (before == this) {
        firstLibrary.store(nextLibrary, std::memory_order_relaxed);
        return;
    }
    while (before && before->nextLibrary != this) {
        before = before->nextLibrary;
    }
    if (before) {
        before->nextLibrary = nextLibrary;
    }
}

int AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HINSTANCE module) {
    if (!module) {
        return 0;
    }
    state.bInitialized = 1;
    state.hModule = module;
    return 1;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, int all) {
    for (CDynLinkLibrary* library = lq::host::GetFirstLibrary(); library;) {
        CDynLinkLibrary* const next = library->nextLibrary;
        if (all || library->module == state.hModule) {
            delete library;
        }
        library = next;
    }
    state = {};
}

namespace lq::host {

CDynLinkLibrary* GetFirstLibrary() noexcept {
    return firstLibrary.load(std::memory_order_acquire);
}

}  // namespace lq::host
