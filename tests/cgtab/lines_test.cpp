// Reading lines, user areas, array lines, searching.
#include "tests/cgtab/tables_util.h"

namespace lq::test {
namespace {

TEST(Lines, TheEndAndFailuresRewind) {
    auto tables = NewTables();
    tables->Insert(u"a");
    CgTab::DMM_LINE line;
    int32_t pos = 0;
    EXPECT_EQ(tables->Read(pos, line, 0, nullptr), 1);
    EXPECT_EQ(pos, 12);
    EXPECT_EQ(tables->End(CgTab::TAB_DMM), 1);
    EXPECT_EQ(tables->Read(pos, line, 0, nullptr), 0);
    EXPECT_EQ(pos, 0);
    EXPECT_EQ(tables->Read(line, 0, nullptr), 1) << "the table stands at its start";
    pos = 13;
    EXPECT_EQ(tables->Read(pos, line, 0, nullptr), 0);
    EXPECT_EQ(pos, 0);
    EXPECT_EQ(tables->SetPos(CgTab::TAB_DMM, 13), 0);
    EXPECT_EQ(tables->SetPos(CgTab::TAB_DMM, -1), 0);
    for (const int id : {-1, 10}) {
        EXPECT_EQ(tables->SetPos(static_cast<CgTab::TAB_ID>(id), 0), 0) << id;
        EXPECT_EQ(tables->End(static_cast<CgTab::TAB_ID>(id)), 0) << id;
        EXPECT_EQ(tables->Clear(static_cast<CgTab::TAB_ID>(id)), 0) << id;
    }
}

// The records cut names; the whole one is read aside.
TEST(Lines, WholeNames) {
    auto tables = NewTables(3);
    const std::u16string name(40, u'n');
    const int32_t pos = tables->Insert(name.c_str(), CgTab::LBL_INFO{0});
    tables->Insert(name.c_str());
    const struct {
        CgTab::TAB_ID id;
        int32_t pos;
        uint32_t size;
        const char* name;  // null for none
    } kCases[] = {
        {CgTab::TAB_LBL, pos, 41, "nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn"},
        {CgTab::TAB_LBL, pos, 4, "nnn"},
        {CgTab::TAB_LBL, pos, 1, ""},
        {CgTab::TAB_LBL, pos, 0, nullptr},
        {CgTab::TAB_LBL, -1, 41, nullptr},
        {CgTab::TAB_LBL, pos + 1, 41, nullptr},
        {CgTab::TAB_GLB, 0, 41, nullptr},
        {CgTab::TAB_DMM, 0, 41, nullptr},
    };
    for (const auto& c : kCases) {
        char16_t buffer[41] = u"?";
        EXPECT_EQ(CgTabAccess::WholeName(*tables, c.id, c.pos, buffer, c.size), c.name != nullptr)
            << c.id << " " << c.pos << " " << c.size;
        EXPECT_EQ(Ascii(buffer), c.name ? c.name : "?") << c.id << " " << c.pos << " " << c.size;
    }
}

TEST(Lines, UserAreasInPlace) {
    auto tables = NewTables(4);
    for (const char16_t* name : {u"a", u"b", u"c"}) {
        tables->Insert(name);
    }
    CgTab::DMM_LINE line;
    tables->SetPos(CgTab::TAB_DMM, 0);
    EXPECT_EQ(tables->Read(line, 1, nullptr), 1);
    EXPECT_EQ(tables->Write(CgTab::TAB_DMM, "AAAA"), 1);
    EXPECT_EQ(tables->Read(line, 1, nullptr), 1);
    EXPECT_EQ(Ascii(line.name), "b");
    char usr[5] = {};
    EXPECT_EQ(tables->Read(line, 1, usr), 1) << "an unwritten user area is passed over";
    EXPECT_EQ(Ascii(line.name), "c");
    EXPECT_EQ(tables->Write(CgTab::TAB_DMM, "CCCC"), 1);

    int32_t pos = 16;
    EXPECT_EQ(tables->Write(CgTab::TAB_DMM, pos, "BBBB"), 1);
    EXPECT_EQ(pos, 32) << "the next line";
    const char* expected[] = {"AAAA", "BBBB", "CCCC"};
    pos = 0;
    for (const char* text : expected) {
        ASSERT_EQ(tables->Read(pos, line, 0, usr), 1);
        EXPECT_STREQ(usr, text);
    }
    EXPECT_EQ(tables->Write(CgTab::TAB_DMM, pos, "xxxx"), 0) << "at the end";

    EXPECT_EQ(tables->Write(CgTab::TAB_DMM, pos = 32, "AAAA"), 1);
    EXPECT_EQ(tables->Look(CgTab::TAB_DMM, "AAAA", 1), 0);
    EXPECT_EQ(tables->Look(CgTab::TAB_DMM, "AAAA", 0), 32) << "goes on behind the hit";
    EXPECT_EQ(tables->Look(CgTab::TAB_DMM, "AAAA", 0), -1);
    EXPECT_EQ(tables->Look(CgTab::TAB_ARR, "AAAA", 1), -1);

    tables->SetPos(CgTab::TAB_DMM, 0);
    EXPECT_EQ(tables->Read(line, 1, nullptr), 1);
    EXPECT_EQ(tables->Look(CgTab::TAB_DMM, "AAAA", 0), 32) << "the line just read is passed";
    pos = 49;
    EXPECT_EQ(tables->Write(CgTab::TAB_DMM, pos, "xxxx"), 0) << "outside";
    EXPECT_EQ(tables->Write(static_cast<CgTab::TAB_ID>(10), pos, "xxxx"), 0);

    auto bare = NewTables(0);
    bare->Insert(u"a");
    pos = 0;
    EXPECT_EQ(bare->Write(CgTab::TAB_DMM, pos, "xxxx"), 1) << "of an area without bytes";
    EXPECT_EQ(ImageOf(*bare, CgTab::TAB_DMM), "08 00 00 00 01 00 61 00 01 00 00 00");
}

TEST(Lines, LongNamesComeInTheLongBuffer) {
    auto tables = NewTables();
    for (const size_t length : {size_t{64}, size_t{65}, size_t{3000}}) {
        const std::u16string name(length, u'n');
        int32_t pos = tables->Insert(name.c_str());
        CgTab::DMM_LINE line;
        ASSERT_EQ(tables->Read(pos, line, 0, nullptr), 1);
        EXPECT_EQ(std::u16string(line.name), name);
    }
}

TEST(Lines, ArraysComeBackAsTheyWere) {
    auto tables = NewTables();
    ArrInfo info;
    info.elemType = IEC_STRING;
    const ANY_INT_32 extents[][2] = {{{0, 1}, {0, 10}}, {{1, 2}, {0, 5}}, {{1, 40000}, {0, 40000}}};
    for (const auto& extent : extents) {
        ANY_INT_32 copy[2] = {extent[0], extent[1]};
        info.AppendExt(&copy, 1);
    }
    const int32_t pos = CgTabAccess::InsertArray(*tables, {&info, 20});
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_ARR),
              "1F 00 00 00 0F 00 00 00 14 00 00 00 03 05 80 84 1E 00 11 01 0A 11 FE 05 45 C0 63 FF "
              "FF 40 9C 01 00 00 00");
    ArrInfo read;
    CgTab::ArrDsc array = {&read, 0};
    int32_t at = pos;
    ASSERT_EQ(CgTabAccess::ReadArray(*tables, at, array), 1);
    EXPECT_EQ(read.elemType, IEC_STRING);
    EXPECT_EQ(array.elemDsc, 20u);
    EXPECT_EQ(read.total.magnitude, 2000000u);
    ASSERT_EQ(read.GetDim(), 3);
    for (const auto& extent : extents) {
        ANY_INT_32 ext[2];
        ASSERT_EQ(read.GetExt(&ext, 0), 1);
        EXPECT_EQ(ext[0].sign, extent[0].sign);
        EXPECT_EQ(ext[0].magnitude, extent[0].magnitude);
        EXPECT_EQ(ext[1].magnitude, extent[1].magnitude);
    }
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
    EXPECT_EQ(tables->Clear(CgTab::TAB_ARR), 1);
    EXPECT_EQ(tables->IsTableEmpty(), 1);
}

