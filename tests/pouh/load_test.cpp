// The loaders over one project: what they build, what they ask the model, in which order, and what
// they make of a model that answers otherwise than the host's.
#include <gtest/gtest.h>

#include "load_test_util.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/host/useradapt/user_adapter.h"
#include "lq_data/types.h"
#include "pouh/declarations.h"
#include "pouh/header_parts.h"
#include "pouh/record_types.h"
#include "tests/support/rows.h"

namespace {

using namespace lq::pouh;
using lq::host::Scope;
using lq::test::Row;
using lq::test::Rows;
using Text = std::u16string;

constexpr ID kUnknown = ID(12345);

Lines Loaded(ID id, int expected = 1) {
    SYMBOL_TABLE_TYP* table = CreateSymbolTable();
    EXPECT_EQ(LoadSelectedSymbolTable(table, id), expected);
    const Lines lines = ListOf(table) ? DescribeAll(ListOf(table)) : Lines{u"no list"};
    DestroySymbolTable(table);
    return lines;
}

class Load : public testing::Test {
  protected:
    Load() {
        project_.NewDataType(u"Point", true, u"c");
        project_.NewVar(project_.FindDataType(u"Point"), u"y", u"INT", kLocal, u"1");
        project_.NewVar(project_.FindDataType(u"Point"), u"x", u"BOOL");
        globals_ = project_.NewList(project_.NewConfiguration());
        project_.NewVar(globals_, u"g", u"INT", kGlobal, u"1 +", u"%MW4");
        header_ = CreatePOUHeader();
    }
    ~Load() override { DestroyPOUHeader(header_); }

    ID AddPou(const char16_t* name, LQ_OBJECT_KIND kind, bool eno = false) {
        lq::host::Pou pou;
        pou.name = name;
        pou.kind = kind;
        pou.resultType = u"REAL";
        pou.comment = u"pou";
        pou.headerComment = u"header";
        pou.eno = eno;
        return project_.AddPou(pou);
    }
    // What the info record says: type, name, own comment, comment, flag.
    Text Info() const {
        const POUH_INFO_TYP* info = header_->info;
        return !info ? u"none"
                     : Number(info->pouType) + u" " + TextOf(info, POUH_NAME) + u" " +
                           TextOf(info->pouComment, POUH_REMARK) + u" " +
                           TextOf(info->comment, POUH_REMARK) + u" " + Number(info->headerFlag);
    }
    Lines Header() const { return DescribeAll(ListOf(header_)); }
    // What a header says whose declarations are loaded in parts; each names its source.
    Lines InParts(ID id, uint32_t most) {
        HeaderParts parts;
        EXPECT_EQ(parts.Open(header_, id), 1);
        EXPECT_EQ(Header(), Lines{});
        Lines all;
        while (!parts.AtEnd()) {
            EXPECT_EQ(parts.LoadNext(most), 1);
            EXPECT_LE(Header().size(), most);
            for (const lq::Declaration decl : lq::Declarations(header_)) {
                const int32_t index = GetIndexOfDecl(decl.Record());
                const auto& declared = project_.GetPou(id)->declarations;
                if (index >= 0) {
                    EXPECT_EQ(
                        decl.Name(),
                        project_.GetDeclaration(declared.at(static_cast<size_t>(index)))->name);
                }
                all.push_back(Describe(decl.Record()));
            }
        }
        return all;
    }

