// Every record's attributes against one table: which it has, of what kind, and that nothing else is
// read or written. Leaks are the sanitizer's to find.

#include "pouh/records.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lq_data/containers.h"
#include "pouh/record_access.h"

namespace {

enum class Kind { kNumber, kWord, kRecord, kText, kLength, kZero };

struct Attribute {
    POUH_ATTRIBUTE_FLAG flag;
    Kind kind;
};

// A record type behind untyped functions.
struct RecordType {
    const char* name;
    void* (*create)();
    int (*destroy)(void*);
    int (*get)(void*, POUH_ATTRIBUTE_FLAG, void*);
    int (*set)(void*, POUH_ATTRIBUTE_FLAG, const void*);
    std::vector<Attribute> attributes;
    int setUnknown = 1;

    const Attribute* Find(POUH_ATTRIBUTE_FLAG flag) const {
        for (const Attribute& attribute : attributes) {
            if (attribute.flag == flag) {
                return &attribute;
            }
        }
        return nullptr;
    }
};

template <typename R, auto Create, auto Destroy, auto Get, auto Set>
RecordType Describe(const char* name, std::vector<Attribute> attributes) {
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
                                                                                    __VA_ARGS__)

std::vector<Attribute> SpecAttributes(POUH_ATTRIBUTE_FLAG typeText) {
    return {{typeText, Kind::kText},
            {POUH_INITVALUE, Kind::kText},
            {POUH_INITVALUELEN, Kind::kLength},
            {POUH_COMMENT, Kind::kRecord},
            {POUH_COMMENT2, Kind::kRecord}};
}

std::vector<RecordType> AllRecords() {
    std::vector<RecordType> all = {
        DESCRIBE(POUH_COMMENT_TYP, POUHComment,
                 {{POUH_REMARK, Kind::kText}, {POUH_REMARKLEN, Kind::kLength}}),
        DESCRIBE(POU_HEADER_TYP, POUHeader,
                 {{POUH_INFO, Kind::kRecord}, {POUH_DECLLIST, Kind::kRecord}}),
        DESCRIBE(POUH_INFO_TYP, POUHInfo,
                 {{POUH_NAME, Kind::kText},
                  {POUH_INFOTEXT, Kind::kText},
                  {POUH_POUTYPE, Kind::kNumber},
                  {POUH_COMMENT, Kind::kRecord},
                  {POUH_POUCOMMENT, Kind::kRecord},
                  {POUH_HEADERFLAG, Kind::kNumber},
                  {POUH_EXTRAVALUE, Kind::kNumber}}),
        DESCRIBE(POUH_DECL_LIST_TYP, POUHDeclList, {{POUH_LIST, Kind::kRecord}}),
        DESCRIBE(TASK_POU_LIST_TYP, TaskPOUList, {{POUH_LIST, Kind::kRecord}}),
        DESCRIBE(DECL_TYP, Decl,
                 {{POUH_SCOPE, Kind::kNumber},
                  {POUH_NAME, Kind::kText},
                  {POUH_ADDRESS, Kind::kText},
                  {POUH_TYPE, Kind::kRecord},
                  {POUH_DECLWORD, Kind::kWord},
                  {POUH_DECLFLAGS, Kind::kWord}}),
        DESCRIBE(UNNAMED_TYPE_TYP, UnnamedType, {{POUH_TYPEKIND, Kind::kNumber}}),
        DESCRIBE(SIMPLE_SPEC_TYP, SimpleSpec, SpecAttributes(POUH_NAME)),
        DESCRIBE(FBINST_SPEC_TYP, FBInstSpec, SpecAttributes(POUH_NAME)),
        DESCRIBE(STRING_SPEC_TYP, StringSpec, SpecAttributes(POUH_STRINGTYPE)),
        DESCRIBE(ARRAY_SPEC_TYP, ArraySpec, SpecAttributes(POUH_ARRAYTYPE)),
        DESCRIBE(SUBRANGE_SPEC_TYP, SubrangeSpec,
                 {{POUH_NAME, Kind::kText},
                  {POUH_RANGE, Kind::kText},
                  {POUH_INITVALUE, Kind::kText},
                  {POUH_INITVALUELEN, Kind::kLength},
                  {POUH_COMMENT, Kind::kRecord},
                  {POUH_COMMENT2, Kind::kZero}}),
        DESCRIBE(TASK_TYP, Task, {{POUH_TASKINFO, Kind::kRecord}, {POUH_TASKPOUS, Kind::kRecord}}),
        DESCRIBE(TASK_INFO_TYP, TaskInfo,
                 {{POUH_NAME, Kind::kText},
                  {POUH_EVENT, Kind::kText},
                  {POUH_INTERVAL, Kind::kText},
                  {POUH_PRIORITY, Kind::kText},
                  {POUH_COMMENT, Kind::kText}}),
        DESCRIBE(SYMBOL_TABLE_TYP, SymbolTable, {{POUH_LIST, Kind::kRecord}}),
    };
    all.back().setUnknown = 0;
    return all;
}

constexpr char16_t kUntouched = u'#';

// Writes and reads back one attribute in every way that its kind has.
void CheckAttribute(const RecordType& type, void* record, const Attribute& attribute) {
    const POUH_ATTRIBUTE_FLAG flag = attribute.flag;
    switch (attribute.kind) {
        case Kind::kNumber: {
            const uint32_t in = 0x12345678u + flag;
            uint32_t out = 0;
            EXPECT_EQ(type.set(record, flag, &in), 1);
            EXPECT_EQ(type.get(record, flag, &out), 1);
            EXPECT_EQ(out, in);
            // Kinds without a specification, so that nothing is released by this number.
            const uint32_t zero = 0;
            type.set(record, flag, &zero);
            break;
        }
        case Kind::kWord: {
            const uint16_t in = static_cast<uint16_t>(0x8010u + flag);
            uint32_t out = 0xFFFFFFFF;
            EXPECT_EQ(type.set(record, flag, &in), 1);
            EXPECT_EQ(type.get(record, flag, &out), 1);
            EXPECT_EQ(out, in);
            break;
        }
        case Kind::kRecord: {
            int target = 0;
            void* in = &target;
            void* out = nullptr;
            EXPECT_EQ(type.set(record, flag, &in), 1);
            EXPECT_EQ(type.get(record, flag, &out), 1);
            EXPECT_EQ(out, in);
            void* none = nullptr;
            type.set(record, flag, &none);
            break;
        }
        case Kind::kText: {
            char16_t buffer[8] = {kUntouched};
            EXPECT_EQ(type.get(record, flag, buffer), 1);
            EXPECT_EQ(buffer[0], kUntouched) << "no text";
            const std::u16string text =
                u"t" + std::u16string(1, static_cast<char16_t>(u'a' + flag));
            type.set(record, flag, u"replaced");
            EXPECT_EQ(type.set(record, flag, text.c_str()), 1);
            EXPECT_EQ(type.get(record, flag, buffer), 1);
            EXPECT_EQ(buffer, text);
            type.set(record, flag, u"");
            type.get(record, flag, buffer);
            EXPECT_EQ(buffer[0], u'\0') << "the empty text is a text";
            type.set(record, flag, nullptr);
            buffer[0] = kUntouched;
            type.get(record, flag, buffer);
            EXPECT_EQ(buffer[0], kUntouched) << "no text again";
            type.set(record, flag, text.c_str());
            break;
        }
        case Kind::kLength: {
            const POUH_ATTRIBUTE_FLAG textFlag =
                flag == POUH_REMARKLEN ? POUH_REMARK : POUH_INITVALUE;
            int32_t out = -1;
            type.set(record, textFlag, nullptr);
            EXPECT_EQ(type.get(record, flag, &out), 1);
            EXPECT_EQ(out, 0);
            type.set(record, textFlag, u"abc");
            EXPECT_EQ(type.set(record, flag, u"longer"), 1) << "no Set";
            type.get(record, flag, &out);
            EXPECT_EQ(out, 3);
            break;
        }
        case Kind::kZero: {
            const uint32_t in = 7;
            uint32_t out = 7;
            EXPECT_EQ(type.set(record, flag, &in), 1);
            EXPECT_EQ(type.get(record, flag, &out), 1);
            EXPECT_EQ(out, 0u);
            break;
        }
    }
}

TEST(PouhRecords, AttributesRoundTrip) {
    for (const RecordType& type : AllRecords()) {
        void* record = type.create();
        ASSERT_NE(record, nullptr) << type.name;
        for (const Attribute& attribute : type.attributes) {
            SCOPED_TRACE(testing::Message() << type.name << " flag " << attribute.flag);
            CheckAttribute(type, record, attribute);
            EXPECT_EQ(type.get(record, attribute.flag, nullptr), 1);
            EXPECT_EQ(type.set(record, attribute.flag, nullptr), 1);
        }
        EXPECT_EQ(type.destroy(record), 1) << type.name;
    }
}

TEST(PouhRecords, AbsentAttributesTouchNothing) {
    for (const RecordType& type : AllRecords()) {
        void* record = type.create();
        for (uint32_t number = 0; number <= POUH_REMARKLEN + 1; ++number) {
            const auto flag = static_cast<POUH_ATTRIBUTE_FLAG>(number);
            if (type.Find(flag)) {
                continue;
            }
            SCOPED_TRACE(testing::Message() << type.name << " flag " << flag);
            const uint64_t in = 5;
            uint64_t out = 0xABABABAB;
            EXPECT_EQ(type.set(record, flag, &in), type.setUnknown);
            EXPECT_EQ(type.get(record, flag, &out), 1);
            EXPECT_EQ(out, 0xABABABAB);
        }
        type.destroy(record);
    }
}

TEST(PouhRecords, NullRecordGivesZero) {
    for (const RecordType& type : AllRecords()) {
        int32_t value = 9;
        const POUH_ATTRIBUTE_FLAG flag = type.attributes[0].flag;
        EXPECT_EQ(type.get(nullptr, flag, &value), 0) << type.name;
        EXPECT_EQ(type.set(nullptr, flag, u"x"), 0) << type.name;
        EXPECT_EQ(type.destroy(nullptr), 0) << type.name;
        EXPECT_EQ(value, 9) << type.name;
    }
}

TEST(PouhRecords, SpecificationComesWithItsKind) {
    UNNAMED_TYPE_TYP* type = CreateUnnamedType();
    struct {
        uint32_t kind;
        bool hasSpec;
    } const cases[] = {{0, false}, {1, true}, {2, true},  {3, true}, {4, true},
                       {5, true},  {6, true}, {7, false}, {9, false}};
    for (const auto& c : cases) {
        SetAttrOfUnnamedType(type, POUH_TYPEKIND, &c.kind);
        int target = 0;
        void* in = &target;
        void* out = nullptr;
        EXPECT_EQ(SetAttrOfUnnamedType(type, POUH_TYPESPEC, &in), 1) << c.kind;
        EXPECT_EQ(GetAttrOfUnnamedType(type, POUH_TYPESPEC, &out), 1) << c.kind;
        EXPECT_EQ(out != nullptr, c.hasSpec) << c.kind;
        type->spec = nullptr;
    }
    DestroyUnnamedType(type);
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
        InsertElementOfList(list, &decl, LC_LAST, 0);
    }
    EXPECT_EQ(CardinalityOfList(list), 6u);
    EXPECT_EQ(DestroyPOUHeader(header), 1);
}

