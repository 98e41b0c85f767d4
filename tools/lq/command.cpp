#include "tools/lq/command.h"

#include <sys/stat.h>
#include <unistd.h>

#include "lq_data/host/text/message.h"
#include "tools/lq/input.h"
#include "tools/lq/terminal.h"

namespace lq::tool {

using host::Say;

namespace {

bool IsOrdinaryFile(const std::string& path, int standardStream, struct stat& info) {
    const int failed = path == "-" ? fstat(standardStream, &info) : stat(path.c_str(), &info);
    return failed == 0 && S_ISREG(info.st_mode);
}

}  // namespace

void RefuseInputAsOutput(const std::string& input, const std::string& output) {
    struct stat from = {};
    struct stat to = {};
    if (IsOrdinaryFile(input, STDIN_FILENO, from) && IsOrdinaryFile(output, STDOUT_FILENO, to) &&
        from.st_dev == to.st_dev && from.st_ino == to.st_ino) {
        throw CommandError(
            Say("{}: is the output, too, and would be overwritten", DisplayName(input)));
    }
}

void RefuseInputTwice(const std::vector<std::string>& inputs) {
    for (auto input = inputs.begin(); input != inputs.end(); ++input) {
        struct stat info = {};
        const bool isFile = IsOrdinaryFile(*input, STDIN_FILENO, info);
        for (auto earlier = inputs.begin(); earlier != input; ++earlier) {
            struct stat other = {};
            const bool isSameFile = isFile && IsOrdinaryFile(*earlier, STDIN_FILENO, other) &&
                                    info.st_dev == other.st_dev && info.st_ino == other.st_ino;
            if (*input == *earlier || isSameFile) {
                throw CommandError(Say("{}: is given twice", DisplayName(*input)));
            }
        }
    }
}

void CheckImageOutput(const std::string& image, bool json) {
    if (json && image == "-") {
        throw CommandError(
            Say("standard output takes the image or the JSON document, not both of them"));
    }
    if (image == "-" && IsTerminal(Stream::kResults)) {
        throw CommandError(
            Say("standard output is a terminal, and an image is no text; name a file for it"));
    }
}

}  // namespace lq::tool
