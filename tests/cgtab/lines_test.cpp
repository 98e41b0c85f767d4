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
    EXPECT_EQ(tables->SetPos(static_cast<CgTab::TAB_ID>(10), 0), 0);
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
}

}  // namespace
}  // namespace lq::test
