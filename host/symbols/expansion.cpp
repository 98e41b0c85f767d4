#include "host/symbols/expansion.h"

#include <algorithm>
#include <charconv>

#include "host/symbols/address.h"

namespace lq::host::symbols {

namespace {

using Kind = TypeText::Kind;
using std::u16string_view;

// What an instance keeps, or is given.
bool IsMember(Scope scope) {
    return scope != Scope::kTemp && scope != Scope::kExternal && scope != Scope::kGlobal;
}

bool IsReference(Scope scope) {
    return scope == Scope::kInOut || scope == Scope::kExternal || scope == Scope::kConfig ||
           scope == Scope::kAccess;
}

uint64_t CountOf(const std::vector<Bounds>& bounds) {
    uint64_t count = bounds.empty() ? 0 : 1;
    for (const Bounds& dimension : bounds) {
        count *= std::min<uint64_t>(dimension.Count(), kMostElements + 1);
        count = std::min<uint64_t>(count, kMostElements + 1);
    }
    return count;
}

void AppendNumber(std::u16string& text, int64_t number) {
    char digits[24];
    const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), number);
    text.append(std::begin(digits), end.ptr);
}

// The element behind, with the last index running fastest; false when there is none.
bool Advance(std::vector<int64_t>& indexes, const std::vector<Bounds>& bounds) {
    for (std::size_t i = indexes.size(); i-- > 0;) {
        if (indexes[i] < bounds[i].upper) {
            ++indexes[i];
            return true;
        }
        indexes[i] = bounds[i].lower;
    }
    return false;
}

}  // namespace

void Expansion::Run(const Symbol& variable, Scope scope) {
    variable_ = &variable;
    name_ = variable.name;
    taken_ = 0;
    Visit({variable, IsReference(scope), IsOneAddress(variable.address)});
}

Expansion::Target Expansion::Resolve(u16string_view text) const {
    Target target;
    ID first;
    for (std::size_t depth = 0; depth < kMostDepth; ++depth) {
        target.text = text;
        target.type = ReadTypeText(text);
        if (target.type.kind != Kind::kNamed) {
            const bool isNameless = target.type.kind == Kind::kNamelessStructure;
            target.unexpanded = isNameless ? Unexpanded::kNameless : Unexpanded::kNone;
            return target;
        }
        const ID id = project_.FindDataType(text);
        const DataType* type = project_.GetDataType(id);
        const ID pou = type ? ID() : project_.FindAnyPou(text);
        const bool isBlock = pou != ID() && project_.GetPou(pou)->kind == LQ_KIND_FUNCTION_BLOCK;
        target.hasValue = target.hasValue || (type && *type->initValue);
        if (isBlock || (type && type->structure)) {
            target.holder = isBlock ? pou : id;
            return target;
        }
        if (!type || !*type->baseType) {
            target.unexpanded = Unexpanded::kUnknownType;
            return target;
        }
        if (id == first) {
            target.unexpanded = Unexpanded::kRecursive;
            return target;
        }
        first = first == ID() ? id : first;
        text = type->baseType;
    }
    target.unexpanded = Unexpanded::kDepth;
    return target;
}

// The same, through arrays to the type of their elements.
Expansion::Target Expansion::Innermost(u16string_view text) const {
    Target target = Resolve(text);
    for (std::size_t depth = 0; target.type.kind == Kind::kArray; ++depth) {
        const bool isSame = target.type.rest.data() == text.data();  // it leads to itself
        if (isSame || depth == kMostDepth) {
            target.unexpanded = isSame ? Unexpanded::kRecursive : Unexpanded::kDepth;
            return target;
        }
        target = Resolve(target.type.rest);
    }
    return target;
}

