#include "tools/lq/command.h"

#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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
    std::set<std::string> names;
    std::set<std::pair<dev_t, ino_t>> files;
    for (const std::string& input : inputs) {
        struct stat info = {};
        const bool isFile = IsOrdinaryFile(input, STDIN_FILENO, info);
        if (!names.insert(input).second ||
            (isFile && !files.insert({info.st_dev, info.st_ino}).second)) {
            throw CommandError(Say("{}: is given twice", DisplayName(input)));
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
