#include "host/model/project.h"

#include <memory>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "host/text/utf.h"
#include "tests/host/model/model_util.h"
#include "tests/support/test_allocator.h"

namespace {

using namespace lq::host;

TEST(Project, KeepsEachTextOnce) {
    Project project;
    const Text first = project.Intern(u"INT");
    const std::u16string large(40000, u'x');
    const Text big = project.Intern(large);
    for (int i = 0; i < 5000; ++i) {
        const std::string number = std::to_string(i);
        project.Intern(std::u16string(number.begin(), number.end()));
    }
    EXPECT_EQ(project.Intern(u"INT"), first);
    EXPECT_EQ(project.Intern(large), big);
    EXPECT_EQ(std::u16string_view(big), large);
    EXPECT_NE(project.Intern(u"int"), first);
    EXPECT_EQ(std::u16string_view(project.Intern(std::u16string_view(u"a\0b", 3))), u"a");
    EXPECT_EQ(*project.Intern(u""), 0);
}

TEST(Project, RefusesOwnersOfTheWrongSort) {
    CurrentProject project;
    const ID program = project.NewPou(LQ_KIND_PROGRAM, u"P");
    const ID alias = project.NewDataType(u"Alias", false);
    const ID configuration = project.NewConfiguration();
    const ID list = project.NewList(configuration);
    const std::size_t count = project.Declarations().size();

    for (const ID owner : {ID(), alias, configuration, ID(1), ID(0xFFFFFFFF), project.PouPool(),
                           MakeId(Sort::kPou, 1000)}) {
        EXPECT_EQ(project.NewVariable(owner, u"v", u"INT"), ID()) << owner.GetNumber();
    }
    EXPECT_EQ(project.Declarations().size(), count);
    EXPECT_EQ(project.NewResource(program), ID());
    EXPECT_EQ(project.AddTask({}), ID());
    EXPECT_EQ(project.AddProgramInstance({}), ID());
    EXPECT_EQ(project.NewList(list), ID());
    EXPECT_FALSE(project.SetComment(ID(), u"none"));
}

TEST(Project, FindsTheFirstOfOneNameWithoutRegardToCase) {
    CurrentProject project;
    const ID plant = project.NewList(project.NewConfiguration());
    const ID local = project.NewList(project.NewPou(LQ_KIND_PROGRAM, u"P"));
    const ID first = project.NewVariable(plant, u"Level", u"INT");
    const ID second = project.NewVariable(local, u"LEVEL", u"REAL");
    EXPECT_EQ(project.FindGlobal(u"lEVEL"), first);
    EXPECT_EQ(project.FindBelow(plant, u"LEVEL"), first);
    EXPECT_EQ(project.FindBelow(local, u"level"), second);
    EXPECT_EQ(project.FindGlobal(u"Level1"), ID());
    EXPECT_EQ(project.FindGlobal(u"Leve"), ID());
}

// Enough names to let the index grow several times, most of them in one hash neighbourhood.
TEST(Project, FindsEveryOneOfManyNames) {
    CurrentProject project;
    const ID list = project.NewList(project.NewConfiguration());
    std::vector<std::u16string> names;
    for (int i = 0; i < 3000; ++i) {
        const std::string number = std::to_string(i);
        names.push_back(u"V" + std::u16string(number.begin(), number.end()));
    }
    std::vector<ID> ids;
    for (const std::u16string& name : names) {
        ids.push_back(project.NewVariable(list, project.Intern(name), u"INT"));
        ASSERT_EQ(project.NewVariable(list, project.Intern(name), u"BOOL") == ID(), 0);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(project.FindGlobal(names[i]), ids[i]) << EncodeUtf8(names[i]);
    }
}

TEST(Project, HoldsWhatItHeldWhenMemoryIsShort) {
    lq::test::FailEachAllocation([](const lq::test::FailingAllocation& failing) {
        try {
            CurrentProject project;
            const std::size_t library = project.Pous().size();
            try {
                project.NewPou(LQ_KIND_PROGRAM, u"P");
            } catch (const std::bad_alloc&) {
                EXPECT_EQ(project.Pous().size(), library);
                EXPECT_TRUE(project.Below(project.PouPool()).empty());
                EXPECT_EQ(FindPOUByName(u"P"), ID());
                throw;
            }
            const ID list = project.NewList(project.NewConfiguration());
            const ID global = project.NewVariable(list, u"g", u"INT");
            for (const bool byName : {true, false}) {
                const std::unique_ptr<LQOBJECT> object(byName ? FindGVLDeclByName(u"g")
                                                              : LQDECLMAN::Get()->Get(global));
                if (!object) {
                    throw std::bad_alloc();
                }
                EXPECT_EQ(std::u16string_view(object->GetName()), u"g");
            }
        } catch (const std::bad_alloc&) {
            EXPECT_TRUE(failing.HasFailed());
        }
    });
}

}  // namespace
