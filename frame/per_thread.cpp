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
constinit enum { kNoKey, kHasKey, kOver } state = kNoKey;
constinit pthread_mutex_t guard = PTHREAD_MUTEX_INITIALIZER;

void OnThreadEnd(void*) {
    ReleaseThread();
    // What ends still later may use the library again.
    for (frame::PerThread* part = std::exchange(first, nullptr); part;) {
        part->release = nullptr;
        part = std::exchange(part->next, nullptr);
    }
}

// Until the library is unloaded or the process ends. The key tells nothing then: the thread at work
// releases what it keeps, and what is kept after that stays.
struct Life {
    Life() noexcept = default;
    ~Life() {
        ReleaseThread();
        pthread_mutex_lock(&guard);
        if (std::exchange(state, kOver) == kHasKey) {
            pthread_key_delete(key);
        }
        pthread_mutex_unlock(&guard);
    }
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;
};

// The system has so many keys; while none is free, each thread asks again.
bool TellEndOfThread() noexcept {
    static const Life life;
    pthread_mutex_lock(&guard);
    if (state == kNoKey && pthread_key_create(&key, OnThreadEnd) == 0) {
        state = kHasKey;
    }
    const bool isTold =
        state == kOver || (state == kHasKey && pthread_setspecific(key, &first) == 0);
    pthread_mutex_unlock(&guard);
    return isTold;
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
    if (!first && !TellEndOfThread()) {
        ReportShortage();
        return false;
    }
    part = {release, std::exchange(first, &part)};
    return true;
}

}  // namespace frame

}  // namespace lq
