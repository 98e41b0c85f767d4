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

// What is unfinished and the line of progress go before the program does.
void EndBySignal(int signal) {
    RemoveUnfinishedFile();
    const std::string_view wiper = Progress::Wiper();
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, wiper.data(), wiper.size());
    raise(signal);  // SA_RESETHAND has brought the default back
}

// Signals that the parent process had ignored stay so.
void CleanUpOnSignals() {
    struct sigaction ours = {};
    ours.sa_handler = EndBySignal;
    ours.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        struct sigaction old = {};
        sigaction(signal, nullptr, &old);
        if (old.sa_handler != SIG_IGN) {
            sigaction(signal, &ours, nullptr);
        }
    }
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
    CleanUpOnSignals();
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) < 0) {
            // open takes the lowest free descriptor, which is this one. It is opened for the wrong
            // direction, so that using it fails as using a closed stream does.
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

}  // namespace lq::tool