    LoadedProject project_;
    ID globals_;
    POU_HEADER_TYP* header_;
};

TEST_F(Load, HeadersAndInterfacesByKindAndEnoFlag) {
    const Text enable = u"2 EN : 1 BOOL := FALSE", enableOut = u"5 ENO : 1 BOOL := FALSE";
    struct {
        LQ_OBJECT_KIND kind;
        bool eno;
        Text info;
        Lines header;  // in front of the last line, the local variable, is the interface
        // clang-format off
    } const cases[] = {
        {LQ_KIND_FUNCTION, true, u"1 F pou header 0",
         {enable, u"2 a : 1 INT", enableOut, u"5 F : 1 REAL", u"5 q : 1 INT", u"1 r : 1 INT"}},
        {LQ_KIND_FUNCTION, false, u"1 F pou header 0",
         {u"2 a : 1 INT", u"5 F : 1 REAL", u"5 q : 1 INT", u"1 r : 1 INT"}},
        {LQ_KIND_FUNCTION_BLOCK, true, u"2 F pou header 0",
         {enable, u"2 a : 1 INT", enableOut, u"5 q : 1 INT", u"1 r : 1 INT"}},
        {LQ_KIND_PROGRAM, true, u"3 F pou header 0",
         {u"2 a : 1 INT", u"5 q : 1 INT", u"1 r : 1 INT"}},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "kind " << c.kind << " eno " << c.eno);
        const ID id = AddPou(u"F", c.kind, c.eno);
        project_.NewVar(id, u"a", u"INT", kInput);
        project_.NewVar(id, u"r", u"INT", kLocal);
        project_.NewVar(id, u"q", u"INT", kOutput);
        for (const int fromDeclManager : {0, 1}) {
            EXPECT_EQ(LoadPOUHeader(header_, id, fromDeclManager), 1);
            EXPECT_EQ(Header(), c.header);
            EXPECT_EQ(Info(), c.info);
        }
        for (const uint32_t most : {1u, 3u, 100u}) {
            EXPECT_EQ(InParts(id, most), c.header) << most;
            EXPECT_EQ(Info(), c.info);
        }
        const bool hasInterface = c.kind != LQ_KIND_PROGRAM;
        POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
        EXPECT_EQ(LoadInterface(list, dynamic_cast<LQPOU*>(project_.GetView(id))), hasInterface);
        EXPECT_EQ(DescribeAll(ListOf(list)),
                  Lines(c.header.begin(), hasInterface ? c.header.end() - 1 : c.header.begin()));
        DestroyPOUHDeclList(list);
    }
}

TEST_F(Load, AnInterfaceIsTheParameters) {
    const ID id = AddPou(u"F", LQ_KIND_FUNCTION_BLOCK);
    for (const Scope scope : {Scope::kLocal, Scope::kTemp, Scope::kExternal, Scope::kOutput,
                              Scope::kInOut, Scope::kInExt, Scope::kInput}) {
        for (const int flags : {0, 1, 2}) {
            project_.NewVar(id, u"x", u"INT", {scope, flags == 1, flags == 2});
        }
    }
    POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
    EXPECT_EQ(LoadInterface(list, dynamic_cast<LQPOU*>(project_.GetView(id))), 1);
    Text scopes;
    for (const lq::Declaration decl : lq::Declarations(list)) {
        scopes += u" " + Number(decl.Scope());
    }
    EXPECT_EQ(scopes, u" 2 3 4 4 4 8 6 6 6 5 5 9");
    POUH_DECL_LIST_TYP* replaced = CreatePOUHDeclList();
    replaced->list = ListOf(list);
    EXPECT_EQ(LoadInterface(list, dynamic_cast<LQPOU*>(project_.GetView(id))), 1);
    EXPECT_EQ(CardinalityOfList(ListOf(replaced)), 12u) << "and not destroyed";
    DestroyPOUHDeclList(replaced);
    DestroyPOUHDeclList(list);
}

