#include "host/mdi/pou_ref.h"
#include "tests/cgtab/tables_util.h"

namespace lq::test {
namespace {

char16_t kZero[] = u"0";

// Every kind of line that needs no declaration, byte for byte.
TEST(Insertion, LineImages) {
    auto tables = NewTables();
    const unsigned char data[] = {1, 0xFF};
    EXPECT_EQ(tables->Insert(CgTab::DBG_INFO{data, 2}), 0);
    EXPECT_EQ(tables->Insert(CgTab::DBG_INFO{data, 2}), 7);
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_DBG), "03 00 00 00 02 01 FF 03 00 00 00 02 01 FF");

    EXPECT_EQ(tables->Insert(Address(LOC_OUTPUT, SIZE_WORD, kZero)), 0);
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_ADR), "0A 00 00 00 01 02 01 00 30 00 01 00 00 00");

    Lit lit;
    lit.SetText(u"T#1d");
    Time day(1, 2.0, 1);
    lit.val.Set(uint16_t{TK_TIME}, day, 0);
    EXPECT_EQ(tables->Insert(lit), 0);
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_CST),
              "1B 00 00 00 0B 04 00 54 00 23 00 31 00 64 00 01 00 00 00 00 00 00 00 00 00 00 40 "
              "01 00 00 00");

    EXPECT_EQ(tables->Insert(u"L1", CgTab::kLabelDefinition), 0);
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_LBL), "0A 00 00 00 02 4C 00 31 00 01 00 00 00 00");

    CgTab::TYP_DSC dsc = {};
    dsc.strLen = 20;
    EXPECT_EQ(tables->Insert(u"t", IEC_STRING, dsc, 7), 0);
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_TMP),
              "11 00 00 00 01 00 74 00 07 0F 00 00 00 14 00 00 00 01 00 00 00");

    EXPECT_EQ(tables->Insert(u"ab"), 0);
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_DMM), "0A 00 00 00 02 00 61 00 62 00 01 00 00 00");
}

TEST(Insertion, TheUserAreaOfANewLineIsZeroAndAtHand) {
    auto tables = NewTables(4);
    EXPECT_EQ(tables->Insert(Address(LOC_OUTPUT, SIZE_WORD, kZero)), 0);
    const std::string line = "0E 00 00 00 01 02 01 00 30 00 01 00 00 00";
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_ADR), line + " 00 00 00 00");
    EXPECT_EQ(tables->Insert(u"a"), 0);
    EXPECT_EQ(tables->Write(CgTab::TAB_DMM, "wxyz"), 1);
    EXPECT_EQ(ImageOf(*tables, CgTab::TAB_DMM), "0C 00 00 00 01 00 61 00 01 00 00 00 77 78 79 7A");
}

TEST(Insertion, AddressesAndConstantsHaveOneLine) {
    auto tables = NewTables(2);
    char16_t one[] = u"1";
    const int32_t first = tables->Insert(Address(LOC_INPUT, SIZE_BIT, one));
    EXPECT_NE(tables->Insert(Address(LOC_INPUT, SIZE_BYTE, one)), first);
    char16_t none16[] = u"";
    EXPECT_EQ(tables->Insert(Address(LOC_INPUT, SIZE_BIT, nullptr)),
              tables->Insert(Address(LOC_INPUT, SIZE_BIT, none16)));
    EXPECT_EQ(tables->Insert(Address(LOC_INPUT, SIZE_BIT, one)), first);
    CgTab::ADR_LINE address;
    int32_t pos = first;
    ASSERT_EQ(tables->Read(pos, address, 0, nullptr), 1);
    EXPECT_EQ(address.count, 1u);

    const auto constant = [&tables](const char16_t* text, Val val) {
        Lit lit;
        lit.SetText(text);
        lit.val = val;
        return tables->Insert(lit);
    };
    Val none;
    Val real;
    real.type = VT_REAL;
    const int32_t abc = constant(u"abc", none);
    EXPECT_NE(constant(u"ABC", none), abc) << "case counts";
    EXPECT_EQ(constant(u"abc", none), abc);
    const int32_t five = constant(u"5", Val(ANY_INT_32{0, 5}));
    EXPECT_NE(constant(u"5", real), five) << "the class counts";
    EXPECT_NE(constant(u"16#5", Val(ANY_INT_32{0, 5})), five) << "the text counts, not the value";
    EXPECT_EQ(constant(nullptr, none), constant(u"", none));
}

