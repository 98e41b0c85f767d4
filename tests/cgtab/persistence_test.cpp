#include <fstream>
#include <regex>
#include <sstream>

#include "tests/cgtab/tables_util.h"

namespace lq::test {
namespace {

std::unique_ptr<CgTab> SampleTables(uint32_t usrLen) {
    auto tables = NewTables(usrLen);
    for (const char16_t* name : {u"a", u"b", u"c"}) {
        tables->Insert(NewDecl({DS_VAR_GLOBAL, name, DT_ELEMENTARY, u"INT", u"1", u"%QW1"}).get());
        tables->Insert(NewDecl({DS_VAR_GLOBAL, std::u16string(name) + u"arr", DT_ARRAY,
                                u"ARRAY [1..3] OF INT"})
                           .get());
        tables->Insert(name);
        tables->Insert(name, CgTab::LBL_INFO{0});
    }
    return tables;
}

TEST(Persistence, AnEmptySetIsFortyZeroBytes) {
    auto tables = NewTables();
    const std::vector<unsigned char> bytes = Saved(*tables);
    EXPECT_EQ(bytes, std::vector<unsigned char>(40, 0));
    MEMSTREAM_A image;
    Fill(image, bytes);
    auto restored = NewTables();
    EXPECT_EQ(restored->Restore(image), 1);
    EXPECT_EQ(restored->IsTableEmpty(), 1);
}

TEST(Persistence, ARestoredSetIsTheSame) {
    for (const uint32_t usrLen : {0u, 8u}) {
        auto tables = SampleTables(usrLen);
        const std::vector<unsigned char> bytes = Saved(*tables);
        MEMSTREAM_A image;
        Fill(image, bytes);
        auto restored = NewTables(usrLen);
        ASSERT_EQ(restored->Restore(image), 1);
        EXPECT_EQ(restored->IsTableEmpty(), 0);
        EXPECT_EQ(Saved(*restored), bytes);
        EXPECT_EQ(restored->Look(u"BARR", static_cast<CgTab::GLB_LINE*>(nullptr), 0),
                  tables->Look(u"barr", static_cast<CgTab::GLB_LINE*>(nullptr), 0));
        char16_t one[] = u"1";
        EXPECT_EQ(restored->Insert(Address(LOC_OUTPUT, SIZE_WORD, one)),
                  tables->Insert(Address(LOC_OUTPUT, SIZE_WORD, one)));
        EXPECT_EQ(Saved(*restored), bytes) << "nothing was appended";
    }
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
    EXPECT_EQ(line.location, unsigned{LOC_OUTPUT});
    EXPECT_EQ(line.size, unsigned{SIZE_WORD});
    EXPECT_EQ(Ascii(line.text), "0");
    EXPECT_EQ(Saved(tables), bytes);
}

TEST(Persistence, EveryImageCutShortIsRefused) {
    auto tables = SampleTables(4);
    const std::vector<unsigned char> bytes = Saved(*tables);
    for (size_t size = 0; size < bytes.size(); ++size) {
        MEMSTREAM_A image;
        Fill(image, {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)});
        auto restored = NewTables(4);
        EXPECT_EQ(restored->Restore(image), 0) << size;
        size_t before = 0;  // the tables in front of the cut are whole
        for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
            const auto table = static_cast<CgTab::TAB_ID>(id);
            const auto length = static_cast<size_t>(CgTabAccess::LengthOf(*tables, table));
            before += 4 + length;
            if (before <= size) {
                EXPECT_EQ(ImageOf(*restored, table), ImageOf(*tables, table)) << size;
            }
        }
    }
    std::vector<unsigned char> huge(40, 0);
    huge[3] = 0x80;
    MEMSTREAM_A image;
    Fill(image, huge);
    EXPECT_EQ(NewTables()->Restore(image), 0);
}

