#include <string>

#include <gtest/gtest.h>

#include "host/text/utf.h"
#include "tests/host/model/model_util.h"

namespace {

using namespace lq::host;

std::string Interface(const Project& project, const Pou& pou) {
    std::string text;
    for (const ID id : pou.declarations) {
        const Declaration& d = *project.GetDeclaration(id);
        const std::string_view arrow = d.section.scope == Scope::kInput ? ">" : "<";
        text.append(arrow).append(EncodeUtf8(d.name)) += ":" + EncodeUtf8(d.type) + " ";
    }
    return text;
}

TEST(StandardBlocks, HaveTheirInterfaces) {
    constexpr struct {
        const char16_t* name;
        std::string_view interface;
    } kCases[] = {
        {u"SR", ">S1:BOOL >R:BOOL <Q1:BOOL "},
        {u"RS", ">S:BOOL >R1:BOOL <Q1:BOOL "},
        {u"SEMA", ">CLAIM:BOOL >RELEASE:BOOL <BUSY:BOOL "},
        {u"R_TRIG", ">CLK:BOOL <Q:BOOL "},
        {u"f_trig", ">CLK:BOOL <Q:BOOL "},
        {u"CTU", ">CU:BOOL >R:BOOL >PV:INT <Q:BOOL <CV:INT "},
        {u"CTU_INT", ">CU:BOOL >R:BOOL >PV:INT <Q:BOOL <CV:INT "},
        {u"CTD_ULINT", ">CD:BOOL >LD:BOOL >PV:ULINT <Q:BOOL <CV:ULINT "},
        {u"CTUD_DINT", ">CU:BOOL >CD:BOOL >R:BOOL >LD:BOOL >PV:DINT <QU:BOOL <QD:BOOL <CV:DINT "},
        {u"TP", ">IN:BOOL >PT:TIME <Q:BOOL <ET:TIME "},
        {u"ton", ">IN:BOOL >PT:TIME <Q:BOOL <ET:TIME "},
    };
    CurrentProject project;
    LQCOLLECTION* library = LQNAVIOBJECTMAN::Get()->GetLibraryPool();
    for (const auto& c : kCases) {
        const ID id = library->Lookup(c.name, LQ_LOOKUP_FUNCTION_BLOCK);
        ASSERT_NE(project.GetPou(id), nullptr) << EncodeUtf8(c.name);
        EXPECT_EQ(Interface(project, *project.GetPou(id)), c.interface);
        EXPECT_NE(IsFBName(c.name), 0) << EncodeUtf8(c.name);
        EXPECT_EQ(library->Lookup(c.name, LQ_LOOKUP_FUNCTION), ID()) << EncodeUtf8(c.name);
    }
    EXPECT_EQ(library->Lookup(u"CTU_REAL", LQ_LOOKUP_FUNCTION_BLOCK), ID());
    EXPECT_EQ(library->GetMemberCount(), 8 + 3 * 6);
}

TEST(StandardBlocks, GiveWayToTheProjectsOwn) {
    CurrentProject project;
    const ID own = project.NewPou(LQ_KIND_FUNCTION, u"ton");
    EXPECT_EQ(FindPOUByName(u"TON"), own);
    EXPECT_EQ(IsFBName(u"TON"), 0);
    EXPECT_NE(FindPOUByName(u"TOF"), ID());
}

}  // namespace
