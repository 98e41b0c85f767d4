// The names of the types, and their sizes.
#include <numeric>
#include <string>

#include <gtest/gtest.h>

#include "lq_data/host/text/utf.h"
#include "lq_data/types.h"
#include "tests/host/model/model_util.h"
#include "tests/support/rows.h"

namespace {

using lq::test::Row;
using lq::test::Rows;

// With a project that knows the user data types "Motor" and "Two Words".
class Catalogue : public testing::Test {
  protected:
    Catalogue() {
        for (const char16_t* name : {u"Motor", u"Two Words", u"A_NAME_OF_MORE_THAN_13"}) {
            project_.NewDataType(name);
        }
    }

    lq::host::CurrentProject project_;
    IecTypeConv conv_;
};

TEST_F(Catalogue, ReadsTypeTexts) {
    const auto name = [this](IEC_TYPE id) {
        return id == IEC_NO_TYPE ? "none" : lq::host::EncodeUtf8(conv_.GetName(id));
    };
    for (const Row& row : Rows("types/types.rows", "types at the start")) {
        const std::u16string text = row.Wide(0);
        const char16_t* end = nullptr;
        EXPECT_EQ(name(conv_.GetId(text.c_str(), end)), row[1]) << row.line;
        EXPECT_EQ(end - text.c_str(), row.Number(2)) << row.line;
    }
    for (const Row& row : Rows("types/types.rows", "whole types")) {
        EXPECT_EQ(name(conv_.GetId(row.Wide(0).c_str())), row[1]) << row.line;
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
    for (const Row& row : Rows("types/types.rows", "sizes")) {
        SCOPED_TRACE(row.line);
        const IEC_TYPE id = static_cast<IEC_TYPE>(row.Number(0));
        const bool hasSlot = row.Number(1) >= 0;
        EXPECT_EQ(sizes_.TypeToIdx(id), row.Number(1));
        EXPECT_EQ(sizes_.Get(id), row.Number(2));
        EXPECT_EQ(sizes_.Set(id, 77), hasSlot ? 1 : 0);
        EXPECT_EQ(sizes_.Get(id), hasSlot ? 77 : row.Number(2));
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
