// Jobs of the loaders with every allocation failing in turn, and with memory back on the same
// records.
#include <memory>

#include <gtest/gtest.h>

#include "load_test_util.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/host/text/utf.h"
#include "pouh/header_parts.h"
#include "pouh/record_lists.h"
#include "pouh/record_types.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/test_allocator.h"

namespace {

using namespace lq::pouh;
using lq::host::EncodeUtf8;
using lq::test::Attempt;
using lq::test::FailingAllocation;
using lq::test::kShort;
using lq::test::RunWithFailures;

std::string Joined(const Lines& lines) {
    std::string text;
    for (const std::u16string& line : lines) {
        text += EncodeUtf8(line) + "\n";
    }
    return text;
}

// A job on one record of its own.
template <typename Record>
lq::test::MemoryJob On(const char* name, Record* (*create)(), int (*destroy)(Record*),
                       std::function<std::string(Record*)> run) {
    return {name, [=]() -> Attempt {
                const std::shared_ptr<Record> record(create(), destroy);
                return [=] { return run(record.get()); };
            }};
}

TEST(PouhMemory, Loaders) {
    LoadedProject project;
    lq::host::Pou function;
    function.name = u"F";
    function.kind = LQ_KIND_FUNCTION;
    function.resultType = u"STRING";
    function.eno = true;
    function.comment = function.headerComment = u"comment";
    const ID pou = project.AddPou(function);
    project.NewVar(pou, u"a", u"INT", kInput, u"1");
    project.NewVar(pou, u"r", u"ARRAY [1..2] OF INT");
    project.NewVar(pou, u"t", u"TON");
    project.NewVar(pou, u"g", u"INT", kExternal);
    const std::u16string longName(3000, u'n');
    project.NewVar(pou, u"l", longName.c_str());
    project.NewVar(pou, u"x", u"Nothing", kOutput, u"1 +");  // the last, for the check of its value
    const ID globals = project.NewList(project.NewConfiguration());
    project.NewVar(globals, u"g", u"INT", kGlobal, u"7", u"%MW4");
    project.NewVar(globals, u"t", u"CTU", kGlobal);  // behind the local one
    // A function whose texts do not fit the text class itself.
    function.name = u"TheReturnValueOfThisFunctionHasALongName";
    function.resultType = u"Another long text, of no type at all, for its result";
    const ID longNamed = project.AddPou(function);

    const auto loadHeader = [](ID id) {
        return [id](POU_HEADER_TYP* header) {
            return LoadPOUHeader(header, id, 0) ? Joined(DescribeAll(ListOf(header))) : kShort;
        };
    };
    const auto loadParts = [pou](POU_HEADER_TYP* header) {
        HeaderParts parts;
        bool isLoaded = parts.Open(header, pou) != 0;
        std::string lines;
        while (isLoaded && !parts.AtEnd()) {
            isLoaded = parts.LoadNext(2) != 0;
            lines += isLoaded ? Joined(DescribeAll(ListOf(header))) : "";
        }
        return isLoaded ? lines : kShort;
    };
    const auto loadInterface = [&project](ID id) -> Attempt {
        auto* object = dynamic_cast<LQPOU*>(project.GetView(id));
        return [object] {
            POUH_DECL_LIST_TYP* list = CreatePOUHDeclList();
            const int loaded = list ? LoadInterface(list, object) : 0;
            std::string lines = loaded ? Joined(DescribeAll(ListOf(list))) : kShort;
            DestroyPOUHDeclList(list);
            return lines;
        };
    };
    const auto loadGlobals = [globals] {
        SYMBOL_TABLE_TYP* table = CreateSymbolTable();
        const int loaded = table ? LoadSelectedSymbolTable(table, globals) : 0;
        std::string lines = loaded ? Joined(DescribeAll(ListOf(table))) : kShort;
        DestroySymbolTable(table);
        return lines;
    };
    const auto findBlock = [] {
        CLQString type;
        const int found = FindFBName(u"t", u"F", &type);
        return found && !type.HasFailed() ? EncodeUtf8(type.GetText()) : kShort;
    };
    const auto loadHidden = [](POU_HEADER_TYP* header) {
        return LoadPOUHiddenHeader(header, u"_SFCCB") ? Joined(DescribeAll(ListOf(header)))
                                                      : kShort;
    };
    const lq::test::MemoryJob jobs[] = {
        On<POU_HEADER_TYP>("header", CreatePOUHeader, DestroyPOUHeader, loadHeader(pou)),
        On<POU_HEADER_TYP>("long names", CreatePOUHeader, DestroyPOUHeader, loadHeader(longNamed)),
        On<POU_HEADER_TYP>("header in parts", CreatePOUHeader, DestroyPOUHeader, loadParts),
        On<POU_HEADER_TYP>("hidden header", CreatePOUHeader, DestroyPOUHeader, loadHidden),
        {"interface", [&] { return loadInterface(pou); }},
        {"interface, long names", [&] { return loadInterface(longNamed); }},
        {"globals", [&] { return loadGlobals; }},
        {"function block", [&] { return findBlock; }},
    };
    for (const lq::test::MemoryJob& job : jobs) {
        RunWithFailures(job);
    }
}

TEST(PouhMemory, Tasks) {
    LoadedProject project;
    lq::host::Resource resource;
    resource.configuration = project.NewConfiguration(u"Config");
    lq::host::Task source;
    source.name = u"Fast";
    source.priority = source.interval = source.event = source.comment = u"a text of its own";
    source.resource = project.AddResource(resource);
    lq::host::ProgramInstance instance;
    instance.typeName = u"Main";
    instance.parent = project.AddTask(source);
    project.NewPou(LQ_KIND_PROGRAM, u"Main");
    // Of both more than the nodes that a list takes at once.
    source.name = u"Other";
    for (int i = 0; i < 21; ++i) {
        project.AddProgramInstance(instance);
        project.AddTask(source);
    }
    for (const bool byName : {true, false}) {
        RunWithFailures(On<TASK_TYP>("task", CreateTask, DestroyTask, [&](TASK_TYP* task) {
            const int loaded = byName ? LoadTask(task, u"Fast") : LoadTask(task, instance.parent);
            return loaded ? Joined(Names(ListOf(task->pous))) : kShort;
        }));
    }
    const auto createList = [] {
        TASK_LIST_TYP* list = CreateTaskList();
        std::string names = list ? Joined(Names(ListOf(list))) : kShort;
        DestroyTaskList(list);
        return names;
    };
    RunWithFailures({"task list", [&] { return createList; }});
    const auto make = [] { return std::shared_ptr<FLIST>(NewNameList(), DestroyList); };
    RunWithFailures("names for a list", make, [](FLIST& list) {
        EXPECT_EQ(LoadTaskList(&list), 1);
        const Lines names = Names(&list);  // each is there
        ClearList(&list);
        return names.size() == 22 ? Joined(names) : kShort;
    });
}

TEST(PouhMemory, RegroupingLeavesTheOldOrder) {
    const auto create = [] {
        SYMBOL_TABLE_TYP* table = CreateSymbolTable();
        FLIST* list = NewDeclList();
        SetAttrOfSymbolTable(table, POUH_LIST, &list);
        for (const uint32_t scope : {DS_VAR, DS_VAR_INPUT}) {
            DECL_TYP* decl = CreateDecl();
            SetAttrOfDecl(decl, POUH_SCOPE, &scope);
            AddDecl(list, decl, LC_LAST);
        }
        return table;
    };
    RunWithFailures(
        On<SYMBOL_TABLE_TYP>("regrouping", create, DestroySymbolTable, [](SYMBOL_TABLE_TYP* table) {
            const bool regrouped = RegroupByScope(*table);
            EXPECT_EQ(Joined(DescribeAll(ListOf(table))).starts_with('1'), !regrouped);
            return regrouped ? Joined(DescribeAll(ListOf(table))) : kShort;
        }));
}

// What has been read before memory runs out counts: the assignments up to some place.
TEST(PouhMemory, MemberInitKeepsWhatItHasRead) {
    const std::u16string longString = u"'" + std::u16string(3000, u'x') + u"'";
    std::vector<std::u16string> values = {u"[1,2]", longString, u"7" + longString};
    for (size_t length = 1; length < 40; ++length) {  // a comma at every place
        values.push_back(u"[" + std::u16string(length, u'1') + u",2]");
    }
    for (const std::u16string& value : values) {
        for (const std::u16string& name : {std::u16string(u"b"), std::u16string(3000, u'n')}) {
            const std::u16string text = u"a := 1, " + name + u" := " + value;
            const auto read = [&] {
                const DUVMemberInit_C init(text.c_str());
                const char16_t* const a = init.FindNewInit(u"a");
                const char16_t* const b = init.FindNewInit(name.c_str());
                EXPECT_TRUE(!a || std::u16string(a) == u"1");
                EXPECT_TRUE(a || !b) << "the first assignment comes first";
                return b ? EncodeUtf8(b) : kShort;
            };
            RunWithFailures({"member values", [&] { return read; }});
        }
    }
}

TEST(PouhMemory, TextThatCannotBeCopiedLeavesNone) {
    POUH_COMMENT_TYP* comment = CreatePOUHComment();
    SetAttrOfPOUHComment(comment, POUH_REMARK, u"before");
    {
        const FailingAllocation failing(1, false);
        EXPECT_EQ(SetAttrOfPOUHComment(comment, POUH_REMARK, u"after"), 1);
        EXPECT_TRUE(failing.HasFailed());
    }
    char16_t buffer[8] = u"#";
    GetAttrOfPOUHComment(comment, POUH_REMARK, buffer);
    EXPECT_EQ(buffer[0], u'#');
    DestroyPOUHComment(comment);
}

}  // namespace
