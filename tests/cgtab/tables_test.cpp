// What the model of a table set does not have: limits, array lines, lines that an image damaged.
#include "lq_data/host/mdi/pou_ref.h"
#include "lq_data/lines.h"
#include "tests/cgtab/tables_util.h"
#include "tests/host/model/model_util.h"

namespace lq::test {
namespace {

using Bytes = std::vector<unsigned char>;

void Get(CgTab& tables, CgTab::TAB_ID id, const Bytes& bytes) {
    MEMSTREAM_A image;
    Fill(image, bytes);
    const auto size = static_cast<int32_t>(bytes.size());
    EXPECT_EQ(tables.Get(id, image, size), size);
}

TEST(Tables, NamesThatDoNotFitTheirLengthField) {
    auto tables = NewTables();
    const char16_t* const none = nullptr;
    EXPECT_EQ(tables->Insert(none, CgTab::LBL_INFO{0}), -1);
    EXPECT_EQ(tables->Insert(none, IEC_INT, {}, 1), -1);
    EXPECT_EQ(tables->Insert(none), -1);
    EXPECT_EQ(tables->Look(none, static_cast<CgTab::POU_LINE*>(nullptr), 0), -1);
    const std::pair<size_t, char16_t> cases[] = {
        {3000, u'x'}, {65535, u'x'}, {65535, u'y'}, {65536, u'x'}};
    for (const auto& [length, letter] : cases) {
        const std::u16string name(length, letter);
        int32_t pos = tables->Insert(name.c_str());
        EXPECT_EQ(pos >= 0, length <= 65535);
        CgTab::DMM_LINE line;
        EXPECT_TRUE(pos < 0 || (tables->Read(pos, line, 0, nullptr) && line.name == name));
    }
}

TEST(Tables, LongTextsAreToldApart) {
    auto tables = NewTables();
    int32_t end = 0;
    for (const size_t length : {254u, 255u, 256u, 257u, 3000u}) {
        Lit lit;
        std::u16string text;
        for (size_t i = 0; i < length; ++i) {
            text += static_cast<char16_t>(u'1' + i / 50 % 9);
        }
        lit.SetText(text.c_str());
        EXPECT_EQ(tables->Insert(lit), end) << length;
        EXPECT_EQ(tables->Insert(lit), end) << length;
        end = CgTabAccess::LengthOf(*tables, CgTab::TAB_CST);
    }
}

TEST(Tables, WhatIsNoTable) {
    auto tables = NewTables();
    MEMSTREAM_A stream;
    stream.PutBlock("12345678", 8, nullptr);
    for (const auto id : {static_cast<CgTab::TAB_ID>(-1), static_cast<CgTab::TAB_ID>(10)}) {
        int32_t pos = 0;
        EXPECT_EQ(tables->SetPos(id, 0) + tables->End(id) + tables->Clear(id), 0);
        EXPECT_EQ(tables->Write(id, pos, "x") + tables->Put(id, stream), 0);
        EXPECT_EQ(tables->Get(id, stream, 8) + tables->PutUsr(id, stream), 0);
        EXPECT_EQ(tables->GetUsr(id, stream), 0);
        EXPECT_EQ(tables->Look(id, "x", 1), -1);
    }
    EXPECT_EQ(tables->PutUsr(CgTab::TAB_ARR, stream), 0);
    EXPECT_EQ(tables->Look(CgTab::TAB_ARR, "x", 1), -1);
}

TEST(Tables, ArraysComeBackAsTheyWere) {
    auto tables = NewTables();
    ArrInfo info;
    info.elemType = IEC_STRING;
    const ANY_INT_32 extents[][2] = {{{0, 1}, {0, 10}}, {{1, 2}, {0, 5}}, {{1, 40000}, {0, 40000}}};
    for (const auto& extent : extents) {
        ANY_INT_32 copy[2] = {extent[0], extent[1]};
        info.AppendExt(&copy, 1);
    }
    ANY_INT_32 passed[2];
    info.GetExt(&passed, 0);  // a description may have been read from
    EXPECT_EQ(CgTabAccess::InsertArray(*tables, {&info, 20}), 0);
    EXPECT_EQ(tables->IsTableEmpty(), 0);
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_ARR),
              "1F 00 00 00 0F 00 00 00 14 00 00 00 03 05 80 84 1E 00 11 01 0A 11 FE 05 45 C0 63 FF "
              "FF 40 9C 01 00 00 00");
    ArrInfo read;
    CgTab::ArrDsc array = {&read, 0};
    int32_t at = 0;
    ASSERT_EQ(CgTabAccess::ReadArray(*tables, at, array), 1);
    EXPECT_EQ(read.elemType, IEC_STRING);
    EXPECT_EQ(array.elemDsc, 20u);
    EXPECT_EQ(read.total.magnitude, 2000000u);
    ASSERT_EQ(read.GetDim(), 3);
    for (const auto& extent : extents) {
        ANY_INT_32 ext[2];
        ASSERT_EQ(read.GetExt(&ext, 0), 1);
        EXPECT_EQ(std::make_pair(ext[0].sign, ext[0].magnitude),
                  std::make_pair(extent[0].sign, extent[0].magnitude));
        EXPECT_EQ(ext[1].magnitude, extent[1].magnitude);
    }
    tables->SetPos(CgTab::TAB_ARR, 0);
    at = -1;
    EXPECT_EQ(CgTabAccess::ReadArray(*tables, at, array), 0) << "arrays have no current one";
    ANY_INT_32 tooLow[2] = {{1, 2147483649u}, {0, 1}};
    info.AppendExt(&tooLow, 0);
    EXPECT_EQ(CgTabAccess::InsertArray(*tables, {&info, 20}), -1);
    ArrInfo badCount;
    ANY_INT_32 tooFew[2] = {{0, 1}, {1, 2147483649u}};
    badCount.AppendExt(&tooFew, 0);
    EXPECT_EQ(CgTabAccess::InsertArray(*tables, {&badCount, 0}), -1);
    badCount.total = {1, 2147483649u};
    EXPECT_EQ(CgTabAccess::InsertArray(*tables, {&badCount, 0}), -1);
    EXPECT_EQ(CgTabAccess::InsertArray(*tables, {nullptr, 0}), -1);
    EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_ARR), 35) << "nothing was left behind";
    CgTab::TMP_LINE line;
    at = tables->Insert(u"t", IEC_ARRAY, {.arr = {&read, 20}}, 1);
    tables->Clear(CgTab::TAB_ARR);
    EXPECT_EQ(tables->Read(at, line, 0, nullptr), 0) << "without its array";
    ArrInfo bare;
    array = {&bare, 5};
    EXPECT_EQ(at = CgTabAccess::InsertArray(*tables, array), 0) << "without extents";
    EXPECT_EQ(CgTabAccess::ReadArray(*tables, at, array), 1);
    EXPECT_EQ(array.elemDsc, 0u);
}

