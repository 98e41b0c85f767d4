#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lq_data/detail/in_order.h"
#include "lq_data/host/diff/diff.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/image_project.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/project_input.h"
#include "tools/lq/translation.h"

namespace lq::tool {

using host::Aspect;
using host::Change;
using host::Difference;
using host::EncodeUtf8;
using host::Say;
using host::Subject;

namespace {

// -- Rows -----------------------------------------------------------------------------------------

constexpr RowOf<Change, const char*> kChanges[] = {{Change::kAdded, "added"},
                                                   {Change::kRemoved, "removed"},
                                                   {Change::kChanged, "changed"},
                                                   {Change::kMoved, "moved"}};
static_assert(AreInOrder(kChanges, Change::kMoved));

constexpr RowOf<Subject, const char*> kSubjects[] = {
    {Subject::kProject, "project"},
    {Subject::kType, "type"},
    {Subject::kMember, "member"},
    {Subject::kUnit, "unit"},
    {Subject::kVariable, "variable"},
    {Subject::kBody, "body"},
    {Subject::kLabel, "label"},
    {Subject::kJump, "jump"},
    {Subject::kCall, "call"},
    {Subject::kList, "list"},
    {Subject::kConfiguration, "configuration"},
    {Subject::kResource, "resource"},
    {Subject::kTask, "task"},
    {Subject::kProgram, "program"},
};
static_assert(AreInOrder(kSubjects, Subject::kProgram));

constexpr RowOf<Aspect, const char*> kAspects[] = {
    {Aspect::kNone, ""},
    {Aspect::kName, "name"},
    {Aspect::kKind, "kind"},
    {Aspect::kType, "type"},
    {Aspect::kSection, "section"},
    {Aspect::kAddress, "address"},
    {Aspect::kValue, "value"},
    {Aspect::kComment, "comment"},
    {Aspect::kSecondComment, "comment2"},
    {Aspect::kInterfaceComment, "interface comment"},
    {Aspect::kEnable, "EN/ENO"},
    {Aspect::kLanguage, "language"},
    {Aspect::kCode, "code"},
    {Aspect::kCondition, "condition"},
    {Aspect::kPriority, "priority"},
    {Aspect::kInterval, "interval"},
    {Aspect::kEvent, "event"},
    {Aspect::kTask, "task"},
    {Aspect::kList, "list"},
    {Aspect::kPosition, "position"},
};
static_assert(AreInOrder(kAspects, Aspect::kPosition));

template <typename Enumeration, size_t kCount>
const char* WordFor(const RowOf<Enumeration, const char*> (&rows)[kCount], Enumeration id) {
    return rows[static_cast<size_t>(id)].value;
}

// What both forms begin with.
Row BeginningOf(const Difference& difference) {
    return {EncodeUtf8(difference.path), WordFor(kSubjects, difference.subject),
            EncodeUtf8(difference.name), WordFor(kChanges, difference.change),
            WordFor(kAspects, difference.aspect)};
}

// -- Forms ----------------------------------------------------------------------------------------

class Output {
  public:
    Output() = default;
    virtual ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    virtual void Take(const Difference& difference) = 0;
    virtual void End() = 0;
};

// Nothing when nothing is different.
class TextOutput final : public Output {
  public:
    void Take(const Difference& difference) override {
        Row row = BeginningOf(difference);
        for (const auto* side : {&difference.before, &difference.after}) {
            row.emplace_back(EncodeUtf8(side->text));
        }
        for (const auto* side : {&difference.before, &difference.after}) {
            row.emplace_back(ToText(Place{EncodeUtf8(side->file), side->line, side->column}));
        }
        if (!printer_) {
            printer_.emplace("", std::vector<Column>{{"path"},
                                                     {"what"},
                                                     {"name"},
                                                     {"change"},
                                                     {"aspect"},
                                                     {"old"},
                                                     {"new"},
                                                     {"old place"},
                                                     {"new place"}});
        }
        printer_->Take(CellsOf(row));
    }

