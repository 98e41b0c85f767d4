// Streams that move less than they are asked for, at the n-th call only or from it on.
#include "tests/cgtab/tables_util.h"

namespace lq::test {
namespace {

// A stream over memory whose n-th call (1: the first) moves a part of what it is asked for.
class ShortStream : public STREAM_A {
  public:
    enum Shortage { HALF, NOTHING, NEGATIVE };

    ShortStream(int nth, bool all, Shortage shortage)
        : untilShort_(nth), all_(all), shortage_(shortage) {}

    int32_t GetBlock(void* buffer, int32_t count, STREAMERROR* error) override {
        return Move(count, [&](int32_t n) { return memory.GetBlock(buffer, n, error); });
    }
    int32_t PutBlock(const void* buffer, int32_t count, STREAMERROR* error) override {
        return Move(count, [&](int32_t n) { return memory.PutBlock(buffer, n, error); });
    }
    bool WasShort() const { return wasShort_; }

    MEMSTREAM_A memory;

  private:
    template <typename Operation>
    int32_t Move(int32_t count, Operation operation) {
        --untilShort_;
        if (untilShort_ != 0 && !(untilShort_ < 0 && all_)) {
            return operation(count);
        }
        wasShort_ = wasShort_ || count > 0;
        switch (shortage_) {
            case HALF:
                return operation(count / 2);
            case NOTHING:
                return 0;
            default:
                return -1;
        }
    }

    int untilShort_;
    bool all_;
    Shortage shortage_;
    bool wasShort_ = false;
};

constexpr uint32_t kUserArea = 8;

// Lines in most tables; table 8 has more than one block of them.
std::unique_ptr<CgTab> FilledTables() {
    auto tables = NewTables(kUserArea);
    for (const char16_t* name : {u"a", u"b"}) {
        tables->Insert(NewDecl({DS_VAR_GLOBAL, std::u16string(name) + u"x", DT_ARRAY,
                                u"ARRAY [1..3] OF INT", u"", u"%QW1"})
                           .get());
        tables->Insert(name, CgTab::LBL_INFO{0});
    }
    for (int i = 0; i < 40; ++i) {
        tables->Insert((std::u16string(200, u'n') + static_cast<char16_t>(u'0' + i)).c_str());
    }
    return tables;
}

// Runs `operation` with the first call short, then the second, until none was.
template <typename Operation>
void WithEachCallShort(Operation operation) {
    for (const auto shortage : {ShortStream::HALF, ShortStream::NOTHING, ShortStream::NEGATIVE}) {
        for (const bool all : {false, true}) {
            bool wasShort = true;
            for (int nth = 1; wasShort; ++nth) {
                SCOPED_TRACE(testing::Message()
                             << "call " << nth << ", all " << all << ", shortage " << shortage);
                ShortStream stream(nth, all, shortage);
                operation(stream);
                wasShort = stream.WasShort();
                ASSERT_LT(nth, 1000);
            }
            ASSERT_FALSE(testing::Test::HasFailure());
        }
    }
}

TEST(ShortStreams, SavingFailsAndChangesNothing) {
    auto tables = FilledTables();
    const auto bytes = Saved(*tables);
    WithEachCallShort([&](ShortStream& stream) {
        const int saved = tables->Save(stream);
        EXPECT_EQ(saved, stream.WasShort() ? 0 : 1);
        EXPECT_LE(static_cast<size_t>(stream.memory.GetSize()), bytes.size());
        EXPECT_TRUE(std::equal(stream.memory.GetData(),
                               stream.memory.GetData() + stream.memory.GetSize(), bytes.begin()))
            << "what was written is the beginning of the image";
        EXPECT_EQ(Saved(*tables), bytes);
    });
}

TEST(ShortStreams, RestoringFailsBehindWholeTables) {
    auto tables = FilledTables();
    const auto bytes = Saved(*tables);
    WithEachCallShort([&](ShortStream& stream) {
        Fill(stream.memory, bytes);
        auto restored = NewTables(kUserArea);
        const int complete = restored->Restore(stream);
        EXPECT_EQ(complete, stream.WasShort() ? 0 : 1);
        bool inFront = true;
        for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
            const auto table = static_cast<CgTab::TAB_ID>(id);
            const std::string expected = ImageOf(*tables, table);
            const std::string got = ImageOf(*restored, table);
            EXPECT_TRUE(expected.starts_with(got)) << "table " << id;
            EXPECT_TRUE(inFront || got.empty()) << "table " << id << " behind the failure";
            inFront = inFront && got == expected;
        }
        EXPECT_EQ(inFront, !stream.WasShort());
        MEMSTREAM_A image;
        Fill(image, bytes);
        for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
            restored->Clear(static_cast<CgTab::TAB_ID>(id));
        }
        EXPECT_EQ(restored->Restore(image), 1) << "the set is as good as new";
        EXPECT_EQ(Saved(*restored), bytes);
    });
}

TEST(ShortStreams, SingleTablesTellHowFarTheyCame) {
    auto tables = FilledTables();
    const std::string bytes = ImageOf(*tables, CgTab::TAB_DMM);
    const int32_t length = CgTabAccess::LengthOf(*tables, CgTab::TAB_DMM);
    WithEachCallShort([&](ShortStream& stream) {
        const int32_t put = tables->Put(CgTab::TAB_DMM, stream);
        EXPECT_EQ(put, stream.memory.GetSize());
        EXPECT_EQ(put == length, !stream.WasShort());
        EXPECT_EQ(ImageOf(*tables, CgTab::TAB_DMM), bytes);
    });
    MEMSTREAM_A image;
    tables->Put(CgTab::TAB_DMM, image);
    WithEachCallShort([&](ShortStream& stream) {
        stream.memory.PutBlock(image.GetData(), image.GetSize(), nullptr);
        auto other = NewTables(kUserArea);
        const int32_t got = other->Get(CgTab::TAB_DMM, stream, length);
        EXPECT_EQ(got == length, !stream.WasShort());
        EXPECT_EQ(got, CgTabAccess::LengthOf(*other, CgTab::TAB_DMM));
        EXPECT_TRUE(bytes.starts_with(ImageOf(*other, CgTab::TAB_DMM)));
    });
}

TEST(ShortStreams, UserAreasFailAndEmptyTheTable) {
    const int32_t total = 42 * static_cast<int32_t>(kUserArea);
    const std::vector<unsigned char> areas(static_cast<size_t>(total), 7);
    const auto check = [&](CgTab& tables, int32_t result, const ShortStream& stream) {
        EXPECT_EQ(result, stream.WasShort() ? -1 : total);
        EXPECT_EQ(CgTabAccess::LengthOf(tables, CgTab::TAB_DMM) == 0, stream.WasShort());
        EXPECT_GT(CgTabAccess::LengthOf(tables, CgTab::TAB_LBL), 0);
    };
    WithEachCallShort([&](ShortStream& stream) {
        auto tables = FilledTables();
        tables->Insert(u"one");
        tables->Insert(u"two");
        const int32_t put = tables->PutUsr(CgTab::TAB_DMM, stream);
        check(*tables, put, stream);
        EXPECT_GE(tables->Insert(u"again"), 0);
    });
    WithEachCallShort([&](ShortStream& stream) {
        auto tables = FilledTables();
        tables->Insert(u"one");
        tables->Insert(u"two");
        Fill(stream.memory, areas);
        const int32_t got = tables->GetUsr(CgTab::TAB_DMM, stream);
        check(*tables, got, stream);
    });
}

}  // namespace
}  // namespace lq::test