TEST(Search, DebugRecordsByTheirBytes) {
    auto tables = NewTables(2);
    const unsigned char bytes[] = {0, 7, 0};
    for (const int size : {3, 2, 0, 2}) {
        tables->Insert(CgTab::DBG_INFO{bytes, static_cast<uint8_t>(size)});
        tables->Write(CgTab::TAB_DBG, size == 2 ? "ab" : "xy");
    }
    char usr[3] = {};
    EXPECT_EQ(tables->Look(CgTab::DBG_INFO{bytes, 2}, usr), 10);
    EXPECT_STREQ(usr, "ab");
    EXPECT_EQ(tables->Look(CgTab::DBG_INFO{bytes, 0}, nullptr), 19);
    EXPECT_EQ(tables->Look(CgTab::DBG_INFO{bytes, 1}, nullptr), -1);

    tables->Clear(CgTab::TAB_DBG);
    MEMSTREAM_A withoutArea;
    Fill(withoutArea, {2, 0, 0, 0, 1, 7});
    tables->Get(CgTab::TAB_DBG, withoutArea, 6);
    const unsigned char seven = 7;
    EXPECT_EQ(tables->Look(CgTab::DBG_INFO{&seven, 1}, nullptr), 0);
    EXPECT_EQ(tables->Look(CgTab::DBG_INFO{&seven, 1}, usr), -1);
}

