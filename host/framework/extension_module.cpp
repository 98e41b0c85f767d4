#include "lq_data/host/framework/extension_module.h"

namespace {

// Needed before and after the life of static objects: the libraries enter it at load and leave it
// at unload.
constinit CDynLinkLibrary* firstLibrary = nullptr;

}  // namespace

LQ_IMPLEMENT_DYNAMIC(CDynLinkLibrary, CObject, nullptr)

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& state)
    : module(state.hModule), nextLibrary(firstLibrary) {
    firstLibrary = this;
}

CDynLinkLibrary::~CDynLinkLibrary() {
    CDynLinkLibrary** link = &firstLibrary;
    while (*link && *link != this) {
        link = &(*link)->nextLibrary;
    }
    if (*link) {
        *link = nextLibrary;
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
    for (CDynLinkLibrary* library = firstLibrary; library;) {
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
    return firstLibrary;
}

}  // namespace lq::host
