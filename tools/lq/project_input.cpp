#include "tools/lq/project_input.h"

#include <istream>
#include <streambuf>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/command.h"
#include "tools/lq/image_file.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/progress.h"
#include "tools/lq/suggestion.h"

namespace lq::tool {

using host::Say;

namespace {

// A stream buffer over bytes that lie in memory.
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

void ReadNoImage(const std::string& path, host::Project& project,
                 std::vector<host::Report>& reports) {
    InputBuffer source(path, kMaxProject);
    const std::string_view beginning = source.Peek();
    constexpr std::size_t kLength = 4;  // an image begins with one, other files with text
    if (beginning.size() >= kLength && CanBeginImage(beginning) && !LooksLikeXml(beginning)) {
        throw CommandError(Say("{}: is an image, not a project", DisplayName(path)));
    }
    ReadProject(source, path, project, reports);
}

}  // namespace

void ReadProject(const std::string& path, host::Project& project,
                 std::vector<host::Report>& reports) {
    InputBuffer bytes(path, kMaxProject);
    ReadProject(bytes, path, project, reports);
}

void ReadProject(InputBuffer& bytes, const std::string& path, host::Project& project,
                 std::vector<host::Report>& reports) {
    try {
        ReadFrom(bytes, bytes.Size(), path, project, reports);
    } catch (const CommandError&) {
        bytes.ThrowFailure();  // what the system said tells more than what the parser did
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

int ReadAndReport(const std::vector<std::string>& projects,
                  const std::vector<std::string>& libraries, bool checkLibraries,
                  host::Project& project) {
    std::vector<std::string> inputs = projects;
    inputs.insert(inputs.end(), libraries.begin(), libraries.end());
    RefuseInputTwice(inputs);
    int status = kDone;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const bool isLibrary = i >= projects.size();
        std::vector<host::Report> reports;
        ReadNoImage(inputs[i], project, reports);
        if (isLibrary) {
            project.CountAsLibrary();
        }
        if (isLibrary && !checkLibraries) {
            continue;
        }
        for (const host::Report& report : reports) {
            PrintMessage(report);
            status = kInputHasFaults;
        }
    }
    return status;
}

std::string NoSuchUnit(const host::Project& project, const std::string& name, bool withTypes) {
    Suggestion nearest(name);
    for (const host::Pou& pou : project.Pous()) {
        nearest.Consider(host::EncodeUtf8(pou.name));
    }
    for (const host::DataType& type : project.DataTypes()) {
        if (withTypes) {
            nearest.Consider(host::EncodeUtf8(type.name));
        }
    }
    return Say(withTypes ? host::Message("no unit or data type is called '{}'")
                         : host::Message("no unit is called '{}'"),
               name) +
           nearest.Text();
}

std::string ProgramName(const host::Project& project, const host::ProgramInstance& instance) {
    const ID pou = project.FindPou(instance.typeName);
    return host::EncodeUtf8(pou.GetNumber() ? project.NameOf(pou) : instance.typeName);
}

TableInput ReadTables(const std::string& path) {
    CurrentProject current;
    return ReadTables(path, current.project);
}

TableInput ReadTables(const std::string& path, host::Project& project) {
    std::vector<host::Report> reports;
    InputBuffer source(path, kMaxProject);
    const std::string_view beginning = [&] {
        const Progress progress(Say("reading {}", DisplayName(path)));
        return source.Peek();
    }();
    if (LooksLikeXml(beginning) && !CanBeginImage(beginning)) {
        ReadProject(source, path, project, reports);  // piece by piece, not held as a whole
    } else {
        const std::string bytes = ReadInput(source, path);
        if (IsImage(bytes) || !LooksLikeXml(bytes)) {
            const Progress progress(Say("restoring {}", DisplayName(path)));
            return {RestoreImage(bytes, path), false, {}, kDone, {}};
        }
        ReadProject(path, bytes, project, reports);
    }
    Translation translation = Translate(project);
    for (const host::Report& report : reports) {
        PrintMessage(report);
    }
    PrintRefusals(DisplayName(path), translation.refusals);
    const bool isFine = reports.empty() && translation.refusals.empty();
    return {std::move(translation.tables), true, std::move(translation.refusals),
            isFine ? kDone : kInputHasFaults, std::move(reports)};
}

}  // namespace lq::tool
