// Declarations to globals and components.
#include "tests/cgtab/tables_util.h"

namespace lq::test {
namespace {

using cgtab::DeclFault;

CgTab::GLB_LINE ReadGlobal(CgTab& tables, int32_t pos) {
    CgTab::GLB_LINE line = {};
    EXPECT_EQ(tables.Read(pos, line, 0, nullptr), 1);
    return line;
}

std::string Describe(const ArrInfo& source) {
    ArrInfo info;
    source.Copy(info);
    std::string text = std::to_string(info.elemType) + ":" + std::to_string(info.total.magnitude);
    ANY_INT_32 ext[2];
    for (int i = 1; info.GetExt(&ext, i); ++i) {
        text += (ext[0].sign ? " -" : " ") + std::to_string(ext[0].magnitude) + "+" +
                std::to_string(ext[1].magnitude);
    }
    return text;
}

TEST(Declarations, Globals) {
    auto tables = NewTables();
    // By type text and initial value; VT_STRING for no constant at all.
    struct Case {
        const char16_t* text;
        const char16_t* init;
        IEC_TYPE type;
        const char* dsc;
        VAL_TYPE value;
    };
    // clang-format off
    const Case cases[] = {
        {u"BOOL", u"1", IEC_BOOL, "", VT_BOOL}, {u"BOOL", u"FALSE", IEC_BOOL, "", VT_BOOL},
        {u"WORD", u"1", IEC_WORD, "", VT_BOOL}, {u"LWORD", u"300", IEC_LWORD, "", VT_UINT},
        {u" INT ", u"1", IEC_INT, "", VT_SINT}, {u"INT", u"300", IEC_INT, "", VT_INT},
        {u"WORD", u"300", IEC_WORD, "", VT_UINT}, {u"INT", u"000000001", IEC_INT, "", VT_SINT},
        {u"DINT", u"999999999", IEC_DINT, "", VT_DINT},
        {u"DINT", u"1000000000", IEC_DINT, "", VT_DINT},
        {u"UDINT", u"4294967295", IEC_UDINT, "", VT_UDINT}, {u"INT", u"5 ", IEC_INT, "", VT_SINT},
        {u"INT", u"5\n", IEC_INT, "", VT_SINT}, {u"INT", u"5\u001A6", IEC_INT, "", VT_SINT},
        {u"REAL", u"-1.5", IEC_REAL, "", VT_LREAL}, {u"TIME", u"T#1s", IEC_TIME, "", VT_TIME},
        {u"INT", u"", IEC_INT, "", VT_NONE}, {u"STRING(20)", u"'x'", IEC_STRING, "20", VT_NONE},
        {u"STRING[21]", u"", IEC_STRING, "21", VT_NONE},
        {u"STRING(22]", u"", IEC_STRING, "22", VT_NONE},
        {u"STRING(16#100)", u"", IEC_STRING, "256", VT_NONE},
        {u"STRING(257)", u"", IEC_STRING, "32", VT_NONE},
        {u"STRING(0)", u"", IEC_STRING, "32", VT_NONE}, {u"STRING", u"", IEC_STRING, "32", VT_NONE},
        {u"STRING(20) x", u"", IEC_STRING, "32", VT_NONE},
        {u"STRING(x)", u"", IEC_STRING, "32", VT_NONE},
        {u"STRING(20", u"", IEC_STRING, "32", VT_NONE},
        {u"MY_STRING(20)", u"", IEC_STRING, "20", VT_NONE},
        {u"ARRAY [1..10] OF INT", u"[1,2]", IEC_ARRAY, "2:10 1+10", VT_NONE},
        {u"ARRAY [1 .. 10, -2..2] OF REAL", u"", IEC_ARRAY, "9:50 1+10 -2+5", VT_NONE},
        {u"ARRAY [1..10]OF ARRAY [0..1] OF BOOL", u"", IEC_ARRAY, "0:20 1+10 0+2", VT_NONE},
        {u"ARRAY [-3..-1] OF STRING(5)", u"", IEC_ARRAY, "15:3 -3+3", VT_NONE},
        {u"ARRAY [+1..+2] OF ANY_INT", u"", IEC_ARRAY, "35:2 1+2", VT_NONE},
        {u"ARRAY [-0..2] OF INT", u"", IEC_ARRAY, "2:3 0+3", VT_NONE},
        {u"ARRAY [-1..-0] OF INT", u"", IEC_ARRAY, "2:2 -1+2", VT_NONE},
        {u"ARRAY [1..2] OF STRING(300)", u"", IEC_ARRAY, "15:2 1+2", VT_NONE},
        {u"ARRAY [1..2] OF STRING[1.5]", u"", IEC_ARRAY, "15:2 1+2", VT_NONE},
        {u"ARRAY [1..2] OF STRING x ]", u"", IEC_ARRAY, "15:2 1+2", VT_NONE},
        {u"ARRAY [1..2] OF INT x", u"", IEC_ARRAY, "2:2 1+2", VT_NONE},
        {u"ARRAY [1..2] OF INT (* c *)", u"", IEC_ARRAY, "2:2 1+2", VT_NONE},
        {u"Motor", u"a := 1", IEC_STRUCTURE, "", VT_STRING},
        {u"TON", u"", IEC_FUNCTION_BLOCK, "", VT_STRING},
    };
    // clang-format on
    std::u16string name(65 - std::size(cases), u'n');  // the last is as long as may be
    for (const Case& c : cases) {
        SCOPED_TRACE(Ascii(c.text) + " " + Ascii(c.init));
        const uint32_t kind = c.type == IEC_STRING           ? DT_STRING
                              : c.type == IEC_ARRAY          ? DT_ARRAY
                              : c.type == IEC_STRUCTURE      ? DT_STRUCTURE
                              : c.type == IEC_FUNCTION_BLOCK ? DT_FB_INSTANCE
                                                             : DT_ELEMENTARY;
        name += u'n';
        DeclFault fault = DeclFault::kNone;
        const DeclPtr decl = NewDecl({DS_VAR_GLOBAL, name, kind, c.text, c.init});
        const int32_t at = CgTabAccess::InsertGlobal(*tables, decl.get(), fault);
        ASSERT_GE(at, 0) << static_cast<int>(fault);
        EXPECT_TRUE(CgTabAccess::Check(*tables));
        const CgTab::GLB_LINE line = ReadGlobal(*tables, at);
        EXPECT_EQ(line.type, c.type);
        EXPECT_EQ(line.scope, unsigned{DS_VAR_GLOBAL});
        EXPECT_EQ(line.count, 1u);
        if (line.type == IEC_STRING) {
            EXPECT_EQ(std::to_string(line.dsc.strLen), c.dsc);
        } else if (line.type == IEC_ARRAY) {
            EXPECT_EQ(Describe(*line.dsc.arr.info), c.dsc);
        }
        if (c.value == VT_STRING) {
            EXPECT_EQ(line.cstLine, -1);
            EXPECT_EQ(line.dsc.dsc, 0xFFFFFFFFu);
        } else {
            CgTab::CstLine constant;
            int32_t constantPos = line.cstLine;
            ASSERT_EQ(tables->Read(constantPos, constant, 0, nullptr), 1);
            EXPECT_EQ(constant.val.type, c.value);
            EXPECT_EQ(std::u16string(constant.text), c.init);
        }
    }
}

TEST(Declarations, AreRefusedForAReason) {
    auto tables = NewTables();
    struct Case {
        DeclText decl;
        DeclFault fault;
    };
    // clang-format off
    std::vector<Case> cases = {
        {{11, std::u16string(66, u'n'), DT_ELEMENTARY, u"INT"}, DeclFault::kNameTooLong},
        {{11, u"a", DT_SUBRANGE, u"INT"}, DeclFault::kTypeKind},
        {{11, u"a", 7, u"INT"}, DeclFault::kTypeKind},
        {{11, u"a", DT_ELEMENTARY, u"INT", u"x"}, DeclFault::kInitialValue},
        {{11, u"a", DT_ELEMENTARY, u"INT", u"@x"}, DeclFault::kInitialValue},
        {{11, u"a", DT_ELEMENTARY, u"INT", u"1 2"}, DeclFault::kInitialValue},
        {{11, u"a", DT_ELEMENTARY, u"INT", u"5x"}, DeclFault::kInitialValue},
        {{11, u"a", DT_ELEMENTARY, u"UDINT", u"4294967296"}, DeclFault::kInitialValue},
        {{11, u"a", DT_ELEMENTARY, u"UDINT", u"00000000001"}, DeclFault::kInitialValue},
        {{11, u"a", DT_ELEMENTARY, u"WORD", u"-1"}, DeclFault::kInitialValue},
        {{11, u"a", DT_ELEMENTARY, u"INT", u"", u"QW4"}, DeclFault::kAddress},
        {{11, u"a", DT_ELEMENTARY, u"INT", u"", u"%QW4 %QW5"}, DeclFault::kAddress},
        {{11, u"a", DT_ELEMENTARY, u"ANY_INT"}, DeclFault::kTableType},
        {{DS_VAR, u"a", DT_ELEMENTARY, u"INT", u"", u"rubbish"}, DeclFault::kScope},
        {{11, u"a", DT_ELEMENTARY, u"INTEGER"}, DeclFault::kTypeName},
        {{11, u"a", DT_ELEMENTARY, u"INT x"}, DeclFault::kTypeName},
    };
    // clang-format on
    for (const char16_t* type :
         {u"[10..1] OF INT", u"[1..2] OF INT x y", u"[1..2] OF STRING(300) x", u"[1..2] OF INT +",
          u"[1..2] OF Nobody", u"[--1..2] OF INT", u"[1..x] OF INT", u"[1..2;3..4] OF INT",
          u"[1..2] OF 5", u"[1..2] INT", u"[0..4294967295] OF INT",
          u"[-4294967295..4294967295] OF INT", u"[16#1..2] OF INT",
          u"[1..65536, 1..65536] OF INT"}) {
        cases.push_back(
            {{11, u"a", DT_ARRAY, u"ARRAY " + std::u16string(type)}, DeclFault::kArrayType});
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(Ascii(c.decl.type.c_str()) + " " + Ascii(c.decl.init.c_str()) + " " +
                     Ascii(c.decl.address.c_str()));
        DeclFault fault = DeclFault::kNone;
        const DeclPtr decl = NewDecl(c.decl);
        EXPECT_EQ(CgTabAccess::InsertGlobal(*tables, decl.get(), fault), -1);
        EXPECT_EQ(fault, c.fault);
    }
    EXPECT_EQ(tables->Insert(static_cast<DECL_TYP*>(nullptr)), -1);
    EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_GLB), 0);
    std::string taken;
    for (uint32_t scope = 0; scope <= DS_VAR_EXTERNAL_CONSTANT_RETAIN; ++scope) {
        const DeclPtr decl = NewDecl({scope, u"a", DT_ELEMENTARY, u"INT", u"", u" "});
        taken += tables->Insert(decl.get()) >= 0 ? " " + std::to_string(scope) : "";
    }
    EXPECT_EQ(taken, " 10 11 13 14 17 18 19 20");
}