// Why what has members is not taken apart.
Unexpanded Expansion::Obstacle(const Item& item, const Target& target) const {
    if (item.isReference) {
        return Unexpanded::kReference;
    }
    if (open_.size() >= kMostDepth) {
        return Unexpanded::kDepth;
    }
    if (taken_ >= kMostMembers) {
        return Unexpanded::kMembers;
    }
    if (target.type.kind == Kind::kArray) {
        const uint64_t count = CountOf(target.type.bounds);
        return count == 0              ? Unexpanded::kBounds
               : count > kMostElements ? Unexpanded::kElements
                                       : Unexpanded::kNone;
    }
    if (std::ranges::find(open_, target.holder) != open_.end()) {
        return Unexpanded::kRecursive;
    }
    return project_.Below(target.holder).empty() ? Unexpanded::kEmpty : Unexpanded::kNone;
}

void Expansion::Visit(Item item) {
    const Target target = Resolve(item.symbol.type);
    const bool isArray = target.type.kind == Kind::kArray;
    if (isArray && target.type.rest.empty()) {
        return Take(item, target, Unexpanded::kBounds);
    }
    const Target inner = isArray ? Innermost(target.type.rest) : target;
    const bool isElementary = inner.type.kind == Kind::kElementary;
    if (isElementary || inner.unexpanded != Unexpanded::kNone) {
        return Take(item, inner, inner.unexpanded);
    }
    const Unexpanded obstacle = Obstacle(item, target);
    if (obstacle != Unexpanded::kNone) {
        return Take(item, target, obstacle);
    }
    item.isValueSet = item.isValueSet || target.hasValue || !item.symbol.initial.empty();
    open_.push_back(target.holder);
    if (isArray) {
        VisitElements(item, target.type);
    } else {
        VisitMembers(item, target.holder);
    }
    open_.pop_back();
}

void Expansion::VisitElements(const Item& item, const TypeText& array) {
    const std::size_t length = name_.size();
    std::vector<int64_t> indexes;
    for (const Bounds& bounds : array.bounds) {
        indexes.push_back(bounds.lower);
    }
    Item element = item;
    element.symbol.type = array.rest;
    element.symbol.address = {};
    element.symbol.initial = {};
    do {
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            name_ += i == 0 ? u'[' : u',';
            AppendNumber(name_, indexes[i]);
        }
        name_ += u']';
        Visit(element);
        element.isAtStart = false;
        name_.resize(length);
    } while (Advance(indexes, array.bounds));
}

void Expansion::VisitMembers(const Item& item, ID holder) {
    const std::size_t length = name_.size();
    const bool isBlock = project_.GetPou(holder) != nullptr;
    bool isAtStart = item.isAtStart && !isBlock;  // a block may begin with what it hides
    for (const ID id : project_.Below(holder)) {
        const Declaration& declaration = *project_.GetDeclaration(id);
        if (!IsMember(declaration.section.scope)) {
            continue;
        }
        const u16string_view address = declaration.address;
        const std::u16string section =
            isBlock ? WrittenSection(declaration.section) : std::u16string(item.symbol.section);
        Item member{item.symbol, IsReference(declaration.section.scope), isAtStart,
                    item.isValueSet};
        member.symbol.section = section;
        member.symbol.type = declaration.type;
        member.symbol.address = isBlock || IsOneAddress(address) ? address : u16string_view();
        member.symbol.initial = item.isValueSet ? u"" : declaration.initValue;
        member.symbol.comment = declaration.comment;
        if (const SourceFile* file = project_.FileOf(id)) {
            member.symbol.file = file->name;
            member.symbol.line = declaration.line;
            member.symbol.column = declaration.column;
        }
        name_.append(u".").append(declaration.name);
        Visit(member);
        name_.resize(length);
        isAtStart = false;
    }
}

void Expansion::Take(const Item& item, const Target& target, Unexpanded reason) {
    Symbol symbol = item.symbol;
    symbol.name = name_;
    symbol.unexpanded = reason;
    symbol.unexpandedType = reason == Unexpanded::kNone ? u16string_view() : target.text;
    if (symbol.address.empty() && item.isAtStart) {
        const unsigned bits = BitsOfType(target.text);
        const bool isSame = bits != 0 && bits == BitsOfAddress(variable_->address);
        symbol.address = isSame ? variable_->address : u16string_view();
    }
    ++taken_;
    if (!locatedOnly_ || !variable_->address.empty() || !symbol.address.empty()) {
        take_(symbol);
    }
}

}  // namespace lq::host::symbols
