// To be preloaded: lets an allocation of the program fail, the one that the variable LQ_FAIL_AT
// gives the number of (from 1), and with LQ_FAIL_ALL set all that follow, too. At the end of a
// program that ends by itself, their number goes to the file that LQ_COUNT_TO names.
//
// Counted is every block that is asked for by whatever object in the process, from the moment when
// the loader begins to initialise libraries: this one first, for it is linked with "initfirst". So
// what the loader needs to start the program is out, and what the C++ runtime sets aside when it is
// initialised is in.
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

constinit std::atomic<long> count = 0;
constinit long failAt = 0;  // 0: never
constinit bool failsAll = false;
constinit bool isCounting = false;

bool FailsNow() {
    const long number = isCounting ? ++count : 0;
    const bool fails = failAt != 0 && (number == failAt || (failsAll && number > failAt));
    if (fails) {
        errno = ENOMEM;
    }
    return fails;
}

// The C library, initialised later, has no environment yet.
__attribute__((constructor)) void Start(int, char**, char** environment) {
    for (; *environment; ++environment) {
        const std::string_view variable(*environment);
        constexpr std::string_view kFailAt = "LQ_FAIL_AT=";
        if (variable.starts_with(kFailAt)) {
            failAt = std::atol(variable.data() + kFailAt.size());
        }
        failsAll = failsAll || variable.starts_with("LQ_FAIL_ALL=");
    }
    isCounting = true;
}

__attribute__((destructor)) void End() {
    isCounting = false;
    if (const char* const path = std::getenv("LQ_COUNT_TO")) {
        if (std::FILE* const file = std::fopen(path, "w")) {
            std::fprintf(file, "%ld", count.load());
            std::fclose(file);
        }
    }
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
    return FailsNow() ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t number, std::size_t size) {
    return FailsNow() ? nullptr : __libc_calloc(number, size);
}

void* realloc(void* block, std::size_t size) {
    return FailsNow() ? nullptr : __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
    return FailsNow() ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    void* const aligned = memalign(alignment, size);
    if (!aligned) {
        return ENOMEM;
    }
    *block = aligned;
    return 0;
}

}  // extern "C"
