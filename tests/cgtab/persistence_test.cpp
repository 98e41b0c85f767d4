// Images in streams that are cut short, or that move less than they are asked for.
#include <fstream>
#include <regex>
#include <sstream>

#include "tests/cgtab/tables_util.h"

namespace lq::test {
namespace {

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

// The tables in front of a failure are whole, the one that failed is a beginning, those behind it
// are empty. Whether nothing failed.
bool IsBeginning(CgTab& got, CgTab& whole) {
    bool inFront = true;
    for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
        const std::string expected = ImageOf(whole, static_cast<CgTab::TAB_ID>(id));
        const std::string image = ImageOf(got, static_cast<CgTab::TAB_ID>(id));
        EXPECT_TRUE(expected.starts_with(image)) << "table " << id;
        EXPECT_TRUE(inFront || image.empty()) << "table " << id << " behind the failure";
        inFront = inFront && image == expected;
    }
    return inFront;
}

// The dump in the description of images is one.
TEST(Persistence, TheDescribedImageIsRead) {
    std::ifstream description(LQ_TEST_SOURCE "/../docs/tables.md");
    const std::regex dump("    ([0-9A-F]{2} ?)+");
    std::vector<unsigned char> bytes;
    for (std::string line; std::getline(description, line);) {
        std::istringstream numbers(std::regex_match(line, dump) ? line : "");
        for (unsigned byte = 0; numbers >> std::hex >> byte;) {
            bytes.push_back(static_cast<unsigned char>(byte));
        }
    }
    MEMSTREAM_A image;
    Fill(image, bytes);
    uint32_t sizes[CgTab::kUserTables] = {0, 0, 0, 0, 4, 0, 0, 0, 0};
    int ok = 0;
    CgTab tables(ok, &sizes);
    ASSERT_EQ(tables.Restore(image), 1);
    CgTab::ADR_LINE line;
    int32_t pos = 0;
    ASSERT_EQ(tables.Read(pos, line, 0, nullptr), 1);
    EXPECT_EQ(Ascii(line.text), "0");
    EXPECT_EQ(Saved(tables), bytes);
}

TEST(Persistence, ALengthThatIsNoneIsRefused) {
    for (const int last : {0x7F, 0x80, 0xFF}) {
        MEMSTREAM_A image;
        Fill(image, {0, 0, 0, static_cast<unsigned char>(last)});
        auto tables = NewTables();
        EXPECT_EQ(tables->Restore(image), 0);
        EXPECT_EQ(tables->IsTableEmpty(), 1);
    }
}

// What is written over a line is not what the index has of it, also when that was found last.
TEST(Persistence, LinesWrittenOverAreNotFound) {
    const auto tables = NewTables(), others = NewTables();
    Lit one, two;
    ASSERT_TRUE(one.SetText(u"1") && two.SetText(u"2"));
    EXPECT_EQ(others->Insert(two) + tables->Insert(one) + tables->Insert(one), 0);
    MEMSTREAM_A line;
    const int32_t size = others->Put(CgTab::TAB_CST, line);
    tables->SetPos(CgTab::TAB_CST, 0);
    EXPECT_EQ(tables->Get(CgTab::TAB_CST, line, size), size);
    EXPECT_EQ(tables->Insert(two), size);
    EXPECT_EQ(tables->Insert(two), size);
    EXPECT_EQ(tables->Insert(one), 2 * size);
}

TEST(Persistence, TheSharedScannerComesBack) {
    auto tables = NewTables();
    CgTab_ReleaseTokenScanner();
    CgTab_ReleaseTokenScanner();
    const DeclText array = {DS_VAR_GLOBAL, u"a", DT_ARRAY, u"ARRAY [0..1] OF BOOL"};
    EXPECT_EQ(tables->Insert(NewDecl(array).get()), 0) << "with its keywords, for a set that was";
    CgTab_ReleaseTokenScanner();
    tables = NewTables();
    EXPECT_EQ(tables->Insert(NewDecl(array).get()), 0) << "for a new one";
}

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
        return shortage_ == HALF ? operation(count / 2) : shortage_ == NOTHING ? 0 : -1;
    }

    int untilShort_;
    bool all_;
    Shortage shortage_;
    bool wasShort_ = false;
};

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

TEST(ShortStreams, ImagesFailBehindWholeTables) {
    auto tables = FilledTables();
    const auto bytes = Saved(*tables);
    WithEachCallShort([&](ShortStream& stream) {
        const int saved = tables->Save(stream);
        EXPECT_EQ(saved, stream.WasShort() ? 0 : 1);
        EXPECT_TRUE(std::equal(stream.memory.GetData(),
                               stream.memory.GetData() + stream.memory.GetSize(), bytes.begin()))
            << "what was written is the beginning of the image";
        EXPECT_EQ(Saved(*tables), bytes);
    });
    WithEachCallShort([&](ShortStream& stream) {
        Fill(stream.memory, bytes);
        auto restored = NewTables(kUserArea);
        const int complete = restored->Restore(stream);
        EXPECT_EQ(complete, stream.WasShort() ? 0 : 1);
        EXPECT_EQ(IsBeginning(*restored, *tables), !stream.WasShort());
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
    const int32_t total = 40 * static_cast<int32_t>(kUserArea);
    for (const bool puts : {true, false}) {
        WithEachCallShort([&](ShortStream& stream) {
            auto tables = FilledTables();
            if (!puts) {
                Fill(stream.memory, std::vector<unsigned char>(static_cast<size_t>(total), 7));
            }
            const int32_t moved = puts ? tables->PutUsr(CgTab::TAB_DMM, stream)
                                       : tables->GetUsr(CgTab::TAB_DMM, stream);
            EXPECT_EQ(moved, stream.WasShort() ? -1 : total);
            EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_DMM) == 0, stream.WasShort());
            EXPECT_GT(CgTabAccess::LengthOf(*tables, CgTab::TAB_LBL), 0);
            EXPECT_GE(tables->Insert(u"again"), 0);
        });
    }
}

}  // namespace
}  // namespace lq::test
