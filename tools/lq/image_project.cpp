#include "tools/lq/image_project.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/pouh.h"
#include "tools/lq/messages.h"
#include "tools/lq/table_rows.h"
#include "tools/lq/tables.h"

namespace lq::tool {

using host::Say;

namespace {

// Keywords to sections.
std::unordered_map<std::u16string_view, host::Section> Sections() {
    std::unordered_map<std::u16string_view, host::Section> sections;
    for (int scope = 0; scope <= static_cast<int>(host::Scope::kConfig); ++scope) {
        for (int marks = 0; marks < 4; ++marks) {
            const host::Section section = {static_cast<host::Scope>(scope), (marks & 1) != 0,
                                           (marks & 2) != 0};
            if (host::NearestSection(section) == section) {
                sections.emplace(host::KeywordOf(section), section);
            }
        }
    }
    return sections;
}

// The lines of one table, their texts decoded.
class Lines {
  public:
    Lines(CgTab& tables, CgTab::TAB_ID id, const std::string& file)
        : id_(id), file_(file), reader_(tables, id) {}

    template <typename Take>
    void ForEach(Take take) {
        if (const auto damagedAt = reader_.ForEach(take)) {
            throw InputError(
                {file_}, Say("table {}: the line at {} is damaged", TableName(id_), *damagedAt));
        }
    }

    const std::u16string& Text(std::string_view column) {
        text_.clear();
        if (const auto* cell = std::get_if<std::string>(&At(column))) {
            host::DecodeUtf8(*cell, text_);
        }
        return text_;
    }
    uint32_t Number(std::string_view column) const {
        const auto* cell = std::get_if<int64_t>(&At(column));
        return cell ? static_cast<uint32_t>(*cell) : 0;
    }
    bool IsSet(std::string_view column) const {
        const auto* cell = std::get_if<bool>(&At(column));
        return cell && *cell;
    }

  private:
    const Cell& At(std::string_view column) const {
        return reader_.Get()[reader_.ColumnOf(column)];
    }

    CgTab::TAB_ID id_;
    const std::string& file_;
    RowReader reader_;
    std::u16string text_;
};

// The names are an image's author's, who cannot choose them to have one hash.
struct TextHash {
    size_t operator()(const std::u16string& text) const noexcept { return host::HashOfText(text); }
};

class Filler {
  public:
    Filler(CgTab& tables, const std::string& file, host::Project& project)
        : tables_(tables), file_(file), project_(project) {}

    void Run() {
        std::u16string name;
        host::DecodeUtf8(file_, name);
        project_.BeginFile({project_.Intern(name)});
        AddTypeNames();
        AddUnits();
        AddComponents();
        AddLabels();
        AddGlobals();
    }

  private:
    void AddTypeNames() {
        Lines lines(tables_, CgTab::TAB_DMM, file_);
        lines.ForEach([&] {
            host::DataType type;
            type.name = project_.Intern(lines.Text("name"));
            type.line = lines.Number("line");
            project_.AddDataType(type);
        });
    }

    void AddUnits() {
        Lines lines(tables_, CgTab::TAB_POU, file_);
        lines.ForEach([&] {
            host::Pou pou;
            const std::u16string& kind = lines.Text("kind");
            pou.kind = kind == u"function"         ? LQ_KIND_FUNCTION
                       : kind == u"function block" ? LQ_KIND_FUNCTION_BLOCK
                                                   : LQ_KIND_PROGRAM;
            pou.name = project_.Intern(lines.Text("name"));
            pou.line = lines.Number("line");
            pou.bodies.emplace_back();
            units_.emplace(lines.Number("pos"), project_.AddPou(pou));
        });
    }

    host::Declaration DeclarationOf(Lines& lines, ID owner) {
        host::Declaration declaration;
        declaration.name = project_.Intern(lines.Text("name"));
        declaration.type = project_.Intern(lines.Text("type"));
        declaration.address = project_.Intern(lines.Text("address"));
        declaration.initValue = project_.Intern(lines.Text("initial"));
        declaration.owner = owner;
        declaration.line = lines.Number("line");
        const auto section = sections_.find(lines.Text("scope"));
        declaration.section = section == sections_.end() ? host::Section() : section->second;
        return declaration;
    }

    void AddComponents() {
        std::unordered_set<std::u16string, TextHash> temporaries;
        Lines names(tables_, CgTab::TAB_TMP, file_);
        names.ForEach([&] { temporaries.insert(names.Text("name")); });

        const SectionIndex index(SectionsOf(tables_));
        Lines lines(tables_, CgTab::TAB_CMP, file_);
        lines.ForEach([&] {
            const UnitSection* section = index.At(lines.Number("pos"));
            if (!section) {
                return;  // a unit's that was entered once more
            }
            const ID unit = units_.at(static_cast<uint32_t>(section->pos));
            host::Declaration declaration = DeclarationOf(lines, unit);
            if (temporaries.contains(project_.NameOf(unit) + std::u16string(u".") +
                                     declaration.name)) {
                declaration.section.scope = host::Scope::kTemp;
            }
            project_.AddDeclaration(declaration);
        });
    }

    // A label's name has its unit's in front of it.
    void AddLabels() {
        Lines lines(tables_, CgTab::TAB_LBL, file_);
        lines.ForEach([&] {
            const std::u16string_view name = lines.Text("name");
            const size_t dot = name.find(u'.');
            host::Pou* pou = project_.EditPou(project_.FindPou(name.substr(0, dot)));
            if (!pou || dot == name.npos) {
                return;
            }
            const host::Mark mark = {project_.Intern(name.substr(dot + 1)), lines.Number("line")};
            if (lines.IsSet("defined")) {
                pou->bodies.front().labels.push_back(mark);
            }
            if (lines.Number("jumps") != 0) {
                pou->bodies.front().jumps.push_back(mark);
            }
        });
    }

    void AddGlobals() {
        const ID configuration = project_.AddConfiguration({});
        host::VariableList list;
        list.parent = configuration;
        const ID owner = project_.AddVariableList(list);
        Lines lines(tables_, CgTab::TAB_GLB, file_);
        lines.ForEach([&] { project_.AddDeclaration(DeclarationOf(lines, owner)); });
    }

    CgTab& tables_;
    const std::string& file_;
    host::Project& project_;
    const std::unordered_map<std::u16string_view, host::Section> sections_ = Sections();
    std::unordered_map<uint32_t, ID> units_;  // by the position of the line
};

}  // namespace

void FillFromTables(CgTab& tables, const std::string& file, host::Project& project) {
    Filler(tables, file, project).Run();
}

}  // namespace lq::tool
