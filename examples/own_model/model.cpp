// The embedder's own project model: one list of global variables. Whatever a model does not have,
// it answers with nothing.
#include <iterator>
#include <lq_model.h>

namespace {

struct Variable {
    const char16_t* name;
    const char16_t* type;
    const char16_t* initial;
};
constexpr Variable kVariables[] = {
    {u"Running", u"BOOL", u"FALSE"}, {u"Speed", u"INT", u"1500"}, {u"Level", u"REAL", u"0.75"}};

class Global final : public LQGVLDECL {
  public:
    explicit Global(const Variable& variable) : variable_(variable) {}
    int32_t GetKind() const override { return LQ_KIND_GVL_DECL; }
    const char16_t* GetName() const override { return variable_.name; }
    const char16_t* GetType() const override { return variable_.type; }
    const char16_t* GetInitValue() const override { return variable_.initial; }
    const char16_t* GetClass() const override { return u"VAR_GLOBAL"; }

  private:
    const Variable& variable_;
};

// The list has the identifier 1, its variables those behind it.
class List final : public LQNAVIOBJECT, LQSELECTION {
  public:
    LQSELECTION* GetSelection() override { return this; }
    int32_t GetCount() const override { return std::size(kVariables); }
    ID GetID(int32_t index) const override { return ID(static_cast<uint32_t>(index) + 2); }
};

class Objects final : public LQNAVIOBJECTMAN {
  public:
    LQNAVIOBJECT* Get(ID id) override { return id == ID(1) ? &list_ : nullptr; }

  private:
    List list_;
};

class Declarations final : public LQDECLMAN {
  public:
    LQOBJECT* Get(ID id) override {
        const uint32_t index = id.GetNumber() - 2;
        return index < std::size(kVariables) ? new Global(kVariables[index]) : nullptr;
    }
};

}  // namespace

LQNAVIOBJECTMAN* LQNAVIOBJECTMAN::Get() {
    static Objects objects;
    return &objects;
}
LQDECLMAN* LQDECLMAN::Get() {
    static Declarations declarations;
    return &declarations;
}

// No units, no types of the user's, every name and value as it stands.
LQPOUHDECL* LQPOUHDECL::CreateObject() {
    return nullptr;
}
ID FindPOUByName(const char16_t*) {
    return {};
}
ID FindDUTByName(const char16_t*) {
    return {};
}
LQDECL* FindGVLDeclByName(const char16_t*) {
    return nullptr;
}
LQDUT* GetDutByName(const char16_t*) {
    return nullptr;
}
int IsStringType(const char16_t*) {
    return 0;
}
int IsArrayType(const char16_t*) {
    return 0;
}
int IsFBName(const char16_t*) {
    return 0;
}
int CheckIdentifier(ERRHANDLER*, const char16_t*, int) {
    return 0;
}
int CheckInitSyntax(ERRHANDLER*, const char16_t*) {
    return 0;
}
int CheckStringSize(Scanner*, int32_t&) {
    return 0;
}
int CheckIsRecursiveCallEx(const char16_t*, const char16_t*, int) {
    return 0;
}
