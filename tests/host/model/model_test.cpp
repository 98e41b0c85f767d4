// The project and its views: what documents cannot show (tests/host/plcopen/golden_test.cpp).
#include <memory>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "tests/host/model/model_util.h"
#include "tests/support/test_allocator.h"

namespace {

using namespace lq::host;
using std::u16string_view;

TEST(Project, KeepsEachTextOnce) {
    Project project;
    const std::u16string large(40000, u'x');
    std::vector<std::u16string> texts{u"INT", large, u"int", u"IN", u"INTO"};
    for (int i = 0; i < 5000; ++i) {
        const std::string number = std::to_string(i);
        texts.emplace_back(number.begin(), number.end());
    }
    std::vector<Text> kept;
    for (const std::u16string& text : texts) {
        kept.push_back(project.Intern(text));
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(u16string_view(kept[i]), texts[i]);
        EXPECT_EQ(project.Intern(texts[i]), kept[i]);
        EXPECT_NE(project.Store(texts[i]), kept[i]);
    }
    EXPECT_EQ(project.Intern(u16string_view(u"INT\0b", 5)), kept[0]);
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
        EXPECT_EQ(project.NewVar(owner, u"v", u"INT"), ID()) << owner.GetNumber();
    }
    EXPECT_EQ(project.Declarations().size(), count);
    const auto behind = static_cast<uint32_t>(project.Pous().size());
    EXPECT_EQ(project.FindBelow(MakeId(Sort::kPou, behind), u"v"), ID());
    EXPECT_EQ(project.NewResource(program), ID());
    EXPECT_EQ(project.AddTask({}), ID());
    EXPECT_EQ(project.AddProgramInstance({}), ID());
    EXPECT_EQ(project.NewList(list), ID());
    EXPECT_FALSE(project.SetComment(ID(), u"none"));
}

// Which identifiers the declarations of a POU have that is replaced again and again: "+" ends those
// that are its own, behind it is what was added aside.
TEST(Project, ReplacesAPouThatWasReadAnew) {
    CurrentProject project;
    project.BeginFile({u"own.xml"});
    const ID pou = project.NewPou(LQ_KIND_PROGRAM, u"P");
    const ID first = project.NewVar(pou, u"a", u"INT");
    project.NewVar(pou, u"b", u"INT");
    project.BeginFile({u"library.xml", true});
    const auto replace = [&](std::string_view names, Text name = u"p") {
        Project read;
        Pou record;
        record.name = read.Intern(name);
        record.comment = read.Intern(u"anew");
        const ID id = read.AddPou(record);
        bool isAside = false;
        for (const char c : names) {
            Declaration variable;
            variable.owner = id;
            variable.name = read.Intern(std::u16string(1, static_cast<char16_t>(c)));
            if (c != '+') {
                isAside ? read.AddAside(variable) : read.AddDeclaration(variable);
            }
            isAside = isAside || c == '+';
        }
        read.AddCall(*read.EditPou(id), read.Intern(u"Callee"));
        Body& body = read.EditPou(id)->bodies.emplace_back();
        body.labels.emplace_back().name = read.Intern(u"L");
        read.EditCode(body).tokens.push_back({read.Intern(u"t")});
        return project.ReplacePou(pou, read, id);
    };
    const auto told = [&] {
        std::string text;
        const Pou& now = *project.GetPou(pou);
        for (const IdList& list : {now.declarations, {ID()}, now.implicit}) {
            for (const ID id : list) {
                const Text name = project.NameOf(id);
                text += id == ID() ? "+"
                                   : static_cast<char>(*name) +
                                         std::to_string(IndexOf(id) - IndexOf(first));
                EXPECT_TRUE(id == ID() || project.FileOf(id)->name == project.FileOf(pou)->name);
            }
        }
        return text;
    };
    const struct {
        const char* names;
        const char* ids;
    } rows[] = {{"ab", "a0b1+"},  {"Bcd", "B1c0d2+"},     {"", "+"},
                {"x+y", "x2+y0"}, {"yx", "y0x2+"},        {"xxx", "x2x0x1+"},
                {"xz", "x2z1+"},  {"efg+h", "e1f2g0+h3"}, {"h+e", "h3+e1"}};
    for (const auto& row : rows) {
        EXPECT_TRUE(replace(row.names));
        EXPECT_EQ(told(), row.ids) << row.names;
    }
    const Pou& now = *project.GetPou(pou);
    EXPECT_EQ(now.name, project.Intern(u"p"));
    EXPECT_EQ(now.comment, project.Intern(u"anew"));
    EXPECT_EQ(now.calls, std::vector<Text>{project.Intern(u"Callee")});
    EXPECT_EQ(now.bodies.at(0).labels.at(0).name, project.Intern(u"L"));
    EXPECT_EQ(project.CodeOf(now.bodies.at(0)), nullptr);
    project.KeepCode();
    EXPECT_TRUE(replace("a"));
    EXPECT_EQ(project.CodeOf(now.bodies.at(0))->tokens.at(0).text, project.Intern(u"t"));
    const std::size_t count = project.Declarations().size();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_TRUE(replace(i % 2 != 0 ? "abcd" : "efg"));
    }
    EXPECT_EQ(project.Declarations().size(), count);
    EXPECT_LE(now.bodies[0].code, 2u) << "the code that is kept and the next";
    EXPECT_FALSE(replace("a", u"Q"));
    EXPECT_FALSE(project.ReplacePou(pou, project, project.FindLibraryPou(u"TON")));
}

