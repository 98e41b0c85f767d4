#include "tools/lq/project_input.h"

#include <algorithm>
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

// What the system said of the file tells more than what the parser did.
void ReadFrom(InputBuffer& bytes, const std::string& path, host::Project& project,
              std::vector<host::Report>& reports) {
    try {
        ReadFrom(bytes, bytes.Size(), path, project, reports);
    } catch (const CommandError&) {
        bytes.ThrowFailure();
        throw;
    }
}

void ReadNoImage(const std::string& path, host::Project& project,
                 std::vector<host::Report>& reports) {
    InputBuffer source(path, kMaxProject);
    const std::string_view beginning = source.Peek();
    constexpr std::size_t kLength = 4;  // an image begins with one, other files with text
    if (beginning.size() >= kLength && CanBeginImage(beginning) && !LooksLikeXml(beginning)) {
        throw CommandError(Say("{}: is an image, not a project", DisplayName(path)));
    }
    ReadFrom(source, path, project, reports);
}

// Libraries last: what both have is the project's.
std::vector<std::string> AllOf(const ProjectFiles& files) {
    std::vector<std::string> all = files.projects;
    all.insert(all.end(), files.others.begin(), files.others.end());
    all.insert(all.end(), files.libraries.begin(), files.libraries.end());
    return all;
}

int Report(const std::vector<host::Report>& reports) {
    for (const host::Report& report : reports) {
        PrintMessage(report);
    }
    return reports.empty() ? kDone : kInputHasFaults;
}

}  // namespace

// Whether the bytes begin with some that are letters, and not XML: an image has lengths there.
bool LooksLikeText(std::string_view bytes) {
    constexpr std::size_t kEnough = 16;
    const auto isText = [](char c) {
        return (c >= ' ' && c <= '~') || c == '\t' || c == '\n' || c == '\r';
    };
    const std::string_view beginning = bytes.substr(0, kEnough);
    return beginning.size() == kEnough && std::ranges::all_of(beginning, isText) &&
           !LooksLikeXml(bytes);
}

std::unique_ptr<CgTab> ReadImageOrProject(const std::string& path, host::Project& project,
                                          std::vector<host::Report>& reports) {
    InputBuffer source(path, kMaxProject);
    const std::string_view beginning = [&] {
        const Progress progress(Say("reading {}", DisplayName(path)));
        return source.Peek();
    }();
    if (LooksLikeXml(beginning) && !CanBeginImage(beginning)) {
        ReadFrom(source, path, project, reports);  // piece by piece, not held as a whole
        return nullptr;
    }
    const std::string bytes = ReadInput(source, path);
    if (LooksLikeText(bytes)) {
        throw CommandError(
            Say("{}: is neither a project nor an image of tables", DisplayName(path)));
    }
    if (IsImage(bytes) || !LooksLikeXml(bytes)) {
        const Progress progress(Say("restoring {}", DisplayName(path)));
        return RestoreImage(bytes, path);
    }
    BytesBuffer buffer(bytes);
    ReadFrom(buffer, bytes.size(), path, project, reports);
    return nullptr;
}

void ReadProject(const ProjectFiles& files, host::Project& project,
                 std::vector<host::Report>& reports) {
    const std::vector<std::string> all = AllOf(files);
    RefuseInputTwice(all);
    const std::size_t own = all.size() - files.libraries.size();
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::vector<host::Report> reportsOfLibrary;
        const bool isSilent = i >= own && !files.checkLibraries;
        ReadNoImage(all[i], project, isSilent ? reportsOfLibrary : reports);
        if (i >= own) {
            project.CountAsLibrary();
        }
    }
}

int ReadAndReport(const ProjectFiles& files, host::Project& project) {
    std::vector<host::Report> reports;
    ReadProject(files, project, reports);
    return Report(reports);
}

void RefuseInputAsOutput(const ProjectFiles& files, const std::string& output) {
    for (const std::string& path : AllOf(files)) {
        RefuseInputAsOutput(path, output);
    }
}

Place WholeOf(const ProjectFiles& files) {
    const bool isOne = files.projects.size() + files.others.size() == 1;
    return {isOne ? DisplayName(files.projects.front()) : "lq"};
}

void NameFiles(const ProjectFiles& files, Json& document) {
    document["files"] = Json::array();
    document["libraries"] = Json::array();
    for (const auto* list : {&files.projects, &files.others, &files.libraries}) {
        Json& member = document[list == &files.libraries ? "libraries" : "files"];
        for (const std::string& path : *list) {
            member.push_back(DisplayName(path));
        }
    }
}

std::string FileNameOf(const host::Project& project, ID id) {
    const host::SourceFile* file = project.FileOf(id);
    return file ? host::EncodeUtf8(file->name) : "";
}

void ThrowNoUnit(const ProjectFiles& files, const host::Project& project, const std::string& name,
                 bool withTypes) {
    Suggestion nearest(name);
    for (const host::Pou& pou : project.Pous()) {
        nearest.Consider(host::EncodeUtf8(pou.name));
    }
    for (const host::DataType& type : project.DataTypes()) {
        if (withTypes) {
            nearest.Consider(host::EncodeUtf8(type.name));
        }
    }
    throw InputError(WholeOf(files),
                     Say(withTypes ? host::Message("no unit or data type is called '{}'")
                                   : host::Message("no unit is called '{}'"),
                         name) +
                         nearest.Text());
}

std::string ProgramName(const host::Project& project, const host::ProgramInstance& instance) {
    const ID pou = project.FindPou(instance.typeName);
    return host::EncodeUtf8(pou.GetNumber() ? project.NameOf(pou) : instance.typeName);
}

TableInput ReadTables(const ProjectFiles& files, host::Project& project) {
    std::vector<host::Report> reports;
    if (files.projects.size() == 1 && files.libraries.empty()) {
        if (auto tables = ReadImageOrProject(files.projects.front(), project, reports)) {
            return {std::move(tables), false, {}, kDone, {}};
        }
    } else {
        ReadProject(files, project, reports);
    }
    Translation translation = Translate(project);
    const int status = Report(reports);
    PrintRefusals(translation.refusals);
    const bool isWhole = translation.refusals.empty();
    return {std::move(translation.tables), true, std::move(translation.refusals),
            isWhole ? status : kInputHasFaults, std::move(reports)};
}

}  // namespace lq::tool
