#include "tools/lq/output_file.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "host/text/message.h"
#include "tools/lq/command.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr int kMaxLinks = 40;  // as many as the system follows
constexpr mode_t kModeBits = 07777;

std::atomic<const char*> unfinished = nullptr;  // the temporary file's name
static_assert(std::atomic<const char*>::is_always_lock_free);

void EndBySignal(int signal) {
    RemoveUnfinishedFile();
    std::raise(signal);  // ends the program: SA_RESETHAND has brought the default back
}

// Removes the file of that name when a signal ends the program; null for none. Signals that the
// parent process had ignored stay so.
void RemoveOnSignal(const char* path) {
    unfinished = path;
    struct sigaction ours = {};
    ours.sa_handler = path ? EndBySignal : SIG_DFL;
    ours.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        struct sigaction old = {};
        sigaction(signal, nullptr, &old);
        if (old.sa_handler != SIG_IGN) {
            sigaction(signal, &ours, nullptr);
        }
    }
}

// Where a file is to be written: behind the links, even if there is nothing yet.
std::string FollowLinks(const std::string& path) {
    std::filesystem::path target = path;
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(target, error); ++links) {
        if (links == kMaxLinks) {
            CannotWrite(path, ELOOP);
        }
        target = target.parent_path() / std::filesystem::read_symlink(target, error);
    }
    return target.string();
}

}  // namespace

void RemoveUnfinishedFile() noexcept {
    if (const char* file = unfinished) {
        unlink(file);
    }
}

void CannotWrite(const std::string& path, int error) {
    throw CommandError(Say("{}: cannot be written: {}", path, std::strerror(error)));
}

int WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        bytes.remove_prefix(written > 0 ? static_cast<size_t>(written) : 0);
    }
    return 0;
}

OutputFile::OutputFile(const std::string& path) : name_(path) {
    if (path == "-") {
        name_ = "(standard output)";
        descriptor_ = STDOUT_FILENO;
        return;
    }
    target_ = FollowLinks(path);
    struct stat info = {};
    const bool exists = stat(target_.c_str(), &info) == 0;
    if (exists && S_ISDIR(info.st_mode)) {
        throw CommandError(Say("{}: is a folder, not a file", path));
    }
    if (exists && !S_ISREG(info.st_mode)) {
        descriptor_ = open(target_.c_str(), O_WRONLY | O_CLOEXEC);
    } else if (!exists || access(target_.c_str(), W_OK) == 0) {
        CreateTemporary();
    }
    if (descriptor_ < 0) {
        const int error = errno;
        RemoveOnSignal(nullptr);
        CannotWrite(name_, error);
    }
}

OutputFile::~OutputFile() {
    if (descriptor_ > STDERR_FILENO) {
        close(descriptor_);
    }
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
        RemoveOnSignal(nullptr);
    }
}

// The name is shorter than it could be, since the target's may be as long as names can be.
void OutputFile::CreateTemporary() {
    temporary_ = (std::filesystem::path(target_).parent_path() / ".lq.XXXXXX").string();
    RemoveOnSignal(temporary_.c_str());  // before the file is there, lest a signal comes between
    descriptor_ = mkostemp(temporary_.data(), O_CLOEXEC);
}

// Those of the old file, as far as the system lets the user have them; else those of a new one.
void OutputFile::CopyOwnerAndMode() {
    struct stat old = {};
    mode_t mode = 0;
    if (stat(target_.c_str(), &old) == 0) {
        const bool isOwned = fchown(descriptor_, old.st_uid, old.st_gid) == 0;
        mode = old.st_mode & (isOwned ? kModeBits : 0777);
    } else {
        const mode_t mask = umask(0);
        umask(mask);
        mode = 0666 & ~mask;
    }
    if (fchmod(descriptor_, mode) != 0) {
        CannotWrite(name_, errno);
    }
}

void OutputFile::Finish() {
    if (temporary_.empty()) {
        return;
    }
    CopyOwnerAndMode();
    if (fsync(descriptor_) != 0 || rename(temporary_.c_str(), target_.c_str()) != 0) {
        CannotWrite(name_, errno);
    }
    RemoveOnSignal(nullptr);
    temporary_.clear();
}

}  // namespace lq::tool