TEST(Insertion, LabelsAndJumps) {
    auto tables = NewTables(2);
    const auto state = [&tables](int32_t pos) {
        CgTab::LBL_LINE line;
        EXPECT_EQ(tables->Read(pos, line, 0, nullptr), 1);
        return std::make_pair(line.info, line.count);
    };
    const int32_t pos = tables->Insert(u"L1", CgTab::LBL_INFO{0});
    EXPECT_EQ(state(pos), std::make_pair(0u, 1u));
    EXPECT_EQ(tables->Insert(u"l1", CgTab::LBL_INFO{0}), pos);
    EXPECT_EQ(state(pos), std::make_pair(0u, 2u));
    EXPECT_EQ(tables->Insert(u"L1", CgTab::kLabelDefinition), pos);
    EXPECT_EQ(state(pos), std::make_pair(1u, 2u));
    EXPECT_EQ(tables->Insert(u"L1", CgTab::kLabelDefinition), -1) << "defined twice";
    EXPECT_EQ(state(pos), std::make_pair(1u, 2u));
    EXPECT_EQ(tables->ResetJumps(pos), 1);
    EXPECT_EQ(state(pos), std::make_pair(1u, 0u));
    EXPECT_EQ(tables->ResetJumps(99), 0);
    EXPECT_EQ(tables->ResetJumps(-1), 0);

    const std::u16string longName(200, u'n');
    const int32_t second = tables->Insert(longName.c_str(), CgTab::kLabelDefinition);
    EXPECT_EQ(tables->Insert(longName.c_str(), CgTab::LBL_INFO{0}), second);
    EXPECT_EQ(tables->ResetJumps(second), 1) << "by its whole name";
    EXPECT_EQ(state(second), std::make_pair(1u, 0u));
}

TEST(Insertion, TemporariesAndNamesCount) {
    auto tables = NewTables(3);
    CgTab::TYP_DSC dsc = {};
    const int32_t pos = tables->Insert(u"tmp", IEC_INT, dsc, 3);
    EXPECT_EQ(tables->Insert(u"tmp", IEC_INT, dsc, 5), pos);
    EXPECT_NE(tables->Insert(u"TMP", IEC_INT, dsc, 5), pos) << "names compare exactly";
    CgTab::TMP_LINE tmp;
    int32_t at = pos;
    ASSERT_EQ(tables->Read(at, tmp, 0, nullptr), 1);
    EXPECT_EQ(std::make_pair(unsigned{tmp.tag}, tmp.count), std::make_pair(5u, 2u));

    // Temporaries of every type with a descriptor; an array without one is refused.
    ArrInfo extents;
    extents.elemType = IEC_BOOL;
    ANY_INT_32 extent[2] = {{0, 1}, {0, 9}};
    extents.AppendExt(&extent, 1);
    CgTab::TYP_DSC described[3] = {};
    described[0].arr.info = &extents;
    described[1].dsc = described[2].dsc = 77;
    for (const auto& [type, index] :
         {std::pair(IEC_ARRAY, 0), std::pair(IEC_STRUCTURE, 1), std::pair(IEC_FUNCTION_BLOCK, 2)}) {
        at = tables->Insert((u"d" + std::u16string(1, static_cast<char16_t>(u'0' + index))).c_str(),
                            type, described[index], 1);
        ASSERT_EQ(tables->Read(at, tmp, 0, nullptr), 1) << type;
        EXPECT_EQ(tmp.type, type);
        EXPECT_EQ(type == IEC_ARRAY ? tmp.dsc.arr.info->total.magnitude : tmp.dsc.dsc,
                  type == IEC_ARRAY ? 9u : 77u);
    }
    EXPECT_EQ(tables->Insert(u"bare", IEC_ARRAY, dsc, 1), -1);
    at = tables->Insert(u"d0", IEC_ARRAY, described[0], 1);
    tables->Clear(CgTab::TAB_ARR);
    EXPECT_EQ(tables->Read(at, tmp, 0, nullptr), 0) << "without its array";

    const int32_t name = tables->Insert(u"Motor");
    EXPECT_EQ(tables->Insert(u"Motor"), name);
    CgTab::DMM_LINE dmm;
    at = name;
    ASSERT_EQ(tables->Read(at, dmm, 0, nullptr), 1);
    EXPECT_EQ(dmm.count, 2u);
}

TEST(Insertion, NamesThatDoNotFitTheirLengthField) {
    auto tables = NewTables();
    const char16_t* const none = nullptr;
    EXPECT_EQ(tables->Insert(none, CgTab::LBL_INFO{0}), -1);
    EXPECT_EQ(tables->Insert(none, IEC_INT, {}, 1), -1);
    EXPECT_EQ(tables->Insert(none), -1);
    for (const size_t length : {size_t{255}, size_t{256}}) {
        const std::u16string name(length, u'x');
        EXPECT_EQ(tables->Insert(name.c_str(), CgTab::LBL_INFO{0}) >= 0, length <= 255) << length;
    }
    for (const size_t length : {size_t{65535}, size_t{65536}}) {
        const std::u16string name(length, u'x');
        EXPECT_EQ(tables->Insert(name.c_str()) >= 0, length <= 65535) << length;
    }
}

TEST(Insertion, UnitsAreNotProvided) {
    auto tables = NewTables();
    CgTab::POU_INFO info = {};
    int out = 0;
    EXPECT_EQ(tables->Insert(u"P", info, uint16_t{1}, &out), -1);
    EXPECT_EQ(tables->Insert(u"P", info, &out), -1);
    host::NamedPouRef unit(u"P");
    EXPECT_EQ(tables->Insert(&unit, info, uint16_t{1}, &out), -1);
    EXPECT_EQ(tables->Insert(&unit, info, &out), -1);
    EXPECT_EQ(tables->Insert(static_cast<CPouRef*>(nullptr), info, &out), -1);
    EXPECT_EQ(tables->MarkPouDeleted(u"P", 1), -1);
    EXPECT_EQ(tables->MarkGlobalsDeleted(1), -1);
    EXPECT_EQ(tables->IsTableEmpty(), 1);
}

}  // namespace
}  // namespace lq::test
