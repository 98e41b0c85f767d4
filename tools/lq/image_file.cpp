#include "tools/lq/image_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "lq_data/env/lq_base.h"
#include "lq_data/host/text/message.h"
#include "lq_data/line_bytes.h"
#include "tools/lq/command.h"
#include "tools/lq/input.h"
#include "tools/lq/output_file.h"
#include "tools/lq/tables.h"

namespace lq::tool {

using host::Say;

namespace {

// Writes to a file descriptor, with a buffer; the first failure stays.
class DescriptorStream : public STREAM_A {
  public:
    explicit DescriptorStream(int descriptor) : descriptor_(descriptor) {
        buffer_.reserve(2 * kBufferSize);  // pieces are smaller than a buffer
    }

    int32_t GetBlock(void*, int32_t, STREAMERROR*) override { return 0; }
    int32_t PutBlock(const void* bytes, int32_t count, STREAMERROR*) override {
        const auto* from = static_cast<const char*>(bytes);
        buffer_.insert(buffer_.end(), from, from + count);
        return buffer_.size() < kBufferSize || Flush() ? count : 0;
    }

    bool Flush() {
        if (failure_ == 0) {
            failure_ = WriteAll(descriptor_, {buffer_.data(), buffer_.size()});
        }
        buffer_.clear();
        return failure_ == 0;
    }

    int GetFailure() const { return failure_; }

  private:
    static constexpr size_t kBufferSize = size_t{1} << 15;

    int descriptor_;
    int failure_ = 0;
    std::vector<char> buffer_;
};

// A stream that reads bytes which lie in memory; it cannot be written to.
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

[[noreturn]] void ThrowNoImage(const std::string& path, const std::string& reason) {
    throw CommandError(Say("{}: no image of tables: {}", DisplayName(path), reason));
}

// The table lengths must add up to the whole file.
void CheckLengths(std::string_view bytes, const std::string& path) {
    size_t at = 0;
    for (const auto& [id, table] : kTableNames) {
        if (bytes.size() - at < 4) {
            ThrowNoImage(path, Say("it ends before the length of table {}", table));
        }
        const uint32_t length = LoadU32(reinterpret_cast<const unsigned char*>(bytes.data()) + at);
        at += 4;
        if (length > bytes.size() - at) {
            ThrowNoImage(path, Say("table {} has a length of {} bytes, and {} are left", table,
                                   length, bytes.size() - at));
        }
        at += length;
    }
    if (at != bytes.size()) {
        ThrowNoImage(path, Say("{} bytes lie behind the last table", bytes.size() - at));
    }
}

}  // namespace

bool CanBeginImage(std::string_view beginning) {
    return beginning.size() < 4 ||
           LoadU32(reinterpret_cast<const unsigned char*>(beginning.data())) <= kMaxProject;
}

bool IsImage(std::string_view bytes) {
    try {
        CheckLengths(bytes, "");
        return true;
    } catch (const CommandError&) {
        return false;
    }
}

void SaveImage(CgTab& tables, const std::string& path) {
    OutputFile file(path);
    DescriptorStream stream(file.Descriptor());
    const bool saved = tables.Save(stream) != 0;
    if (!stream.Flush() || !saved) {
        CannotWrite(file.Name(), stream.GetFailure() != 0 ? stream.GetFailure() : EIO);
    }
    file.Finish();
}

std::unique_ptr<CgTab> RestoreImage(std::string_view bytes, const std::string& path) {
    CheckLengths(bytes, path);
    auto tables = NewTables();
    BytesStream stream(bytes);
    if (!tables->Restore(stream)) {
        throw CommandError(Say("{}: the tables do not fit into memory", DisplayName(path)));
    }
    for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
        tables->SetPos(static_cast<CgTab::TAB_ID>(id), 0);
    }
    return tables;
}

}  // namespace lq::tool
