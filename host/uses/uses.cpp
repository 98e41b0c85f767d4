// The walk over a project: its units with their bodies, then what declarations, data types, tasks
// and program instances name.

#include "lq_data/host/uses/uses.h"

#include <algorithm>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/uses/code_walk.h"
#include "host/uses/names.h"
#include "host/uses/paths.h"
#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/host/words/words.h"

namespace lq::host {

namespace {

using namespace uses;

bool IsWordCharacter(char16_t c) {
    return chars::IsLetter(c) || chars::IsDigit(c) || c == u'_';
}

class Walk {
  public:
    Walk(const Project& project, const UseOptions& options, const TakeUse& take)
        : project_(project), options_(options), take_(take), names_(project), paths_(names_) {}

    void Run();

  private:
    bool IsWanted(ID id) const { return options_.libraries || !project_.IsOfLibrary(id); }

    void WalkUnit(ID unit);
    void WalkBody(CodeWalk& walk, const BodyCode& code);
    void WalkPiece(CodeWalk& walk, const BodyCode& code, std::size_t index);
    void WalkIn(CodeWalk& walk, const BodyCode& code, std::size_t index,
                std::span<const BodyToken> tokens);
    void WalkBlock(CodeWalk& walk, const BodyPiece& piece, std::span<const BodyToken> tokens);
    void TellPragma(CodeWalk& walk, const std::vector<BodyToken>& words);

    void WalkDeclaration(ID id, const Declaration& declaration);
    void WalkPath(ID id, const Declaration& declaration);
    void WalkTask(ID id, const Task& task);
    void TellType(ID unit, ID where, Text type);
    bool TellTypeName(ID unit, ID where, u16string_view name);
    void TellWords(ID unit, ID where, u16string_view text, Text type, bool isStructure = false);
    ID PlaceOf(ID unit, ID where) const;
    void TellAt(ID unit, ID where, u16string_view name, Meaning meaning, UseKind kind);

    const Project& project_;
    const UseOptions& options_;
    const TakeUse& take_;
    Names names_;
    Paths paths_;

