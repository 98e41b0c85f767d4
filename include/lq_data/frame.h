// The module frame: attach and detach, the version query, and localised texts.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_framework.h"
#include "lq_data/export.h"

namespace NS_LQ_DATA {
// Version of the interface: 65536.
LQ_DATA_API uint32_t GetDLLVersion();
}  // namespace NS_LQ_DATA

namespace lq {
// Releases what the library and the host's base library keep for the calling thread: the last
// resource texts, the scanner of declaration texts and the check scanner (unless it is lent), the
// path of the settings file. All of it comes back when it is needed. A thread that ends does this
// by itself, and so does the one that unloads the library or ends the process; a thread that lives
// on without the library calls it before that is unloaded. Not while a declaration is entered or
// read, nor while a text of those is in use.
LQ_DATA_API void ReleaseThread() noexcept;
}  // namespace lq

// Reasons of the library entry.
enum LQ_ENTRY_REASON : uint32_t {
    LQ_PROCESS_DETACH = 0,
    LQ_PROCESS_ATTACH = 1,
    LQ_THREAD_ATTACH = 2,
    LQ_THREAD_DETACH = 3,
};

// The library entry; the loader calls it at load and unload, nobody else needs to. Attaching
// registers the library with the framework and loads the resource library of the registered code
// page (a missing one is no failure, nor is one that memory is too short for). Returns non-zero for
// success. In a static library this holds for programs that use the names of types, the texts of
// values or something of this header; no other part depends on it.
LQ_DATA_API int LqDataEntry(HINSTANCE module, uint32_t reason, void* reserved);

// As long as an object of this class lives, string loading on its thread consults the resource
// library of this library. Such scopes may be nested.
class LQ_DATA_API CResourceSwitch {
  public:
    CResourceSwitch();
    ~CResourceSwitch();
    CResourceSwitch(const CResourceSwitch&) = delete;
    CResourceSwitch& operator=(const CResourceSwitch&) = delete;

  private:
    HINSTANCE saved_;
};

// The text of string resource `id`: of the resource library, else of the default resource module,
// else empty, as it is when memory is short. Never null. The text stays valid during the next 49
// calls of the same thread, unless that ends or calls lq::ReleaseThread; the 50th call after it
// reuses its place.
LQ_DATA_API const char16_t* GetResString(unsigned int id);
