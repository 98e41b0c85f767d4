// What the library keeps for each thread.
#pragma once

#include "lq_data/export.h"

// A variable of which each thread has its own. It lies in the storage that the loader sets aside
// when a thread starts. By default a library that is opened later gets its storage with its first
// access: that would be an allocation at any moment, and one that ends the process when it fails.
// The loader has some hundred bytes to spare for all libraries that are opened later, so such
// variables are small, and it gets these bytes back from a library only when no gaps lie between
// those of its neighbours: each variable takes a multiple of 8 bytes. They have no destructors:
// those would keep the library loaded.
#define LQ_THREAD_LOCAL [[gnu::tls_model("initial-exec")]] constinit thread_local

namespace lq::frame {

// The head of an LQ_THREAD_LOCAL structure that owns something.
struct PerThread {
    void (*release)(PerThread& part) = nullptr;  // null until it is kept
    PerThread* next = nullptr;                   // of the same thread
};

// From now on `release` is called with `part` when the thread ends and with ReleaseThread, whether
// or not there is something to release then. False when memory is short.
LQ_DATA_API bool KeepForThread(PerThread& part, void (*release)(PerThread& part)) noexcept;

}  // namespace lq::frame
