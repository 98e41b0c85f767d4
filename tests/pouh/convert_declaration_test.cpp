// Conversions through the symbol table loader, which adds nothing of its own.

#include "pouh/convert_declaration.h"

#include <gtest/gtest.h>

#include "load_test_util.h"
#include "pouh/records.h"

namespace {

using namespace lq::pouh;
using lq::host::Scope;

TEST(ConvertDeclaration, ChecksAndMarks) {
    struct {
        const char16_t* name;
        const char16_t* type;
        lq::host::Section section;
        const char16_t* init;
        const char16_t* line;
    } const cases[] = {
        {u"x", u"INT", kLocal, u"5", u"1 x : 1 INT := 5"},
        {u"x", u"STRING(4)", kInput, u"'ab'", u"2 x : 3 STRING(4) := 'ab'"},
        {u"x", u"ARRAY [1..2] OF INT", kOutput, u"[1,2]", u"5 x : 4 ARRAY [1..2] OF INT := [1,2]"},
        {u"x", u"Point", kLocal, u"a := 1", u"1 x : 5 Point := a := 1"},
        {u"x", u"TON", kLocal, u"", u"1 x : 6 TON"},
        {u"x", u"STRUCT a : INT; END_STRUCT", kLocal, u"", u"1 x : 1 STRUCT a : INT; END_STRUCT"},
        {u"x", u"VOID", kLocal, u"", u"1 x : 1 ?VOID?"},
        {u"x", u"Nothing", kLocal, u"", u"1 x : 1 ?Nothing?"},
        {u"x", u"INT (1..10)", kLocal, u"", u"1 x : 1 ?INT (1..10)?"},
        {u"x", u"INT", kLocal, u"1 +", u"1 x : 1 INT := ?1 +?"},
        {u"1x", u"INT", kLocal, u"", u"1 ?1x? : 1 INT"},
        // External declarations take after the global, if there is one.
        {u"g", u"INT", kExternal, u"3", u"10 g : 1 INT := 7 @%MW4"},
        {u"h", u"INT", kExternal, u"3", u"10 h : 1 INT"},
        {u"g", u"INT", {Scope::kExternal, false, true}, u"3", u"13 g : 1 INT := 7 @%MW4"},
        {u"g", u"INT", {Scope::kExternal, true, false}, u"3", u"19 g : 1 INT := 7 @%MW4"},
        {u"g", u"INT", {Scope::kExternal, true, true}, u"3", u"20 g : 1 INT := 7 @%MW4"},
        {u"g", u"INT", kLocal, u"3", u"1 g : 1 INT := 3"},
    };
    LoadedProject project;
    project.AddStructure(u"Point");
    const ID list = project.AddGlobals();
    project.AddVar(list, u"g", u"INT", kGlobal, u"7", u"%MW4");
    for (const auto& c : cases) {
        const ID pou = project.AddPouNamed(u"Main");
        project.AddVar(pou, c.name, c.type, c.section, c.init, u"%IX0.0");
        SYMBOL_TABLE_TYP* table = CreateSymbolTable();
        EXPECT_EQ(LoadSelectedSymbolTable(table, pou), 1);
        EXPECT_EQ(DescribeAll(ListOf(table)), Lines{c.line}) << testing::PrintToString(c.name);
        DestroySymbolTable(table);
    }
}

TEST(ConvertDeclaration, GlobalsKeepTheirTextsUnchecked) {
    LoadedProject project;
    const ID list = project.AddGlobals();
    project.AddVar(list, u"g", u"INT", kGlobal, u"1 +", u"%QW2");
    SYMBOL_TABLE_TYP* table = CreateSymbolTable();
    EXPECT_EQ(LoadSelectedSymbolTable(table, list), 1);
    EXPECT_EQ(DescribeAll(ListOf(table)), Lines{u"11 g : 1 INT := 1 + @%QW2"});
    DestroySymbolTable(table);
}

// A declaration object that needs no project.
class FreeDeclaration : public LQPOUHDECL {
  public:
    FreeDeclaration(std::u16string name, const char16_t* type)
        : name_(std::move(name)), type_(type) {}
    const char16_t* GetName() const override { return name_.c_str(); }
    const char16_t* GetType() const override { return type_; }
    const char16_t* GetDeclComment() const override { return u"first"; }
    const char16_t* GetDeclComment2() const override { return u"second"; }

  private:
    std::u16string name_;
    const char16_t* type_;
};

// Objects whose kind promises a class that they have not.
template <typename Base, int32_t kind>
class OddObject : public Base {
  public:
    int32_t GetKind() const override { return kind; }
};

TEST(ConvertDeclaration, ObjectsOfAnotherKindThanTheirClass) {
    LoadedProject project;
    OddObject<LQPOUHDECL, LQ_KIND_GVL_DECL> global;
    OddObject<LQGVLDECL, 0> local;
    for (LQOBJECT* source : {static_cast<LQOBJECT*>(&global), static_cast<LQOBJECT*>(&local)}) {
        DECL_TYP* decl = ConvertDeclaration(*source, false);
        ASSERT_NE(decl, nullptr);
        EXPECT_EQ(decl->scope, unsigned{DS_UNKNOWN});
        DestroyDecl(decl);
    }
    OddObject<LQPOU, LQ_KIND_FUNCTION> withoutHeader;
    POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
    EXPECT_EQ(LoadInterface(list, &withoutHeader), 0);
    EXPECT_EQ(CardinalityOfList(ListOf(list)), 0u);
    EXPECT_EQ(LoadInterface(list, nullptr), 0);
    EXPECT_EQ(LoadInterface(nullptr, &withoutHeader), 0);
    DestroyPOUHDeclList(list);
}

TEST(ConvertDeclaration, NameOfReturnValue) {
    const std::u16string fits(32, u'f');
    const std::u16string tooLong(33, u'f');
    struct {
        std::u16string name;
        const char16_t* type;
        bool isReturn;
        std::u16string stored;
    } const cases[] = {
        {fits, u"INT", true, fits},
        {tooLong, u"INT", true, u"?" + tooLong + u"?"},
        {tooLong, u"INT", false, tooLong},
        // Only the length counts for an elementary (or unknown) result type.
        {u"1x", u"INT", true, u"1x"},
        {u"1x", u"Nothing", true, u"1x"},
        {u"1x", u"STRING", true, u"?1x?"},
        {tooLong, u"STRING", true, tooLong},
    };
    LoadedProject project;
    for (const auto& c : cases) {
        FreeDeclaration source(c.name, c.type);
        DECL_TYP* decl = ConvertDeclaration(source, c.isReturn);
        EXPECT_EQ(std::u16string(TextOf(decl, POUH_NAME)), c.stored);
        EXPECT_EQ(std::u16string(CommentOf(decl, POUH_COMMENT)), u"first");
        EXPECT_EQ(std::u16string(CommentOf(decl, POUH_COMMENT2)), u"second");
        DestroyDecl(decl);
    }
}

}  // namespace
