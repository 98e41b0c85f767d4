#include "host/check/type_info.h"

#include "lq_data/host/words/words.h"

namespace lq::host::check {

namespace {

using Kind = TypeInfo::Kind;

constexpr unsigned kMostDepth = 64;

// Types of the third edition and of the generic ones that the catalogue does not have.
constexpr u16string_view kLaterTypes[] = {
    u"CHAR",         u"WCHAR",       u"LTIME",          u"LDATE",         u"LTOD",
    u"LTIME_OF_DAY", u"LDT",         u"LDATE_AND_TIME", u"REF_TO",        u"POINTER",
    u"REFERENCE",    u"ANY_DERIVED", u"ANY_ELEMENTARY", u"ANY_MAGNITUDE", u"ANY_STRING",
    u"ANY_UNSIGNED", u"ANY_SIGNED",  u"ANY_DURATION",   u"ANY_CHARS",     u"ANY_CHAR",
    u"STRUCT",
};

IEC_TYPE ElementaryType(const std::u16string& word) {
    if (word == u"DATE_AND_TIME" || word == u"TIME_OF_DAY") {
        return word.front() == u'D' ? IEC_DT : IEC_TOD;
    }
    return IecTypeConv().GetId(word.c_str());
}

// "1..10, -2..2"
std::vector<Limits> ReadLimits(u16string_view text) {
    std::vector<Limits> limits;
    while (!text.empty()) {
        const u16string_view item = TakeItem(text);
        const std::size_t to = item.find(u"..");
        if (to == item.npos) {
            return {};
        }
        limits.push_back({Trim(item.substr(0, to)), Trim(item.substr(to + 2))});
    }
    return limits;
}

// What stands in the bracket that `text` begins with, which goes; empty when there is none.
u16string_view TakeBracket(u16string_view& text) {
    if (!text.starts_with(u'(') && !text.starts_with(u'[')) {
        return {};
    }
    const std::size_t end = 1 + FindOutside(text.substr(1), text.front() == u'(' ? u")" : u"]");
    const u16string_view inner = Trim(text.substr(1, std::min(end, text.size()) - 1));
    text = Trim(text.substr(std::min(end + 1, text.size())));
    return inner;
}

void ReadValues(u16string_view list, TypeInfo& type) {
    type.kind = Kind::kEnumeration;
    while (!list.empty()) {
        u16string_view item = TakeItem(list);
        const u16string_view name = TakeWord(item);
        type.hasNumbers = type.hasNumbers || !item.empty();
        if (!name.empty()) {
            type.values.push_back(name);
        }
    }
}

}  // namespace

bool Types::ReadNumber(u16string_view text, int64_t& number) {
    const Constant constant = ReadConstant(text);
    constexpr uint64_t kLargest = uint64_t{1} << 62;
    if (constant.kind != Constant::Kind::kInteger || constant.isTooLarge ||
        constant.magnitude > kLargest || !constant.prefix.empty()) {
        return false;
    }
    const auto magnitude = static_cast<int64_t>(constant.magnitude);
    number = constant.isNegative ? -magnitude : magnitude;
    return true;
}

const TypeInfo& Types::Of(Text text) {
    if (text != last_) {
        const TypeInfo*& known = byText_[text];
        if (!known) {
            known = &Read(text, 0);
        }
        last_ = text;
        lastType_ = known;
    }
    return *lastType_;
}

const TypeInfo& Types::Resolve(const TypeInfo& type) {
    const TypeInfo* at = &type;
    for (unsigned depth = 0; at->kind == Kind::kAlias; ++depth) {
        at = depth < kMostDepth ? &Of(project_.GetDataType(at->object)->baseType) : &unchecked_;
    }
    return *at;
}

const TypeInfo& Types::Innermost(const TypeInfo& type) {
    const TypeInfo* at = &Resolve(type);
    for (unsigned depth = 0; at->kind == Kind::kArray; ++depth) {
        at = depth < kMostDepth && at->base ? &Resolve(*at->base) : &unchecked_;
    }
    return *at;
}

const TypeInfo& Types::WithoutLimits(const TypeInfo& type) {
    const TypeInfo* at = &Resolve(type);
    for (unsigned depth = 0; at->kind == Kind::kSubrange; ++depth) {
        at = depth < kMostDepth ? &Resolve(*at->base) : &unchecked_;
    }
    return *at;
}

bool Types::GivesValue(const TypeInfo& type) {
    const TypeInfo* at = &type;
    for (unsigned depth = 0; at->kind == Kind::kAlias && depth < kMostDepth; ++depth) {
        const DataType& record = *project_.GetDataType(at->object);
        if (*record.initValue) {
            return true;
        }
        at = &Of(record.baseType);
    }
    const Kind kind = Innermost(*at).kind;
    return kind != Kind::kElementary && kind != Kind::kString && kind != Kind::kSubrange &&
           kind != Kind::kEnumeration;
}

const TypeInfo& Types::Named(Text text) {
    const TypeInfo* at = &Of(text);
    while (at->kind == Kind::kArray && at->base) {
        at = at->base;
    }
    return *at;
}

const NameTable& Types::Members(ID holder) {
    const auto [entry, isNew] = members_.try_emplace(holder.GetNumber(), project_);
    if (isNew) {
        for (const ID id : project_.Below(holder)) {
            entry->second.Add(id);
        }
    }
    return entry->second;
}

const IdList& Types::EnumerationsWith(u16string_view value) {
    if (!knowsEnumerators_) {
        knowsEnumerators_ = true;
        for (uint32_t i = 0; i < project_.DataTypes().size(); ++i) {
            for (const u16string_view name : Of(project_.DataTypes()[i].baseType).values) {
                enumerators_[Upper(name)].push_back(MakeId(Sort::kDataType, i));
            }
        }
    }
    const auto found = enumerators_.find(Upper(value));
    return found == enumerators_.end() ? none_ : found->second;
}

const TypeInfo& Types::Read(u16string_view text, unsigned depth) {
    TypeInfo& type = types_.emplace_back();
    text = Trim(text);
    u16string_view rest = text;
    if (text.starts_with(u'(')) {
        ReadValues(TakeBracket(rest), type);
        return type;
    }
    const u16string_view word = TakeWord(rest);
    if (!word.empty() && depth < kMostDepth) {
        ReadWord(word, rest, depth, type);
    }
    return type;
}

void Types::ReadWord(u16string_view word, u16string_view rest, unsigned depth, TypeInfo& type) {
    const std::u16string upper = Upper(word);
    const bool isWide = upper == u"WSTRING";
    const IEC_TYPE id = isWide ? IEC_STRING : ElementaryType(upper);
    if (upper == u"ARRAY") {
        ReadArray(rest, depth, type);
    } else if (std::ranges::find(kLaterTypes, upper) != std::end(kLaterTypes)) {
        type.kind = upper.starts_with(u"ANY_") ? Kind::kGeneric : Kind::kUnchecked;
    } else if (id == IEC_STRING) {
        type = {Kind::kString, id, isWide, false, word, TakeBracket(rest), {}, nullptr, {}, {}};
    } else if (IsElementaryType(id) && rest.empty()) {
        type.kind = Kind::kElementary;
        type.elementary = id;
        type.name = word;
    } else if (IsGenericType(id)) {
        type.kind = Kind::kGeneric;
        type.name = word;
    } else if (rest.starts_with(u'(')) {
        const u16string_view inner = TakeBracket(rest);
        if (inner.find(u"..") == inner.npos) {
            ReadValues(inner, type);
            return;
        }
        type.kind = Kind::kSubrange;
        type.base = &Read(word, depth + 1);
        type.name = word;
        type.limits = ReadLimits(inner);
    } else if (rest.empty()) {
        ReadNamed(word, type);
    }
}

void Types::ReadArray(u16string_view rest, unsigned depth, TypeInfo& type) {
    type.kind = Kind::kArray;
    type.limits = ReadLimits(TakeBracket(rest));
    if (EqualNames(TakeWord(rest), u"OF") && !rest.empty()) {
        type.base = &Read(rest, depth + 1);
    }
}

void Types::ReadNamed(u16string_view name, TypeInfo& type) {
    type.name = name;
    type.object = project_.FindDataType(name);
    if (const DataType* dataType = project_.GetDataType(type.object)) {
        type.kind = dataType->structure ? Kind::kStructure : Kind::kAlias;
        return;
    }
    type.object = project_.FindAnyPou(name);
    const Pou* pou = project_.GetPou(type.object);
    type.kind = !pou                                  ? Kind::kUnknown
                : pou->kind == LQ_KIND_FUNCTION_BLOCK ? Kind::kBlock
                                                      : Kind::kUnit;
    hasUnknown_ = hasUnknown_ || (type.kind == Kind::kUnknown && !IsStandardFunction(name));
}

}  // namespace lq::host::check
