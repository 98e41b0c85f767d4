#include <gtest/gtest.h>

#include "load_test_util.h"
#include "pouh/records.h"

namespace {

using namespace lq::pouh;

// Two resources with tasks "Fast", "Slow" and "Fast", "Idle".
class LoadTaskTest : public testing::Test {
  protected:
    void SetUp() override {
        const ID first = AddResource(u"R1");
        const ID second = AddResource(u"R2");
        project_.AddPouNamed(u"Main");
        project_.AddPouNamed(u"Aux");
        lq::host::Task fast;
        fast.name = u"Fast";
        fast.priority = u"1";
        fast.interval = u"T#10ms";
        fast.event = u"e";
        fast.comment = u"c";
        fast.resource = first;
        fast_ = project_.AddTask(fast);
        AddTask(u"Slow", first);
        AddTask(u"Fast", second);
        AddTask(u"Idle", second);
        for (const char16_t* pou : {u"Main", u"Missing", u"Aux"}) {
            lq::host::ProgramInstance instance;
            instance.typeName = pou;
            instance.parent = fast_;
            project_.AddProgramInstance(instance);
        }
    }

    ID AddResource(const char16_t* name) {
        lq::host::Resource resource;
        resource.name = name;
        resource.configuration = configuration_;
        return project_.AddResource(resource);
    }

    void AddTask(const char16_t* name, ID resource) {
        lq::host::Task task;
        task.name = name;
        task.resource = resource;
        project_.AddTask(task);
    }

    static std::u16string Info(const TASK_TYP* task) {
        std::u16string line;
        for (const POUH_ATTRIBUTE_FLAG flag :
             {POUH_NAME, POUH_EVENT, POUH_INTERVAL, POUH_PRIORITY, POUH_COMMENT}) {
            line += std::u16string(TextOf(task->info, flag)) + u";";
        }
        return line;
    }

    LoadedProject project_;
    ID configuration_ = project_.AddConfigurationNamed(u"Config");
    ID fast_;
};

TEST_F(LoadTaskTest, ByNameAndById) {
    TASK_TYP* task = CreateTask();
    // Twice: the first records go.
    EXPECT_EQ(LoadTask(task, u"Fast"), 1);
    EXPECT_EQ(LoadTask(task, fast_), 1);
    EXPECT_EQ(Info(task), u"Fast;e;T#10ms;1;c;");
    EXPECT_EQ(Names(ListOf(task->pous)), (Lines{u"Main", u"Missing", u"Aux"}));
    // Of two tasks of one name the one in the first collection.
    EXPECT_EQ(LoadTask(task, u"Fast"), 1);
    EXPECT_EQ(Info(task), u"Fast;e;T#10ms;1;c;");
    EXPECT_EQ(LoadTask(task, u"Idle"), 1);
    EXPECT_EQ(Info(task), u"Idle;;;;;");
    EXPECT_EQ(Names(ListOf(task->pous)), Lines{});
    DestroyTask(task);
}

TEST_F(LoadTaskTest, FailureLeavesNewRecords) {
    TASK_TYP* task = CreateTask();
    ASSERT_EQ(LoadTask(task, u"Fast"), 1);
    EXPECT_EQ(LoadTask(task, static_cast<const char16_t*>(nullptr)), 0);
    EXPECT_EQ(LoadTask(task, ID()), 0);
    EXPECT_EQ(Info(task), u"Fast;e;T#10ms;1;c;") << "refused before anything is touched";
    EXPECT_EQ(LoadTask(task, u"None"), 0);
    EXPECT_EQ(Info(task), u";;;;;");
    EXPECT_EQ(LoadTask(task, ID(999)), 0);
    EXPECT_EQ(LoadTask(task, project_.FindPou(u"Main")), 0) << "no task";
    EXPECT_EQ(LoadTask(nullptr, u"Fast"), 0);
    EXPECT_EQ(LoadTask(nullptr, fast_), 0);
    DestroyTask(task);
}

TEST_F(LoadTaskTest, ListOfAllTasks) {
    TASK_LIST_TYP* list = CreateTaskList();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(Names(ListOf(list)), (Lines{u"Fast", u"Slow", u"Fast", u"Idle"}));
    EXPECT_EQ(LoadTaskList(ListOf(list)), 1);
    EXPECT_EQ(CardinalityOfList(ListOf(list)), 8u) << "appended";
    DestroyTaskList(list);
}

TEST(LoadTask, WithoutAProject) {
    TASK_LIST_TYP* list = CreateTaskList();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(CardinalityOfList(ListOf(list)), 0u);
    DestroyTaskList(list);
    TASK_TYP* task = CreateTask();
    EXPECT_EQ(LoadTask(task, u"Fast"), 0);
    EXPECT_EQ(LoadTask(task, ID(1)), 0);
    DestroyTask(task);
}

}  // namespace
