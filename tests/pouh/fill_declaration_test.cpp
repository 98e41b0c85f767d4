#include "pouh/fill_declaration.h"

#include <string>

#include <gtest/gtest.h>

#include "pouh/record_access.h"
#include "pouh/records.h"

namespace {

using namespace lq::pouh;

TEST(FillDeclaration, EachKindHasItsSpecification) {
    struct {
        int (*fill)(DECL_TYP*, const DeclContent&);
        uint32_t kind;
    } const cases[] = {{FillSimpleDeclaration, DT_ELEMENTARY},
                       {FillStringDeclaration, DT_STRING},
                       {FillArrayDeclaration, DT_ARRAY},
                       {FillStructDeclaration, DT_STRUCTURE}};
    for (const auto& c : cases) {
        DECL_TYP* decl = CreateDecl();
        EXPECT_EQ(c.fill(decl, {DS_VAR_INPUT, u"n", u"T", u"i", u"c", 0x12345, 3, u"c2"}), 1);
        EXPECT_EQ(decl->scope, 2u) << c.kind;
        EXPECT_EQ(decl->word, 0x2345) << c.kind;
        EXPECT_EQ(decl->flags, 0x0010) << c.kind;
        EXPECT_EQ(std::u16string(TextOf(decl, POUH_NAME)), u"n") << c.kind;
        EXPECT_EQ(TypeKindOf(decl), c.kind);
        EXPECT_EQ(std::u16string(TypeTextOf(decl)), u"T") << c.kind;
        EXPECT_EQ(std::u16string(InitValueOf(decl)), u"i") << c.kind;
        EXPECT_EQ(std::u16string(CommentOf(decl, POUH_COMMENT)), u"c") << c.kind;
        EXPECT_EQ(std::u16string(CommentOf(decl, POUH_COMMENT2)), u"c2") << c.kind;
        DestroyDecl(decl);
    }
}

TEST(FillDeclaration, FbInstanceHasCommentsAndNoInitialValue) {
    DECL_TYP* decl = CreateDecl();
    *DecFlags(decl) = 0x4000;
    EXPECT_EQ(FillFBInstDeclaration(decl, DS_VAR, u"t1", u"TON", nullptr, 7, nullptr), 1);
    EXPECT_EQ(TypeKindOf(decl), 6u);
    EXPECT_EQ(*DecFlags(decl), 0x4000) << "not touched";
    void* spec = nullptr;
    GetAttrOfUnnamedType(decl->type, POUH_TYPESPEC, &spec);
    const auto* fb = static_cast<FBINST_SPEC_TYP*>(spec);
    int32_t length = -1;
    GetAttrOfFBInstSpec(fb, POUH_INITVALUELEN, &length);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(std::u16string(TextOf(fb, POUH_NAME)), u"TON");
    for (const POUH_ATTRIBUTE_FLAG flag : {POUH_COMMENT, POUH_COMMENT2}) {
        POUH_COMMENT_TYP* comment = nullptr;
        GetAttrOfFBInstSpec(fb, flag, &comment);
        ASSERT_NE(comment, nullptr) << flag;
        char16_t remark[] = u"#";
        GetAttrOfPOUHComment(comment, POUH_REMARK, remark);
        EXPECT_EQ(remark[0], u'#') << "a null text leaves the comment empty";
    }
    DestroyDecl(decl);
}

TEST(FillDeclaration, FlagsAreWrittenAsAWhole) {
    DECL_TYP* decl = CreateDecl();
    *DecFlags(decl) = 0xFFFF;
    EXPECT_EQ(FillFlagsInDeclaration(decl, 7), 1);
    EXPECT_EQ(*DecFlags(decl), 0x0010);
    EXPECT_EQ(FillFlagsInDeclaration(decl, 0), 1);
    EXPECT_EQ(*DecFlags(decl), 0);
    EXPECT_EQ(FillFlagsInDeclaration(nullptr, 1), 0);
    EXPECT_EQ(FillFBInstDeclaration(nullptr, DS_VAR, u"t", u"TON", u"", 0, u""), 0);
    DestroyDecl(decl);
}

}  // namespace