// Lines that are wrong behind good ones: they give nothing, and the table is rewound.
TEST(Tables, DamagedLinesAreRefused) {
    auto tables = NewTables();
    CgTab::LBL_LINE label;
    Get(*tables, CgTab::TAB_LBL, {8, 0, 0, 0, 1, 'a', 0, 0, 1, 0, 0, 0,  //
                                  7, 0, 0, 0, 1, 'b', 0, 0, 1, 0, 0});
    int32_t pos = 0;
    EXPECT_EQ(tables->Read(pos, label, 0, nullptr), 1);
    EXPECT_EQ(tables->Read(pos, label, 0, nullptr), 0) << "its count is cut";
    EXPECT_EQ(pos, 0);
    EXPECT_EQ(tables->Read(label, 0, nullptr), 1) << "the table stands at its start";

    // A reference to no global, while the table of globals stands at one.
    tables->Insert(NewDecl({DS_VAR_GLOBAL, u"g", DT_ELEMENTARY, u"INT"}).get());
    tables->SetPos(CgTab::TAB_GLB, 0);
    CgTab::CMP_LINE component;
    Get(*tables, CgTab::TAB_CMP,
        {15, 0, 0, 0, 1, 'a', 0, 10, 0, 0, 0, 255, 255, 255, 255, 0, 0, 0, 0});
    EXPECT_EQ(tables->Read(pos, component, 0, nullptr), 0);

    // One good line, then one that claims more than there is.
    Get(*tables, CgTab::TAB_DMM, {8, 0, 0, 0, 1, 0, 'a', 0, 1, 0, 0, 0,  //
                                  9, 0, 0, 0, 1, 0, 'b', 0, 1, 0, 0, 0});
    CgTab::DMM_LINE line;
    EXPECT_EQ(tables->Read(pos = 0, line, 0, nullptr), 1);
    EXPECT_EQ(tables->Read(pos, line, 0, nullptr), 0);
    EXPECT_EQ(tables->Insert(u"a"), 0);
    EXPECT_EQ(tables->Insert(u"b"), -1) << "it would never be found";
    EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_DMM), 24);

    // An address that is none: there is no index that could miss the others.
    tables->Clear(CgTab::TAB_ADR);
    Get(*tables, CgTab::TAB_ADR, {10, 0, 0, 0, 7, 2, 1, 0, '0', 0, 1, 0, 0, 0});
    EXPECT_EQ(tables->Insert(Address()), -1);

    // Lines that end with their name: what would be counted and replaced lies behind them.
    tables->Clear(CgTab::TAB_LBL);
    Get(*tables, CgTab::TAB_LBL, {5, 0, 0, 0, 2, 'a', 0, 'b', 0});
    Get(*tables, CgTab::TAB_TMP, {6, 0, 0, 0, 2, 0, 'a', 0, 'b', 0});
    EXPECT_EQ(tables->Insert(u"ab", IEC_INT, {}, 1), -1);
    EXPECT_EQ(tables->Insert(u"ab", CgTab::kLabelDefinition), -1);
}

