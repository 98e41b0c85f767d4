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

}  // namespace