// The first of a name without regard to case, among enough to let the index grow several times.
TEST(Project, FindsTheFirstOfEveryName) {
    CurrentProject project;
    const ID list = project.NewList(project.NewConfiguration());
    const ID local = project.NewList(project.NewPou(LQ_KIND_PROGRAM, u"P"));
    std::vector<ID> ids;
    for (const bool again : {false, true}) {
        for (int i = 0; i < 3000; ++i) {
            const std::string number = std::to_string(i);
            const std::u16string name =
                (again ? u"v" : u"V") + std::u16string(number.begin(), number.end());
            const ID id = project.NewVar(again ? local : list, project.Intern(name), u"INT");
            ids.push_back(id);
            EXPECT_EQ(project.FindGlobal(name), ids[static_cast<std::size_t>(i)]) << i;
        }
    }
    EXPECT_EQ(project.FindBelow(list, u"v7"), ids[7]);
    EXPECT_EQ(project.FindBelow(local, u"V7"), ids[3007]);
    for (const char16_t* none : {u"V3000", u"V", u"V29990", u""}) {
        EXPECT_EQ(project.FindGlobal(none), ID());
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
                EXPECT_EQ(
                    LQNAVIOBJECTMAN::Get()->Get(MakeId(Sort::kPou, static_cast<uint32_t>(library))),
                    nullptr);
                if (failing.HasFailedOnce()) {
                    const LQNAVIOBJECT* view =
                        LQNAVIOBJECTMAN::Get()->Get(project.NewPou(LQ_KIND_PROGRAM, u"Q"));
                    EXPECT_TRUE(view && u16string_view(view->GetName()) == u"Q");
                }
                throw;
            }
            const ID list = project.NewList(project.NewConfiguration());
            const ID global = project.NewVar(list, u"g", u"INT");
            for (const bool byName : {true, false}) {
                const std::unique_ptr<LQOBJECT> object(byName ? FindGVLDeclByName(u"G")
                                                              : LQDECLMAN::Get()->Get(global));
                if (!object) {
                    throw std::bad_alloc();
                }
                EXPECT_EQ(u16string_view(object->GetName()), u"g");
            }
        } catch (const std::bad_alloc&) {
            EXPECT_TRUE(failing.HasFailed());
        }
    });
}