std::string Components(CgTab& tables) {
    std::string text;
    CgTab::CMP_LINE line;
    for (int32_t pos = 0; tables.Read(pos, line, 0, nullptr);) {
        text += (text.empty() ? "" : " ") + Ascii(line.name) + ":" + std::to_string(line.scope) +
                (line.adrLine >= 0 ? "@" : "") +
                (line.type == IEC_STRING ? "/" + std::to_string(line.dsc.strLen) : "");
        CgTab::CstLine constant;
        int32_t at = line.cstLine;
        if (at >= 0 && tables.Read(at, constant, 0, nullptr)) {
            text += "=" + Ascii(constant.text) + (constant.val.type == VT_BOOL ? "?" : "");
        }
    }
    return text;
}

TEST(Components, SectionsAttributesAndSkippedDeclarations) {
    struct Case {
        uint16_t attr;
        int count;
        int result;
        int32_t lines;
        std::string components;
    };
    const std::vector<DeclText> decls = {
        {DS_VAR_INPUT, u"in", DT_ELEMENTARY, u"INT", u"1"},
        {DS_VAR_IN_OUT, u"io", DT_ELEMENTARY, u"ANY_BIT", u"@x"},
        {DS_VAR_EXTERNAL, u"Known", DT_ELEMENTARY, u"INT"},
        {DS_VAR_EXTERNAL, u"Unknown", DT_ELEMENTARY, u"INT"},
        {DS_VAR_OUTPUT, u"bad", DT_ELEMENTARY, u"Nobody"},
        {DS_VAR, u"loc", DT_ELEMENTARY, u"BOOL", u"TRUE"},
    };
    for (const Case& c : {
             Case{0, 1, 0, 4, "in:2 io:6 Known:10@= loc:1"},
             Case{4, 1, 0, 4, "in:2=1 io:6=0? Known:10@= loc:1=TRUE?"},
             Case{1, 3, 1, 2, "in:2 io:6 in:2 io:6 in:2 io:6"},
             Case{0x104, 2, 0, 4,
                  "in:8=1 io:6=0? Known:13@= loc:7=TRUE? in:8=1 io:6=0? Known:13@= loc:7=TRUE?"},
             Case{0, 0, 1, 0, ""},
         }) {
        SCOPED_TRACE(c.attr);
        auto tables = NewTables(4);
        tables->Insert(NewDecl({DS_VAR_GLOBAL, u"KNOWN", DT_ELEMENTARY, u"INT"}).get());
        Header header(decls);
        POU_LIST list;
        CgTab::POS_DSC range;
        EXPECT_EQ(CgTabAccess::AppendCmp(*tables, header.Get(), c.attr, &list, range, c.count),
                  c.result);
        EXPECT_EQ(range.start, 0);
        EXPECT_EQ(range.lines, c.lines);
        EXPECT_EQ(Components(*tables), c.components);
        EXPECT_TRUE(CgTabAccess::Check(*tables));
        if (c.count > 0) {
            EXPECT_EQ(range.end * c.count, CgTabAccess::LengthOf(*tables, CgTab::TAB_CMP));
        }
    }
}

