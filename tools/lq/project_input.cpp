#include "tools/lq/project_input.h"

#include <algorithm>
#include <istream>
#include <streambuf>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/text_source/text_source.h"
#include "tools/lq/command.h"
#include "tools/lq/encodings.h"
#include "tools/lq/generated_text.h"
#include "tools/lq/image_file.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/progress.h"
#include "tools/lq/source_files.h"
#include "tools/lq/suggestion.h"

namespace lq::tool {

using host::Say;

namespace {

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

// The file's own words, where it was not read to its end.
[[noreturn]] void ThrowUnread(const std::string& name, const std::vector<host::Report>& reports) {
    if (reports.empty()) {
        throw CommandError(Say("{}: cannot be read", name));
    }
    const host::Report& report = reports.back();
    throw InputError({report.file, report.line, report.column},
                     WithCode(host::Severity::kError, host::CheckOf(report), report.message));
}

// What is wrong with a file that is one of many is a report.
void Tell(const SourceFile& source, const CommandError& error, std::vector<host::Report>& reports) {
    const bool isTold =
        !reports.empty() && reports.back().error && reports.back().file == DisplayName(source.path);
    if (!isTold) {
        reports.push_back({DisplayName(source.path), 0, 0, {}, error.what(), 0, true});
    }
}

void ReadFrom(InputBuffer& bytes, InputKind kind, const std::string& path,
              const std::string& encoding, host::Project& project,
              std::vector<host::Report>& reports) {
    const std::string name = DisplayName(path);
    Progress progress(Say("reading {}", name), bytes.Size());
    CountingBuffer counting(bytes, progress);
    std::istream stream(&counting);
    const bool isRead = kind == InputKind::kXml
                            ? host::ReadPlcopen(stream, name, project, reports)
                            : host::ReadText(stream, name, project, reports, CodePageOf(encoding));
    bytes.ThrowFailure();  // what the system said of the file tells more than what a reader did
    if (!isRead) {
        ThrowUnread(name, reports);
    }
    host::SetProject(&project);
}

int Report(const std::vector<host::Report>& reports) {
    for (const host::Report& report : reports) {
        PrintMessage(report);
    }
    return reports.empty() ? kDone : kInputHasFaults;
}

}  // namespace

void ReadFile(const std::string& path, const std::string& encoding, host::Project& project,
              std::vector<host::Report>& reports) {
    InputBuffer source(path, kMaxProject);
    const std::string_view beginning = source.Peek();
    constexpr std::size_t kLength = 4;  // an image begins with one, other files with text
    const InputKind kind = KindOf(beginning);
    if (kind == InputKind::kImage && beginning.size() >= kLength) {
        throw CommandError(Say("{}: is an image, not a project", DisplayName(path)));
    }
    ReadFrom(source, kind, path, encoding, project, reports);
}

void ReadProject(const ProjectFiles& files, host::Project& project,
                 std::vector<host::Report>& reports) {
    const std::vector<SourceFile> sources = FilesOf(files, reports);
    const std::vector<std::string> origins = OriginsOf(sources, files);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const SourceFile& source = sources[i];
        std::vector<host::Report> unheard;
        std::vector<host::Report>& heard =
            source.isLibrary && !files.checkLibraries ? unheard : reports;
        if (!origins[i].empty()) {
            heard.push_back({DisplayName(source.path),
                             0,
                             0,
                             {},
                             Say("was left out: it declares what {} declares", origins[i])});
            continue;
        }
        try {
            ReadFile(source.path, files.encoding, project, heard);
        } catch (const CommandError& error) {
            if (!source.isFound) {
                throw;
            }
            Tell(source, error, heard);
        }
        if (source.isLibrary) {
            project.CountAsLibrary();
        }
    }
    host::SetProject(&project);
}

std::unique_ptr<CgTab> ReadImageOrProject(const ProjectFiles& files, host::Project& project,
                                          std::vector<host::Report>& reports) {
    const std::string& path = files.projects.front();
    if (files.projects.size() + files.others.size() + files.libraries.size() != 1 ||
        IsFolder(path)) {
        ReadProject(files, project, reports);
        return nullptr;
    }
    InputBuffer source(path, kMaxProject);
    const std::string_view beginning = [&] {
        const Progress progress(Say("reading {}", DisplayName(path)));
        return source.Peek();
    }();
    const InputKind kind = KindOf(beginning);
    if (kind != InputKind::kImage && !beginning.empty()) {
        ReadFrom(source, kind, path, files.encoding, project, reports);
        return nullptr;
    }
    const std::string bytes = ReadInput(source, path);
    const Progress progress(Say("restoring {}", DisplayName(path)));
    return RestoreImage(bytes, path);
}

int ReadAndReport(const ProjectFiles& files, host::Project& project) {
    std::vector<host::Report> reports;
    ReadProject(files, project, reports);
    return Report(reports);
}

void RefuseInputAsOutput(const ProjectFiles& files, const std::string& output) {
    std::vector<host::Report> reports;
    for (const SourceFile& source : FilesOf(files, reports)) {
        RefuseInputAsOutput(source.path, output);
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

void ThrowNoUnit(const ProjectFiles& files, const host::Project& project, const std::string& name,
                 bool withTypes) {
    const host::Pou* known = project.GetPou(project.FindAnyPou(DecodeArgument(name)));
    if (known && known->isStandard) {
        throw InputError(WholeOf(files),
                         Say("'{}' is the standard's, and no file declares it", name));
    }
    Suggestion nearest(name);
    for (const host::Pou& pou : project.Pous()) {
        if (!pou.isStandard) {
            nearest.Consider(host::EncodeUtf8(pou.name));
        }
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
    if (auto tables = ReadImageOrProject(files, project, reports)) {
        return {std::move(tables), false, {}, kDone, {}};
    }
    Translation translation = Translate(project);
    const int status = Report(reports);
    PrintRefusals(translation.refusals);
    const bool isWhole = translation.refusals.empty();
    return {std::move(translation.tables), true, std::move(translation.refusals),
            isWhole ? status : kInputHasFaults, std::move(reports)};
}

}  // namespace lq::tool
