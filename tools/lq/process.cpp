#include "tools/lq/process.h"

#include <csignal>
#include <fcntl.h>
#include <new>
#include <string_view>
#include <unistd.h>

#include "host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/output_file.h"

namespace lq::tool {

namespace {

[[noreturn]] void EndWithoutMemory() {
    RemoveUnfinishedFile();
    for (const std::string_view part :
         {std::string_view("lq: "), host::Translated("memory is short"),
          std::string_view(SavedNote()), std::string_view("\n")}) {
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, part.data(), part.size());
    }
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