TEST(Components, ScopesOfInterfacesAndRetainedOnes) {
    auto tables = NewTables();
    tables->Insert(NewDecl({DS_VAR_GLOBAL, u"x", DT_ELEMENTARY, u"INT"}).get());
    std::vector<DeclText> decls;
    for (uint32_t scope = DS_VAR; scope <= DS_VAR_EXTERNAL_CONSTANT_RETAIN; ++scope) {
        decls.push_back({scope, u"x", DT_ELEMENTARY, u"INT"});
    }
    Header header(decls);
    POU_LIST list;
    CgTab::POS_DSC range;
    EXPECT_EQ(CgTabAccess::AppendCmp(*tables, header.Get(), 1, &list, range, 1), 1);
    EXPECT_EQ(Components(*tables), "x:2 x:3 x:5 x:6 x:8 x:9");
    tables->Clear(CgTab::TAB_CMP);
    EXPECT_EQ(CgTabAccess::AppendCmp(*tables, header.Get(), 0x100, &list, range, 1), 1);
    EXPECT_EQ(
        Components(*tables),
        "x:7 x:8 x:3 x:4 x:9 x:6 x:7 x:8 x:9 x:13@= x:14 x:12 x:13@= x:14 x:16 x:16 x:18 x:18 "
        "x:20@= x:20@=");
}