TEST_F(Load, ByName) {
    AddPou(u"Main", LQ_KIND_PROGRAM);
    AddPou(u"TOF", LQ_KIND_PROGRAM);
    project_.NewDataType(u"Main");
    for (const Row& row : Rows("pouh/texts.rows", "headers by name")) {
        DestroyPOUHeader(std::exchange(header_, CreatePOUHeader()));
        EXPECT_EQ(LoadPOUHeader(header_, row.Wide(0).c_str()), row[1] != "none");
        EXPECT_EQ(Info(), row.Wide(1));
        EXPECT_EQ(project_.Asked(), row.Wide(2));
    }
    EXPECT_EQ(LoadPOUHeader(header_, nullptr), 0);
    EXPECT_EQ(project_.Asked(), u"");
    EXPECT_EQ(LoadPOUHeader(nullptr, u"Main"), 0);
    ASSERT_EQ(LoadPOUHeader(header_, u"Point"), 1);
    EXPECT_EQ(Header(), (Lines{u"1 y : 1 INT := 1", u"1 x : 1 BOOL"})) << "in the model's order";
    project_.hasPools = false;
    EXPECT_EQ(LoadPOUHeader(header_, u"Main"), 1) << "the structure of that name";
    EXPECT_EQ(Info(), u"5 Main   0");
}

TEST_F(Load, FailureKeepsOrRenewsTheOldRecords) {
    const ID pou = AddPou(u"Main", LQ_KIND_PROGRAM);
    project_.NewVar(pou, u"a", u"INT");
    const ID other = project_.NewConfiguration(u"Other");
    for (const bool hasManagers : {true, false}) {
        ASSERT_EQ(LoadPOUHeader(header_, pou, 0), 1);
        project_.hasManagers = hasManagers;
        // Nothing is touched before the object is found.
        EXPECT_EQ(LoadPOUHeader(header_, ID(), 0) + LoadPOUHeader(header_, kUnknown, 0), 0);
        EXPECT_EQ(LoadPOUHeader(header_, kUnknown, 1) + LoadPOUHeader(header_, u"None"), 0);
        EXPECT_EQ(Header().size(), 1u);
    }
    EXPECT_EQ(LoadPOUHeader(header_, pou, 0) + LoadPOUHeader(header_, pou, 1), 0);
    EXPECT_EQ(Loaded(pou, 0), Lines{u"no list"});
    project_.hasManagers = true;
    EXPECT_EQ(Loaded(kUnknown, 0), Lines{u"no list"});
    EXPECT_EQ(LoadSelectedSymbolTable(nullptr, pou) + LoadPOUHeader(nullptr, pou, 0), 0);
    // An object without a header leaves new, empty records.
    EXPECT_EQ(LoadPOUHeader(header_, other, 0), 0);
    EXPECT_EQ(Header(), Lines{});
    EXPECT_EQ(Info(), u"0    0");
    EXPECT_EQ(LoadSymbolTable(nullptr), 1);
    EXPECT_EQ(GetDecl(nullptr, nullptr) + SaveDeclList(nullptr, nullptr), 0);
    EXPECT_EQ(SavePOUHeader(nullptr, nullptr, nullptr), 0);
}

