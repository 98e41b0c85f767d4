#include <algorithm>
#include <memory>
#include <optional>

#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/image_file.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/name_search.h"
#include "tools/lq/output.h"
#include "tools/lq/progress.h"
#include "tools/lq/project_input.h"
#include "tools/lq/suggestion.h"
#include "tools/lq/table_rows.h"
#include "tools/lq/tables.h"
#include "tools/lq/type_names.h"

namespace lq::tool {

using host::Say;

namespace {

CgTab::TAB_ID TableByName(const std::string& name) {
    std::string all;
    Suggestion suggestion(name);
    for (const auto& [id, known] : kTableNames) {
        if (known == name) {
            return id;
        }
        all += (all.empty() ? "" : ", ") + std::string(known);
        suggestion.Consider(std::string(known));
    }
    throw CommandError(Say("no table is called '{}'", name) +
                       suggestion.Text(Say("; the tables are {}", all)));
}

std::vector<CgTab::TAB_ID> ChosenTables(const std::vector<std::string>& names) {
    std::vector<CgTab::TAB_ID> ids;
    ids.reserve(CgTab::TAB_COUNT + names.size());
    for (const std::string& name : names) {
        ids.push_back(TableByName(name));
    }
    for (int id = 0; names.empty() && id < CgTab::TAB_COUNT; ++id) {
        ids.push_back(static_cast<CgTab::TAB_ID>(id));
    }
    return ids;
}

// Where rows go, those of one table after those of another.
class Output {
  public:
    Output() = default;
    virtual ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    virtual void Begin(CgTab::TAB_ID id, const RowReader& reader) = 0;
    virtual void Take(const Row& row) = 0;
    virtual void End() = 0;
    // There are no more tables.
    virtual void Finish() = 0;
};

// What the row of a unit says about its components.
struct Section {
    Section(const RowReader& units, const Row& row)
        : name(std::get<std::string>(row[units.NameColumn()])),
          start(std::get<int64_t>(row[units.ColumnOf("start")])),
          end(std::get<int64_t>(row[units.ColumnOf("end")])) {}

    std::string name;
    int64_t start;
    int64_t end;
};

// The components in the sections of units.
class ComponentRows {
  public:
    ComponentRows(CgTab& tables, TypeNames& types) : reader_(tables, CgTab::TAB_CMP) {
        int32_t next = 0;
        reader_.ForEach([&] {
            starts_.push_back(next);
            next = reader_.Next();
        });
        reader_.NameTypes(types);
    }

    const std::vector<Column>& Columns() const { return reader_.Columns(); }

    template <typename Take>
    void ForEach(const Section& section, Take take) {
        reader_.SetUnit(section.name);
        for (auto at = std::ranges::lower_bound(starts_, section.start);
             at != starts_.end() && *at < section.end; ++at) {
            int32_t pos = *at;
            reader_.Read(pos);
            take(reader_.Get());
        }
    }

  private:
    RowReader reader_;
    std::vector<int32_t> starts_;  // of the lines in front of damage
};

// The units come with their components where `components` is not null.
class TextOutput : public Output {
  public:
    explicit TextOutput(ComponentRows* components) : components_(components) {}

    void Begin(CgTab::TAB_ID id, const RowReader& reader) override {
        PrintText(separator_);
        separator_ = "\n";
        printer_.emplace(std::string(TableName(id)), reader.Columns());
        units_ = id == CgTab::TAB_POU && components_ ? &reader : nullptr;
    }
    void Take(const Row& row) override {
        printer_->Take(CellsOf(row));
        if (units_) {
            sections_.emplace_back(*units_, row);
        }
    }
    void End() override {
        printer_->End();
        for (const Section& section : sections_) {
            PrintText(separator_);
            TablePrinter printer(section.name, components_->Columns());
            components_->ForEach(section, [&](const Row& row) { printer.Take(CellsOf(row)); });
            printer.End();
        }
        sections_.clear();
    }
    void Finish() override {}

  private:
    ComponentRows* components_;
    const char* separator_ = "";
    std::optional<TablePrinter> printer_;
    const RowReader* units_ = nullptr;  // null in other tables, and where components are not shown
    std::vector<Section> sections_;
};

// One document, piece by piece.
class JsonOutput : public Output {
  public:
    JsonOutput(const ProjectFiles& files, const TypeNames& types, ComponentRows* components)
        : components_(components) {
        Json head = NewDocument(kSchema);
        head["input"] = DisplayName(files.projects.front());
        NameFiles(files, head);
        head["untold_types"] = Json::array();
        if (types.HasUntoldStructures()) {
            head["untold_types"].push_back("STRUCTURE");
        }
        if (types.HasUntoldBlocks()) {
            head["untold_types"].push_back("FUNCTION_BLOCK");
        }
        PrintText(OpenJsonPiece(0, head) + ",\n" + JsonIndent(1) + "\"tables\": {");
    }

    void Begin(CgTab::TAB_ID id, const RowReader& reader) override {
        PrintText((isEmpty_ ? "\n" : ",\n") + JsonIndent(kDepth) + "\"" +
                  std::string(TableName(id)) + "\": ");
        isEmpty_ = false;
        list_.emplace(kDepth);
        rows_.emplace(reader.Columns(), kDepth + 1);
        units_ = id == CgTab::TAB_POU && components_ ? &reader : nullptr;
    }
    void Take(const Row& row) override {
        list_->Next();
        Print(*rows_, row, units_);
    }
    void End() override { list_->End(); }
    void Finish() override { PrintLine((isEmpty_ ? "" : "\n" + JsonIndent(1)) + "}\n}"); }

