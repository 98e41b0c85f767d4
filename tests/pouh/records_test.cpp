// Every record's attributes: each keeps what it is given and nothing else does. Leaks are found at
// the end of every test.

#include "pouh/records.h"

#include <cstring>

#include <gtest/gtest.h>

#include "lq_data/containers.h"
#include "pouh/record_access.h"

namespace {

using Flags = std::vector<POUH_ATTRIBUTE_FLAG>;

struct Attributes {
    Flags texts = {}, numbers = {}, words = {}, records = {};
    Flags lengths = {};  // of the last text
};

struct RecordType {
    const char* name;
    void* (*create)();
    int (*destroy)(void*);
    int (*get)(void*, POUH_ATTRIBUTE_FLAG, void*);
    int (*set)(void*, POUH_ATTRIBUTE_FLAG, const void*);
    Attributes has;
};

template <typename R, auto Create, auto Destroy, auto Get, auto Set>
RecordType Describe(const char* name, Attributes attributes) {
    return {name,
            [] { return static_cast<void*>(Create()); },
            [](void* r) { return Destroy(static_cast<R*>(r)); },
            [](void* r, POUH_ATTRIBUTE_FLAG flag, void* value) {
                return Get(static_cast<R*>(r), flag, value);
            },
            [](void* r, POUH_ATTRIBUTE_FLAG flag, const void* value) {
                return Set(static_cast<R*>(r), flag, static_cast<const char16_t*>(value));
            },
            std::move(attributes)};
}

#define DESCRIBE(Record, Name, ...)                                                        \
    Describe<Record, Create##Name, Destroy##Name, GetAttrOf##Name, SetAttrOf##Name>(#Name, \
                                                                                    {__VA_ARGS__})

Attributes Spec(POUH_ATTRIBUTE_FLAG typeText) {
    return {{typeText, POUH_INITVALUE}, {}, {}, {POUH_COMMENT, POUH_COMMENT2}, {POUH_INITVALUELEN}};
}

std::vector<RecordType> AllRecords() {
    // clang-format off
    return {
        DESCRIBE(POUH_COMMENT_TYP, POUHComment, .texts = {POUH_REMARK},
                 .lengths = {POUH_REMARKLEN}),
        DESCRIBE(POU_HEADER_TYP, POUHeader, .records = {POUH_INFO, POUH_DECLLIST}),
        DESCRIBE(POUH_INFO_TYP, POUHInfo, .texts = {POUH_NAME, POUH_INFOTEXT},
                 .numbers = {POUH_POUTYPE, POUH_HEADERFLAG, POUH_EXTRAVALUE},
                 .records = {POUH_COMMENT, POUH_POUCOMMENT}),
        DESCRIBE(POUH_DECL_LIST_TYP, POUHDeclList, .records = {POUH_LIST}),
        DESCRIBE(TASK_POU_LIST_TYP, TaskPOUList, .records = {POUH_LIST}),
        DESCRIBE(SYMBOL_TABLE_TYP, SymbolTable, .records = {POUH_LIST}),
        DESCRIBE(DECL_TYP, Decl, .texts = {POUH_NAME, POUH_ADDRESS}, .numbers = {POUH_SCOPE},
                 .words = {POUH_DECLWORD, POUH_DECLFLAGS}, .records = {POUH_TYPE}),
        DESCRIBE(UNNAMED_TYPE_TYP, UnnamedType, .numbers = {POUH_TYPEKIND}),
        DESCRIBE(SIMPLE_SPEC_TYP, SimpleSpec, Spec(POUH_NAME)),
        DESCRIBE(FBINST_SPEC_TYP, FBInstSpec, Spec(POUH_NAME)),
        DESCRIBE(STRING_SPEC_TYP, StringSpec, Spec(POUH_STRINGTYPE)),
        DESCRIBE(ARRAY_SPEC_TYP, ArraySpec, Spec(POUH_ARRAYTYPE)),
        DESCRIBE(SUBRANGE_SPEC_TYP, SubrangeSpec, .texts = {POUH_NAME, POUH_RANGE, POUH_INITVALUE},
                 .records = {POUH_COMMENT}, .lengths = {POUH_INITVALUELEN}),
        DESCRIBE(TASK_TYP, Task, .records = {POUH_TASKINFO, POUH_TASKPOUS}),
        DESCRIBE(TASK_INFO_TYP, TaskInfo,
                 .texts = {POUH_NAME, POUH_EVENT, POUH_INTERVAL, POUH_PRIORITY, POUH_COMMENT}),
    };
    // clang-format on
}

bool Has(const Flags& flags, POUH_ATTRIBUTE_FLAG flag) {
    return std::find(flags.begin(), flags.end(), flag) != flags.end();
}

// What Get says of an attribute, over bytes that show what was not written.
std::u16string Got(const RecordType& type, void* record, POUH_ATTRIBUTE_FLAG flag) {
    char16_t out[16];
    std::fill_n(out, 16, u'#');
    EXPECT_EQ(type.get(record, flag, out), 1);
    EXPECT_EQ(type.get(record, flag, nullptr), 1);
    return {out, 6};
}