// Units without a header or of a kind that their class does not promise; identifiers without an
// object; objects of another kind than their class.
TEST_F(Load, ObjectsThatAreNotAsTheyShould) {
    const ID pou = AddPou(u"Main", LQ_KIND_PROGRAM);
    const ID a = project_.NewVar(pou, u"a", u"INT", kInput);
    Members members({kUnknown, a, ID()});
    Odd<LQOBJECT> head(0, nullptr, &members);
    Odd<LQOBJECT> withoutMembers(0);
    struct {
        int32_t kind;
        LQOBJECT* header;
        int result;
        Text info;
        Lines lines;
        // clang-format off
    } const cases[] = {
        {LQ_KIND_PROGRAM, nullptr, 0, u"0    0", {}},
        {LQ_KIND_PROGRAM, &head, 1, u"3 odd o o 4711", {u"2 a : 1 INT"}},
        {LQ_KIND_PROGRAM, &withoutMembers, 1, u"3 odd o o 4711", {}},
        {LQ_KIND_13, &head, 1, u"6 odd  o 4711", {u"2 a : 1 INT"}},
        {99, &head, 1, u"0 odd  o 4711", {u"2 a : 1 INT"}},
        {LQ_KIND_FUNCTION, &head, 0, u"1 odd o o 4711", {u"2 a : 1 INT"}},  // and no LQFUN
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        OddPou odd(c.kind, c.header);
        project_.instead[kUnknown.GetNumber()] = &odd;
        EXPECT_EQ(LoadPOUHeader(header_, kUnknown, 0), c.result);
        EXPECT_EQ(Info(), c.info);
        EXPECT_EQ(Header(), c.lines);
        POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
        EXPECT_EQ(LoadInterface(list, &odd), 0) << "no block, or no function";
        DestroyPOUHDeclList(list);
    }
    POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
    OddPou block(LQ_KIND_FUNCTION_BLOCK);
    EXPECT_EQ(LoadInterface(list, &block) + LoadInterface(nullptr, &block), 0);
    EXPECT_EQ(LoadInterface(list, nullptr), 0);
    DestroyPOUHDeclList(list);

    Odd<LQPOUHDECL> global(LQ_KIND_GVL_DECL), local(LQ_KIND_LOCAL_DECL);
    Odd<LQGVLDECL> none(0);
    const std::pair<LQOBJECT*, uint32_t> objects[] = {
        {&global, DS_UNKNOWN}, {&local, DS_VAR}, {&none, DS_UNKNOWN}};
    for (const auto& [object, scope] : objects) {
        DECL_TYP* decl = ConvertDeclaration(*object, false);
        EXPECT_EQ(decl->scope, scope);
        EXPECT_EQ(CommentOf(decl, POUH_COMMENT) + Text(CommentOf(decl, POUH_COMMENT2)),
                  u"firstsecond");
        DestroyDecl(decl);
    }
}

TEST_F(Load, DeclarationsAreCheckedAndMarked) {
    for (const Row& row : Rows("pouh/texts.rows", "declarations")) {
        const auto has = [&row](const char* word) {
            return row[2].find(word) != std::string::npos;
        };
        const lq::host::Section section = {has("external") ? Scope::kExternal
                                           : has("input")  ? Scope::kInput
                                           : has("output") ? Scope::kOutput
                                                           : Scope::kLocal,
                                           has("constant"), has("retain")};
        const ID pou = AddPou(u"Main", LQ_KIND_PROGRAM);
        const auto kept = [&](size_t column) { return project_.Intern(row.Wide(column)); };
        project_.NewVar(pou, kept(0), kept(1), section, kept(3), u"%IX0.0");
        EXPECT_EQ(Loaded(pou), Lines{row.Wide(4)}) << row.line;
    }
    EXPECT_EQ(Loaded(globals_), Lines{u"11 g : 1 INT := 1 + @%MW4"}) << "unchecked";
}

TEST_F(Load, NameOfReturnValue) {
    const Text fits(32, u'f'), tooLong(33, u'f');
    struct {
        Text name;
        const char16_t* type;
        bool isReturn;
        Text stored;
    } const cases[] = {
        {fits, u"INT", true, fits},
        {tooLong, u"INT", true, u"?" + tooLong + u"?"},
        {tooLong, u"INT", false, tooLong},
        // Only the length counts for an elementary (or unknown) result type.
        {u"1x", u"INT", true, u"1x"},
        {u"1x", u"Nothing", true, u"1x"},
        {u"1x", u"STRING", true, u"?1x?"},
        {u"1x", u"Point", true, u"?1x?"},
        {tooLong, u"STRING", true, tooLong},
    };
    for (const auto& c : cases) {
        LQPOUHDECL* source = GetRetDecl(c.name.c_str(), c.type);
        DECL_TYP* decl = ConvertDeclaration(*source, c.isReturn);
        EXPECT_EQ(TextOf(decl, POUH_NAME), c.stored);
        DestroyDecl(decl);
        delete source;
    }
    EXPECT_EQ(LoadPOUHeader(header_, AddPou(u"2nd", LQ_KIND_FUNCTION), 0), 1);
    EXPECT_EQ(Header(), Lines{u"5 2nd : 1 REAL"});
    project_.Asked();
    project_.notesNew = true;
    for (LQPOUHDECL* decl : {GetRetDecl(u"F", u"INT"), GetEnDecl(), GetEnoDecl()}) {
        delete decl;
    }
    EXPECT_EQ(project_.Asked(),
              u"name F; type INT; class 8408; class id 50; "
              u"name EN; type BOOL; class 8407; value FALSE; "
              u"name ENO; type BOOL; class 8408; value FALSE");
}