    ID callee_;                                    // of the last block of a drawing
    std::unordered_map<uint32_t, UseKind> boxes_;  // what is done with what a box holds
};

void Walk::Run() {
    for (uint32_t i = 0; i < project_.Pous().size(); ++i) {
        const ID unit = MakeId(Sort::kPou, i);
        if (IsWanted(unit)) {
            WalkUnit(unit);
        }
    }
    if (!options_.declarations) {
        return;
    }
    const auto forEach = [this](Sort sort, const auto& records, auto visit) {
        uint32_t index = 0;
        for (const auto& record : records) {
            const ID id = MakeId(sort, index++);
            if (IsWanted(id)) {
                visit(id, record);
            }
        }
    };
    forEach(Sort::kDeclaration, project_.Declarations(),
            [this](ID id, const Declaration& record) { WalkDeclaration(id, record); });
    forEach(Sort::kDataType, project_.DataTypes(), [this](ID id, const DataType& record) {
        TellType({}, id, record.baseType);
        TellWords({}, id, record.initValue, record.name);
    });
    forEach(Sort::kTask, project_.Tasks(),
            [this](ID id, const Task& record) { WalkTask(id, record); });
    forEach(Sort::kProgramInstance, project_.ProgramInstances(),
            [this](ID id, const ProgramInstance& record) {
                if (const ID pou = project_.FindPou(record.typeName); pou != ID()) {
                    TellAt({}, id, record.typeName, {UseObject::kUnit, pou, {}}, UseKind::kCall);
                }
            });
}

// -- Bodies ---------------------------------------------------------------------------------------

void Walk::WalkUnit(ID unit) {
    const Pou& pou = *project_.GetPou(unit);
    PartNames parts;
    const auto addPart = [&parts](Text name) {
        parts.AddFirst(name, HashOfName(name),
                       [name](Text other) { return chars::EqualNoCase(name, other); });
    };
    const auto addParts = [&](const BodyCode& code) {
        for (const BodyPiece& piece : code.pieces) {
            if (piece.role == PieceRole::kPart ||
                (piece.role >= PieceRole::kStep && piece.role <= PieceRole::kMacroStep)) {
                addPart(piece.name);
            }
        }
    };
    for (const Body& body : pou.bodies) {
        if (*body.name) {
            addPart(body.name);
        }
        if (const BodyCode* code = project_.CodeOf(body)) {
            addParts(*code);
        }
    }
    for (const Body& body : pou.bodies) {
        if (const BodyCode* code = project_.CodeOf(body)) {
            CodeWalk walk(names_, parts, unit, &body, take_);
            WalkBody(walk, *code);
        }
    }
    if (options_.declarations && *pou.resultType) {
        TellType(unit, unit, pou.resultType);
    }
}

void Walk::WalkBody(CodeWalk& walk, const BodyCode& code) {
    // Boxes that are wired to in-out parameters, wherever they stand.
    boxes_.clear();
    ID callee;
    for (const BodyPiece& piece : code.pieces) {
        if (piece.role == PieceRole::kBlock) {
            callee = project_.FindAnyPou(piece.name);
        }
        const bool isParameter =
            piece.role == PieceRole::kInput || piece.role == PieceRole::kInputOutput;
        if (!isParameter || piece.wire == 0) {
            continue;
        }
        const Meaning parameter = names_.MemberOf({UseObject::kUnit, callee, {}}, piece.name);
        const Declaration* declaration = project_.GetDeclaration(parameter.id);
        const bool isInOut = declaration && declaration->section.scope == Scope::kInOut;
        if (isInOut || piece.role == PieceRole::kInputOutput) {
            boxes_[piece.wire] = UseKind::kReadWrite;
        }
    }
    for (std::size_t i = 0; i < code.pieces.size(); ++i) {
        WalkPiece(walk, code, i);
    }
    TellPragma(walk, code.pragmaWords);
}

void Walk::WalkPiece(CodeWalk& walk, const BodyCode& code, std::size_t index) {
    const BodyPiece& piece = code.pieces[index];
    const std::size_t end =
        index + 1 < code.pieces.size() ? code.pieces[index + 1].first : code.tokens.size();
    const std::span tokens(code.tokens.data() + piece.first, end - piece.first);
    const BodyToken place{piece.name, piece.line, piece.column, 0, 0};
    walk.SetRole(piece.role);
    switch (piece.role) {
        case PieceRole::kIl:
            walk.RunIl(tokens);
            break;
        case PieceRole::kSt:
        case PieceRole::kContact:
        case PieceRole::kDuration:
            walk.RunSt(tokens);
            break;
        case PieceRole::kIn:
            WalkIn(walk, code, index, tokens);
            break;
        case PieceRole::kOut:
        case PieceRole::kCoil:
            walk.RunSt(tokens, UseKind::kWrite);
            break;
        case PieceRole::kIndicator:  // tells how an action fares; what sets it is the action's body
            walk.RunSt(tokens, UseKind::kUnknown);
            break;
        case PieceRole::kInOut:
            walk.RunSt(tokens, UseKind::kReadWrite);
            break;
        case PieceRole::kBlock:
            WalkBlock(walk, piece, tokens);
            break;
        case PieceRole::kInput:
        case PieceRole::kOutput:
        case PieceRole::kInputOutput: {
            Meaning parameter = names_.MemberOf({UseObject::kUnit, callee_, {}}, piece.name);
            parameter = parameter ? parameter : Meaning{UseObject::kParameter, callee_, {}};
            walk.Tell(place, parameter,
                      piece.role == PieceRole::kOutput  ? UseKind::kRead
                      : piece.role == PieceRole::kInput ? UseKind::kWrite
                                                        : UseKind::kReadWrite);
            break;
        }
        case PieceRole::kTransition:
        case PieceRole::kAction: {
            const Meaning meaning = walk.Resolve(piece.name);
            const UseKind kind =
                piece.role == PieceRole::kTransition ? UseKind::kRead : UseKind::kWrite;
            if (!meaning && !tokens.empty()) {
                walk.RunSt(tokens, kind);
            } else {
                walk.Tell(place, meaning,
                          kind == UseKind::kWrite && meaning.object == UseObject::kPart
                              ? UseKind::kCall
                              : kind);
            }
            break;
        }
        case PieceRole::kStep:
        case PieceRole::kInitialStep:
        case PieceRole::kMacroStep:
        case PieceRole::kJumpStep:
        case PieceRole::kPart:
            break;
    }
}

// What a box holds, or what stands in the place of a wire to the parameter in front of it.
void Walk::WalkIn(CodeWalk& walk, const BodyCode& code, std::size_t index,
                  std::span<const BodyToken> tokens) {
    const BodyPiece& piece = code.pieces[index];
    if (piece.id == 0 && index > 0 && code.pieces[index - 1].role == PieceRole::kInput) {
        const Meaning parameter =
            names_.MemberOf({UseObject::kUnit, callee_, {}}, code.pieces[index - 1].name);
        walk.RunSt(tokens, walk.KindOfParameter(parameter.id));
        return;
    }
    const auto box = boxes_.find(piece.id);
    walk.RunSt(tokens, box == boxes_.end() ? UseKind::kRead : box->second);
}

void Walk::WalkBlock(CodeWalk& walk, const BodyPiece& piece, std::span<const BodyToken> tokens) {
    callee_ = project_.FindAnyPou(piece.name);
    Meaning type{UseObject::kUnit, callee_, {}};
    if (callee_ == ID()) {
        type.object = IsStandardFunction(piece.name) ? UseObject::kFunction : UseObject::kUnknown;
    }
    const bool isInstance = *piece.second != 0;
    walk.Tell({piece.name, piece.line, piece.column, 0, 0}, type,
              isInstance ? UseKind::kDeclare : UseKind::kCall);
    if (!isInstance) {
        return;
    }
    const Meaning instance = walk.Resolve(piece.second);
    if (!instance && !tokens.empty()) {
        walk.RunSt(tokens, UseKind::kCall);  // a member or an element
    } else {
        walk.Tell({piece.second, piece.line, piece.column, 0, 0}, instance, UseKind::kCall);
    }
}

// Of the words in pragmas those that are names of the project.
void Walk::TellPragma(CodeWalk& walk, const std::vector<BodyToken>& words) {
    for (const BodyToken& word : words) {
        const Meaning meaning = walk.Resolve(word.text);
        if (meaning && meaning.object != UseObject::kFunction) {
            walk.Tell(word, meaning, UseKind::kUnknown, true);
        }
    }
}

// -- Declarations ---------------------------------------------------------------------------------

void Walk::TellAt(ID unit, ID where, u16string_view name, Meaning meaning, UseKind kind) {
    const std::u16string text(name);
    take_({.object = meaning.object,
           .kind = kind,
           .id = meaning.id,
           .global = meaning.global,
           .globals = meaning.Globals(),
           .name = text.c_str(),
           .unit = unit,
           .line = project_.LineOf(where),
           .column = project_.ColumnOf(where),
           .where = where});
}

void Walk::WalkDeclaration(ID id, const Declaration& declaration) {
    const Pou* pou = project_.GetPou(declaration.owner);
    if (declaration.owner == ID() || (pou && pou->isStandard)) {
        return;
    }
    const ID unit = pou ? declaration.owner : ID();
    TellType(unit, id, declaration.type);
    // The library's view of an external has its global's value, the declaration none.
    TellWords(unit, id, declaration.initValue, declaration.type);
    WalkPath(id, declaration);
}

// What VAR_ACCESS opens may be written to, what VAR_CONFIG names gets a value or a place.
void Walk::WalkPath(ID id, const Declaration& declaration) {
    const bool isAccess = declaration.section.scope == Scope::kAccess;
    if (!isAccess && declaration.section.scope != Scope::kConfig) {
        return;
    }
    const UseKind kind = !isAccess                                           ? UseKind::kWrite
                         : (declaration.section.marks & kMarkReadWrite) != 0 ? UseKind::kReadWrite
                                                                             : UseKind::kRead;
    const ID unit = project_.GetPou(declaration.owner) ? declaration.owner : ID();
    paths_.ForEach(declaration.owner, isAccess ? declaration.comment2 : declaration.name,
                   [&](u16string_view name, const Meaning& meaning) {
                       TellAt(unit, id, name, meaning, kind);
                   });
}

// What globals are looked for from.
ID Walk::PlaceOf(ID unit, ID where) const {
    if (const Task* task = project_.GetTask(where)) {
        return task->resource;
    }
    const Declaration* declaration = project_.GetDeclaration(where);
    const VariableList* list = declaration ? project_.GetVariableList(declaration->owner) : nullptr;
    return list ? list->parent : unit;
}

// The type that the text ends with, and the constants in its bounds and lengths.
void Walk::TellType(ID unit, ID where, Text type) {
    u16string_view text(type);
    if (const std::size_t at = text.find(u"STRUCT "); at != text.npos) {
        TellWords(unit, where, text.substr(at), u"", true);
        text = text.substr(0, at);
    }
    const std::size_t bracket = text.find_first_of(u"[(");
    if (bracket == 0) {
        return;  // of a nameless enumeration, which names what is its own
    }
    TellTypeName(unit, where, LastWord(text));
    const std::size_t end = text.find_last_of(u"])");
    const bool hasBounds = bracket != text.npos && end != text.npos && end > bracket &&
                           (text[bracket] == u'[' || text.find(u"..") != text.npos ||
                            text.starts_with(u"STRING") || text.starts_with(u"WSTRING"));
    if (hasBounds) {
        TellWords(unit, where, text.substr(bracket + 1, end - bracket - 1), u"");
    }
}

bool Walk::TellTypeName(ID unit, ID where, u16string_view name) {
    if (const Meaning data = names_.TypeNamed(name)) {
        TellAt(unit, where, name, data, UseKind::kDeclare);
        return true;
    }
    const ID block = project_.FindAnyPou(name);
    if (block != ID()) {
        TellAt(unit, where, name, {UseObject::kUnit, block, {}}, UseKind::kDeclare);
    }
    return block != ID();
}

// The names in a value: those of members, in front of ":=", and literals are none. Or those in a
// nameless structure, where types are among them, and in front of ":" stand those of members.
void Walk::TellWords(ID unit, ID where, u16string_view text, Text type, bool isStructure) {
    Meaning list;  // that stands in front of a point
    for (std::size_t at = 0; at < text.size();) {
        const char16_t first = text[at];
        if (first == u'\'' || first == u'"') {
            for (++at; at < text.size() && text[at] != first; ++at) {
                at += text[at] == u'$' ? 1 : 0;
            }
            ++at;
            continue;
        }
        std::size_t end = at;
        while (end < text.size() && IsWordCharacter(text[end])) {
            ++end;
        }
        if (end == at) {
            ++at;
            continue;
        }
        const u16string_view word = text.substr(at, end - at);
        const bool isMember = at > 0 && text[at - 1] == u'.' && !(at > 1 && text[at - 2] == u'.');
        const bool isName = !chars::IsDigit(first) && !(at > 0 && text[at - 1] == u'#');
        std::size_t next = end;
        while (next < text.size() && chars::IsBlank(text[next])) {
            ++next;
        }
        at = end;
        if (isMember && list) {  // of a list, a configuration or a resource
            const Meaning global = names_.MemberOf(std::exchange(list, {}), word);
            if (global) {
                TellAt(unit, where, word, global, UseKind::kRead);
            }
        }
        if (!isName || isMember || !IsIdentifier(std::u16string(word).c_str())) {
            continue;
        }
        const bool isOfMember =
            text.substr(next, 2) == u":=" || (isStructure && text.substr(next, 1) == u":");
        if (isOfMember || (isStructure && TellTypeName(unit, where, word))) {
            continue;
        }
        if (end < text.size() && text[end] == u'#') {
            std::size_t last = end + 1;
            while (last < text.size() && IsWordCharacter(text[last])) {
                ++last;
            }
            const u16string_view value = text.substr(end + 1, last - end - 1);
            if (const Meaning meaning = names_.ValueOf(word, value)) {
                TellAt(unit, where, word, names_.TypeNamed(word), UseKind::kDeclare);
                TellAt(unit, where, value, meaning, UseKind::kRead);
            }
            at = last;
            continue;
        }
        Meaning meaning = names_.ValueOf(type, word);
        meaning = meaning ? meaning : names_.OfUnit(unit, word);
        meaning = meaning ? meaning : names_.OfProject(PlaceOf(unit, where), word);
        if (meaning && meaning.id != where) {
            TellAt(unit, where, word, meaning, UseKind::kRead);
        }
        list = meaning.object == UseObject::kList ? meaning : Meaning{};
    }
}

void Walk::WalkTask(ID id, const Task& task) {
    for (const Text text : {task.interval, task.event}) {
        TellWords({}, id, text, u"");
    }
}

}  // namespace

void ForEachUse(const Project& project, const UseOptions& options, const TakeUse& take) {
    Walk(project, options, take).Run();
}

}  // namespace lq::host