  private:
    static constexpr int kSchema = 2;  // types have their names
    static constexpr int kDepth = 2;   // of a table

    void Print(const JsonRows& rows, const Row& row, const RowReader* units) {
        text_.clear();
        rows.Open(text_, row);
        if (units) {
            PrintText(text_ + ",\n" + JsonIndent(kDepth + 2) + "\"components\": ");
            PrintComponents(Section(*units, row));
            text_.clear();
        }
        rows.Close(text_);
        PrintText(text_);
    }
    void PrintComponents(const Section& section) {
        const JsonRows rows(components_->Columns(), kDepth + 3);
        JsonList list(kDepth + 2);
        components_->ForEach(section, [&](const Row& row) {
            list.Next();
            Print(rows, row, nullptr);
        });
        list.End();
    }

    ComponentRows* components_;
    bool isEmpty_ = true;
    std::optional<JsonList> list_;
    std::optional<JsonRows> rows_;
    const RowReader* units_ = nullptr;  // as of TextOutput
    std::string text_;
};

// Reads tables and hands on the rows that are to be shown.
class Shower {
  public:
    Shower(CgTab& tables, TypeNames& types, const ShowOptions& options, Output& output)
        : tables_(tables), types_(types), options_(options), output_(output) {
        if (!options.find.empty()) {
            search_.emplace(options.find);
        }
    }

    // Without a table that has none of the name that is looked for. False when it is damaged, which
    // becomes a message.
    bool Show(CgTab::TAB_ID id) {
        RowReader reader = ReaderOf(id);
        bool isShown = false;
        const auto begin = [&] {
            output_.Begin(id, reader);
            isShown = hasShown_ = true;
        };
        const auto take = [&] {
            if (!isShown) {
                begin();
            }
            output_.Take(reader.Get());
        };
        if (!search_) {
            begin();
        }
        const auto damagedAt =
            search_ ? search_->Run(tables_, id, reader, take) : reader.ForEach(take);
        if (isShown) {
            output_.End();
        }
        return !ReportDamage(options_.files.projects.front(), id, damagedAt);
    }

    // False when nothing was found in any of the tables, which becomes a message.
    bool HasShown(const std::vector<CgTab::TAB_ID>& ids) {
        if (!hasShown_) {
            Suggestion suggestion(options_.find);
            for (const CgTab::TAB_ID id : ids) {
                RowReader reader = ReaderOf(id);
                SuggestNames(id, reader, suggestion);
            }
            PrintMessage(WholeOf(options_.files),
                         Say("nothing is called '{}'", options_.find) + suggestion.Text());
        }
        return hasShown_;
    }

  private:
    RowReader ReaderOf(CgTab::TAB_ID id) {
        RowReader reader(tables_, id, id == CgTab::TAB_CMP ? &sections_ : nullptr);
        reader.NameTypes(types_);
        return reader;
    }

    CgTab& tables_;
    TypeNames& types_;
    const ShowOptions& options_;
    Output& output_;
    const SectionIndex sections_{SectionsOf(tables_)};
    std::optional<NameSearch> search_;
    bool hasShown_ = false;
};

std::unique_ptr<Output> OutputOf(const ShowOptions& options, const TypeNames& types,
                                 ComponentRows* components) {
    if (options.json) {
        return std::make_unique<JsonOutput>(options.files, types, components);
    }
    return std::make_unique<TextOutput>(components);
}

// False when a table is damaged or a name is not found, which has become a message.
bool ShowTables(CgTab& tables, TypeNames& types, const std::vector<CgTab::TAB_ID>& ids,
                const ShowOptions& options) {
    const bool hasUnits = std::ranges::find(ids, CgTab::TAB_POU) != ids.end();
    std::optional<ComponentRows> components;  // of units that are asked for by their name
    if (hasUnits && !options.tables.empty()) {
        components.emplace(tables, types);
    }
    const auto output = OutputOf(options, types, components ? &*components : nullptr);
    Shower shower(tables, types, options, *output);
    bool isFine = true;
    for (const CgTab::TAB_ID id : ids) {
        isFine = shower.Show(id) && isFine;
    }
    isFine = shower.HasShown(ids) && isFine;
    output->Finish();
    if (types.HasLeft()) {
        PrintMessage(WholeOf(options.files),
                     Say("an image keeps of some types only that they are structures or function "
                         "blocks; the project has their names"));
    }
    return isFine;
}

}  // namespace

int RunShow(const ShowOptions& options) {
    CheckImageOutput(options.save, options.json);
    const std::vector<CgTab::TAB_ID> ids = ChosenTables(options.tables);
    CurrentProject current;
    auto [tables, isProject, refusals, status, reports] =
        ReadTables(options.files, current.project);
    if (isProject) {  // an image may be saved in its own place
        RefuseInputAsOutput(options.files, options.save);
    }
    const auto save = [&options, &set = *tables] {
        const Progress progress(Say("saving {}", options.save));
        SaveImage(set, options.save);
    };
    if (options.save == "-") {
        save();
        return status;  // the image alone
    }
    if (!options.save.empty()) {
        save();
    }
    const auto progress = Progress::OfResults(Say("writing the tables"), 0);
    TypeNames types(*tables, current.project, isProject);
    return ShowTables(*tables, types, ids, options) ? status : kInputHasFaults;
}

}  // namespace lq::tool
