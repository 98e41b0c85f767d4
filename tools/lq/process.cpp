#include "tools/lq/process.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <new>
#include <string_view>
#include <unistd.h>

#include "lq_data/host/text/message.h"
#include "lq_data/memory.h"
#include "tools/lq/command.h"
#include "tools/lq/output_file.h"
#include "tools/lq/progress.h"

namespace lq::tool {

namespace {

[[noreturn]] void EndWithoutMemory() noexcept {
    static constinit std::atomic_flag isEnding;
    while (isEnding.test_and_set()) {  // another thread speaks, and ends this one
        pause();
    }
    RemoveUnfinishedFile();
    for (const std::string_view part :
         {Progress::Wiper(), std::string_view("lq: "), host::Translated("memory is short"),
          std::string_view(SavedNote()), std::string_view("\n")}) {
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, part.data(), part.size());
    }
    _exit(kCannotWork);
}

void EndWhenMemoryIsShort() {
    std::set_new_handler(EndWithoutMemory);
    SetShortageHandler(EndWithoutMemory);
}

// The loader calls what stands here when the program is in place, and then only makes the static
// objects of libraries and program, among them those of the command line's library.
[[gnu::section(".preinit_array"), gnu::used]] void (*beforeStaticObjects)() = EndWhenMemoryIsShort;

}  // namespace

void PrepareProcess() {
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