    void End() override {
        if (printer_) {
            printer_->End();
        }
    }

  private:
    std::optional<TablePrinter> printer_;
};

class JsonOutput final : public Output {
  public:
    explicit JsonOutput(const DiffOptions& options)
        : rows_({{"path"},
                 {"what"},
                 {"name"},
                 {"change"},
                 {"aspect"},
                 {"old"},
                 {"old file"},
                 {"old line"},
                 {"old column"},
                 {"new"},
                 {"new file"},
                 {"new line"},
                 {"new column"}},
                2) {
        Json document = NewDocument();
        document["old"] = DisplayName(options.before);
        document["new"] = DisplayName(options.after);
        PrintText(OpenJsonPiece(0, document) + ",\n" + JsonIndent(1) + "\"differences\": ");
        list_.emplace(1);
    }

    void Take(const Difference& difference) override {
        Row row = BeginningOf(difference);
        for (const auto* side : {&difference.before, &difference.after}) {
            const bool isThere = difference.change !=
                                 (side == &difference.before ? Change::kAdded : Change::kRemoved);
            const auto number = [](uint32_t n) { return n == 0 ? Cell() : Cell(int64_t{n}); };
            row.push_back(isThere ? Cell(EncodeUtf8(side->text)) : Cell());
            row.push_back(side->file.empty() ? Cell() : Cell(EncodeUtf8(side->file)));
            row.push_back(number(side->line));
            row.push_back(number(side->column));
        }
        list_->Next();
        text_.clear();
        rows_.Open(text_, row);
        rows_.Close(text_);
        PrintText(text_);
    }

    void End() override {
        list_->End();
        PrintText("\n}\n");
    }

  private:
    JsonRows rows_;
    std::optional<JsonList> list_;
    std::string text_;
};

// -- Inputs ---------------------------------------------------------------------------------------

struct Side {
    Side(const std::string& file, const ProjectFiles& reading) : path(file), files(reading) {
        files.projects = {file};
    }

    void Read() {
        project.KeepCode();
        std::vector<host::Report> reports;
        tables = ReadImageOrProject(files, project, reports);
        for (const host::Report& report : reports) {
            PrintMessage(report);
        }
    }

    // As it is compared with an image.
    void Reduce() {
        const bool isImage = tables != nullptr;
        if (!isImage) {
            Translation translation = Translate(project);
            PrintRefusals(translation.refusals);
            tables = std::move(translation.tables);
        }
        FillFromTables(*tables, DisplayName(path), reduced);
        if (isImage) {
            PrintMessage(Place{DisplayName(path)},
                         Say("an image keeps no comments, members of types, names of the types of "
                             "variables, calls, configurations and tasks: these are not compared"));
        }
    }

    const std::string& path;
    ProjectFiles files;
    host::Project project;
    std::unique_ptr<CgTab> tables;
    host::Project reduced;
};

// The process ends with the command: what was read is not taken down.
Side& Keep(const std::string& path, const ProjectFiles& reading) {
    return *new Side(path, reading);
}

}  // namespace

int RunDiff(const DiffOptions& options) {
    if (options.before == "-" && options.after == "-") {
        RefuseInputTwice({options.before, options.after});
    }
    static Side& before = Keep(options.before, options.reading);
    static Side& after = Keep(options.after, options.reading);
    before.Read();
    after.Read();
    const bool hasImage = before.tables || after.tables;
    if (hasImage) {
        before.Reduce();
        after.Reduce();
    }
    std::unique_ptr<Output> output;
    if (options.json) {
        output = std::make_unique<JsonOutput>(options);
    } else {
        output = std::make_unique<TextOutput>();
    }
    bool isDifferent = false;
    host::ForEachDifference(hasImage ? before.reduced : before.project,
                            hasImage ? after.reduced : after.project,
                            [&](const Difference& difference) {
                                output->Take(difference);
                                isDifferent = true;
                            });
    output->End();
    return isDifferent ? kInputHasFaults : kDone;
}

}  // namespace lq::tool
