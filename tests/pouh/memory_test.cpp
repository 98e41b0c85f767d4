// Every allocation of every operation fails once. A block that is left over fails the test; beyond
// that a result is either a failure or complete, as far as the model itself found the memory to
// answer.

#include <algorithm>

#include <gtest/gtest.h>

#include "host/base/check_scanner.h"
#include "load_test_util.h"
#include "lq_base.h"
#include "pouh/lists.h"
#include "pouh/records.h"
#include "tests/support/test_allocator.h"

namespace {

using namespace lq::pouh;
using lq::test::FailEachAllocation;
using lq::test::FailingAllocation;

// What the library and its host keep between calls would count as left over: they start cold in
// every round, and cold before the first count.
struct ColdStart {
    ColdStart() { Release(); }
    ~ColdStart() { Release(); }
    static void Release() {
        lq::host::DestroyCheckScanner();
        LQHeadReleaseHashTable();
    }
};

TEST(PouhMemory, HiddenHeaderIsCompleteOrFails) {
    FailEachAllocation([](const FailingAllocation& failing) {
        POU_HEADER_TYP* header = CreatePOUHeader();
        const int result = LoadPOUHiddenHeader(header, u"_SFCCB");
        EXPECT_EQ(result, failing.HasFailed() ? 0 : 1);
        if (result) {
            EXPECT_EQ(DescribeAll(ListOf(header)),
                      (Lines{u"6 A : 1 BOOL := 0", u"6 P : 1 BOOL := 0"}));
        }
        DestroyPOUHeader(header);
    });
}

// A failure that memory was the reason of, or all declarations but what the model itself had no
// memory to answer: a declaration that it gave no object for, a text that no scanner could check
// and that thus lacks its '?'. One failure is the reason of one such hole at most.
void CheckLoaded(int result, const Lines& loaded, const Lines& whole,
                 const FailingAllocation& failing) {
    EXPECT_TRUE(result == 1 || failing.HasFailed());
    if (result != 1) {
        return;
    }
    const auto unchecked = [](std::u16string line) {
        std::erase(line, u'?');
        return line;
    };
    size_t missing = 0;
    size_t cut = 0;
    auto at = loaded.begin();
    for (const std::u16string& line : whole) {
        if (at == loaded.end() || !unchecked(line).starts_with(unchecked(*at))) {
            ++missing;
            continue;
        }
        cut += *at++ == line ? 0 : 1;
    }
    EXPECT_EQ(at, loaded.end()) << "nothing else, and in the same order";
    EXPECT_LE(missing + cut, failing.HasFailed() ? 1u : 0u);
}

TEST(PouhMemory, Loaders) {
    const ColdStart beforeTheFirstCount;
    LoadedProject project;
    lq::host::Pou function;
    function.name = u"F";
    function.kind = LQ_KIND_FUNCTION;
    function.resultType = u"STRING";
    function.eno = true;
    function.comment = function.headerComment = u"comment";
    const ID pou = project.AddPou(function);
    project.AddVar(pou, u"a", u"INT", kInput, u"1");
    project.AddVar(pou, u"r", u"ARRAY [1..2] OF INT");
    project.AddVar(pou, u"t", u"TON");
    project.AddVar(pou, u"x", u"Nothing", kOutput, u"1 +");
    project.AddVar(pou, u"g", u"INT", kExternal);
    const std::u16string longName(3000, u'n');
    project.AddVar(pou, u"l", longName.c_str());
    const ID globals = project.AddGlobals();
    project.AddVar(globals, u"g", u"INT", kGlobal, u"7", u"%MW4");
    auto* object = dynamic_cast<LQPOU*>(project.GetView(pou));

    Lines wholeHeader;
    Lines wholeInterface;
    Lines wholeTable;
    {
        const ColdStart round;
        POU_HEADER_TYP* header = CreatePOUHeader();
        ASSERT_EQ(LoadPOUHeader(header, pou, 0), 1);
        wholeHeader = DescribeAll(ListOf(header));
        DestroyPOUHeader(header);
        POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
        ASSERT_EQ(LoadInterface(list, object), 1);
        wholeInterface = DescribeAll(ListOf(list));
        DestroyPOUHDeclList(list);
        SYMBOL_TABLE_TYP* table = CreateSymbolTable();
        ASSERT_EQ(LoadSelectedSymbolTable(table, globals), 1);
        wholeTable = DescribeAll(ListOf(table));
        DestroySymbolTable(table);
    }
    ASSERT_EQ(wholeHeader.size(), 9u);
    ASSERT_EQ(wholeInterface.size(), 5u);
    ASSERT_EQ(wholeTable.size(), 1u);

    FailEachAllocation([&](const FailingAllocation& failing) {
        const ColdStart round;
        POU_HEADER_TYP* header = CreatePOUHeader();
        const int result = LoadPOUHeader(header, pou, 0);
        CheckLoaded(result, DescribeAll(ListOf(header)), wholeHeader, failing);
        DestroyPOUHeader(header);
    });
    FailEachAllocation([&](const FailingAllocation& failing) {
        const ColdStart round;
        POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
        const int result = LoadInterface(list, object);
        CheckLoaded(result, DescribeAll(ListOf(list)), wholeInterface, failing);
        DestroyPOUHDeclList(list);
    });
    FailEachAllocation([&](const FailingAllocation& failing) {
        const ColdStart round;
        SYMBOL_TABLE_TYP* table = CreateSymbolTable();
        const int result = table ? LoadSelectedSymbolTable(table, globals) : 0;
        CheckLoaded(result, DescribeAll(ListOf(table)), wholeTable, failing);
        DestroySymbolTable(table);
    });
    FailEachAllocation([&](const FailingAllocation& failing) {
        const ColdStart round;
        CLQString fbType;
        const int result = FindFBName(u"t", u"F", &fbType);
        EXPECT_TRUE(result == 1 || failing.HasFailed());
        EXPECT_TRUE(result == 0 || fbType.HasFailed() || std::u16string(fbType) == u"TON");
    });
}

TEST(PouhMemory, Tasks) {
    LoadedProject project;
    lq::host::Resource resource;
    resource.configuration = project.AddConfigurationNamed(u"Config");
    lq::host::Task source;
    source.name = u"Fast";
    source.priority = source.interval = source.event = source.comment = u"a text of its own";
    source.resource = project.AddResource(resource);
    lq::host::ProgramInstance instance;
    instance.typeName = u"Main";
    instance.parent = project.AddTask(source);
    project.AddPouNamed(u"Main");
    // Of both more than the nodes that a list takes at once.
    source.name = u"Other";
    for (int i = 0; i < 21; ++i) {
        project.AddProgramInstance(instance);
        project.AddTask(source);
    }
    for (const bool byName : {true, false}) {
        FailEachAllocation([&](const FailingAllocation& failing) {
            TASK_TYP* task = CreateTask();
            const int result = byName ? LoadTask(task, u"Fast") : LoadTask(task, instance.parent);
            EXPECT_TRUE(result == 1 || failing.HasFailed());
            const uint32_t count = result ? CardinalityOfList(ListOf(task->pous)) : 21;
            EXPECT_LE(count, 21u);
            // The names of programs that the model gives no object for are missing.
            EXPECT_TRUE(count == 21 || failing.HasFailed());
            EXPECT_TRUE(count >= 20 || !failing.HasFailedOnce());
            DestroyTask(task);
        });
    }
    FailEachAllocation([](const FailingAllocation& failing) {
        TASK_LIST_TYP* list = CreateTaskList();
        EXPECT_EQ(list != nullptr, !failing.HasFailed());
        EXPECT_EQ(DestroyTaskList(list), failing.HasFailed() ? 0 : 1);
    });
}

TEST(PouhMemory, RegroupingLeavesTheOldOrder) {
    FailEachAllocation([](const FailingAllocation& failing) {
        SYMBOL_TABLE_TYP* table = CreateSymbolTable();
        FLIST* list = NewDeclList();
        SetAttrOfSymbolTable(table, POUH_LIST, &list);
        Lines lines;
        for (const uint32_t scope : {DS_VAR, DS_VAR_INPUT}) {
            DECL_TYP* decl = CreateDecl();
            SetAttrOfDecl(decl, POUH_SCOPE, &scope);
            if (AddDecl(list, decl, LC_LAST)) {
                lines.push_back(Describe(decl));
            }
        }
        if (table && lines.size() == 2) {
            if (RegroupByScope(*table)) {
                std::swap(lines[0], lines[1]);
            } else {
                EXPECT_TRUE(failing.HasFailed());
            }
            EXPECT_EQ(DescribeAll(ListOf(table)), lines);
        }
        if (!DestroySymbolTable(table) && list) {
            for (DECL_TYP* d = DeclAt(list, LC_FIRST); d; d = DeclAt(list, LC_NEXT)) {
                DestroyDecl(d);
            }
            DestroyList(list);
        }
    });
}

TEST(PouhMemory, MemberInitKeepsWhatItHasRead) {
    const ColdStart beforeTheFirstCount;
    const std::u16string longString = u"'" + std::u16string(3000, u'x') + u"'";
    const std::u16string text = u"a := [1, 2], b := " + longString;
    FailEachAllocation([&](const FailingAllocation& failing) {
        const ColdStart round;
        const DUVMemberInit_C init(text.c_str());
        const char16_t* a = init.FindNewInit(u"a");
        const char16_t* b = init.FindNewInit(u"b");
        EXPECT_TRUE(failing.HasFailed() || (a && b));
        EXPECT_TRUE(!a || std::u16string(a) == u"[1,2]");
        EXPECT_TRUE(!b || (a && b == longString));
    });
}

// The comma within a value, a member's name that is longer than a token.
TEST(PouhMemory, MemberInitOfEveryLength) {
    const ColdStart beforeTheFirstCount;
    std::vector<std::u16string> texts = {std::u16string(3000, u'n') + u" := 1"};
    for (size_t length = 1; length < 40; ++length) {
        texts.push_back(u"n := [" + std::u16string(length, u'1') + u", 2]");
    }
    for (const std::u16string& text : texts) {
        const std::u16string member = text.substr(0, text.find(u' '));
        std::u16string whole = text.substr(text.find(u'=') + 2);
        std::erase(whole, u' ');
        FailEachAllocation([&](const FailingAllocation& failing) {
            const ColdStart round;
            const DUVMemberInit_C init(text.c_str());
            const char16_t* value = init.FindNewInit(member.c_str());
            EXPECT_TRUE(value ? value == whole : failing.HasFailed());
        });
    }
}

TEST(PouhMemory, ScopesNeedNone) {
    const ColdStart beforeTheFirstCount;
    FailEachAllocation([](const FailingAllocation&) {
        const ColdStart round;
        EXPECT_EQ(GetDeclScope(u"VAR_IN_EXT"), DS_VAR_IN_EXT);
        EXPECT_EQ(GetDeclScope(u"VAR_X"), DS_UNKNOWN);
    });
}

TEST(PouhMemory, TextThatCannotBeCopiedLeavesNone) {
    POUH_COMMENT_TYP* comment = CreatePOUHComment();
    SetAttrOfPOUHComment(comment, POUH_REMARK, u"before");
    {
        const FailingAllocation failing(1, false);
        EXPECT_EQ(SetAttrOfPOUHComment(comment, POUH_REMARK, u"after"), 1);
    }
    char16_t buffer[8] = u"#";
    GetAttrOfPOUHComment(comment, POUH_REMARK, buffer);
    EXPECT_EQ(buffer[0], u'#');
    DestroyPOUHComment(comment);
}

}  // namespace
