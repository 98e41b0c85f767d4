// The linker leads the library's calls of the model here, and on to the model. Libraries call some
// of them, too, so that they may not be hidden.
#include "load_test_util.h"

// NOLINTBEGIN: the names are the linker's
#define LQ_WRAPPED(Result, Symbol, Parameters, name)                                      \
    [[gnu::visibility("default")]] Result Wrapped##name Parameters asm("__wrap_" Symbol); \
    Result Real##name Parameters asm("__real_" Symbol);
LQ_WRAPPED(LQNAVIOBJECTMAN*, "_ZN15LQNAVIOBJECTMAN3GetEv", (), Objects)
LQ_WRAPPED(LQDECLMAN*, "_ZN9LQDECLMAN3GetEv", (), Declarations)
LQ_WRAPPED(LQDECL*, "_Z17FindGVLDeclByNamePKDs", (const char16_t* name), Global)
LQ_WRAPPED(LQDUT*, "_Z12GetDutByNamePKDs", (const char16_t* name), Dut)
LQ_WRAPPED(LQPOUHDECL*, "_ZN10LQPOUHDECL12CreateObjectEv", (), Create)
LQ_WRAPPED(int, "_Z15CheckInitSyntaxP10ERRHANDLERPKDs",
           (ERRHANDLER * handler, const char16_t* text), Check)
// NOLINTEND

namespace lq::pouh {

LoadedProject* LoadedProject::current = nullptr;

namespace {

void Note(const char16_t* what, const std::u16string& whom) {
    if (LoadedProject::current) {
        std::u16string& asked = LoadedProject::current->asked;
        asked += (asked.empty() ? u"" : u"; ") + (what + whom);
    }
}

void NoteText(const char16_t* what, const char16_t* text) {
    Note(what, text ? text : u"null");
}

std::u16string Called(ID id) {
    const LoadedProject& project = *LoadedProject::current;
    return id == project.PouPool() ? u"the POUs"
           : *project.NameOf(id)   ? project.NameOf(id)
                                   : u"unknown";
}

// A declaration that notes what it is given, and keeps nothing.
struct NotingDeclaration final : LQPOUHDECL {
    void SetName(const char16_t* text) override { Note(u"name ", text); }
    void SetType(const char16_t* text) override { Note(u"type ", text); }
    void SetInitValue(const char16_t* text) override { Note(u"value ", text); }
    void SetClass(int32_t number) override { Note(u"class ", Number(number)); }
    void SetClassId(uint32_t number) override { Note(u"class id ", Number(number)); }
};

// The library sees these managers; the first is its own library pool.
struct Objects final : LQNAVIOBJECTMAN, LQCOLLECTION {
    LQNAVIOBJECT* Get(ID id) override {
        Note(u"object ", Called(id));
        const auto& instead = LoadedProject::current->instead;
        const auto odd = instead.find(id.GetNumber());
        return odd != instead.end() ? odd->second : RealObjects()->Get(id);
    }
    ID Find(const char16_t* name, ID parent, uint32_t kind) override {
        Note(u"find ", name + std::u16string(u" in ") + Called(parent) +
                           (kind == LQ_ANY_KIND ? u"" : u" of " + Number(kind)));
        return RealObjects()->Find(name, parent, kind);
    }
    template <typename Pool>
    static Pool* IfAny(Pool* pool) {
        return LoadedProject::current->hasPools ? pool : nullptr;
    }
    LQCOLLECTION* GetPOUPool() override { return IfAny(RealObjects()->GetPOUPool()); }
    LQCOLLECTION* GetLibraryPool() override { return IfAny<LQCOLLECTION>(this); }
    LQCOLLECTION* GetResourcePool() override { return IfAny(RealObjects()->GetResourcePool()); }
    ID Lookup(const char16_t* name, uint32_t kind) const override {
        Note(u"library ", Number(kind));
        return RealObjects()->GetLibraryPool()->Lookup(name, kind);
    }
} objects;

struct Declarations final : LQDECLMAN {
    LQOBJECT* Get(ID id) override {
        Note(u"declaration ", Called(id));
        return RealDeclarations()->Get(id);
    }
} declarations;

}  // namespace

std::u16string Number(int64_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

}  // namespace lq::pouh

using lq::pouh::LoadedProject;
using lq::pouh::NoteText;

LQNAVIOBJECTMAN* WrappedObjects() {
    LoadedProject* const project = LoadedProject::current;
    return !project ? RealObjects() : project->hasManagers ? &lq::pouh::objects : nullptr;
}
LQDECLMAN* WrappedDeclarations() {
    LoadedProject* const project = LoadedProject::current;
    return !project ? RealDeclarations() : project->hasManagers ? &lq::pouh::declarations : nullptr;
}
LQDECL* WrappedGlobal(const char16_t* name) {
    NoteText(u"global ", name);
    return RealGlobal(name);
}
LQDUT* WrappedDut(const char16_t* name) {
    NoteText(u"type ", name);
    return RealDut(name);
}
LQPOUHDECL* WrappedCreate() {
    LoadedProject* const project = LoadedProject::current;
    return project && project->notesNew ? new lq::pouh::NotingDeclaration : RealCreate();
}
int WrappedCheck(ERRHANDLER* handler, const char16_t* text) {
    NoteText(u"check ", text);
    return RealCheck(handler, text);
}
