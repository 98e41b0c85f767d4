// Stands before calls of the system, those that the environment names: writes that take no bytes,
// those of messages with "all" alone, and links that are not permitted.
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" {
__attribute__((visibility("default"))) ssize_t write(int descriptor, const void* bytes,
                                                     size_t count) {
    const char* const which = std::getenv("LQ_TEST_NO_WRITE");
    const bool fails = which && (descriptor != STDERR_FILENO || *which == 'a');
    return fails ? 0 : syscall(SYS_write, descriptor, bytes, count);
}

__attribute__((visibility("default"))) int linkat(int fromFolder, const char* from, int toFolder,
                                                  const char* to, int flags) noexcept {
    if (std::getenv("LQ_TEST_NO_LINK")) {
        errno = EPERM;
        return -1;
    }
    return static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}
}
