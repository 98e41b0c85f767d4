#include "tools/lq/project_input.h"

#include <istream>
#include <streambuf>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/command.h"
#include "tools/lq/input.h"
#include "tools/lq/input_buffer.h"
#include "tools/lq/messages.h"
#include "tools/lq/progress.h"

namespace lq::tool {

using host::Say;

namespace {

// Reads bytes in place.
class BytesBuffer : public std::streambuf {
  public:
    explicit BytesBuffer(std::string_view bytes) {
        char* begin = const_cast<char*>(bytes.data());  // only read
        setg(begin, begin, begin + bytes.size());
    }
};

// Hands on what another buffer reads, and shows how much that is.
class CountingBuffer : public std::streambuf {
  public:
    CountingBuffer(std::streambuf& source, Progress& progress)
        : source_(source), progress_(progress) {}

  protected:
    std::streamsize xsgetn(char* to, std::streamsize count) override {
        const std::streamsize got = source_.sgetn(to, count);
        read_ += static_cast<uint64_t>(got);
        progress_.Set(read_);
        return got;
    }
    int_type underflow() override { return source_.sgetc(); }
    int_type uflow() override { return source_.sbumpc(); }

  private:
    std::streambuf& source_;
    Progress& progress_;
    uint64_t read_ = 0;
};

void ReadFrom(std::streambuf& bytes, uint64_t size, const std::string& path, host::Project& project,
              std::vector<host::Report>& reports) {
    const std::string name = DisplayName(path);
    Progress progress(Say("reading {}", name), size);
    CountingBuffer counting(bytes, progress);
    std::istream source(&counting);
    if (!host::ReadPlcopen(source, name, project, reports)) {
        if (reports.empty()) {
            throw CommandError(Say("{}: cannot be read", name));
        }
        const host::Report& report = reports.back();
        throw InputError({report.file, report.line, report.column},
                         Say("error: {}", report.message));
    }
    host::SetProject(&project);
}

}  // namespace

void ReadProject(const std::string& path, host::Project& project,
                 std::vector<host::Report>& reports) {
    InputBuffer bytes(path, kMaxProject);
    try {
        ReadFrom(bytes, bytes.Size(), path, project, reports);
    } catch (const CommandError&) {
        bytes.ThrowFailure();  // says more
        throw;
    }
}

void ReadProject(const std::string& path, std::string_view bytes, host::Project& project,
                 std::vector<host::Report>& reports) {
    BytesBuffer buffer(bytes);
    ReadFrom(buffer, bytes.size(), path, project, reports);
}

int ReadAndReport(const std::string& path, host::Project& project) {
    std::vector<host::Report> reports;
    ReadProject(path, project, reports);
    for (const host::Report& report : reports) {
        PrintMessage(report);
    }
    return reports.empty() ? kDone : kInputHasFaults;
}

std::string ProgramName(const host::Project& project, const host::ProgramInstance& instance) {
    const ID pou = project.FindPou(instance.typeName);
    return host::EncodeUtf8(pou.GetNumber() ? project.NameOf(pou) : instance.typeName);
}

}  // namespace lq::tool
