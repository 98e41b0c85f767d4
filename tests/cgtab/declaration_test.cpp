// Declarations to globals and components.
#include "tests/cgtab/tables_util.h"
#include "tests/support/rows.h"

namespace lq::test {
namespace {

using cgtab::DeclFault;

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

// "STRING 20 = nothing": the type, and the class of the value, where there is a line of one.
std::string Describe(CgTab& tables, const CgTab::GLB_LINE& line, const std::u16string& init) {
    constexpr const char* kClasses[] = {"BOOL",  "SINT", "USINT", "INT",  "UINT",  "DINT",
                                        "UDINT", "LINT", "ULINT", "REAL", "LREAL", "TIME"};
    const bool isBlock = line.type == IEC_FUNCTION_BLOCK;
    std::string text = isBlock ? "(block)" : Ascii(IecTypeConv().GetName(line.type));
    if (line.type == IEC_STRING) {
        text += " " + std::to_string(line.dsc.strLen);
    } else if (line.type == IEC_ARRAY) {
        text += " " + Describe(*line.dsc.arr.info);
    } else if (isBlock || line.type == IEC_STRUCTURE) {
        EXPECT_EQ(line.dsc.dsc, 0xFFFFFFFFu);
    }
    CgTab::CstLine constant;
    int32_t pos = line.cstLine;
    if (pos < 0) {
        return text;
    }
    EXPECT_EQ(tables.Read(pos, constant, 0, nullptr), 1);
    EXPECT_EQ(constant.text, init);
    return text + " = " + (constant.val.type == VT_NONE ? "nothing" : kClasses[constant.val.type]);
}

TEST(Declarations, AreEnteredOrRefusedForAReason) {
    constexpr const char* kKinds[] = {"none",  "type",      "subrange", "string",
                                      "array", "structure", "block"};
    constexpr const char* kFaults[] = {
        "",       "name",       "kind",    "type name", "value",
        "length", "array type", "address", "scope",     "no type of a line"};
    auto tables = NewTables();
    std::u16string name(65, u'n');  // as long as may be
    for (const Row& row : Rows("cgtab/tables.rows", "globals")) {
        SCOPED_TRACE(row.line);
        const auto* const kind = std::find(kKinds, std::end(kKinds), row[0]);
        const DeclPtr decl = NewDecl({DS_VAR_GLOBAL, name, static_cast<uint32_t>(kind - kKinds),
                                      row.Wide(1), row.Wide(2), row.Wide(3)});
        const int32_t before = CgTabAccess::LengthOf(*tables, CgTab::TAB_GLB);
        DeclFault fault = DeclFault::kNone;
        int32_t at = CgTabAccess::InsertGlobal(*tables, decl.get(), fault);
        EXPECT_TRUE(CgTabAccess::Check(*tables));
        if (at < 0) {
            EXPECT_EQ(std::string("refused: ") + kFaults[static_cast<size_t>(fault)], row[4]);
            EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_GLB), before);
            continue;
        }
        CgTab::GLB_LINE line = {};
        ASSERT_EQ(tables->Read(at, line, 0, nullptr), 1);
        EXPECT_EQ(Describe(*tables, line, row.Wide(2)), row[4]);
        EXPECT_EQ(line.scope, unsigned{DS_VAR_GLOBAL});
        EXPECT_EQ(line.count, 1u);
        name.pop_back();
    }
    tables = NewTables();
    DeclFault fault = DeclFault::kNone;
    DeclPtr decl = NewDecl({11, std::u16string(66, u'n'), DT_ELEMENTARY, u"INT"});
    EXPECT_EQ(CgTabAccess::InsertGlobal(*tables, decl.get(), fault), -1);
    EXPECT_EQ(fault, DeclFault::kNameTooLong);
    decl = NewDecl({DS_VAR, u"a", DT_ELEMENTARY, u"INT", u"", u"rubbish"});
    EXPECT_EQ(CgTabAccess::InsertGlobal(*tables, decl.get(), fault), -1);
    EXPECT_EQ(fault, DeclFault::kScope);
    EXPECT_EQ(tables->Insert(static_cast<DECL_TYP*>(nullptr)), -1);
    EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_GLB), 0);
    std::string taken;
    for (uint32_t scope = 0; scope <= DS_VAR_EXTERNAL_CONSTANT_RETAIN; ++scope) {
        decl = NewDecl({scope, u"a", DT_ELEMENTARY, u"INT", u"", u" "});
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
