// Whole jobs of a table set with every allocation failing in turn: a result is right or a failure.
#include "tests/cgtab/tables_util.h"
#include "tests/support/test_allocator.h"

namespace lq::test {
namespace {

class TableJobs : public testing::Test {
  protected:
    TableJobs() {
        for (int i = 0; i < 5; ++i) {
            const std::u16string name(30, static_cast<char16_t>(u'a' + i));
            tables_->Insert(
                NewDecl({DS_VAR_GLOBAL, name, DT_ARRAY, u"ARRAY [1..3] OF INT", u"", u"%QW1"})
                    .get());
            tables_->Insert(name.c_str(), CgTab::kLabelDefinition);
        }
        image_ = Saved(*tables_);
    }

    // Saves the image, or its beginning and says that it failed.
    void CheckSaving(CgTab& tables, MEMSTREAM_A& stream, const FailingAllocation& failing) {
        const bool saved = tables.Save(stream) != 0;
        EXPECT_TRUE(saved || failing.HasFailed());
        const auto size = static_cast<size_t>(stream.GetSize());
        ASSERT_TRUE(saved ? size == image_.size() : size <= image_.size());
        EXPECT_TRUE(std::equal(stream.GetData(), stream.GetData() + size, image_.begin()));
    }

    std::unique_ptr<CgTab> tables_ = NewTables(4);
    std::vector<unsigned char> image_;
    int ok_ = 0;
};

TEST_F(TableJobs, Saving) {
    FailEachAllocation([&](const FailingAllocation& failing) {
        MEMSTREAM_A stream;
        CheckSaving(*tables_, stream, failing);
    });
    EXPECT_EQ(Saved(*tables_), image_);
}

// A search builds its table's index; without memory for it, it finds the same or says nothing.
TEST_F(TableJobs, RestoringAndBuildingAnIndex) {
    MEMSTREAM_A stream;
    Fill(stream, image_);
    const std::u16string known(30, u'd');
    const int32_t pos = tables_->Look(known.c_str(), static_cast<CgTab::GLB_LINE*>(nullptr), 0);
    ASSERT_GE(pos, 0);
    FailEachAllocation([&](const FailingAllocation& failing) {
        uint32_t sizes[CgTab::kUserTables] = {0, 4, 4, 4, 4, 4, 4, 4, 4};
        auto restored = std::make_unique<CgTab>(ok_, &sizes);
        stream.SeekRead(0, nullptr);
        const int complete = ok_ && restored->Restore(stream);
        EXPECT_TRUE(complete || failing.HasFailed());
        for (const char16_t* name : {known.c_str(), u"missing"}) {
            const int32_t found = restored->Look(name, static_cast<CgTab::GLB_LINE*>(nullptr), 0);
            const int32_t expected = name == known ? pos : -1;
            EXPECT_TRUE(found == expected || (found == -1 && failing.HasFailed()));
        }
        if (complete) {
            MEMSTREAM_A again;
            CheckSaving(*restored, again, failing);
        }
    });
}

TEST_F(TableJobs, EnteringAnArray) {
    const DeclPtr decl = NewDecl({DS_VAR_GLOBAL, u"array", DT_ARRAY,
                                  u"ARRAY [1..3, 4..5, 6..7] OF STRING(20)", u"", u"%QW1"});
    FailEachAllocation([&](const FailingAllocation& failing) {
        auto tables = std::make_unique<CgTab>(ok_, nullptr);
        const int32_t pos = ok_ ? tables->Insert(decl.get()) : -1;
        EXPECT_TRUE(pos == 0 || failing.HasFailed());
        EXPECT_EQ(ok_ && CgTabAccess::LengthOf(*tables, CgTab::TAB_GLB) > 0, pos == 0)
            << "a whole line or none";
    });
}

}  // namespace
}  // namespace lq::test
