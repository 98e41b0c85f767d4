// Stands before the system's write: messages pass, and of anything else no byte is taken.
#include <cstddef>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" __attribute__((visibility("default"))) ssize_t write(int descriptor, const void* bytes,
                                                                size_t count) {
    return descriptor == STDERR_FILENO ? syscall(SYS_write, descriptor, bytes, count) : 0;
}