TEST_F(Load, FilledDeclarations) {
    DECL_TYP* decl = CreateDecl();
    *DecFlags(decl) = 0x4000;
    EXPECT_EQ(FillFBInstDeclaration(decl, DS_VAR, u"t1", u"TON", u"c", 0x12345, u"c2"), 1);
    EXPECT_EQ(Describe(decl), u"1 t1 : 6 TON");
    EXPECT_EQ(CommentOf(decl, POUH_COMMENT) + Text(CommentOf(decl, POUH_COMMENT2)), u"cc2");
    EXPECT_EQ(decl->word, 0x2345);
    EXPECT_EQ(*DecFlags(decl), 0x4000) << "not touched";
    EXPECT_EQ(FillFlagsInDeclaration(decl, 7), 1);
    EXPECT_EQ(*DecFlags(decl), 0x0010) << "written as a whole";
    EXPECT_EQ(FillFlagsInDeclaration(decl, 0), 1);
    EXPECT_EQ(*DecFlags(decl), 0);
    EXPECT_EQ(FillFlagsInDeclaration(nullptr, 1), 0);
    EXPECT_EQ(FillFBInstDeclaration(nullptr, DS_VAR, u"t", u"TON", u"", 0, u""), 0);
    DestroyDecl(std::exchange(decl, CreateDecl()));
    EXPECT_EQ(FillFBInstDeclaration(decl, DS_VAR, u"t", u"TON", u"", 0, nullptr), 1);
    EXPECT_NE(static_cast<FBINST_SPEC_TYP*>(decl->type->spec)->comment2, nullptr);
    DestroyDecl(decl);
}

TEST_F(Load, HiddenHeaders) {
    const LQ_INTERFACE_ENTRY entries[] = {
        {DS_VAR_OUTPUT, u"X", MapTypeToBitset(IEC_BOOL), u"FALSE"},
        {DS_VAR_INPUT, u"T", MapTypeToBitset(IEC_TIME), nullptr},
    };
    const LQ_INTERFACE_REPLY two = {2, entries}, none = {3, nullptr};
    const Lines both = {u"5 X : 1 BOOL := FALSE", u"2 T : 1 TIME"};
    struct {
        const char16_t* name;
        Lines lines;                                                   // without an answer
        const LQ_INTERFACE_REPLY* lq::host::UserAdapterAnswers::*ask;  // of the user adapter
    } const cases[] = {
        {u"_SFCCB", {u"6 A : 1 BOOL := 0", u"6 P : 1 BOOL := 0"}, nullptr},
        {u"_STEP", {u"5 X : 1 BOOL := 0"}, &lq::host::UserAdapterAnswers::sfcStep},
        {u"_ACTION", {u"5 Q : 1 BOOL := 0"}, &lq::host::UserAdapterAnswers::sfcAction},
        {u"_SFC_DEBUG", {u"6 BP : 1 UINT := 0"}, &lq::host::UserAdapterAnswers::sfcDebug},
        {u"_step", {}, nullptr},
        {u"_STEP ", {}, nullptr},
        {u"", {}, nullptr},
    };
    for (const auto& c : cases) {
        const bool isKnown = !c.lines.empty();
        const auto load = [&] {
            EXPECT_EQ(LoadPOUHiddenHeader(header_, c.name), isKnown);
            EXPECT_EQ(Info(), isKnown ? u"2 " + Text(c.name) + u"   0" : u"0    0");
            return Header();
        };
        EXPECT_EQ(load(), c.lines);
        auto& answers = lq::host::GetUserAdapterAnswers();
        for (const LQ_INTERFACE_REPLY* reply : {&two, &none}) {
            if (c.ask) {
                answers.*c.ask = reply;
                EXPECT_EQ(load(), reply == &two ? both : Lines{}) << "an empty one is an answer";
            }
        }
        answers = {};
    }
    EXPECT_EQ(LoadPOUHiddenHeader(header_, nullptr) + LoadPOUHiddenHeader(nullptr, u"_STEP"), 0);
}

