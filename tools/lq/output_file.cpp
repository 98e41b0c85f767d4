#include "tools/lq/output_file.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/escape.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr int kMaxLinks = 40;  // as many as the system follows
constexpr mode_t kModeBits = 07777;

constexpr const char* kTemporaryPrefix = ".lq-";
constexpr const char* kHexDigits = "0123456789abcdef";
constexpr size_t kRandomBytes = 8;

// Read by handlers that may run before the first static object is made and after the last is
// destroyed, so it is neither; what it points at is never freed.
constinit const char* savedNote = "";

std::atomic<const char*> unfinished = nullptr;  // the temporary file's name
static_assert(std::atomic<const char*>::is_always_lock_free);

// Follows symbolic links to the place where the file is to be written, which need not exist yet.
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

// A new name in the folder. It is not made from the target's, which may be as long as names can be
// already. By its form the next run knows that it is a temporary file of this program.
std::string TemporaryName(const std::string& folder) {
    unsigned char random[kRandomBytes];
    if (getentropy(random, sizeof(random)) != 0) {
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        std::memcpy(random, &now, sizeof(random));
    }
    std::string name = kTemporaryPrefix;
    for (const unsigned char byte : random) {
        name += kHexDigits[byte >> 4];
        name += kHexDigits[byte & 0xF];
    }
    return (std::filesystem::path(folder) / name).string();
}

bool IsTemporaryName(std::string_view name) {
    constexpr std::string_view kPrefix = kTemporaryPrefix;
    return name.size() == kPrefix.size() + 2 * kRandomBytes && name.starts_with(kPrefix) &&
           name.find_first_not_of(kHexDigits, kPrefix.size()) == name.npos;
}

// Removes a temporary file that no living program has locked: whoever made it was killed.
void RemoveIfDead(int folder, const char* name) {
    const int file = openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) {
        return;
    }
    struct stat opened = {};
    struct stat named = {};
    const bool isDead = fstat(file, &opened) == 0 && S_ISREG(opened.st_mode) &&
                        flock(file, LOCK_EX | LOCK_NB) == 0 &&
                        fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
                        named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
    if (isDead) {
        unlinkat(folder, name, 0);
    }
    close(file);
}

void RemoveDeadTemporaries(const std::string& path) {
    DIR* const folder = opendir(path.c_str());
    if (!folder) {
        return;
    }
    while (const dirent* entry = readdir(folder)) {
        if (IsTemporaryName(entry->d_name)) {
            RemoveIfDead(dirfd(folder), entry->d_name);
        }
    }
    closedir(folder);
}

// The path in /proc through which an open file without a name can be linked to one.
std::string PathOf(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

// A file in the folder that has no name, and is gone with its last descriptor; -1 where the file
// system has no such files, or they cannot be given a name.
int OpenUnnamed(const std::string& folder) {
    const int file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (file >= 0 && access(PathOf(file).c_str(), F_OK) != 0) {
        close(file);
        return -1;
    }
    return file;
}

// Syncs the folder, so that the new name outlasts a loss of power, too. 0, or the system's error.
// That the user may not read the folder, or that the file system cannot sync it, counts as no
// error.
int SyncFolder(const std::string& path) {
    const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) {
        return 0;
    }
    const int error = fsync(folder) == 0 ? 0 : errno;
    close(folder);
    return error == EINVAL || error == ENOTSUP || error == EROFS ? 0 : error;
}

}  // namespace

void RemoveUnfinishedFile() noexcept {
    if (const char* file = unfinished) {
        unlink(file);
    }
}

const char* SavedNote() noexcept {
    return savedNote;
}

void CannotWrite(const std::string& path, int error) {
    throw CommandError(Say("{}: cannot be written: {}", path, std::strerror(error)));
}

int WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written == 0) {
            return EIO;  // a file that takes no bytes and names no error would be tried for ever
        }
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
        unfinished = nullptr;
        CannotWrite(name_, error);
    }
}

