// Attach and detach, and the texts of the resource library. The loader attaches and detaches the
// library: before and after the life of its static objects, so that the state here is constant.
#include "lq_data/frame.h"

#include <algorithm>
#include <iterator>

#include "lq_data/code_page.h"
#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/memory.h"

namespace {

constexpr uint32_t kInterfaceVersion = 0x10000;
constexpr int32_t kRingSize = 50;

using Name = char16_t[256];

// The module has a name of its own, since its file has another: liblq_data.so, or that of the
// program into which the library is linked.
constinit LQ_MODULE ownModule{u"lq_data", &ownModule};
constinit AFX_EXTENSION_MODULE extension;
constinit HINSTANCE resourceLibrary = nullptr;

// Copies as much of [first, last) as fits.
void CopyName(Name& name, const char16_t* first, const char16_t* last) {
    const std::ptrdiff_t room = std::ssize(name) - 1;
    *std::copy(first, first + std::min(last - first, room), name) = 0;
}

// The module's file name, however long its folder's is; to be released. Null when memory is short.
char16_t* GetFileName(HINSTANCE module) {
    constexpr uint32_t kLongest = 1 << 20;
    for (uint32_t size = 1024;; size *= 2) {
        char16_t* const file = lq::AllocateArray<char16_t>(size);
        if (!file) {
            return nullptr;
        }
        file[0] = 0;
        if (GetModuleFileNameW(module, file, size) + 1 < size || size == kLongest) {
            return file;
        }
        lq::Release(file);
    }
}

// A file's name without folder and extension.
void GetBaseName(const char16_t* file, Name& name) {
    const char16_t* const end = file + lq::chars::Length(file);
    const char16_t* first = end;
    while (first != file && first[-1] != u'/') {
        --first;
    }
    const char16_t* last = end;
    while (last != first && *last != u'.') {
        --last;
    }
    CopyName(name, first, last == first ? end : last);
}

HINSTANCE LoadResourceLibrary(HINSTANCE module) {
    const uint32_t codePage = lq::frame::ReadCodePage();
    char16_t* const file = GetFileName(module);
    if (!file) {
        return nullptr;
    }
    Name baseName;
    GetBaseName(file, baseName);
    lq::Release(file);
    CLQString formatted;
    formatted.Format(u"%s_RC_%d.dll", baseName, static_cast<int32_t>(codePage));
    Name name;
    CopyName(name, formatted, formatted + formatted.GetLength());
    return AfxLoadLibrary(name);
}

int Attach(HINSTANCE module) {
    if (!AfxInitExtensionModule(extension, module)) {
        return 0;
    }
    new CDynLinkLibrary(extension);  // which the framework owns
    resourceLibrary = LoadResourceLibrary(module);
    return 1;
}

void Detach() {
    if (resourceLibrary) {
        AfxFreeLibrary(resourceLibrary);
        resourceLibrary = nullptr;
    }
    AfxTermExtensionModule(extension);
}

__attribute__((constructor)) void OnLoad() {
    LqDataEntry(&ownModule, LQ_PROCESS_ATTACH, nullptr);
}

__attribute__((destructor)) void OnUnload() {
    LqDataEntry(&ownModule, LQ_PROCESS_DETACH, nullptr);
}

}  // namespace

uint32_t NS_LQ_DATA::GetDLLVersion() {
    return kInterfaceVersion;
}

int LqDataEntry(HINSTANCE module, uint32_t reason, void*) {
    if (reason == LQ_PROCESS_ATTACH) {
        return Attach(module);
    }
    if (reason == LQ_PROCESS_DETACH) {
        Detach();
    }
    return 1;
}

CResourceSwitch::CResourceSwitch() : saved_(AfxGetResourceHandle()) {
    AfxSetResourceHandle(resourceLibrary);
}

CResourceSwitch::~CResourceSwitch() {
    AfxSetResourceHandle(saved_);
}

const char16_t* GetResString(unsigned int id) {
    static CLQString ring[kRingSize];
    static int32_t index = 0;
    index = (index + 1) % kRingSize;
    CLQString& text = ring[index];
    int loaded = 0;
    {
        const CResourceSwitch libraryFirst;
        loaded = text.LoadStringW(id);
    }
    if (!loaded) {
        text.LoadStringW(id);
    }
    return text;
}
