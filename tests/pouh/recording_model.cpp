// The linker leads the library's calls of the model here, and on to the model.
#include <vector>

#include "load_test_util.h"

// NOLINTBEGIN: the names are the linker's
#define LQ_WRAPPED(Result, Symbol, Parameters, name)       \
    Result Wrapped##name Parameters asm("__wrap_" Symbol); \
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

// A declaration that notes what it is given.
class NotingDeclaration final : public LQPOUHDECL {
  public:
    explicit NotingDeclaration(LoadedProject& project) : project_(project) {}
    void SetName(const char16_t* text) override { project_.Note(u"name ", text); }
    void SetType(const char16_t* text) override { project_.Note(u"type ", text); }
    void SetInitValue(const char16_t* text) override { project_.Note(u"value ", text); }
    void SetClass(int32_t number) override { project_.Note(u"class ", Number(number)); }
    void SetClassId(uint32_t number) override { project_.Note(u"class id ", Number(number)); }

  private:
    LoadedProject& project_;
};

}  // namespace

std::u16string Number(int64_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

std::u16string LoadedProject::Called(ID id) const {
    return id == ID()             ? u"nothing"
           : id == PouPool()      ? u"the POUs"
           : id == LibraryPool()  ? u"the library"
           : id == ResourcePool() ? u"the resources"
           : *NameOf(id)          ? std::u16string(NameOf(id))
                                  : u"unknown";
}

LQNAVIOBJECT* LoadedProject::Objects::Get(ID id) {
    project_.Note(u"object ", project_.Called(id));
    const auto odd = project_.instead.find(id.GetNumber());
    return odd != project_.instead.end() ? odd->second : RealObjects()->Get(id);
}

ID LoadedProject::Objects::Find(const char16_t* name, ID parent, uint32_t kind) {
    project_.Note(u"find ", name + std::u16string(u" in ") + project_.Called(parent) +
                                (kind == LQ_ANY_KIND ? u"" : u" of " + Number(kind)));
    return RealObjects()->Find(name, parent, kind);
}

LQCOLLECTION* LoadedProject::Objects::GetPOUPool() {
    return project_.hasPools ? RealObjects()->GetPOUPool() : nullptr;
}
LQCOLLECTION* LoadedProject::Objects::GetLibraryPool() {
    return project_.hasPools ? this : nullptr;
}
LQCOLLECTION* LoadedProject::Objects::GetResourcePool() {
    return project_.hasPools ? RealObjects()->GetResourcePool() : nullptr;
}

ID LoadedProject::Objects::Lookup(const char16_t* name, uint32_t kind) const {
    project_.Note(u"library ", Number(kind));
    return RealObjects()->GetLibraryPool()->Lookup(name, kind);
}

LQOBJECT* LoadedProject::Declarations::Get(ID id) {
    project_.Note(u"declaration ", project_.Called(id));
    return RealDeclarations()->Get(id);
}

}  // namespace lq::pouh

using lq::pouh::LoadedProject;

LQNAVIOBJECTMAN* WrappedObjects() {
    LoadedProject* const project = LoadedProject::current;
    return !project ? RealObjects() : project->hasManagers ? &project->objects : nullptr;
}

LQDECLMAN* WrappedDeclarations() {
    LoadedProject* const project = LoadedProject::current;
    return !project ? RealDeclarations() : project->hasManagers ? &project->declarations : nullptr;
}

LQDECL* WrappedGlobal(const char16_t* name) {
    if (LoadedProject::current) {
        LoadedProject::current->Note(u"global ", name);
    }
    return RealGlobal(name);
}

LQDUT* WrappedDut(const char16_t* name) {
    if (LoadedProject::current) {
        LoadedProject::current->Note(u"type ", name);
    }
    return RealDut(name);
}

LQPOUHDECL* WrappedCreate() {
    LoadedProject* const project = LoadedProject::current;
    return project && project->notesNew ? new lq::pouh::NotingDeclaration(*project) : RealCreate();
}

int WrappedCheck(ERRHANDLER* handler, const char16_t* text) {
    if (LoadedProject::current) {
        LoadedProject::current->Note(u"check ", text);
    }
    return RealCheck(handler, text);
}