TEST(Search, ADamagedLineEndsATable) {
    auto tables = NewTables();
    MEMSTREAM_A image;
    // One good line, then one that claims more than there is.
    const std::vector<unsigned char> bytes = {8, 0, 0, 0, 1, 0, 'a', 0, 1, 0, 0, 0,
                                              9, 0, 0, 0, 1, 0, 'b', 0, 1, 0, 0, 0};
    Fill(image, bytes);
    EXPECT_EQ(tables->Get(CgTab::TAB_DMM, image, 24), 24);
    CgTab::DMM_LINE line;
    int32_t pos = 0;
    EXPECT_EQ(tables->Read(pos, line, 0, nullptr), 1);
    EXPECT_EQ(tables->Read(pos, line, 0, nullptr), 0);
    EXPECT_EQ(tables->Insert(u"a"), 0);
    EXPECT_EQ(tables->Insert(u"b"), -1) << "it would never be found";
    EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_DMM), 24);

    // Lines that end with their name: what would be counted and replaced lies behind them.
    for (const CgTab::TAB_ID id : {CgTab::TAB_TMP, CgTab::TAB_LBL}) {
        MEMSTREAM_A cut;
        if (id == CgTab::TAB_TMP) {
            Fill(cut, {6, 0, 0, 0, 2, 0, 'a', 0, 'b', 0});
        } else {
            Fill(cut, {5, 0, 0, 0, 2, 'a', 0, 'b', 0});
        }
        tables->Get(id, cut, cut.GetSize());
    }
    EXPECT_EQ(tables->Insert(u"ab", IEC_INT, {}, 1), -1);
    EXPECT_EQ(tables->Insert(u"ab", CgTab::kLabelDefinition), -1);
}

// A use that cannot be counted is no reason not to find the line.
TEST(Search, ALineDamagedBehindItsIndex) {
    for (const uint32_t length : {0u, 3u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        auto tables = NewTables(2);
        const int32_t pos = tables->Insert(u"L", CgTab::LBL_INFO{0});
        unsigned char field[4];
        cgtab::StoreU32(field, length);
        MEMSTREAM_A image;
        Fill(image, {field, field + 4});
        tables->SetPos(CgTab::TAB_LBL, pos);
        tables->Get(CgTab::TAB_LBL, image, 4);
        EXPECT_EQ(tables->Insert(u"L", CgTab::LBL_INFO{0}), pos) << length;
        EXPECT_EQ(tables->ResetJumps(pos), 0) << length;
    }
}

}  // namespace
}  // namespace lq::test
