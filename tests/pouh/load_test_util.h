// A project for the loaders' tests, objects that are not as they should be, and records as one line
// of text each.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "lq_data/records.h"
#include "tests/host/model/model_util.h"

namespace lq::pouh {

std::u16string Number(int64_t number);

// A project that the model answers for as long as it lives, and that keeps what the library asks of
// the model, in order.
class LoadedProject : public host::CurrentProject {
  public:
    LoadedProject() { current = this; }
    ~LoadedProject() { current = nullptr; }

    // What was asked since the last call: "find Main in the POUs; object Main".
    std::u16string Asked() { return std::exchange(asked, u""); }

    static LoadedProject* current;
    std::u16string asked;
    std::map<uint32_t, LQNAVIOBJECT*>
        instead;  // by identifier: objects that are not as they should
    bool hasManagers = true;
    bool hasPools = true;
    bool notesNew = false;  // new declarations keep nothing and note what they are given
};

inline constexpr host::Section kLocal = {host::Scope::kLocal};
inline constexpr host::Section kInput = {host::Scope::kInput};
inline constexpr host::Section kOutput = {host::Scope::kOutput};
inline constexpr host::Section kInOut = {host::Scope::kInOut};
inline constexpr host::Section kExternal = {host::Scope::kExternal};
inline constexpr host::Section kGlobal = {host::Scope::kGlobal};

// "scope name : type-kind type-text := initial-value @address", the last two where there is one.
inline std::u16string Describe(const DECL_TYP* decl) {
    uint32_t scope = 0;
    GetAttrOfDecl(decl, POUH_SCOPE, &scope);
    std::u16string line = Number(scope) + u" " + TextOf(decl, POUH_NAME) + u" : " +
                          Number(TypeKindOf(decl)) + u" " + TypeTextOf(decl);
    if (*InitValueOf(decl)) {
        line += std::u16string(u" := ") + InitValueOf(decl);
    }
    if (*TextOf(decl, POUH_ADDRESS)) {
        line += std::u16string(u" @") + TextOf(decl, POUH_ADDRESS);
    }
    return line;
}

using Lines = std::vector<std::u16string>;

inline Lines DescribeAll(FLIST* list) {
    Lines lines;
    for (const Declaration decl : Declarations(list)) {
        lines.push_back(Describe(decl.Record()));
    }
    return lines;
}

inline Lines Names(FLIST* list) {
    Lines names;
    void* slot = nullptr;
    for (LIST_CALLBACK code = LC_FIRST; ListGet(list, slot, nullptr, code, 0); code = LC_NEXT) {
        names.emplace_back(*static_cast<char16_t**>(slot));
    }
    return names;
}

// An object whose kind promises a class that it has not, or whose parts are missing.
template <typename Base>
class Odd : public Base {
  public:
    explicit Odd(int32_t kind, LQOBJECT* header = nullptr, LQSELECTION* members = nullptr)
        : header_(header), kind_(kind), members_(members) {}

    const char16_t* GetName() const override { return header_ ? u"odd" : u"part"; }
    const char16_t* GetType() const override { return u"INT"; }
    const char16_t* GetComment(int32_t number) const override { return number == 0 ? u"o" : u"?"; }
    const char16_t* GetDeclComment() const override { return u"first"; }
    const char16_t* GetDeclComment2() const override { return u"second"; }
    int32_t GetKind() const override { return kind_; }
    int32_t QueryValue(int32_t query) const override { return query == 32 ? 4711 : -1; }
    LQSELECTION* GetSelection() override { return members_; }

  protected:
    LQOBJECT* header_;

  private:
    int32_t kind_;
    LQSELECTION* members_;
};

struct OddPou final : Odd<LQPOU> {
    using Odd::Odd;
    LQOBJECT* GetHeader() override { return header_; }
    int GetEnoFlag() const override { return header_ ? 0 : 1; }
    int32_t QueryValue(int32_t) const override { return -1; }
};

struct Members : LQSELECTION {
    explicit Members(std::vector<ID> all) : ids(std::move(all)) {}
    int32_t GetCount() const override { return static_cast<int32_t>(ids.size()); }
    ID GetID(int32_t index) const override { return ids.at(static_cast<size_t>(index)); }
    std::vector<ID> ids;
};

}  // namespace lq::pouh
