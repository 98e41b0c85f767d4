#include "frame/per_thread.h"

#include <pthread.h>
#include <utility>

#include "lq_data/frame.h"
#include "lq_data/memory.h"

namespace lq {

namespace {

LQ_THREAD_LOCAL frame::PerThread* first = nullptr;  // of what this thread keeps

// Tells the end of a thread. A thread_local object with a destructor would, too, but then the
// library could not be unloaded before that end.
constinit pthread_key_t key = 0;
constinit bool hasKey = false;

void OnThreadEnd(void*) {
    ReleaseThread();
    // What ends still later may use the library again.
    for (frame::PerThread* part = std::exchange(first, nullptr); part;) {
        part->release = nullptr;
        part = std::exchange(part->next, nullptr);
    }
}

// The key's life, from the first thing that a thread keeps until the library is unloaded or the
// process ends. The key tells nothing then: the thread at work releases what it keeps.
struct Life {
    Life() noexcept { hasKey = pthread_key_create(&key, OnThreadEnd) == 0; }
    ~Life() {
        ReleaseThread();
        if (hasKey) {
            pthread_key_delete(key);
        }
    }
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;
};

bool HasKey() noexcept {
    static const Life life;
    return hasKey;
}

}  // namespace

void ReleaseThread() noexcept {
    for (frame::PerThread* part = first; part; part = part->next) {
        part->release(*part);
    }
}

namespace frame {

bool KeepForThread(PerThread& part, void (*release)(PerThread& part)) noexcept {
    if (part.release) {
        return true;
    }
    if (!first && (!HasKey() || pthread_setspecific(key, &first) != 0)) {
        ReportShortage();
        return false;
    }
    part = {release, std::exchange(first, &part)};
    return true;
}

}  // namespace frame

}  // namespace lq
