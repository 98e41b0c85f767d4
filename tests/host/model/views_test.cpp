// The project as the library sees it.
#include "host/model/views.h"

#include <memory>
#include <string_view>

#include <gtest/gtest.h>

#include "lq_data/pouh.h"
#include "tests/host/model/model_util.h"

namespace {

using namespace lq::host;
using std::u16string_view;

std::unique_ptr<LQOBJECT> Fetch(ID id) {
    return std::unique_ptr<LQOBJECT>(LQDECLMAN::Get()->Get(id));
}

TEST(Views, DeclarationsAnswerByTheirOwner) {
    CurrentProject project;
    const ID pou = project.NewPou(LQ_KIND_FUNCTION_BLOCK, u"B");
    const ID structure = project.NewDataType(u"S", true);
    const ID list = project.NewList(project.NewConfiguration());
    const struct {
        ID id;
        int32_t kind;
        u16string_view keyword;
    } cases[] = {
        {project.NewVariable(pou, u"a", u"INT", {Scope::kInput, false, true}),
         kKindHeaderDeclaration, u"VAR_INPUT_RETAIN"},
        {project.NewVariable(pou, u"t", u"INT", {Scope::kTemp}), LQ_KIND_LOCAL_DECL, u"VAR"},
        {project.NewVariable(structure, u"m", u"INT"), LQ_KIND_LOCAL_DECL, u"VAR"},
    };
    for (const auto& c : cases) {
        const auto object = Fetch(c.id);
        const auto* declaration = dynamic_cast<LQPOUHDECL*>(object.get());
        ASSERT_NE(declaration, nullptr) << c.id.GetNumber();
        EXPECT_EQ(declaration->GetKind(), c.kind);
        EXPECT_EQ(u16string_view(declaration->GetClass()), c.keyword);
        EXPECT_EQ(declaration->GetId(), c.id);
    }
    const Section constant = {Scope::kGlobal, true, false};
    const auto global = Fetch(project.NewVariable(list, u"g", u"REAL", constant));
    const auto* declaration = dynamic_cast<LQGVLDECL*>(global.get());
    ASSERT_NE(declaration, nullptr);
    EXPECT_EQ(declaration->GetKind(), LQ_KIND_GVL_DECL);
    EXPECT_EQ(u16string_view(declaration->GetClass()), u"VAR_GLOBAL_CONSTANT");
    const std::unique_ptr<LQDECL> byName(FindGVLDeclByName(u"G"));
    ASSERT_NE(byName, nullptr);
    EXPECT_EQ(u16string_view(byName->GetType()), u"REAL");
    EXPECT_EQ(FindGVLDeclByName(u"m"), nullptr);
}

TEST(Views, PoolsListWhatTheyHold) {
    CurrentProject project;
    const ID pou = project.NewPou(LQ_KIND_PROGRAM, u"Main");
    const ID resource = project.NewResource(project.NewConfiguration());
    LQNAVIOBJECTMAN& manager = *LQNAVIOBJECTMAN::Get();
    LQCOLLECTION& pous = *manager.GetPOUPool();
    EXPECT_EQ(pous.GetMemberCount(), 1);
    EXPECT_EQ(pous.GetID(0), pou);
    EXPECT_EQ(pous.GetID(1), ID());
    EXPECT_EQ(pous.GetID(-1), ID());
    EXPECT_EQ(manager.GetResourcePool()->GetID(0), resource);
    EXPECT_EQ(manager.Find(u"MAIN", pous.GetId(), LQ_ANY_KIND), pou);
    EXPECT_EQ(manager.Find(u"Main", pous.GetId(), LQ_KIND_PROGRAM), pou);
    EXPECT_EQ(manager.Find(u"Main", pous.GetId(), LQ_KIND_FUNCTION), ID());
    EXPECT_EQ(manager.Find(u"Main", ID(), LQ_ANY_KIND), ID());
    EXPECT_EQ(manager.Get(pou)->GetKind(), LQ_KIND_PROGRAM);
    EXPECT_EQ(manager.Get(ID()), nullptr);
    EXPECT_EQ(manager.Get(ID(0xFFFFFFFF)), nullptr);
}

TEST(Views, TasksNameTheirPrograms) {
    CurrentProject project;
    const ID main = project.NewPou(LQ_KIND_PROGRAM, u"Main");
    Task task;
    task.name = u"Fast";
    task.resource = project.NewResource(project.NewConfiguration());
    const ID fast = project.AddTask(task);
    auto& view = static_cast<LQTASK&>(*LQNAVIOBJECTMAN::Get()->Get(fast));
    EXPECT_EQ(view.GetMemberCount(), 1) << "a task without programs is listed";
    EXPECT_EQ(view.GetSelection()->GetCount(), 0);

    for (Text type : {u"MAIN", u"Absent"}) {
        ProgramInstance instance;
        instance.name = u"i";
        instance.typeName = type;
        instance.parent = fast;
        project.AddProgramInstance(instance);
    }
    ASSERT_EQ(view.GetSelection()->GetCount(), 2);
    EXPECT_EQ(view.GetSelection()->GetID(0), main);
    EXPECT_EQ(u16string_view(Fetch(view.GetSelection()->GetID(1))->GetName()), u"Absent");
    EXPECT_EQ(LQNAVIOBJECTMAN::Get()->Find(u"fast", task.resource, LQ_ANY_KIND), fast);
}

// Through the loaders, which tell the kinds apart and cast accordingly.
TEST(Views, LoadAsHeaders) {
    CurrentProject project;
    project.NewPou(LQ_KIND_FUNCTION, u"F");
    project.NewDataType(u"S", true);
    project.NewDataType(u"A", false);
    for (const char16_t* name : {u"F", u"s", u"A", u"TON"}) {
        POU_HEADER_TYP* header = CreatePOUHeader();
        EXPECT_EQ(LoadPOUHeader(header, name), 1) << lq::chars::Length(name);
        DestroyPOUHeader(header);
    }
}

TEST(NewDeclaration, KeepsItsOwnTexts) {
    const std::unique_ptr<LQPOUHDECL> declaration(LQPOUHDECL::CreateObject());
    char16_t name[] = u"EN";
    declaration->SetName(name);
    declaration->SetType(u"BOOL");
    declaration->SetInitValue(u"FALSE");
    name[0] = u'?';
    EXPECT_EQ(u16string_view(declaration->GetName()), u"EN");
    EXPECT_EQ(u16string_view(declaration->GetType()), u"BOOL");
    EXPECT_EQ(u16string_view(declaration->GetInitValue()), u"FALSE");
    declaration->SetClass(LQ_CLASS_INPUT);
    EXPECT_EQ(u16string_view(declaration->GetClass()), u"VAR_INPUT");
    declaration->SetClass(LQ_CLASS_OUTPUT);
    EXPECT_EQ(u16string_view(declaration->GetClass()), u"VAR_OUTPUT");
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
}

}  // namespace
