// The names of the types, and their sizes.
#include <numeric>
#include <string>

#include <gtest/gtest.h>

#include "lq_data/host/model/project.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/types.h"

namespace {

// With a project that knows the user data types "Motor" and "Two Words".
class Catalogue : public testing::Test {
  protected:
    Catalogue() {
        for (const char16_t* name : {u"Motor", u"Two Words", u"A_NAME_OF_MORE_THAN_13"}) {
            lq::host::DataType type;
            type.name = project_.Intern(name);
            project_.AddDataType(type);
        }
        lq::host::SetProject(&project_);
    }
    ~Catalogue() override { lq::host::SetProject(nullptr); }

    lq::host::Project project_;
    IecTypeConv conv_;
};

TEST_F(Catalogue, ReadsTheTypeAtTheStartOfAText) {
    // clang-format off
    struct { const char16_t* text; IEC_TYPE id; std::ptrdiff_t end; } const cases[] = {
        {u"  INT of words", IEC_INT, 5}, {u"\t\r\nLWORD", IEC_LWORD, 8}, {u"INT", IEC_INT, 3},
        {u"DT;", IEC_DT, 2}, {u"DATE_AND_TIME;", IEC_DT, 13}, {u"TIME_OF_DAY", IEC_TOD, 11},
        {u"ANY16", IEC_ANY16, 5},
        {u"INTEGER", IEC_NO_TYPE, 0}, {u"int", IEC_NO_TYPE, 0}, {u"IN", IEC_NO_TYPE, 0},
        {u"..", IEC_NO_TYPE, 0}, {u"  ", IEC_NO_TYPE, 0}, {u"", IEC_NO_TYPE, 0},
        {u" Motor", IEC_STRUCTURE, 6}, {u"Motor ", IEC_NO_TYPE, 0},
        {u" Two Words", IEC_STRUCTURE, 10}, {u"A_NAME_OF_MORE_THAN_13", IEC_STRUCTURE, 22},
        {u"DATE_AND_TIME_", IEC_NO_TYPE, 0}, {u"DATE_AND_TIMES", IEC_NO_TYPE, 0},
    };
    // clang-format on
    for (const auto& c : cases) {
        const char16_t* end = nullptr;
        EXPECT_EQ(conv_.GetId(c.text, end), c.id) << lq::host::EncodeUtf8(c.text);
        EXPECT_EQ(end - c.text, c.end) << lq::host::EncodeUtf8(c.text);
    }
}

TEST_F(Catalogue, ReadsAWholeTypeText) {
    // clang-format off
    struct { const char16_t* text; IEC_TYPE id; } const cases[] = {
        {u"LREAL", IEC_LREAL}, {u"..", IEC_DUT_OR_FB}, {u"STRUCTURE", IEC_STRUCTURE},
        {u"STRING", IEC_STRING}, {u"STRING[20]", IEC_STRING}, {u"ARRAY [1..3] OF INT", IEC_ARRAY},
        {u" INT", IEC_NO_TYPE}, {u"INT ", IEC_NO_TYPE}, {u"Motor", IEC_NO_TYPE}, {u"", IEC_NO_TYPE},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(conv_.GetId(c.text), c.id) << lq::host::EncodeUtf8(c.text);
    }
}

TEST_F(Catalogue, EveryNameLeadsToItsTypeAndTheFirstNameBack) {
    ASSERT_EQ(GetIecDscSize(), 36u);
    EXPECT_EQ(IecTypeConv::wMaxSize, 13u);
    for (uint32_t i = 0; i < GetIecDscSize(); ++i) {
        const IEC_TYPE_DSC& dsc = GetIecTypeDsc()[i];
        EXPECT_EQ(dsc.len, std::u16string(dsc.name).size()) << lq::host::EncodeUtf8(dsc.name);
        EXPECT_EQ(conv_.GetId(dsc.name), dsc.id) << lq::host::EncodeUtf8(dsc.name);
        const bool second = dsc.name == std::u16string(u"TIME_OF_DAY") ||
                            dsc.name == std::u16string(u"DATE_AND_TIME");
        EXPECT_EQ(conv_.GetName(dsc.id) == dsc.name, !second) << lq::host::EncodeUtf8(dsc.name);
    }
    for (const int32_t unnamed : {-1, 20, 31, 43, 50, 53, 65}) {
        EXPECT_EQ(*conv_.GetName(static_cast<IEC_TYPE>(unnamed)), 0) << unnamed;
    }
}

TEST_F(Catalogue, OnlyBlanksEndAType) {
    for (const char16_t* text : {u"", u" \t", u"\r\n", u" ;", u"x", u"\v", u"\u00A0"}) {
        const bool isBlank = std::u16string_view(text).find_first_not_of(u" \t\r\n") == -1ul;
        EXPECT_EQ(conv_.TypeEnd(text), isBlank ? 1 : 0) << lq::host::EncodeUtf8(text);
    }
}

class Sizes : public testing::Test {
  protected:
    ~Sizes() override { IecTypeSize restore(sizes_.GetDftSize()); }

    IecTypeSize sizes_;
};

TEST_F(Sizes, Defaults) {
    // clang-format off
    struct { int32_t id; int32_t slot; uint32_t size; } const cases[] = {
        {-1, -1, 0}, {0, 0, 1}, {1, -1, 1}, {2, -1, 2}, {3, -1, 4}, {4, -1, 8}, {5, -1, 1},
        {8, -1, 8}, {9, -1, 4}, {10, -1, 8}, {11, 1, 12}, {12, 2, 4}, {13, 3, 8}, {14, 4, 12},
        {15, 5, 256}, {16, -1, 1}, {17, -1, 2}, {18, -1, 4}, {19, -1, 8}, {20, -1, 0}, {32, 6, 12},
        {33, 7, 8}, {34, 8, 8}, {35, 9, 8}, {36, 10, 8}, {37, 11, 12}, {38, 12, 4}, {39, 13, 4},
        {40, 14, 8}, {41, 15, 4}, {42, 16, 4}, {43, -1, 0}, {50, 17, 4}, {51, -1, 0}, {64, -1, 0},
    };
    // clang-format on
    for (const auto& c : cases) {
        const IEC_TYPE id = static_cast<IEC_TYPE>(c.id);
        EXPECT_EQ(sizes_.TypeToIdx(id), c.slot) << c.id;
        EXPECT_EQ(sizes_.Get(id), c.size) << c.id;
        EXPECT_EQ(sizes_.Set(id, 77), c.slot >= 0 ? 1 : 0) << c.id;
        EXPECT_EQ(sizes_.Get(id), c.slot >= 0 ? 77 : c.size) << c.id;
    }
}

TEST_F(Sizes, OneTableServesEveryUser) {
    uint32_t table[18];
    std::iota(table, table + 18, 100);
    IecTypeSize other(&table);
    EXPECT_EQ(sizes_.Get(IEC_STRING), 105u);
    EXPECT_EQ(sizes_.Get(IEC_SIZE_ONLY), 117u);
    EXPECT_EQ(sizes_.Get(IEC_LINT), 8u);
    EXPECT_EQ(other.Set(IEC_STRING, 80), 1);
    EXPECT_EQ(sizes_.Get(IEC_STRING), 80u);
    IecTypeSize defaults(sizes_.GetDftSize());
    EXPECT_EQ(sizes_.Get(IEC_STRING), 256u);
    EXPECT_EQ(sizes_.Get(IEC_SIZE_ONLY), 4u);
}

}  // namespace