TEST(PouhRecords, FlagWordAndRemarkInPlace) {
    DECL_TYP* decl = CreateDecl();
    const uint16_t word = 0x0010;
    SetAttrOfDecl(decl, POUH_DECLFLAGS, &word);
    *DecFlags(decl) |= 0x8000;
    uint32_t flags = 0;
    GetAttrOfDecl(decl, POUH_DECLFLAGS, &flags);
    EXPECT_EQ(flags, 0x8010u);
    EXPECT_EQ(DecFlags(nullptr), nullptr);
    EXPECT_EQ(lq::pouh::TypeKindOf(nullptr), 0u);
    EXPECT_EQ(std::u16string(lq::pouh::TypeTextOf(nullptr)), u"");
    DestroyDecl(decl);

    POUH_COMMENT_TYP* comment = CreatePOUHComment();
    EXPECT_EQ(std::u16string(GetRemarkPointerOfPOUHComment(comment)), u"");
    SetAttrOfPOUHComment(comment, POUH_REMARK, u"abc");
    EXPECT_EQ(std::u16string(GetRemarkPointerOfPOUHComment(comment)), u"abc");
    // The record's own text as the new text.
    SetAttrOfPOUHComment(comment, POUH_REMARK, GetRemarkPointerOfPOUHComment(comment) + 1);
    EXPECT_EQ(std::u16string(GetRemarkPointerOfPOUHComment(comment)), u"bc");
    DestroyPOUHComment(comment);
}

}  // namespace
