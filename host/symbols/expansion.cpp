#include "host/symbols/expansion.h"

#include <algorithm>
#include <charconv>

#include "host/symbols/address.h"
#include "lq_data/host/words/words.h"

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

// In the order of the declarations, which an EN without ENO leaves in a block's list.
const IdList& InOrder(const IdList& members, IdList& sorted) {
    const auto isBefore = [](ID a, ID b) { return IndexOf(a) < IndexOf(b); };
    if (std::is_sorted(members.begin(), members.end(), isBefore)) {
        return members;
    }
    sorted = members;
    std::sort(sorted.begin(), sorted.end(), isBefore);
    return sorted;
}

}  // namespace

void Expansion::Run(const Symbol& variable, ID holder, Scope scope) {
    unit_ = holder;
    name_ = variable.name;
    taken_ = 0;
    Item item;
    item.symbol = variable;
    item.isReference = IsReference(scope);
    if (scope != Scope::kAccess) {  // a path is no address
        Place(item);
    }
    Visit(item);
}

// What follows from the address of its own declaration, if it has one.
void Expansion::Place(Item& item) const {
    u16string_view& address = item.symbol.address;
    if (!address.empty()) {
        address = configured_.InPlaceOf(address, unit_, name_);
        item.isLocated = true;
        item.start = IsOneAddress(address) ? address : u16string_view();
    }
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
            target.unexpanded =
                IsUnsupportedType(text) ? Unexpanded::kUnsupportedType : Unexpanded::kUnknownType;
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
    const bool isEmpty = std::ranges::none_of(project_.Below(target.holder), [this](ID id) {
        return IsMember(project_.GetDeclaration(id)->section.scope);
    });
    return isEmpty ? Unexpanded::kEmpty : Unexpanded::kNone;
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
    const bool isPlaced = !item.symbol.address.empty();
    if (isPlaced) {
        Hold(item);
    }
    item.isValueSet = item.isValueSet || target.hasValue || !item.symbol.initial.empty();
    open_.push_back(target.holder);
    if (isArray) {
        VisitElements(item, target.type);
    } else {
        VisitMembers(item, target.holder);
    }
    open_.pop_back();
    if (isPlaced) {
        TellHeld();
    }
}

void Expansion::Hold(const Item& item) {
    TellHeld();
    held_ = &item.symbol;
    heldName_ = name_.size();
}

void Expansion::TellHeld() {
    if (held_) {
        Symbol symbol = *held_;
        symbol.name = u16string_view(name_).substr(0, heldName_);
        symbol.unexpanded = Unexpanded::kOnlyBeginning;
        symbol.unexpandedType = symbol.type;
        held_ = nullptr;
        take_(symbol);
    }
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
        element.start = {};
        name_.resize(length);
    } while (Advance(indexes, array.bounds));
}

void Expansion::VisitMembers(const Item& item, ID holder) {
    const std::size_t length = name_.size();
    const bool isBlock = project_.GetPou(holder) != nullptr;
    bool isFirst = !isBlock;  // a block may begin with what it hides
    IdList sorted;
    for (const ID id : InOrder(project_.Below(holder), sorted)) {
        const Declaration& declaration = *project_.GetDeclaration(id);
        if (!IsMember(declaration.section.scope)) {
            continue;
        }
        const u16string_view address = declaration.address;
        const std::u16string section =
            isBlock ? WrittenSection(declaration.section) : std::u16string(item.symbol.section);
        Item member = item;
        member.isReference = IsReference(declaration.section.scope);
        if (!isFirst || !address.empty()) {
            member.start = {};  // a structure may place its members
        }
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
        Place(member);
        Visit(member);
        name_.resize(length);
        isFirst = false;
    }
}

void Expansion::Take(const Item& item, const Target& target, Unexpanded reason) {
    Symbol symbol = item.symbol;
    symbol.name = name_;
    symbol.unexpanded = reason;
    symbol.unexpandedType = reason == Unexpanded::kNone ? u16string_view() : target.text;
    if (symbol.address.empty() && !item.start.empty() && HasSizeOf(item.start, target)) {
        symbol.address = item.start;
        held_ = nullptr;
    }
    TellHeld();
    ++taken_;
    if (!locatedOnly_ || item.isLocated) {
        take_(symbol);
    }
}

// Whether the type, or the one that a range is of, is as long as the address says.
bool Expansion::HasSizeOf(u16string_view address, const Target& target) const {
    if (target.type.kind != Kind::kElementary) {
        return false;
    }
    const u16string_view whole = WithoutRange(target.text);
    const unsigned bits =
        BitsOfType(whole.size() < target.text.size() ? Resolve(whole).text : whole);
    return bits != 0 && bits == BitsOfAddress(address);
}

}  // namespace lq::host::symbols
