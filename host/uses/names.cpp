#include "host/uses/names.h"

#include "lq_data/detail/chars.h"

namespace lq::host::uses {

namespace {

bool IsWordCharacter(char16_t c) {
    return chars::IsLetter(c) || chars::IsDigit(c) || c == u'_';
}

constexpr int kMostAliases = 64;

}  // namespace

Names::Names(const Project& project)
    : project_(project), globals_(project), parameters_(project.Pous().size()) {
    AddDeclarations();
    for (uint32_t i = 0; i < project.VariableLists().size(); ++i) {
        const VariableList& list = project.VariableLists()[i];
        const ID id = MakeId(Sort::kVariableList, i);
        lists_.AddFirst(id.GetNumber(), HashOfName(list.name), [&](uint32_t number) {
            return Equal(project_.NameOf(ID(number)), list.name);
        });
    }
    for (uint32_t i = 0; i < project.DataTypes().size(); ++i) {
        AddValues(project.DataTypes()[i].baseType, MakeId(Sort::kDataType, i));
    }
}

uint32_t Names::HashIn(ID owner, u16string_view name) {
    return HashOfName(name) ^ (owner.GetNumber() * 0x9E3779B1u);
}

void Names::AddDeclarations() {
    for (uint32_t i = 0; i < project_.Declarations().size(); ++i) {
        const Declaration& declaration = project_.Declarations()[i];
        const Scope scope = declaration.section.scope;
        if (declaration.owner == ID() || scope == Scope::kConfig || scope == Scope::kAccess) {
            continue;
        }
        const ID id = MakeId(Sort::kDeclaration, i);
        declarations_.AddFirst(
            id.GetNumber(), HashIn(declaration.owner, declaration.name), [&](uint32_t number) {
                const Declaration& other = *project_.GetDeclaration(ID(number));
                return other.owner == declaration.owner && Equal(other.name, declaration.name);
            });
        AddValues(declaration.type, id);
    }
}

// Of "(Red, Green := 5)", "INT (Red, Green)" and of the elements of arrays.
void Names::AddValues(Text type, ID of) {
    const u16string_view text(type);
    std::size_t at = text.find(u'(');
    if (at == text.npos || text.back() != u')' || text.find(u"..", at) != text.npos ||
        text.starts_with(u"STRUCT")) {
        return;
    }
    bool isNext = true;
    while (++at < text.size()) {
        if (isNext && chars::IsLetter(text[at])) {
            std::size_t end = at;
            while (end < text.size() && IsWordCharacter(text[end])) {
                ++end;
            }
            const u16string_view name = text.substr(at, end - at);
            allValues_.push_back({name, of});
            const auto place = static_cast<uint32_t>(allValues_.size());
            values_.AddFirst(place, HashOfName(name), [&](uint32_t other) {
                return Equal(allValues_[other - 1].name, name);
            });
            ownValues_.AddFirst(place, HashIn(of, name), [&](uint32_t other) {
                const Value& value = allValues_[other - 1];
                return value.of == of && Equal(value.name, name);
            });
            at = end - 1;
            isNext = false;
        }
        isNext = isNext || text[at] == u',';
    }
}

Meaning Names::Declared(ID owner, u16string_view name) {
    const ID id(declarations_.Find(HashIn(owner, name), [&](uint32_t number) {
        const Declaration& declaration = *project_.GetDeclaration(ID(number));
        return declaration.owner == owner && Equal(declaration.name, name);
    }));
    if (id == ID()) {
        return {};
    }
    const Declaration& declaration = *project_.GetDeclaration(id);
    if (declaration.section.scope == Scope::kExternal) {
        const GlobalFound global = globals_.Find(owner, name);
        return {UseObject::kGlobal, id, global.id, global.shared};
    }
    return SortOf(owner) == Sort::kVariableList ? Meaning{UseObject::kGlobal, {}, id}
                                                : Meaning{UseObject::kVariable, id, {}};
}

Meaning Names::OfUnit(ID unit, u16string_view name) {
    if (const Meaning own = Declared(unit, name)) {
        return own;
    }
    const Pou* pou = project_.GetPou(unit);
    const bool isResult = pou && pou->kind == LQ_KIND_FUNCTION && Equal(pou->name, name);
    return isResult ? Meaning{UseObject::kResult, unit, {}} : Meaning{};
}

Meaning Names::TypeNamed(u16string_view name) const {
    const ID type = project_.FindDataType(name);
    return type != ID() ? Meaning{UseObject::kType, type, {}} : Meaning{};
}

Meaning Names::ValueNamed(u16string_view name) const {
    const uint32_t value = values_.Find(
        HashOfName(name), [&](uint32_t place) { return Equal(allValues_[place - 1].name, name); });
    return value != 0 ? Meaning{UseObject::kEnumerator, allValues_[value - 1].of, {}} : Meaning{};
}

Meaning Names::OfProject(ID place, u16string_view name) {
    const GlobalFound global = globals_.Find(place, name);
    if (global.id != ID() || global.shared) {
        return {UseObject::kGlobal, {}, global.id, global.shared};
    }
    if (const Meaning value = ValueNamed(name)) {
        return value;
    }
    if (const ID pou = project_.FindAnyPou(name); pou != ID()) {
        return {UseObject::kUnit, pou, {}};
    }
    if (const Meaning type = TypeNamed(name)) {
        return type;
    }
    const ID list(lists_.Find(HashOfName(name), [&](uint32_t number) {
        return Equal(project_.NameOf(ID(number)), name);
    }));
    return list != ID() ? Meaning{UseObject::kList, list, {}} : Meaning{};
}

ID Names::TypeIn(u16string_view text) const {
    for (int i = 0; i < kMostAliases; ++i) {
        const u16string_view name = LastWord(text);
        const ID id = project_.FindDataType(name);
        const DataType* type = project_.GetDataType(id);
        if (!type) {
            return project_.FindAnyPou(name);
        }
        if (type->structure || type->baseType[0] == 0) {
            return id;
        }
        text = type->baseType;
    }
    return {};
}

Meaning Names::MemberOf(const Meaning& what, u16string_view name) {
    if (what.object == UseObject::kUnit || what.object == UseObject::kList) {
        return Declared(what.id, name);
    }
    if (what.object == UseObject::kType) {
        return ValueOf(project_.NameOf(what.id), name);
    }
    const Declaration* declaration = project_.GetDeclaration(what.Typed());
    const ID owner = declaration ? TypeIn(declaration->type) : ID();
    return owner != ID() ? Declared(owner, name) : Meaning{};
}

Meaning Names::ValueOf(u16string_view type, u16string_view name) const {
    for (int i = 0; i < kMostAliases; ++i) {
        const ID of = project_.FindDataType(LastWord(type));
        const uint32_t value = ownValues_.Find(HashIn(of, name), [&](uint32_t place) {
            return allValues_[place - 1].of == of && Equal(allValues_[place - 1].name, name);
        });
        if (value != 0 || of == ID()) {
            return value != 0 ? Meaning{UseObject::kEnumerator, of, {}} : Meaning{};
        }
        type = project_.GetDataType(of)->baseType;
    }
    return {};
}

// Whether the type, or what it stands for, lists its values.
bool Names::IsEnumeration(u16string_view type) const {
    for (int i = 0; i < kMostAliases; ++i) {
        const DataType* record = project_.GetDataType(project_.FindDataType(type));
        if (!record || record->structure) {
            return false;
        }
        type = record->baseType;
        if (const std::size_t at = type.find(u'('); at != type.npos) {
            return type.find(u"..", at) == type.npos && type.find(u'[') == type.npos &&
                   !type.starts_with(u"STRING") && !type.starts_with(u"WSTRING");
        }
    }
    return false;
}

ID Names::CalleeOf(const Meaning& what) const {
    ID pou = what.id;
    if (const Declaration* declaration = project_.GetDeclaration(what.Typed())) {
        pou = TypeIn(declaration->type);
        const Pou* block = project_.GetPou(pou);
        return block && block->kind == LQ_KIND_FUNCTION_BLOCK ? pou : ID();
    }
    return project_.GetPou(pou) ? pou : ID();
}

const IdList& Names::ParametersOf(ID pou) {
    std::unique_ptr<IdList>& list = parameters_[IndexOf(pou)];
    if (!list) {
        list = std::make_unique<IdList>();
        for (const ID id : project_.GetPou(pou)->declarations) {
            const Scope scope = project_.GetDeclaration(id)->section.scope;
            if (scope == Scope::kInput || scope == Scope::kOutput || scope == Scope::kInOut) {
                list->push_back(id);
            }
        }
    }
    return *list;
}

}  // namespace lq::host::uses
