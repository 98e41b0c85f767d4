// The module frame: attach and detach, the version query, and localised texts.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_framework.h"
#include "lq_data/export.h"

namespace NS_LQ_DATA {
// Version of the interface: 65536.
LQ_DATA_API uint32_t GetDLLVersion();
}  // namespace NS_LQ_DATA

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

// As long as an object of this class lives, string loading consults the resource library of this
// library. Such scopes may be nested.
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
// calls; the 50th call after it reuses its place. One thread at a time.
LQ_DATA_API const char16_t* GetResString(unsigned int id);
