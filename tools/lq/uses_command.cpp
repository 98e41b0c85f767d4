#include <optional>
#include <string>
#include <vector>

#include "lq_data/detail/chars.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/uses/uses.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/project_input.h"
#include "tools/lq/suggestion.h"

namespace lq::tool {

using host::EncodeUtf8;
using host::Say;
using host::Use;
using host::UseKind;
using host::UseObject;

namespace {

const char* WordFor(UseKind kind) {
    switch (kind) {
        case UseKind::kRead:
            return "read";
        case UseKind::kWrite:
            return "write";
        case UseKind::kReadWrite:
            return "read-write";
        case UseKind::kCall:
            return "call";
        case UseKind::kUnknown:
            return "unknown";
        case UseKind::kDeclare:
            return "type";
    }
    return "";
}

// What a global variable or declaration is part of.
std::string OwnerOf(const host::Project& project, ID declaration) {
    const host::Declaration* record = project.GetDeclaration(declaration);
    const host::VariableList* list = record ? project.GetVariableList(record->owner) : nullptr;
    const ID owner = list ? list->parent : record ? record->owner : ID();
    const host::Resource* resource = project.GetResource(owner);
    return (resource ? EncodeUtf8(project.NameOf(resource->configuration)) + "." : "") +
           EncodeUtf8(project.NameOf(owner));
}

// What the object is part of, by name, where `global` is the one that is meant; empty for what is
// part of nothing.
std::string OwnerOf(const host::Project& project, const Use& use, ID global) {
    switch (use.object) {
        case UseObject::kVariable:
            return OwnerOf(project, use.id);
        case UseObject::kGlobal:
            return OwnerOf(project, global != ID() ? global : use.id);
        case UseObject::kEnumerator:
            return EncodeUtf8(project.NameOf(use.id));
        case UseObject::kPart:
            return EncodeUtf8(project.NameOf(use.unit));
        default:
            return "";
    }
}

std::string PlaceIn(const host::Project& project, const Use& use) {
    std::string text = EncodeUtf8(project.NameOf(use.unit != ID() ? use.unit : use.where));
    if (use.body && *use.body->name) {
        text += "." + EncodeUtf8(use.body->name);
    }
    return text;
}

// "Unit.name", "name".
struct Wanted {
    explicit Wanted(const std::u16string& text) {
        const std::size_t point = text.rfind(u'.');
        owner = point == text.npos ? u"" : text.substr(0, point);
        name = point == text.npos ? text : text.substr(point + 1);
    }

    std::u16string owner;
    std::u16string name;
};

// Whether "Plant.Controller" is what was meant by `owner`: that, "Controller", or nothing.
bool IsMeant(std::u16string_view path, const std::u16string& owner) {
    const std::size_t size = owner.size();
    return size == 0 || (path.size() >= size &&
                         chars::CompareNoCase(path.substr(path.size() - size).data(), owner.c_str(),
                                              size) == 0 &&
                         (path.size() == size || path[path.size() - size - 1] == u'.'));
}

// Whether the project has something of the name, used or not; what is like it is suggested.
bool IsDeclared(const host::Project& project, const Wanted& wanted, Suggestion& nearest) {
    bool isFound = false;
    const auto look = [&](const std::string& owner, host::Text name) {
        isFound = isFound || (chars::EqualNoCase(name, wanted.name.c_str()) &&
                              IsMeant(DecodeArgument(owner), wanted.owner));
        nearest.Consider(EncodeUtf8(name));
    };
    for (uint32_t i = 0; i < project.Declarations().size(); ++i) {
        const ID id = host::MakeId(host::Sort::kDeclaration, i);
        look(OwnerOf(project, id), project.NameOf(id));
    }
    for (const host::Pou& pou : project.Pous()) {
        look("", pou.name);
    }
    for (const host::DataType& type : project.DataTypes()) {
        look("", type.name);
    }
    return isFound;
}

// Prints uses as they come; what comes before the first one waits for it.
class Printer {
  public:
    explicit Printer(const UsesOptions& options) : options_(options) {}

    bool IsEmpty() const { return !table_ && !list_; }
    void Take(const Row& row) {
        Begin();
        if (!list_) {
            const auto number = [&row](std::size_t at) {
                return static_cast<uint32_t>(std::get<int64_t>(row[at]));
            };
            std::vector<std::string> cells = CellsOf(row);
            cells.erase(cells.begin(), cells.begin() + 2);
            cells.front() = ToText(Place{std::get<std::string>(row[0]), number(1), number(2)});
            table_->Take(cells);
            return;
        }
        text_.clear();
        list_->Next();
        rows_.Open(text_, row);
        rows_.Close(text_);
        PrintText(text_);
    }
    void End() {
        Begin();
        if (table_) {
            table_->End();
        } else {
            list_->End();
            PrintText("\n}\n");
        }
    }

  private:
    void Begin() {
        if (!IsEmpty()) {
            return;
        }
        if (!options_.json) {
            table_.emplace("", std::vector<Column>{{"place"}, {"use"}, {"in"}, {"of"}, {"name"}});
            return;
        }
        Json head = NewDocument();
        head["name"] = options_.name;
        PrintText(OpenJsonPiece(0, head) + ",\n" + JsonIndent(1) + "\"uses\": ");
        list_.emplace(1);
    }

    const UsesOptions& options_;
    std::optional<TablePrinter> table_;
    std::optional<JsonList> list_;
    JsonRows rows_{{{"file"}, {"line", true}, {"column", true}, {"use"}, {"in"}, {"of"}, {"name"}},
                   2};
    std::string text_;
};

}  // namespace

int RunUses(const UsesOptions& options) {
    CurrentProject current;
    const host::Project& project = current.project;
    current.project.KeepCode();
    const int status = ReadAndReport(options.files, current.project);
    const Wanted wanted(DecodeArgument(options.name));
    Printer printer(options);
    host::ForEachUse(project, {}, [&](const Use& use) {
        if (!chars::EqualNoCase(use.name, wanted.name.c_str())) {
            return;
        }
        std::string of = OwnerOf(project, use, use.global);
        bool isMeant = IsMeant(DecodeArgument(of), wanted.owner);
        for (std::size_t i = 0; i < use.globals.size(); ++i) {
            const std::string other = OwnerOf(project, use, use.globals[i]);
            isMeant = isMeant || IsMeant(DecodeArgument(other), wanted.owner);
            of = i == 0 ? other : of + ", " + other;
        }
        if (isMeant) {
            printer.Take({FileNameOf(project, use.where), int64_t{use.line}, int64_t{use.column},
                          WordFor(use.kind), PlaceIn(project, use), of, EncodeUtf8(use.name)});
        }
    });
    Suggestion nearest(EncodeUtf8(wanted.name));
    if (printer.IsEmpty() && !IsDeclared(project, wanted, nearest)) {
        throw InputError(WholeOf(options.files),
                         Say("nothing is called '{}'", options.name) + nearest.Text());
    }
    printer.End();
    return status;
}

}  // namespace lq::tool