TEST_F(Load, FunctionBlockOfAnInstance) {
    AddPou(u"Motor", LQ_KIND_FUNCTION_BLOCK);
    AddPou(u"Sum", LQ_KIND_FUNCTION);
    const ID main = AddPou(u"Main", LQ_KIND_PROGRAM);
    for (const auto& [name, type] : {std::pair(u"m", u"Motor"),
                                     {u"shared", u"TON"},
                                     {u"number", u"INT"},
                                     {u"twice", u"INT"},
                                     {u"twice", u"TOF"}}) {
        project_.NewVar(main, name, type);
    }
    for (const auto& [name, type] : {std::pair(u"shared", u"Motor"),
                                     {u"number", u"Motor"},
                                     {u"other", u"Main"},
                                     {u"sum", u"Sum"},
                                     {u"plain", u"INT"}}) {
        project_.NewVar(globals_, name, type, kGlobal);
    }
    for (const Row& row : Rows("pouh/texts.rows", "instances")) {
        CLQString fbType(u"before");
        const bool isFound = row[2] != "before";
        EXPECT_EQ(FindFBName(row.Wide(0).c_str(), row.Wide(1).c_str(), &fbType), isFound);
        EXPECT_EQ(fbType.GetText(), row.Wide(2)) << row.line;
    }
    CLQString fbType;
    EXPECT_EQ(FindFBName(u"shared", nullptr, &fbType), 1);
    EXPECT_EQ(FindFBName(nullptr, u"Main", &fbType), 0);
    EXPECT_EQ(Text(fbType.GetText()), u"Motor");
    project_.Asked();
    EXPECT_EQ(FindFBName(nullptr, u"Main", nullptr) + FindFBName(u"m", u"Main", nullptr), 0);
    EXPECT_EQ(project_.Asked(), u"");
}

