#include "pouh/type_class.h"

#include <gtest/gtest.h>

#include "load_test_util.h"
#include "tests/support/rows.h"

namespace {

using namespace lq::pouh;

class TypeClassTest : public testing::Test {
  protected:
    void SetUp() override {
        project_.NewDataType(u"Point");
        project_.NewDataType(u"Two words");
        project_.NewPou(LQ_KIND_FUNCTION_BLOCK, u"Motor");
        project_.NewPou(LQ_KIND_PROGRAM, u"Main");
    }

    LoadedProject project_;
};

TEST_F(TypeClassTest, AcceptedAndRejected) {
    for (const auto& row : lq::test::Rows("pouh/texts.rows", "type texts")) {
        const bool isAccepted = row.Number(1) != 0;
        TypeClass type{};
        EXPECT_EQ(ClassifyType(row.Wide(0).c_str(), type) == Classification::kAccepted, isAccepted)
            << row.line;
        EXPECT_EQ(static_cast<int>(type),
                  isAccepted ? row.Number(1) : static_cast<int>(TypeClass::kElementary))
            << row.line;
    }
}

// Names count with all their characters, also those that the scanner's buffers cannot hold.
TEST_F(TypeClassTest, LongNames) {
    const std::u16string motor(2500, u'F'), point(2500, u'P');
    project_.NewPou(LQ_KIND_FUNCTION_BLOCK, motor.c_str());
    project_.NewDataType(point.c_str());
    for (const std::u16string& text : {motor, point, u"ARRAY [1..2] OF " + point}) {
        TypeClass type{};
        EXPECT_EQ(ClassifyType(text.c_str(), type), Classification::kAccepted);
        EXPECT_NE(ClassifyType((text + u"x").c_str(), type), Classification::kAccepted);
    }
}

}  // namespace
