#include <gtest/gtest.h>

#include "load_test_util.h"
#include "pouh/records.h"

namespace {

using namespace lq::pouh;
using lq::host::Pou;

// The declarations a (input), r (local), q (output), in that order.
ID AddPouWithVars(LoadedProject& project, const Pou& pou) {
    const ID id = project.AddPou(pou);
    project.AddVar(id, u"a", u"INT", kInput);
    project.AddVar(id, u"r", u"INT", kLocal);
    project.AddVar(id, u"q", u"INT", kOutput);
    return id;
}

TEST(LoadHeader, DeclarationsByKindAndEnoFlag) {
    struct {
        LQ_OBJECT_KIND kind;
        bool eno;
        uint32_t pouType;
        Lines header;
        Lines interface;  // empty: not loaded
    } const cases[] = {
        {LQ_KIND_FUNCTION,
         true,
         1,
         {u"2 EN : 1 BOOL := FALSE", u"2 a : 1 INT", u"5 ENO : 1 BOOL := FALSE", u"5 F : 1 REAL",
          u"5 q : 1 INT", u"1 r : 1 INT"},
         {u"2 EN : 1 BOOL := FALSE", u"2 a : 1 INT", u"5 ENO : 1 BOOL := FALSE", u"5 F : 1 REAL",
          u"5 q : 1 INT"}},
        {LQ_KIND_FUNCTION,
         false,
         1,
         {u"2 a : 1 INT", u"5 F : 1 REAL", u"5 q : 1 INT", u"1 r : 1 INT"},
         {u"2 a : 1 INT", u"5 F : 1 REAL", u"5 q : 1 INT"}},
        {LQ_KIND_FUNCTION_BLOCK,
         true,
         2,
         {u"2 EN : 1 BOOL := FALSE", u"2 a : 1 INT", u"5 ENO : 1 BOOL := FALSE", u"5 q : 1 INT",
          u"1 r : 1 INT"},
         {u"2 EN : 1 BOOL := FALSE", u"2 a : 1 INT", u"5 ENO : 1 BOOL := FALSE", u"5 q : 1 INT"}},
        {LQ_KIND_PROGRAM, true, 3, {u"2 a : 1 INT", u"5 q : 1 INT", u"1 r : 1 INT"}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "kind " << c.kind << " eno " << c.eno);
        LoadedProject project;
        Pou source;
        source.name = u"F";
        source.kind = c.kind;
        source.resultType = u"REAL";
        source.comment = u"pou";
        source.headerComment = u"header";
        source.eno = c.eno;
        const ID id = AddPouWithVars(project, source);
        POU_HEADER_TYP* header = CreatePOUHeader();
        for (const int fromDeclManager : {0, 1}) {
            EXPECT_EQ(LoadPOUHeader(header, id, fromDeclManager), 1);
            EXPECT_EQ(DescribeAll(ListOf(header)), c.header);
            EXPECT_EQ(header->info->pouType, c.pouType);
            EXPECT_EQ(std::u16string(TextOf(header->info, POUH_NAME)), u"F");
            EXPECT_EQ(std::u16string(TextOf(header->info->comment, POUH_REMARK)), u"header");
            EXPECT_EQ(std::u16string(TextOf(header->info->pouComment, POUH_REMARK)), u"pou");
        }
        DestroyPOUHeader(header);

        POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
        auto* pou = dynamic_cast<LQPOU*>(project.GetView(id));
        ASSERT_NE(pou, nullptr);
        EXPECT_EQ(LoadInterface(list, pou), c.interface.empty() ? 0 : 1);
        EXPECT_EQ(DescribeAll(ListOf(list)), c.interface);
        DestroyPOUHDeclList(list);
    }
}

TEST(LoadHeader, AnInterfaceIsTheParameters) {
    using lq::host::Scope;
    LoadedProject project;
    const ID id = project.AddPouNamed(u"F", LQ_KIND_FUNCTION_BLOCK);
    for (const Scope scope : {Scope::kLocal, Scope::kTemp, Scope::kExternal, Scope::kOutput,
                              Scope::kInOut, Scope::kInExt, Scope::kInput}) {
        for (const int flags : {0, 1, 2}) {
            project.AddVar(id, u"x", u"INT", {scope, flags == 1, flags == 2});
        }
    }
    POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
    EXPECT_EQ(LoadInterface(list, dynamic_cast<LQPOU*>(project.GetView(id))), 1);
    std::vector<uint32_t> scopes;
    for (DECL_TYP* decl = DeclAt(ListOf(list), LC_FIRST); decl;
         decl = DeclAt(ListOf(list), LC_NEXT)) {
        scopes.push_back(decl->scope);
    }
    EXPECT_EQ(scopes, (std::vector<uint32_t>{2, 3, 4, 4, 4, 8, 6, 6, 6, 5, 5, 9}));
    DestroyPOUHDeclList(list);
}

TEST(LoadHeader, StructureIsItsOwnHeader) {
    LoadedProject project;
    const ID id = project.AddStructure(u"Point", u"c");
    project.AddVar(id, u"y", u"INT", kLocal, u"1");
    project.AddVar(id, u"x", u"BOOL");
    POU_HEADER_TYP* header = CreatePOUHeader();
    EXPECT_EQ(LoadPOUHeader(header, id, 0), 1);
    EXPECT_EQ(DescribeAll(ListOf(header)), (Lines{u"1 y : 1 INT := 1", u"1 x : 1 BOOL"}));
    EXPECT_EQ(header->info->pouType, 5u);
    EXPECT_EQ(std::u16string(TextOf(header->info->comment, POUH_REMARK)), u"c");
    EXPECT_EQ(header->info->pouComment, nullptr);
    DestroyPOUHeader(header);
}

TEST(LoadHeader, ByName) {
    LoadedProject project;
    project.AddPouNamed(u"Main");
    project.AddPouNamed(u"TOF");
    project.AddStructure(u"Main");
    project.AddStructure(u"Point");
    struct {
        const char16_t* name;
        int result;
        uint32_t pouType;
    } const cases[] = {
        {u"Main", 1, 3},  // a POU before a data type
        {u"TOF", 1, 3},   // the project before its library
        {u"TON", 1, 2},   // of the library
        {u"Point", 1, 5}, {u"None", 0, 0}, {u"", 0, 0}, {nullptr, 0, 0},
    };
    for (const auto& c : cases) {
        POU_HEADER_TYP* header = CreatePOUHeader();
        EXPECT_EQ(LoadPOUHeader(header, c.name), c.result) << testing::PrintToString(c.name);
        EXPECT_EQ(header->info ? header->info->pouType : 0, c.pouType)
            << testing::PrintToString(c.name);
        DestroyPOUHeader(header);
    }
}

TEST(LoadHeader, FailureKeepsOrRenewsTheOldRecords) {
    LoadedProject project;
    const ID pou = AddPouWithVars(project, {});
    const ID configuration = project.AddConfigurationNamed(u"Config");
    POU_HEADER_TYP* header = CreatePOUHeader();
    ASSERT_EQ(LoadPOUHeader(header, pou, 0), 1);
    // Nothing is touched before the object is found.
    EXPECT_EQ(LoadPOUHeader(header, ID(), 0), 0);
    EXPECT_EQ(LoadPOUHeader(header, ID(12345), 0), 0);
    EXPECT_EQ(LoadPOUHeader(header, ID(12345), 1), 0);
    EXPECT_EQ(CardinalityOfList(ListOf(header)), 3u);
    // An object without a header leaves new, empty records.
    EXPECT_EQ(LoadPOUHeader(header, configuration, 0), 0);
    EXPECT_EQ(CardinalityOfList(ListOf(header)), 0u);
    EXPECT_EQ(LoadPOUHeader(nullptr, pou, 0), 0);
    EXPECT_EQ(LoadPOUHeader(nullptr, u"Main"), 0);
    EXPECT_EQ(LoadSelectedSymbolTable(nullptr, pou), 0);
    DestroyPOUHeader(header);
}

TEST(LoadHeader, WithoutAProject) {
    POU_HEADER_TYP* header = CreatePOUHeader();
    EXPECT_EQ(LoadPOUHeader(header, ID(1), 0), 0);
    EXPECT_EQ(LoadPOUHeader(header, ID(1), 1), 0);
    EXPECT_EQ(LoadPOUHeader(header, u"Main"), 0);
    DestroyPOUHeader(header);
    SYMBOL_TABLE_TYP* table = CreateSymbolTable();
    EXPECT_EQ(LoadSelectedSymbolTable(table, ID(1)), 0);
    EXPECT_EQ(ListOf(table), nullptr);
    DestroySymbolTable(table);
    EXPECT_EQ(LoadSymbolTable(nullptr), 1);
    EXPECT_EQ(GetDecl(nullptr, nullptr), 0);
    EXPECT_EQ(SaveDeclList(nullptr, nullptr), 0);
    EXPECT_EQ(SavePOUHeader(nullptr, nullptr, nullptr), 0);
}

}  // namespace