TEST(Components, ASectionTakesTheMemberValuesOfItsInstance) {
    auto tables = NewTables();
    Header header({{DS_VAR, u"x", DT_ELEMENTARY, u"INT", u"1"},
                   {DS_VAR, u"b", DT_ELEMENTARY, u"BOOL", u"0"},
                   {DS_VAR, u"s", DT_STRING, u"STRING(9)", u"'s'"}});
    POU_LIST list;
    list.first = new POU_INST;
    list.first->init = new DUVMemberInit_C(u"X := 7, b := 1");
    list.first->next = list.last = new POU_INST;
    CgTab::POS_DSC range;
    EXPECT_EQ(CgTabAccess::AppendCmp(*tables, header.Get(), 0x4, &list, range, 3), 1);
    EXPECT_EQ(Components(*tables),
              "x:1=7 b:1=1? s:1/9='s' x:1=1 b:1=0? s:1/9='s' x:1=1 b:1=0? s:1/9='s'");
}

TEST(Components, InstancesAreRecorded) {
    auto tables = NewTables();
    Header header({{DS_VAR, u"one", DT_STRUCTURE, u"Motor", u"a := 1"},
                   {DS_VAR, u"t1", DT_FB_INSTANCE, u"TON", u"a := 1"},
                   {DS_VAR, u"two", DT_STRUCTURE, u"MOTOR"},
                   {DS_VAR, u"n", DT_ELEMENTARY, u"STRUCTURE"},
                   {DS_VAR, u"l1", DT_STRUCTURE, std::u16string(32, u'p') + u"1"},
                   {DS_VAR, u"l2", DT_STRUCTURE, std::u16string(32, u'p') + u"2"},
                   {DS_VAR, u"l3", DT_STRUCTURE, std::u16string(32, u'p') + u"1"},
                   {DS_VAR, u"arr", DT_ARRAY, u"ARRAY [1..2] OF STRUCTURE"}});
    POU_LIST list;
    CgTab::POS_DSC range;
    EXPECT_EQ(CgTabAccess::AppendCmp(*tables, header.Get(), 0x84, &list, range, 1), 1);
    std::string text;
    for (const POU_LIST* entry = &list; entry; entry = entry->next) {
        text += Ascii(entry->typeName) + "(" + std::to_string(entry->count);
        for (const POU_INST* inst = entry->first; inst; inst = inst->next) {
            text += " " + Ascii(inst->name) + "@" + std::to_string(inst->pos) + "/" +
                    std::to_string(inst->kind) + (inst->init ? "+init" : "");
        }
        text += ")";
    }
    // The descriptor lies behind length, name, scope and type of its line.
    const std::string cut(32, 'p');
    EXPECT_EQ(text, "(0)Motor(2 one@19/2+init two@79/2)TON(1 t1@48/2)STRUCTURE(2 n@106/2 arr@8/9)" +
                        cut + "(2 l1@135/2 l3@193/2)" + cut + "(1 l2@164/2)");
    MEMSTREAM_A image;
    tables->Put(CgTab::TAB_CMP, image);
    EXPECT_EQ(Hex(image.GetData() + 48, 4), "FF FF FF FF");
    EXPECT_TRUE(ImageOf(*tables, CgTab::TAB_ARR).substr(24).starts_with("FF FF FF FF 01"));
    EXPECT_TRUE(Components(*tables).starts_with("one:1 t1:1 two:1"))
        << "without values of their own";

    // Without their bit instances leave a line only.
    Header one({{DS_VAR, u"one", DT_STRUCTURE, u"Motor"}});
    POU_LIST none;
    EXPECT_EQ(CgTabAccess::AppendCmp(*tables, one.Get(), 0x4, &none, range, 1), 1);
    EXPECT_EQ(range.lines, 1);
    EXPECT_EQ(none.next, nullptr);
    EXPECT_EQ(CgTabAccess::AppendCmp(*tables, one.Get(), 0x4, nullptr, range, 1), 0);
    EXPECT_EQ(CgTabAccess::AppendCmp(*tables, nullptr, 0x4, &none, range, 1), 0);
}

