// A project for the loaders' tests, and records as one line of text each.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "pouh/record_access.h"
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
    for (DECL_TYP* decl = DeclAt(list, LC_FIRST); decl; decl = DeclAt(list, LC_NEXT)) {
        lines.push_back(Describe(decl));
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

}  // namespace lq::pouh