TEST_F(Load, Tasks) {
    lq::host::Task tasks[4];  // in two resources
    const char16_t* const names[] = {u"Fast", u"Slow", u"Fast", u"Idle"};
    ID resources[2], ids[4];
    lq::host::Resource resource;
    resource.configuration = project_.NewConfiguration(u"C");
    for (int i = 0; i < 4; ++i) {
        resource.name = i < 2 ? u"R1" : u"R2";
        resources[i / 2] = i % 2 == 0 ? project_.AddResource(resource) : resources[i / 2];
        tasks[i].name = names[i];
        tasks[i].resource = resources[i / 2];
        tasks[i].priority = i == 0 ? u"1" : u"";
        tasks[i].interval = i == 0 ? u"T#10ms" : u"";
        tasks[i].event = i == 0 ? u"e" : u"";
        tasks[i].comment = i == 0 ? u"c" : u"";
        ids[i] = project_.AddTask(tasks[i]);
    }
    AddPou(u"Main", LQ_KIND_PROGRAM);
    AddPou(u"Aux", LQ_KIND_PROGRAM);
    for (const char16_t* pou : {u"Main", u"Missing", u"Aux", u"Only"}) {
        lq::host::ProgramInstance instance;
        instance.typeName = pou;
        instance.parent = ids[pou == Text(u"Only") ? 3 : 0];
        project_.AddProgramInstance(instance);
    }
    TASK_TYP* task = CreateTask();
    const auto info = [&task] {
        Text line;
        for (const auto flag :
             {POUH_NAME, POUH_EVENT, POUH_INTERVAL, POUH_PRIORITY, POUH_COMMENT}) {
            line += Text(TextOf(task->info, flag)) + u";";
        }
        return line;
    };
    const Text fast = u"Fast;e;T#10ms;1;c;";
    const Text programs = u"; declaration Main; declaration unknown; declaration Aux";
    for (const bool byName : {true, false, true}) {  // again and again: the first records go
        project_.Asked();
        EXPECT_EQ(byName ? LoadTask(task, u"Fast") : LoadTask(task, ids[0]), 1);
        EXPECT_EQ(info(), fast) << "of two tasks of one name the one in the first collection";
        EXPECT_EQ(Names(ListOf(task->pous)), (Lines{u"Main", u"Missing", u"Aux"}));
        EXPECT_EQ(
            project_.Asked(),
            (byName ? u"object R1; find Fast in R1; object Fast" : u"object Fast") + programs);
    }
    EXPECT_EQ(LoadTask(task, static_cast<const char16_t*>(nullptr)) + LoadTask(task, ID()), 0);
    EXPECT_EQ(info(), fast) << "refused before anything is touched";
    EXPECT_EQ(project_.Asked(), u"");
    EXPECT_EQ(LoadTask(task, u"None"), 0);
    EXPECT_EQ(info(), u";;;;;");
    EXPECT_EQ(project_.Asked(), u"object R1; find None in R1; object R2; find None in R2")
        << "nothing is asked of no identifier";
    EXPECT_EQ(LoadTask(task, kUnknown) + LoadTask(task, project_.FindPou(u"Main")), 0);
    EXPECT_EQ(LoadTask(nullptr, u"Fast") + LoadTask(nullptr, ids[0]), 0);

    const auto list = [] {
        TASK_LIST_TYP* all = CreateTaskList();
        const Lines lines = Names(ListOf(all));
        EXPECT_EQ(LoadTaskList(ListOf(all)), 1);
        EXPECT_EQ(CardinalityOfList(ListOf(all)), 2 * lines.size()) << "appended";
        DestroyTaskList(all);
        return lines;
    };
    EXPECT_EQ(list(), (Lines{u"Fast", u"Slow", u"Fast", u"Idle"}));
    Members gaps({kUnknown, project_.FindPou(u"Aux"), ID()});
    Odd<LQTASK> passedOver(0, nullptr, &gaps);  // no members: counted 0
    project_.instead[ids[1].GetNumber()] = &passedOver;
    project_.instead[ids[2].GetNumber()] = nullptr;
    EXPECT_EQ(list(), (Lines{u"Fast", u"Idle"}));
    EXPECT_EQ(LoadTask(task, ids[1]), 1);
    EXPECT_EQ(info(), u"part;;;;o;");
    EXPECT_EQ(Names(ListOf(task->pous)), (Lines{u"Aux"}));
    project_.instead[resources[0].GetNumber()] = nullptr;
    EXPECT_EQ(list(), Lines{u"Idle"});
    EXPECT_EQ(LoadTask(task, u"Idle"), 1) << "behind a collection that is not there";
    EXPECT_EQ(Names(ListOf(task->pous)), Lines{u"Only"});
    project_.instead[resources[1].GetNumber()] = nullptr;
    EXPECT_EQ(LoadTask(task, u"Idle"), 0);
    project_.hasPools = false;
    EXPECT_EQ(list(), Lines{});
    EXPECT_EQ(LoadTask(task, u"Fast"), 0);
    project_.hasManagers = false;
    EXPECT_EQ(list(), Lines{});
    EXPECT_EQ(LoadTask(task, u"Fast") + LoadTask(task, ids[0]), 0);
    DestroyTask(task);
}

}  // namespace