// More types than are walked to, behind entries of the caller's with one name twice.
TEST(Components, InstancesOfManyTypes) {
    auto tables = NewTables();
    std::vector<DeclText> decls;
    for (int i = 0; i < 90; ++i) {
        const std::string type = (i % 2 == 0 ? "T" : "t") + std::to_string(i % 30 / 2);
        decls.push_back({DS_VAR, u"v", DT_FB_INSTANCE, {type.begin(), type.end()}});
    }
    Header header(decls);
    POU_LIST list;
    for (POU_LIST** end = &list.next; const char16_t* name : {u"T7", u"t7", u"other"}) {
        *end = new POU_LIST;
        std::copy_n(name, 3, (*end)->typeName);
        end = &(*end)->next;
    }
    CgTab::POS_DSC range;
    EXPECT_EQ(CgTabAccess::AppendCmp(*tables, header.Get(), 0x80, &list, range, 1), 1);
    std::string text;
    for (const POU_LIST* entry = &list; entry; entry = entry->next) {
        text += Ascii(entry->typeName) + ":" + std::to_string(entry->count) + " ";
    }
    EXPECT_EQ(text,
              ":0 T7:6 t7:0 oth:0 T0:6 T1:6 T2:6 T3:6 T4:6 T5:6 T6:6 T8:6 T9:6 T10:6 T11:6 "
              "T12:6 T13:6 T14:6 ");
}

TEST(Components, AFailedStepTakesTheSectionsBack) {
    auto tables = NewTables();
    Header good({{DS_VAR, u"a", DT_ELEMENTARY, u"INT", u"1"}});
    Header bad({{DS_VAR, u"a", DT_ELEMENTARY, u"INT", u"1"},
                {DS_VAR, u"s", DT_STRING, u"STRING(9)", std::u16string(70000, u'x')}});
    POU_LIST list;
    CgTab::POS_DSC range;
    ASSERT_EQ(CgTabAccess::AppendCmp(*tables, good.Get(), 0x4, &list, range, 1), 1);
    const int32_t length = range.end;
    EXPECT_EQ(CgTabAccess::AppendCmp(*tables, bad.Get(), 0x4, &list, range, 2), 0);
    EXPECT_EQ(range.start, length);
    EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_CMP), length);
    EXPECT_TRUE(CgTabAccess::Check(*tables));
    EXPECT_EQ(tables->Look(CgTab::kWholeTable, u"a", static_cast<CgTab::CMP_LINE*>(nullptr), 1), 0);
}

}  // namespace
}  // namespace lq::test
