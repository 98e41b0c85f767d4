// The embedder's own project model: a list of global variables and a program. Whatever a model does
// not have, the library answers with nothing.
#include "model.h"

#include <iterator>

namespace {

struct Variable {
    const char16_t *section, *name, *type, *initial;
    uint32_t line;
};
constexpr Variable kVariables[] = {{u"VAR_GLOBAL", u"Running", u"BOOL", u"FALSE", 6},
                                   {u"VAR_GLOBAL", u"Speed", u"INT", u"1500", 7},
                                   {u"VAR_GLOBAL", u"Level", u"REAL", u"0.75", 8},
                                   {u"VAR_EXTERNAL", u"Speed", u"INT", u"", 3},
                                   {u"VAR", u"Peaks", u"ARRAY [1..3] OF REAL", u"", 4}};
constexpr int32_t kGlobals = 3;

// The list has the identifier 1, the program 2, and the variables those behind them.
const Variable& VariableOf(ID id) {
    return kVariables[id.GetNumber() - 3];
}

template <typename Base>
struct Declaration final : Base {
    explicit Declaration(const Variable& source) : variable(source) {}
    const char16_t* GetClass() const override { return variable.section; }
    const char16_t* GetName() const override { return variable.name; }
    const char16_t* GetType() const override { return variable.type; }
    const char16_t* GetInitValue() const override { return variable.initial; }
    const Variable& variable;
};

struct List final : LQNAVIOBJECT, LQSELECTION {
    LQSELECTION* GetSelection() override { return this; }
    int32_t GetCount() const override { return kGlobals; }
    ID GetID(int32_t index) const override { return ID(static_cast<uint32_t>(index) + 3); }
} list;

struct Program final : LQPOU, LQSELECTION {
    const char16_t* GetName() const override { return u"Main"; }
    int32_t GetKind() const override { return LQ_KIND_PROGRAM; }
    LQOBJECT* GetHeader() override { return this; }
    LQSELECTION* GetSelection() override { return this; }
    int32_t GetCount() const override { return std::size(kVariables) - kGlobals; }
    ID GetID(int32_t index) const override { return list.GetID(index + kGlobals); }
} program;

struct Objects final : LQNAVIOBJECTMAN {
    LQNAVIOBJECT* Get(ID id) override {
        return id == kList      ? static_cast<LQNAVIOBJECT*>(&list)
               : id == kProgram ? &program
                                : nullptr;
    }
} objects;

struct Declarations final : LQDECLMAN {
    LQOBJECT* Get(ID id) override {
        if (id.GetNumber() < 3 + kGlobals) {
            return new Declaration<LQGVLDECL>(VariableOf(id));
        }
        return new Declaration<LQPOUHDECL>(VariableOf(id));
    }
} declarations;

}  // namespace

uint32_t LineOf(ID id) {
    return id == kList ? 5 : id == kProgram ? 2 : VariableOf(id).line;
}

LQNAVIOBJECTMAN* LQNAVIOBJECTMAN::Get() {
    return &objects;
}
LQDECLMAN* LQDECLMAN::Get() {
    return &declarations;
}