// Takes `room` bytes and no more.
class FullStream : public STREAM_A {
  public:
    explicit FullStream(int32_t room) : room_(room) {}
    int32_t GetBlock(void*, int32_t, STREAMERROR*) override { return 0; }
    int32_t PutBlock(const void*, int32_t count, STREAMERROR*) override {
        const int32_t taken = std::min(count, room_);
        room_ -= taken;
        return taken;
    }

  private:
    int32_t room_;
};

TEST(Persistence, AStreamWithoutRoom) {
    auto tables = SampleTables(4);
    const auto size = static_cast<int32_t>(Saved(*tables).size());
    const int32_t names = CgTabAccess::LengthOf(*tables, CgTab::TAB_DMM);
    for (int32_t room = 0; room <= size; ++room) {
        FullStream stream(room);
        EXPECT_EQ(tables->Save(stream), room == size ? 1 : 0) << room;
        FullStream other(room);
        EXPECT_EQ(tables->Put(CgTab::TAB_DMM, other), std::min(room, names)) << room;
    }
    FullStream stream(11);
    EXPECT_EQ(tables->PutUsr(CgTab::TAB_DMM, stream), -1);
    EXPECT_EQ(CgTabAccess::LengthOf(*tables, CgTab::TAB_DMM), 0) << "a failure empties the table";
}

TEST(Persistence, UserAreas) {
    auto tables = SampleTables(8);
    int32_t pos = 0;
    for (const char* text : {"first---", "second--", "third---"}) {
        ASSERT_EQ(tables->Write(CgTab::TAB_DMM, pos, text), 1);
    }
    MEMSTREAM_A areas;
    EXPECT_EQ(tables->PutUsr(CgTab::TAB_DMM, areas), 24);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(areas.GetData()), 24),
              "first---second--third---");
    auto other = SampleTables(8);
    EXPECT_EQ(other->GetUsr(CgTab::TAB_DMM, areas), 24);
    EXPECT_EQ(ImageOf(*other, CgTab::TAB_DMM), ImageOf(*tables, CgTab::TAB_DMM));

    MEMSTREAM_A shortAreas;
    Fill(shortAreas, std::vector<unsigned char>(20, 1));
    EXPECT_EQ(other->GetUsr(CgTab::TAB_DMM, shortAreas), -1);
    EXPECT_EQ(CgTabAccess::LengthOf(*other, CgTab::TAB_DMM), 0) << "a failure empties the table";
    MEMSTREAM_A none;
    EXPECT_EQ(other->PutUsr(CgTab::TAB_ARR, none), 0);
    const auto outside = static_cast<CgTab::TAB_ID>(10);
    EXPECT_EQ(other->PutUsr(outside, none), 0);
    EXPECT_EQ(other->GetUsr(outside, none), 0);
    EXPECT_EQ(other->Put(outside, none), 0);
    EXPECT_EQ(other->Get(outside, none, 8), 0);
}

TEST(Persistence, TheSharedScannerComesBack) {
    auto tables = NewTables();
    CgTab_ReleaseTokenScanner();
    CgTab_ReleaseTokenScanner();
    for (const DeclText& text : std::initializer_list<DeclText>{
             {DS_VAR_GLOBAL, u"i", DT_ELEMENTARY, u"INT"},
             {DS_VAR_GLOBAL, u"s", DT_STRING, u"STRING(5)"},
             {DS_VAR_GLOBAL, u"a", DT_ARRAY, u"ARRAY [0..1] OF BOOL"},
             {DS_VAR_GLOBAL, u"f", DT_FB_INSTANCE, u"TON", u"", u"%QW1"}}) {
        EXPECT_EQ(tables->Insert(NewDecl(text).get()), -1) << Ascii(text.name.c_str());
    }
    tables = NewTables();
    EXPECT_EQ(
        tables->Insert(NewDecl({DS_VAR_GLOBAL, u"a", DT_ARRAY, u"ARRAY [0..1] OF BOOL"}).get()), 0)
        << "with its keywords";
}

}  // namespace
}  // namespace lq::test
