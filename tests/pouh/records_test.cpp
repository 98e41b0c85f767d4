// Every record's attributes: each keeps what it is given and nothing else does. Leaks are found at
// the end of every test.

#include "lq_data/records.h"

#include <algorithm>
#include <type_traits>

#include <gtest/gtest.h>

#include "lq_data/containers.h"
#include "lq_data/handles.h"
#include "pouh/attributes.h"
#include "pouh/record_types.h"

namespace {

using lq::pouh::Field;
using lq::pouh::FieldKind;

// One record type: all attributes are set first, so that no two are one; then each is read.
template <auto Create, auto Destroy, auto Get, auto Set>
void CheckAttributes(std::size_t count) {
    auto* const record = Create();
    const auto set = [record](POUH_ATTRIBUTE_FLAG flag, const void* value) {
        return Set(record, flag, static_cast<const char16_t*>(value));
    };
    // What Get says of an attribute, over characters that show what was not written.
    const auto got = [record](POUH_ATTRIBUTE_FLAG flag) {
        char16_t out[16];
        std::fill_n(out, 16, u'#');
        EXPECT_EQ(Get(record, flag, out) + Get(record, flag, nullptr), 2);
        return std::u16string(out, 6);
    };
    const std::span<const Field> fields = lq::pouh::FieldsOf(record);
    EXPECT_EQ(fields.size(), count);
    const auto find = [fields](POUH_ATTRIBUTE_FLAG flag) {
        return std::find_if(fields.begin(), fields.end(),
                            [flag](const Field& field) { return field.flag == flag; });
    };
    const std::u16string untouched(6, u'#');
    const bool isSymbolTable = std::is_same_v<decltype(record), SYMBOL_TABLE_TYP* const>;
    uint32_t in[32][2] = {};
    for (uint32_t number = 0; number < 32; ++number) {
        const auto flag = static_cast<POUH_ATTRIBUTE_FLAG>(number);
        const auto field = find(flag);
        if (field != fields.end() && field->kind == FieldKind::kText) {
            EXPECT_EQ(got(flag), untouched) << "no text";
        }
        in[number][0] = 0x00218010u + number;  // as a text, one character and "!"
        EXPECT_EQ(set(flag, in[number]), field != fields.end() || !isSymbolTable);
    }
    std::u16string length = {2, 0};
    for (uint32_t number = 0; number < 32; ++number) {
        SCOPED_TRACE(number);
        const auto flag = static_cast<POUH_ATTRIBUTE_FLAG>(number);
        const auto field = find(flag);
        const std::u16string low(1, static_cast<char16_t>(0x8010 + number));
        const std::u16string zero(1, u'\0');
        if (field == fields.end()) {
            EXPECT_EQ(got(flag), untouched);
        } else if (field->kind == FieldKind::kText) {
            EXPECT_EQ(got(flag), low + u"!" + zero + u"###");
            EXPECT_EQ(set(flag, u"") + set(flag, nullptr), 2);
            EXPECT_EQ(got(flag), untouched) << "no text again";
            set(flag, u"");
            EXPECT_EQ(got(flag), zero + u"#####") << "the empty text is a text";
            set(flag, u"abc");
            length[0] = 3;
        } else if (field->kind == FieldKind::kTextLength) {
            EXPECT_EQ(got(flag), length + u"####");
        } else {
            EXPECT_EQ(got(flag), field->kind == FieldKind::kWord     ? low + zero + u"####"
                                 : field->kind == FieldKind::kNumber ? low + u"!####"
                                 : field->kind == FieldKind::kRecord
                                     ? low + u"!" + zero + zero + u"##"
                                     : zero + zero + u"####");
            const uint32_t none[2] = {};
            EXPECT_EQ(set(flag, none), 1) << "nothing is released by what is no record";
        }
        EXPECT_EQ(Get(nullptr, flag, in) + Set(nullptr, flag, nullptr), 0);
    }
    EXPECT_EQ(Destroy(record), 1);
    EXPECT_EQ(Destroy(nullptr), 0);
}

#define LQ_CHECK(Name, count) \
    CheckAttributes<Create##Name, Destroy##Name, GetAttrOf##Name, SetAttrOf##Name>(count)

TEST(PouhRecords, AttributesKeepWhatTheyAreGiven) {
    // clang-format off
    LQ_CHECK(POUHComment, 2); LQ_CHECK(POUHeader, 2); LQ_CHECK(POUHInfo, 7);
    LQ_CHECK(POUHDeclList, 1); LQ_CHECK(TaskPOUList, 1); LQ_CHECK(SymbolTable, 1);
    LQ_CHECK(Decl, 6); LQ_CHECK(UnnamedType, 1); LQ_CHECK(SimpleSpec, 5); LQ_CHECK(FBInstSpec, 5);
    LQ_CHECK(StringSpec, 5); LQ_CHECK(ArraySpec, 5); LQ_CHECK(SubrangeSpec, 6); LQ_CHECK(Task, 2);
    LQ_CHECK(TaskInfo, 5);
    // clang-format on
}

TEST(PouhRecords, InPlace) {
    EXPECT_EQ(DecFlags(nullptr), nullptr);
    EXPECT_EQ(lq::pouh::TypeKindOf(nullptr), 0u);
    EXPECT_EQ(std::u16string(lq::pouh::TypeTextOf(nullptr)), u"");
    DECL_TYP* decl = CreateDecl();
    decl->scope = DS_VAR;
    EXPECT_EQ(std::u16string(lq::pouh::TextOf(decl, POUH_SCOPE)), u"") << "no text";
    decl->type = CreateUnnamedType();
    decl->type->kind = DT_SUBRANGE;
    SUBRANGE_SPEC_TYP* const spec = CreateSubrangeSpec();
    decl->type->spec = spec;
    SetAttrOfSubrangeSpec(spec, POUH_NAME, u"INT");
    SetAttrOfSubrangeSpec(spec, POUH_RANGE, u"a range that needs memory of its own");
    spec->comment = CreatePOUHComment();
    EXPECT_EQ(std::u16string(lq::pouh::TypeTextOf(decl)), u"INT");
    EXPECT_EQ(lq::Declaration(decl).Range(), u"a range that needs memory of its own");
    DestroyDecl(decl);
    POUH_COMMENT_TYP* comment = CreatePOUHComment();
    EXPECT_EQ(std::u16string(GetRemarkPointerOfPOUHComment(comment)), u"");
    SetAttrOfPOUHComment(comment, POUH_REMARK, u"abc");
    // The record's own text as the new text.
    SetAttrOfPOUHComment(comment, POUH_REMARK, GetRemarkPointerOfPOUHComment(comment) + 1);
    EXPECT_EQ(std::u16string(GetRemarkPointerOfPOUHComment(comment)), u"bc");
    DestroyPOUHComment(comment);
}

// What is read of a record by views, of one that is null, too.
TEST(PouhRecords, Views) {
    const std::u16string longText(5000, u'x');
    const lq::HeaderPtr header(CreatePOUHeader());
    ASSERT_EQ(LoadPOUHiddenHeader(header.get(), u"_SFCCB"), 1);
    FLIST* const list = lq::Declarations(header.get()).List();
    for (const auto* const name : {u"a", longText.c_str()}) {
        DECL_TYP* decl = CreateDecl();
        FillFBInstDeclaration(decl, DS_VAR_INPUT, name, u"TON", u"c", 7, longText.c_str());
        FillFlagsInDeclaration(decl, 1);
        SetAttrOfDecl(decl, POUH_ADDRESS, u"%IX0");
        InsertElementOfList(list, &decl, LC_LAST, 0);
    }
    const std::size_t count = CardinalityOfList(list);
    FindElementOfList(list, nullptr, nullptr, LC_FIRST, 0);
    std::u16string names;
    std::size_t pairs = 0;
    for (const lq::Declaration decl : lq::Header(header.get()).Declarations()) {
        names.assign(decl.Name());
        for (const lq::Declaration other : lq::Declarations(list)) {
            pairs += other.Record() ? 1 : 0;
        }
        if (decl.Name() == u"a" || decl.Name() == longText) {
            EXPECT_TRUE(decl.Scope() == DS_VAR_INPUT && decl.Section() == u"VAR_INPUT" &&
                        decl.TypeKind() == DT_FB_INSTANCE && decl.TypeText() == u"TON" &&
                        decl.Range().empty() && decl.InitialValue().empty() &&
                        decl.Comment() == u"c" && decl.SecondComment() == longText &&
                        decl.IsMarked() && decl.Flags() == POUH_DECL_MARK && decl.Word() == 7 &&
                        decl.Address() == u"%IX0");
        }
    }
    EXPECT_EQ(names, longText);
    EXPECT_EQ(pairs, count * count);
    void* slot = nullptr;
    EXPECT_EQ(ListGet(list, slot, nullptr, LC_NEXT, 0), 2u) << "the position stayed";
    EXPECT_EQ(lq::Header(header.get()).Kind(), PT_FUNCTION_BLOCK);

    const lq::Declaration none(nullptr);
    EXPECT_TRUE(none.Name().empty() && none.TypeKind() == 0 && none.Comment().empty() &&
                none.Section().empty() && !none.IsMarked());
    EXPECT_TRUE(lq::Header(nullptr).Name().empty() && lq::Header(nullptr).Declarations().empty());
    EXPECT_TRUE(lq::Task(nullptr).Interval().empty() && lq::Task(nullptr).Units().empty());
    for (const lq::Declaration decl : lq::Declarations(static_cast<FLIST*>(nullptr))) {
        ADD_FAILURE() << decl.Record();
    }
}

}  // namespace
