#include "tools/lq/process.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <unistd.h>

#include "tools/lq/command.h"
#include "tools/lq/output_file.h"

namespace lq::tool {

namespace {

[[noreturn]] void EndWithoutMemory() {
    static constexpr char kMessage[] = "lq: memory is short\n";
    RemoveUnfinishedFile();
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage, std::strlen(kMessage));
    _exit(kCannotWork);
}

}  // namespace

void PrepareProcess() {
    std::set_new_handler(EndWithoutMemory);
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_IGN);
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) < 0) {
            // The lowest free descriptor is this one. Opened the wrong way round.
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

}  // namespace lq::tool
