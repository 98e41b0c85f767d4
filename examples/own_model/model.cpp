// The embedder's own project model: one list of global variables. Whatever a model does not have,
// the library answers with nothing.
#include <iterator>
#include <lq_data/env/lq_model.h>

namespace {

struct Variable {
    const char16_t *name, *type, *initial;
};
constexpr Variable kVariables[] = {
    {u"Running", u"BOOL", u"FALSE"}, {u"Speed", u"INT", u"1500"}, {u"Level", u"REAL", u"0.75"}};

struct Global final : LQGVLDECL {
    explicit Global(const Variable& source) : variable(source) {}
    const char16_t* GetName() const override { return variable.name; }
    const char16_t* GetType() const override { return variable.type; }
    const char16_t* GetInitValue() const override { return variable.initial; }
    const Variable& variable;
};

// The list has the identifier 1, its variables those behind it.
struct List final : LQNAVIOBJECT, LQSELECTION {
    LQSELECTION* GetSelection() override { return this; }
    int32_t GetCount() const override { return std::size(kVariables); }
    ID GetID(int32_t index) const override { return ID(static_cast<uint32_t>(index) + 2); }
} list;

struct Objects final : LQNAVIOBJECTMAN {
    LQNAVIOBJECT* Get(ID id) override { return id == ID(1) ? &list : nullptr; }
} objects;

struct Declarations final : LQDECLMAN {
    LQOBJECT* Get(ID id) override { return new Global(kVariables[id.GetNumber() - 2]); }
} declarations;

}  // namespace

LQNAVIOBJECTMAN* LQNAVIOBJECTMAN::Get() {
    return &objects;
}
LQDECLMAN* LQDECLMAN::Get() {
    return &declarations;
}