TEST(Tables, LinesOneAfterTheOther) {
    auto tables = NewTables(2);
    for (const char16_t* name : {u"a", u"b", u"c"}) {
        tables->Insert(name);
    }
    std::string seen;
    lq::Lines<CgTab::TAB_DMM> lines(*tables);
    for (const auto& [pos, line] : lines) {
        seen += Ascii(line.name) + std::to_string(pos) + " ";
        if (pos == 14) {
            tables->Insert(u"a");  // moves the table
            tables->Insert(u"d");
        }
    }
    EXPECT_TRUE(lines.IsWhole());
    EXPECT_EQ(seen, "a0 b14 c28 d42 ");
    lq::Lines<CgTab::TAB_DMM> section(*tables, {14, 42, 2});
    EXPECT_EQ(std::distance(section.begin(), section.end()), 2);
    Get(*tables, CgTab::TAB_DMM, {1, 0, 0, 0});  // over the last line
    lq::Lines<CgTab::TAB_DMM> damaged(*tables);
    EXPECT_EQ(std::distance(damaged.begin(), damaged.end()), 3);
    EXPECT_FALSE(damaged.IsWhole());
    EXPECT_EQ(damaged.begin(), damaged.end());
}

TEST(Tables, LinesWithoutRoomForTheirUserArea) {
    auto tables = NewTables(2);
    Get(*tables, CgTab::TAB_DBG, {3, 0, 0, 0, 1, 8, 9, 2, 0, 0, 0, 1, 7, 1, 0, 0, 0, 0});
    const unsigned char data[] = {7, 8};
    char usr[3] = {};
    EXPECT_EQ(tables->Look(CgTab::DBG_INFO{data, 1}, nullptr), 7);
    EXPECT_EQ(tables->Look(CgTab::DBG_INFO{data, 1}, usr), -1);
    CgTab::DBG_INFO line;
    for (int32_t pos : {7, 13}) {
        const int32_t before = pos;
        EXPECT_EQ(tables->Read(pos, line, 0, usr), 0);
        EXPECT_EQ(pos, before) << "no rewinding";
    }
    int32_t pos = 13;
    EXPECT_EQ(tables->Write(CgTab::TAB_DBG, pos, "xx"), 0);
    EXPECT_EQ(pos, 13);
    EXPECT_EQ(tables->Insert(CgTab::DBG_INFO{nullptr, 1}), -1);
    EXPECT_EQ(tables->Write(CgTab::TAB_DBG, pos = 7, "xy"), 1) << "all of the line is its area";
    EXPECT_EQ(pos, 13);
    EXPECT_EQ(tables->Look(CgTab::TAB_DBG, "xy", 1), 7);
    EXPECT_EQ(tables->Look(CgTab::TAB_DBG, "zz", 1), -1);
    EXPECT_EQ(tables->Read(pos = 0, line, 0, usr), 0) << "a name of one byte, that the area takes";
    EXPECT_EQ(tables->Insert(CgTab::DBG_INFO{nullptr, 0}), 18) << "no data need no place";
}

