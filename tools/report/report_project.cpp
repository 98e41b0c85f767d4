#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lq_data/host/symbols/symbols.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/line_bytes.h"
#include "tools/lq/input.h"
#include "tools/lq/project_input.h"
#include "tools/lq/tables.h"
#include "tools/report/file_names.h"
#include "tools/report/report_data.h"
#include "tools/report/report_messages.h"
#include "tools/report/shared_texts.h"

namespace lq::tool {

using host::EncodeUtf8;
using host::Symbol;

namespace {

// What is neither a unit's nor a list's.
constexpr int32_t kNobodys = -1;

constexpr size_t kSymbolsInPiece = 4096;

const char* LanguageName(host::Language language) {
    switch (language) {
        case host::Language::kSt:
            return "ST";
        case host::Language::kIl:
            return "IL";
        case host::Language::kFbd:
            return "FBD";
        case host::Language::kLd:
            return "LD";
        case host::Language::kSfc:
            return "SFC";
        case host::Language::kNone:
            break;
    }
    return "";
}

const char* KindName(const host::Pou& pou) {
    return pou.kind == LQ_KIND_PROGRAM    ? "program"
           : pou.kind == LQ_KIND_FUNCTION ? "function"
                                          : "function block";
}

// The languages of a unit's bodies, its own first.
std::string LanguagesOf(const host::Pou& pou) {
    std::vector<std::string> names;
    for (const host::Body& body : pou.bodies) {
        const std::string name = LanguageName(body.language);
        if (!name.empty() && std::ranges::find(names, name) == names.end()) {
            names.insert(*body.name ? names.end() : names.begin(), name);
        }
    }
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

// One column of the symbols: its cells of the piece at hand, and the texts of those that repeat,
// for which they are numbers.
class SymbolColumn {
  public:
    void Take(std::u16string_view text) {
        if (isFirst_ || text != last_) {
            isFirst_ = false;
            last_ = text;
            const std::string utf8 = EncodeUtf8(text);
            const size_t place = texts_.PlaceOf(utf8);
            lastCell_.clear();
            if (place == SharedTexts::kNowhere) {
                ReportPage::AppendText(lastCell_, utf8);
            } else {
                lastCell_ = std::to_string(place);
            }
        }
        Append(lastCell_);
    }
    void Take(int64_t number) { Append(std::to_string(number)); }

    void WritePiece(ReportPage& page) {
        page.Add("[");
        page.Add(cells_);
        page.Add("]");
        cells_.clear();
    }
    void WriteTexts(ReportPage& page) const { texts_.Write(page); }

  private:
    // The memory of a column does not grow with the project; one of 16,384 different texts has
    // hardly any that repeat.
    static constexpr size_t kMostShared = size_t{1} << 14;

    void Append(const std::string& cell) { (cells_ += cells_.empty() ? "" : ",") += cell; }

    SharedTexts texts_{kMostShared};
    std::string cells_;
    bool isFirst_ = true;
    std::u16string last_;
    std::string lastCell_;  // of that text
};

class ProjectWriter {
  public:
    ProjectWriter(const host::Project& project, FileNames& files, ReportPage& page)
        : project_(project),
          files_(files),
          page_(page),
          tasks_(project.Tasks().size(), kNobodys),
          programs_(project.ProgramInstances().size(), kNobodys),
          symbolRows_(project.Declarations().size(), kNobodys) {}

    void Write() {
        page_.AddOpen({{"name", EncodeUtf8(project_.Name())}});
        WriteList("units", project_.Pous(), host::Sort::kPou, units_,
                  [this](const host::Pou& pou, ID id) { return UnitJson(pou, id); });
        WriteList("types", project_.DataTypes(), host::Sort::kDataType, types_,
                  [this](const host::DataType& type, ID id) { return TypeJson(type, id); });
        WriteList("lists", project_.VariableLists(), host::Sort::kVariableList, lists_,
                  [this](const host::VariableList& list, ID id) { return ListJson(list, id); });
        page_.Add(R"(,"tasks":)");
        page_.AddValue(TasksJson());
        WriteSymbols();
        page_.Add("}");
    }

    // Where the page has an object, once all is written: a list of its and the row; of a member its
    // type. Null for what has no row.
    std::string RowOf(ID object) const {
        const auto at = static_cast<size_t>(host::IndexOf(object));
        switch (host::SortOf(object)) {
            case host::Sort::kPou:
                return RowJson("units", units_[at]);
            case host::Sort::kDataType:
                return RowJson("types", types_[at]);
            case host::Sort::kVariableList:
                return RowJson("lists", lists_[at]);
            case host::Sort::kTask:
                return RowJson("tasks", tasks_[at]);
            case host::Sort::kProgramInstance:
                return RowJson("tasks", programs_[at]);
            case host::Sort::kDeclaration: {
                const int32_t row = symbolRows_[at];
                return row != kNobodys ? RowJson("symbols", row)
                                       : RowOf(project_.GetDeclaration(object)->owner);
            }
            default:
                return "null";
        }
    }

  private:
    static std::string RowJson(const char* list, int64_t row) {
        return row < 0
                   ? "null"
                   : std::string(R"({"list":")") + list + R"(","row":)" + std::to_string(row) + "}";
    }

    // --- Objects -----------------------------------------------------------------------------

    // Those of the project itself; `numbers` receives which is the how manieth.
    template <typename Records, typename ToJson>
    void WriteList(const std::string& name, const Records& records, host::Sort sort,
                   std::vector<int32_t>& numbers, ToJson toJson) {
        page_.Add(",\"" + name + "\":[");
        int32_t count = 0;
        for (size_t i = 0; i < records.size(); ++i) {
            const ID id = host::MakeId(sort, static_cast<uint32_t>(i));
            const bool isOwn = IsOwn(id);
            numbers.push_back(isOwn ? count : -1);
            if (isOwn) {
                page_.Add(count++ == 0 ? "" : ",");
                page_.AddValue(toJson(records[i], id));
            }
        }
        page_.Add("]");
    }

    // Not a library's, and not the standard's.
    bool IsOwn(ID id) const {
        const host::Pou* pou = project_.GetPou(id);
        const host::SourceFile* file = project_.FileOf(id);
        return !(pou && pou->isStandard) && !(file && file->isLibrary);
    }

    std::string FileOf(ID id) {
        const host::SourceFile* file = project_.FileOf(id);
        return file ? files_.Shown(EncodeUtf8(file->name)) : "";
    }

    Json UnitJson(const host::Pou& pou, ID id) {
        Json calls = Json::array();
        for (const host::Text callee : pou.calls) {
            calls.push_back(EncodeUtf8(callee));
        }
        return {{"name", EncodeUtf8(pou.name)},
                {"kind", KindName(pou)},
                {"result", EncodeUtf8(pou.resultType)},
                {"language", LanguagesOf(pou)},
                {"comment", EncodeUtf8(*pou.comment ? pou.comment : pou.headerComment)},
                {"file", FileOf(id)},
                {"line", pou.line},
                {"calls", calls}};
    }

    Json TypeJson(const host::DataType& type, ID id) {
        Json members = Json::array();
        for (const ID member : type.members) {
            const host::Declaration& declaration = *project_.GetDeclaration(member);
            members.push_back({EncodeUtf8(declaration.name), EncodeUtf8(declaration.type),
                               EncodeUtf8(declaration.address), EncodeUtf8(declaration.initValue),
                               EncodeUtf8(declaration.comment), declaration.line});
        }
        return {{"name", EncodeUtf8(type.name)},
                {"definition", type.structure ? "STRUCT" : EncodeUtf8(type.baseType)},
                {"initial", EncodeUtf8(type.initValue)},
                {"comment", EncodeUtf8(type.comment)},
                {"file", FileOf(id)},
                {"line", type.line},
                {"members", members}};
    }

    Json ListJson(const host::VariableList& list, ID id) {
        return {{"name", EncodeUtf8(list.name)},
                {"path", PathOf(list.parent)},
                {"comment", EncodeUtf8(list.comment)},
                {"variables", list.declarations.size()},
                {"file", FileOf(id)},
                {"line", list.line}};
    }

    // As symbols have it.
    std::string PathOf(ID holder) const {
        const host::Resource* resource = project_.GetResource(holder);
        const std::string name = EncodeUtf8(project_.NameOf(holder));
        const std::string outer =
            resource ? EncodeUtf8(project_.NameOf(resource->configuration)) : "";
        return outer + (outer.empty() || name.empty() ? "" : ".") + name;
    }

    Json ProgramsJson(const host::IdList& instances) const {
        Json programs = Json::array();
        for (const ID id : instances) {
            const host::ProgramInstance& instance = *project_.GetProgramInstance(id);
            programs.push_back({{"instance", EncodeUtf8(instance.name)},
                                {"program", ProgramName(project_, instance)},
                                {"comment", EncodeUtf8(instance.comment)}});
        }
        return programs;
    }

    // By resources; programs that no task runs come last, under a task without a name.
    Json TasksJson() {
        Json tasks = Json::array();
        for (size_t i = 0; i < project_.Resources().size(); ++i) {
            const host::Resource& resource = project_.Resources()[i];
            const ID owner = host::MakeId(host::Sort::kResource, static_cast<uint32_t>(i));
            if (!IsOwn(owner)) {
                continue;
            }
            for (const ID id : resource.tasks) {
                const host::Task& task = *project_.GetTask(id);
                tasks_[host::IndexOf(id)] = static_cast<int32_t>(tasks.size());
                PutPrograms(task.programs, tasks.size());
                tasks.push_back(TaskJson(task, PathOf(owner), FileOf(id)));
            }
            if (!resource.programs.empty()) {
                host::Task none;
                none.programs = resource.programs;
                PutPrograms(none.programs, tasks.size());
                tasks.push_back(TaskJson(none, PathOf(owner), ""));
                tasks.back()["task"] = nullptr;
            }
        }
        return tasks;
    }

    void PutPrograms(const host::IdList& instances, size_t row) {
        for (const ID id : instances) {
            programs_[host::IndexOf(id)] = static_cast<int32_t>(row);
        }
    }

    Json TaskJson(const host::Task& task, const std::string& resource, const std::string& file) {
        return {{"resource", resource},
                {"task", EncodeUtf8(task.name)},
                {"priority", EncodeUtf8(task.priority)},
                {"interval", EncodeUtf8(task.interval)},
                {"event", EncodeUtf8(task.event)},
                {"comment", EncodeUtf8(task.comment)},
                {"file", file},
                {"line", task.line},
                {"programs", ProgramsJson(task.programs)}};
    }

    // --- Symbols -----------------------------------------------------------------------------

    // In pieces of some thousand symbols, and these by columns: a piece is all that is held, and
    // what is alike stands beside each other.
    void WriteSymbols() {
        static constexpr std::u16string_view Symbol::*kTexts[] = {
            &Symbol::path,    &Symbol::name,    &Symbol::section, &Symbol::type,
            &Symbol::address, &Symbol::initial, &Symbol::comment};
        static constexpr const char* kTitles[] = {"path",    "name",    "section", "type",
                                                  "address", "initial", "comment", "file",
                                                  "line",    "column",  "owner"};
        std::array<SymbolColumn, std::size(kTitles)> columns;
        size_t inPiece = 0;
        int32_t count = 0;
        const char* separator = "[[";
        const auto writePiece = [&] {
            for (SymbolColumn& column : columns) {
                page_.Add(&column == &columns.front() ? separator : ",");
                column.WritePiece(page_);
            }
            separator = "],[";
            inPiece = 0;
        };
        page_.Add(R"(,"symbols":)");
        page_.AddOpen({{"titles", kTitles}});
        page_.Add(R"(,"pieces":)");
        host::ForEachSymbol(project_, {}, [&](const Symbol& symbol) {
            SymbolColumn* column = columns.data();
            for (const auto text : kTexts) {
                (column++)->Take(symbol.*text);
            }
            (column++)->Take(ShownFile(symbol.file));
            (column++)->Take(int64_t{symbol.line});
            (column++)->Take(int64_t{symbol.column});
            (column++)->Take(OwnerOf(symbol.declaration));
            symbolRows_[host::IndexOf(symbol.declaration)] = count++;
            if (++inPiece == kSymbolsInPiece) {
                writePiece();
            }
        });
        writePiece();
        page_.Add(R"(]],"texts":[)");
        for (const SymbolColumn& column : columns) {
            page_.Add(&column == &columns.front() ? "" : ",");
            column.WriteTexts(page_);
        }
        page_.Add("]}");
    }

    const std::u16string& ShownFile(std::u16string_view file) {
        if (file.data() != file_.data() || shownFile_.empty()) {
            file_ = file;
            host::DecodeUtf8(files_.Shown(EncodeUtf8(file)), shownFile_);
        }
        return shownFile_;
    }

    // The number of the unit, or -2 less the number of the list.
    int64_t OwnerOf(ID declaration) const {
        const ID owner = project_.GetDeclaration(declaration)->owner;
        const auto at = static_cast<size_t>(host::IndexOf(owner));
        switch (host::SortOf(owner)) {
            case host::Sort::kPou:
                return units_[at];
            case host::Sort::kVariableList:
                return -2 - int64_t{lists_[at]};
            default:
                return kNobodys;
        }
    }

    const host::Project& project_;
    FileNames& files_;
    ReportPage& page_;
    std::vector<int32_t> units_;  // which is the how manieth; -1 for a library's
    std::vector<int32_t> types_;
    std::vector<int32_t> lists_;
    std::vector<int32_t> tasks_;
    std::vector<int32_t> programs_;    // of instances the rows of their tasks
    std::vector<int32_t> symbolRows_;  // of declarations
    std::u16string_view file_;         // of the last symbol
    std::u16string shownFile_;
};

Json TablesJson(CgTab& tables) {
    Json all = Json::array();
    for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
        const auto table = static_cast<CgTab::TAB_ID>(id);
        all.push_back({{"name", TableName(table)}, {"lines", ExtentOf(tables, table).lines}});
    }
    return all;
}

// Blocks that everybody knows are no types of the project; an image does not tell them from those.
Json StandardBlocksJson(const host::Project& project) {
    Json names = Json::array();
    for (const host::Pou& pou : project.Pous()) {
        if (pou.isStandard) {
            names.push_back(EncodeUtf8(pou.name));
        }
    }
    return names;
}

}  // namespace

void WriteReportProject(const ProjectFiles& files, const TableInput& input,
                        const host::Findings* findings, const host::Project& project,
                        ReportPage& page) {
    FileNames names;
    const auto shown = [&names](const std::vector<std::string>& paths) {
        Json all = Json::array();
        for (const std::string& path : paths) {
            all.push_back(names.Shown(DisplayName(path)));
        }
        return all;
    };
    page.AddOpen({{"files", shown(files.projects)},
                  {"libraries", shown(files.libraries)},
                  {"version", LQ_VERSION},
                  {"blockSize", kTableBlockSize},
                  {"nodeBlocks", R_FILE::BlCnt()},
                  {"tables", TablesJson(*input.tables)}});
    page.Add(R"(,"project":)");
    ProjectWriter writer(project, names, page);
    if (input.isProject) {
        writer.Write();
    } else {
        page.AddValue(nullptr);
        page.Add(R"(,"standardBlocks":)");
        page.AddValue(StandardBlocksJson(project));
    }
    WriteMessages(
        input, findings, [&writer](ID object) { return writer.RowOf(object); }, names, page);
    page.Add("}");
}

}  // namespace lq::tool