OutputFile::~OutputFile() {
    if (descriptor_ > STDERR_FILENO) {
        close(descriptor_);
    }
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
    }
    if (!isWhole_) {
        unfinished = nullptr;
    }
}

void OutputFile::CreateTemporary() {
    folder_ = std::filesystem::path(target_).parent_path().string();
    if (folder_.empty()) {
        folder_ = ".";
    }
    RemoveDeadTemporaries(folder_);
    isWhole_ = false;
    descriptor_ = OpenUnnamed(folder_);
    if (descriptor_ < 0) {
        descriptor_ = CreateNamed();
    } else {
        flock(descriptor_, LOCK_EX | LOCK_NB);  // for the name that Finish may give it
    }
}

// Registers the name before the file is created: a signal may come between the two.
void OutputFile::NameTemporary() {
    unfinished = nullptr;
    temporary_ = TemporaryName(folder_);
    unfinished = temporary_.c_str();
}

// The lock says that the program which made the file still runs. Between the creation and the lock
// another run may have found the file without one and removed it; then it is made again.
int OutputFile::CreateNamed() {
    for (;;) {
        NameTemporary();
        const int file = open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (file < 0 && errno == EEXIST) {
            continue;
        }
        if (file < 0) {
            const int error = errno;
            temporary_.clear();
            errno = error;
            return file;
        }
        flock(file, LOCK_EX);
        struct stat info = {};
        if (fstat(file, &info) != 0 || info.st_nlink > 0) {
            return file;
        }
        close(file);
    }
}

// Gives the new file the owner and mode of the old one, as far as the user may; without an old file
// it gets the mode that any new file has.
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

// Copies the bytes to a file with a name, for systems that made a file without a name and then
// cannot give it one. 0, or the system's error.
int OutputFile::CopyToNamed() {
    const int unnamed = descriptor_;
    const int named = CreateNamed();
    if (named < 0) {
        return errno;
    }
    descriptor_ = named;
    std::string piece(size_t{1} << 16, '\0');
    off_t at = 0;
    ssize_t got = 0;
    int error = 0;
    while (error == 0 && (got = pread(unnamed, piece.data(), piece.size(), at)) > 0) {
        error = WriteAll(named, {piece.data(), static_cast<size_t>(got)});
        at += got;
    }
    error = got < 0 ? errno : error;
    close(unnamed);
    if (error != 0) {
        return error;
    }
    CopyOwnerAndMode();
    return fsync(named) == 0 ? 0 : errno;
}

// Gives the temporary file a name, if it has none: the target's if there is no such file. An old
// file can only be replaced by one with a name of its own, which is there for a moment. 0, or the
// system's error.
int OutputFile::NameUnnamed() {
    const std::string unnamed = PathOf(descriptor_);
    const auto link = [&unnamed](const std::string& name) {
        const int failed =
            linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW);
        return failed != 0 ? errno : 0;
    };
    int error = link(target_);
    if (error == 0) {
        return 0;
    }
    while (error == EEXIST) {
        NameTemporary();
        error = link(temporary_);
    }
    return error == 0 ? 0 : CopyToNamed();
}

// 0, or the system's error.
int OutputFile::PutInPlace() {
    const int error = temporary_.empty() ? NameUnnamed() : 0;
    if (error != 0 || temporary_.empty()) {
        return error;
    }
    return rename(temporary_.c_str(), target_.c_str()) == 0 ? 0 : errno;
}

void OutputFile::Finish() {
    if (isWhole_) {
        return;
    }
    CopyOwnerAndMode();
    const std::string note = OneLine(Say("; {} was saved", name_));
    auto kept = std::make_unique<char[]>(note.size() + 1);
    note.copy(kept.get(), note.size());
    if (const int error = fsync(descriptor_) != 0 ? errno : PutInPlace()) {
        CannotWrite(name_, error);
    }
    unfinished = nullptr;
    temporary_.clear();
    isWhole_ = true;
    if (const int error = SyncFolder(folder_)) {
        CannotWrite(name_, error);
    }
    savedNote = kept.release();
}

}  // namespace lq::tool
