#include "tools/lq/image_file.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "cgtab/bytes.h"
#include "lq_base.h"
#include "tools/lq/command.h"
#include "tools/lq/input.h"
#include "tools/lq/tables.h"

namespace lq::tool {

namespace {

// Writes to a file descriptor, with a buffer; the first failure stays.
class DescriptorStream : public STREAM_A {
  public:
    explicit DescriptorStream(int descriptor) : descriptor_(descriptor) {}

    int32_t GetBlock(void*, int32_t, STREAMERROR*) override { return 0; }
    int32_t PutBlock(const void* bytes, int32_t count, STREAMERROR*) override {
        const auto* from = static_cast<const char*>(bytes);
        buffer_.insert(buffer_.end(), from, from + count);
        return buffer_.size() < kBufferSize || Flush() ? count : 0;
    }

    bool Flush() {
        size_t done = 0;
        while (failure_ == 0 && done < buffer_.size()) {
            const ssize_t n = write(descriptor_, buffer_.data() + done, buffer_.size() - done);
            if (n < 0 && errno != EINTR) {
                failure_ = errno;
            }
            done += n > 0 ? static_cast<size_t>(n) : 0;
        }
        buffer_.clear();
        return failure_ == 0;
    }

    int GetFailure() const { return failure_; }

  private:
    static constexpr size_t kBufferSize = size_t{1} << 16;

    int descriptor_;
    int failure_ = 0;
    std::vector<char> buffer_;
};

// Reads from memory.
class BytesStream : public STREAM_A {
  public:
    explicit BytesStream(std::string_view bytes) : bytes_(bytes) {}

    int32_t GetBlock(void* buffer, int32_t count, STREAMERROR*) override {
        const size_t n = std::min(bytes_.size(), static_cast<size_t>(count));
        std::memcpy(buffer, bytes_.data(), n);
        bytes_.remove_prefix(n);
        return static_cast<int32_t>(n);
    }
    int32_t PutBlock(const void*, int32_t, STREAMERROR*) override { return 0; }

  private:
    std::string_view bytes_;
};

[[noreturn]] void CannotWrite(const std::string& path, int error) {
    throw CommandError(path + ": cannot be written: " + std::strerror(error));
}

// Removes the file of that name when a signal ends the program; null for none.
void RemoveOnSignal(const char* path) {
    static std::atomic<const char*> unfinished = nullptr;
    static_assert(std::atomic<const char*>::is_always_lock_free);
    unfinished = path;
    for (const int signal : {SIGINT, SIGTERM}) {
        std::signal(
            signal, !path ? SIG_DFL : [](int caught) {
                if (const char* file = unfinished) {
                    unlink(file);
                }
                std::signal(caught, SIG_DFL);
                std::raise(caught);
            });
    }
}

// The file that is written until it is whole; removed unless it was put in place.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& target) : target_(target), path_(target + ".XXXXXX") {
        descriptor_ = mkostemp(path_.data(), O_CLOEXEC);
        if (descriptor_ < 0) {
            CannotWrite(target_, errno);
        }
        RemoveOnSignal(path_.c_str());
    }
    ~TemporaryFile() {
        if (descriptor_ >= 0) {
            close(descriptor_);
            unlink(path_.c_str());
        }
        RemoveOnSignal(nullptr);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int Descriptor() const { return descriptor_; }

    void PutInPlace() {
        const mode_t mask = umask(0);
        umask(mask);
        if (fchmod(descriptor_, 0666 & ~mask) != 0 || fsync(descriptor_) != 0 ||
            rename(path_.c_str(), target_.c_str()) != 0) {
            CannotWrite(target_, errno);
        }
        const int closed = close(descriptor_);
        descriptor_ = -1;
        if (closed != 0) {
            CannotWrite(target_, errno);
        }
    }

  private:
    std::string target_;
    std::string path_;
    int descriptor_ = -1;
};

void SaveTo(CgTab& tables, int descriptor, const std::string& path) {
    DescriptorStream stream(descriptor);
    const bool saved = tables.Save(stream) != 0;
    if (!stream.Flush() || !saved) {
        CannotWrite(path, stream.GetFailure() != 0 ? stream.GetFailure() : EIO);
    }
}

// The table lengths must add up to the whole file.
void CheckLengths(std::string_view bytes, const std::string& path) {
    size_t at = 0;
    for (const std::string_view table : kTableNames) {
        const std::string where = DisplayName(path) + ": no image of tables: ";
        if (bytes.size() - at < 4) {
            throw CommandError(where + "it ends before the length of table " + std::string(table));
        }
        const uint32_t length =
            cgtab::LoadU32(reinterpret_cast<const unsigned char*>(bytes.data()) + at);
        at += 4;
        if (length > bytes.size() - at) {
            throw CommandError(where + "table " + std::string(table) + " has a length of " +
                               std::to_string(length) + " bytes, and " +
                               std::to_string(bytes.size() - at) + " are left");
        }
        at += length;
    }
    if (at != bytes.size()) {
        throw CommandError(DisplayName(path) + ": no image of tables: " +
                           std::to_string(bytes.size() - at) + " bytes lie behind the last table");
    }
}

}  // namespace

bool IsImage(std::string_view bytes) {
    try {
        CheckLengths(bytes, "");
        return true;
    } catch (const CommandError&) {
        return false;
    }
}

void SaveImage(CgTab& tables, const std::string& path) {
    if (path == "-") {
        SaveTo(tables, STDOUT_FILENO, "(standard output)");
        return;
    }
    struct stat info = {};
    if (stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
        if (S_ISDIR(info.st_mode)) {
            throw CommandError(path + ": is a folder, not a file");
        }
        const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);  // a device or a pipe
        if (descriptor < 0) {
            CannotWrite(path, errno);
        }
        SaveTo(tables, descriptor, path);
        close(descriptor);
        return;
    }
    TemporaryFile file(path);
    SaveTo(tables, file.Descriptor(), path);
    file.PutInPlace();
}

std::unique_ptr<CgTab> RestoreImage(std::string_view bytes, const std::string& path) {
    CheckLengths(bytes, path);
    auto tables = NewTables();
    BytesStream stream(bytes);
    if (!tables->Restore(stream)) {
        throw CommandError(DisplayName(path) + ": the tables do not fit into memory");
    }
    for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
        tables->SetPos(static_cast<CgTab::TAB_ID>(id), 0);
    }
    return tables;
}

}  // namespace lq::tool