TEST(Project, LooksFirstAtItsOwnUnits) {
    CurrentProject project;
    const LQCOLLECTION& library = *LQNAVIOBJECTMAN::Get()->GetLibraryPool();
    EXPECT_NE(library.Lookup(u"ton", LQ_LOOKUP_FUNCTION_BLOCK), ID());
    EXPECT_EQ(library.Lookup(u"TON", LQ_LOOKUP_FUNCTION), ID());
    EXPECT_EQ(library.Lookup(u"CTU_REAL", LQ_LOOKUP_FUNCTION_BLOCK), ID());
    EXPECT_NE(IsFBName(u"TON"), 0);
    const ID own = project.NewPou(LQ_KIND_FUNCTION, u"ton");
    EXPECT_EQ(FindPOUByName(u"TON"), own);
    EXPECT_EQ(IsFBName(u"TON"), 0);
    EXPECT_NE(FindPOUByName(u"TOF"), ID());
    EXPECT_EQ(CheckIsRecursiveCallEx(nullptr, u"A", 0), 0);
}

TEST(Views, PoolsListWhatTheyHold) {
    CurrentProject project;
    const ID pou = project.NewPou(LQ_KIND_PROGRAM, u"Main");
    const ID structure = project.NewDataType(u"S");
    const ID member = project.NewVar(structure, u"m", u"INT");
    const ID resource = project.NewResource(project.NewConfiguration());
    LQNAVIOBJECTMAN& manager = *LQNAVIOBJECTMAN::Get();
    LQCOLLECTION& pous = *manager.GetPOUPool();
    EXPECT_EQ(pous.GetMemberCount(), 1);
    EXPECT_EQ(pous.GetID(0), pou);
    EXPECT_EQ(pous.GetID(1), ID());
    EXPECT_EQ(pous.GetID(-1), ID());
    EXPECT_EQ(manager.GetResourcePool()->GetID(0), resource);
    const struct {
        const char16_t* name;
        ID parent;
        uint32_t kind;
        ID found;
    } cases[] = {{u"MAIN", pous.GetId(), LQ_ANY_KIND, pou},
                 {u"Main", pous.GetId(), LQ_KIND_PROGRAM, pou},
                 {u"Main", pous.GetId(), LQ_KIND_FUNCTION, ID()},
                 {u"Main", ID(), LQ_ANY_KIND, ID()},
                 {u"m", structure, LQ_KIND_LOCAL_DECL, member},
                 {u"m", structure, LQ_KIND_GVL_DECL, ID()}};
    for (const auto& c : cases) {
        EXPECT_EQ(manager.Find(c.name, c.parent, c.kind), c.found) << c.kind;
    }
    EXPECT_EQ(manager.Get(ID()), nullptr);
    EXPECT_EQ(manager.Get(ID(0xFFFFFFFF)), nullptr);
    EXPECT_EQ(FindGVLDeclByName(u"m"), nullptr);
    const std::unique_ptr<LQOBJECT> view(LQDECLMAN::Get()->Get(member));
    EXPECT_NE(dynamic_cast<LQPOUHDECL*>(view.get()), nullptr) << "no global";
}

// A task without programs is none to be passed over; those that come are seen.
TEST(Views, TasksFollowTheProject) {
    CurrentProject project;
    const ID resource = project.NewResource(project.NewConfiguration());
    Task task;
    task.resource = resource;
    const ID id = project.AddTask(task);
    auto& view = static_cast<LQTASK&>(*LQNAVIOBJECTMAN::Get()->Get(id));
    EXPECT_EQ(view.GetMemberCount(), 1);
    EXPECT_EQ(view.GetSelection()->GetCount(), 0);
    ProgramInstance instance;
    instance.parent = id;
    project.AddProgramInstance(instance);
    project.AddProgramInstance(instance);
    EXPECT_EQ(view.GetMemberCount(), 2);
}

TEST(CurrentProject, IsAbsentAtFirst) {
    ASSERT_EQ(GetProject(), nullptr);
    EXPECT_EQ(LQNAVIOBJECTMAN::Get(), nullptr);
    EXPECT_EQ(LQDECLMAN::Get(), nullptr);
    EXPECT_EQ(FindPOUByName(u"TON"), ID());
    EXPECT_EQ(FindDUTByName(u"S"), ID());
    EXPECT_EQ(FindGVLDeclByName(u"g"), nullptr);
    EXPECT_EQ(GetDutByName(u"S"), nullptr);
    EXPECT_EQ(IsFBName(u"TON"), 0);
    EXPECT_EQ(CheckIsRecursiveCallEx(u"B", u"B", 0), 0);
}

}  // namespace