TEST(PouhRecords, AttributesKeepWhatTheyAreGiven) {
    const std::u16string untouched(6, u'#');
    for (const RecordType& type : AllRecords()) {
        SCOPED_TRACE(type.name);
        void* record = type.create();
        uint32_t in[32][2] = {};
        // All first, so that no two are one; then each is read.
        for (uint32_t number = 0; number < 32; ++number) {
            const auto flag = static_cast<POUH_ATTRIBUTE_FLAG>(number);
            const bool isText = Has(type.has.texts, flag);
            if (isText) {
                EXPECT_EQ(Got(type, record, flag), untouched) << "no text";
            }
            in[number][0] = 0x00218010u + number;  // as a text "\u8010!" and more
            const bool isKnown = isText || Has(type.has.numbers, flag) ||
                                 Has(type.has.words, flag) || Has(type.has.records, flag) ||
                                 Has(type.has.lengths, flag);
            EXPECT_EQ(type.set(record, flag, in[number]),
                      isKnown || std::strcmp(type.name, "SymbolTable") != 0);
        }
        for (uint32_t number = 0; number < 32; ++number) {
            SCOPED_TRACE(number);
            const auto flag = static_cast<POUH_ATTRIBUTE_FLAG>(number);
            const char16_t low = static_cast<char16_t>(0x8010 + number);
            const std::u16string got = Got(type, record, flag);
            if (Has(type.has.texts, flag)) {
                EXPECT_EQ(got, (std::u16string{low, u'!', 0}) + u"###");
                EXPECT_EQ(type.set(record, flag, u""), 1);
                EXPECT_EQ(Got(type, record, flag)[0], 0) << "the empty text is a text";
                EXPECT_EQ(type.set(record, flag, nullptr), 1);
                EXPECT_EQ(Got(type, record, flag), untouched) << "no text again";
                type.set(record, flag, u"abc");
            } else if (Has(type.has.numbers, flag)) {
                EXPECT_EQ(got, (std::u16string{low, u'!'}) + u"####");
            } else if (Has(type.has.words, flag)) {
                EXPECT_EQ(got, (std::u16string{low, 0}) + u"####");
            } else if (Has(type.has.records, flag)) {
                EXPECT_EQ(got, (std::u16string{low, u'!', 0, 0}) + u"##");
                const uint32_t none[2] = {};
                type.set(record, flag, none);
            } else if (Has(type.has.lengths, flag)) {
                EXPECT_EQ(got, (std::u16string{3, 0}) + u"####");
                type.set(record, type.has.texts.back(), nullptr);
                EXPECT_EQ(Got(type, record, flag), (std::u16string{0, 0}) + u"####");
            } else if (std::strcmp(type.name, "SubrangeSpec") == 0 && flag == POUH_COMMENT2) {
                EXPECT_EQ(got, (std::u16string{0, 0}) + u"####");
            } else {
                EXPECT_EQ(got, untouched);
            }
            EXPECT_EQ(type.get(nullptr, flag, in) + type.set(nullptr, flag, in), 0);
        }
        EXPECT_EQ(type.destroy(record), 1) << "nothing is released by a number that is no kind";
        EXPECT_EQ(type.destroy(nullptr), 0);
    }
}

TEST(PouhRecords, DestroyReleasesTheWholeTree) {
    POU_HEADER_TYP* header = CreatePOUHeader();
    POUH_INFO_TYP* info = CreatePOUHInfo();
    SetAttrOfPOUHeader(header, POUH_INFO, &info);
    POUH_COMMENT_TYP* comment = CreatePOUHComment();
    SetAttrOfPOUHComment(comment, POUH_REMARK, u"remark");
    SetAttrOfPOUHInfo(info, POUH_POUCOMMENT, &comment);

    POUH_DECL_LIST_TYP* declList = CreatePOUHDeclList();
    SetAttrOfPOUHeader(header, POUH_DECLLIST, &declList);
    FLIST* list = CreateList(0, LET_MEMORY, sizeof(void*), nullptr);
    SetAttrOfPOUHDeclList(declList, POUH_LIST, &list);

    void* const specs[] = {CreateSimpleSpec(), CreateSubrangeSpec(), CreateStringSpec(),
                           CreateArraySpec(),  CreateSimpleSpec(),   CreateFBInstSpec()};
    uint32_t kind = 0;
    for (void* spec : specs) {
        ++kind;
        UNNAMED_TYPE_TYP* type = CreateUnnamedType();
        SetAttrOfUnnamedType(type, POUH_TYPEKIND, &kind);
        SetAttrOfUnnamedType(type, POUH_TYPESPEC, &spec);
        DECL_TYP* decl = CreateDecl();
        SetAttrOfDecl(decl, POUH_TYPE, &type);
        SetAttrOfDecl(decl, POUH_NAME, u"a name that needs memory of its own");
        if (kind == DT_SUBRANGE) {
            SetAttrOfSubrangeSpec(static_cast<SUBRANGE_SPEC_TYP*>(spec), POUH_NAME, u"INT");
            SetAttrOfSubrangeSpec(static_cast<SUBRANGE_SPEC_TYP*>(spec), POUH_RANGE, u"1..2");
            EXPECT_EQ(std::u16string(lq::pouh::TypeTextOf(decl)), u"INT");
        }
        InsertElementOfList(list, &decl, LC_LAST, 0);
    }
    EXPECT_EQ(CardinalityOfList(list), 6u);
    EXPECT_EQ(DestroyPOUHeader(header), 1);
}

TEST(PouhRecords, InPlace) {
    EXPECT_EQ(DecFlags(nullptr), nullptr);
    EXPECT_EQ(lq::pouh::TypeKindOf(nullptr), 0u);
    EXPECT_EQ(std::u16string(lq::pouh::TypeTextOf(nullptr)), u"");
    POUH_COMMENT_TYP* comment = CreatePOUHComment();
    EXPECT_EQ(std::u16string(GetRemarkPointerOfPOUHComment(comment)), u"");
    SetAttrOfPOUHComment(comment, POUH_REMARK, u"abc");
    // The record's own text as the new text.
    SetAttrOfPOUHComment(comment, POUH_REMARK, GetRemarkPointerOfPOUHComment(comment) + 1);
    EXPECT_EQ(std::u16string(GetRemarkPointerOfPOUHComment(comment)), u"bc");
    DestroyPOUHComment(comment);
}

}  // namespace