// A use that cannot be counted is no reason not to find the line.
TEST(Tables, ALineDamagedBehindItsIndex) {
    for (const uint32_t length : {0u, 3u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        auto tables = NewTables(2);
        const int32_t pos = tables->Insert(u"L", CgTab::LBL_INFO{0});
        unsigned char field[4];
        cgtab::StoreU32(field, length);
        tables->SetPos(CgTab::TAB_LBL, pos);
        Get(*tables, CgTab::TAB_LBL, {field, field + 4});
        EXPECT_EQ(tables->Insert(u"L", CgTab::LBL_INFO{0}), pos) << length;
        EXPECT_EQ(tables->ResetJumps(pos), 0) << length;
    }
}

// Bytes that come in at a position end that a user area is at hand.
TEST(Tables, AnImageWithinATable) {
    auto tables = NewTables(2);
    tables->Insert(u"a");
    Get(*tables, CgTab::TAB_DMM, {'x', 'y'});
    EXPECT_EQ(tables->Write(CgTab::TAB_DMM, "zz"), 0) << "at the end";
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_DMM), "0A 00 00 00 01 00 61 00 01 00 00 00 78 79");
}

TEST(Tables, AUnitInTheTableIsNoRecursiveOne) {
    host::CurrentProject project;
    project.AddCall(*project.EditPou(project.NewPou(LQ_KIND_PROGRAM, u"A")), u"A");
    auto tables = NewTables();
    EXPECT_EQ(CgTab_IsRecursivPOU(tables.get(), u"A"), 1);
    EXPECT_EQ(CgTab_IsRecursivPOU(tables.get(), u"Z"), 0);
    EXPECT_EQ(CgTab_IsRecursivPOU(tables.get(), nullptr), 0);
    EXPECT_EQ(CgTab_IsRecursivPOU(nullptr, u"A"), 0);
    tables = NewTables();  // an image does not reach an index that was built before
    Bytes unit = {23, 0, 0, 0, 1, 'A', 0};
    unit.resize(27);
    Get(*tables, CgTab::TAB_POU, unit);
    EXPECT_EQ(CgTab_IsRecursivPOU(tables.get(), u"a"), 0);
}

TEST(Tables, UnitsAreNotProvided) {
    auto tables = NewTables();
    CgTab::POU_INFO info = {};
    int out = 0;
    host::NamedPouRef unit(u"P");
    CPouRef* const none = nullptr;
    for (const int32_t result :
         {tables->Insert(u"P", info, uint16_t{1}, &out), tables->Insert(u"P", info, &out),
          tables->Insert(&unit, info, uint16_t{1}, &out), tables->Insert(&unit, info, &out),
          tables->Insert(none, info, &out), tables->MarkPouDeleted(u"P", 1),
          tables->MarkGlobalsDeleted(1)}) {
        EXPECT_EQ(result, -1);
    }
    EXPECT_EQ(tables->IsTableEmpty(), 1);
}

}  // namespace
}  // namespace lq::test
