// Images that were damaged: every answer is a failure or other content, never a crash, an
// over-read, an endless loop or an allocation larger than what is there.
#include <functional>
#include <set>

#include "fuzz/targets.h"
#include "tests/cgtab/tables_util.h"
#include "tests/support/test_allocator.h"

namespace lq::test {
namespace {

using Image = std::vector<unsigned char>;

// The fuzz target reads, searches, adds to and saves what the image gave, and checks that an image
// that is restored is saved as it was.
void Try(const Image& image) {
    ResetLargestAllocation();
    fuzz::Image(image.data(), image.size());
    // The streams of the test double their buffers; the scanner of declarations has buffers of 16
    // KB.
    EXPECT_LE(LargestAllocation(), std::max(size_t{16384}, 4 * image.size() + 8192));
}

// One set a table, with those that its lines refer to, so that each damage is seen from close by.
std::vector<Image> Seeds() {
    std::vector<Image> seeds;
    for (int seed = 0; seed < CgTab::TAB_COUNT; ++seed) {
        auto tables = NewTables(4);
        const auto global = [&tables](const char16_t* name, uint32_t kind, const char16_t* type) {
            tables->Insert(NewDecl({DS_VAR_GLOBAL, name, kind, type, u"", u"%QW0"}).get());
        };
        global(u"x", DT_ELEMENTARY, u"INT");
        global(u"s", DT_STRING, u"STRING(5)");
        global(u"a", DT_ARRAY, u"ARRAY [-1..300] OF STRING(2)");
        Header header({{DS_VAR_EXTERNAL, u"x", DT_ELEMENTARY, u"INT"},
                       {DS_VAR, u"y", DT_ARRAY, u"ARRAY [0..1] OF INT"}});
        POU_LIST list;
        CgTab::POS_DSC range;
        CgTabAccess::AppendCmp(*tables, header.Get(), 0, &list, range, 1);
        Lit lit;
        lit.SetText(u"x");
        Time time(1, 2.0, 1);
        lit.val.Set(uint16_t{TK_TIME}, time, 0);
        tables->Insert(lit);
        tables->Insert(u"x", CgTab::LBL_INFO{0});
        tables->Insert(u"x", IEC_STRING, {}, 1);
        tables->Insert(std::u16string(70, u'n').c_str());
        Image lines = {2, 0, 0, 0, 1, 7, 27, 0, 0, 0, 1, 'x', 0};  // no user area in table 0
        lines.resize(6 + 31);
        MEMSTREAM_A stream;
        Fill(stream, lines);
        tables->Get(CgTab::TAB_DBG, stream, 6);
        tables->Get(CgTab::TAB_POU, stream, 31);
        for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
            const bool isLinked = (id == CgTab::TAB_GLB && seed == CgTab::TAB_CMP) ||
                                  (id == CgTab::TAB_ARR && seed <= CgTab::TAB_GLB);
            if (id != seed && !isLinked) {
                tables->Clear(static_cast<CgTab::TAB_ID>(id));
            }
        }
        seeds.push_back(Saved(*tables));
    }
    return seeds;
}

// The position, within its table, of the line that holds the byte; 0 where no line does.
uint32_t LineOf(const Image& image, size_t byte) {
    for (size_t table = 0; table + 4 <= image.size();) {
        const size_t end = table + 4 + cgtab::LoadU32(image.data() + table);
        for (size_t line = table + 4; byte < end && line + 4 <= end;) {
            const size_t next = line + 4 + cgtab::LoadU32(image.data() + line);
            if (byte < next) {
                return static_cast<uint32_t>(line - table - 4);
            }
            line = next;
        }
        table = end;
    }
    return 0;
}

class DamagedImage : public testing::TestWithParam<size_t> {};

TEST_P(DamagedImage, ByteByByte) {
    const Image seed = Seeds()[GetParam()];
    Try(seed);
    for (size_t at = 0; at < seed.size(); ++at) {
        std::set<int> values = {0x00, 0xFF, (seed[at] + 1) & 0xFF};
        for (int bit = 0; bit < 8; ++bit) {
            values.insert(seed[at] ^ (1 << bit));
        }
        for (const int value : values) {
            Image image = seed;
            image[at] = static_cast<unsigned char>(value);
            SCOPED_TRACE(testing::Message() << "byte " << at << " = " << value);
            Try(image);
        }
        Try({seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(at)});
    }
}

TEST_P(DamagedImage, LengthsAndLinks) {
    const Image seed = Seeds()[GetParam()];
    for (size_t at = 0; at + 4 <= seed.size(); ++at) {
        const uint32_t own = LineOf(seed, at);  // a link that leads back
        for (const uint32_t value : {0u, 1u, own, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
            Image image = seed;
            cgtab::StoreU32(image.data() + at, value);
            SCOPED_TRACE(testing::Message() << "field at " << at << " = " << value);
            Try(image);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, DamagedImage, testing::Range(size_t{0}, size_t{10}));

// What a walk over the lines of table 8 finds: a position, -1 for none, -2 for a
// failure.
int32_t WalkTo(const Image& lines, const std::u16string& name) {
    for (size_t at = 0; at < lines.size();) {
        const size_t left = lines.size() - at;
        const uint32_t length = left < 6 ? 0 : cgtab::LoadU32(&lines[at]);
        if (length < 2 || length > left - 4) {
            return -2;
        }
        if (lines[at + 4] == name.size() && lines[at + 5] == 0) {
            if (length < 2 + 2 * name.size()) {
                return -2;
            }
            if (std::memcmp(&lines[at + 6], name.data(), 2 * name.size()) == 0) {
                const bool counts =
                    length >= 6 && cgtab::LoadU32(&lines[at + length - 2]) + 1 < 0x80000000;
                return counts ? static_cast<int32_t>(at) : -2;
            }
        }
        at += 4 + length;
    }
    return -1;
}

TEST(DamagedLines, OtherNamesAreFoundAsByWalking) {
    const std::u16string names[] = {u"a", u"bb", u"ca", u"d", u"bb"};
    Image seed;
    for (const std::u16string& name : names) {
        const auto size = static_cast<unsigned char>(name.size());
        const Image head = {static_cast<unsigned char>(2 + 2 * size + 6), 0, 0, 0, size, 0};
        seed.insert(seed.end(), head.begin(), head.end());
        for (const char16_t c : name) {
            seed.insert(seed.end(), {static_cast<unsigned char>(c), 0});
        }
        seed.insert(seed.end(), {1, 0, 0, 0, 7, 7});  // a count, a user area
    }
    for (size_t at = 0; at + 1 < seed.size(); ++at) {
        for (const int value : {0, 1, 2, 12, int{'a'}, int{'b'}, 255}) {
            for (const bool isWritten : {false, true}) {
                Image lines = seed;
                lines[at] = static_cast<unsigned char>(value);
                for (const std::u16string& name : {names[0], names[2], names[4], {u"e"}}) {
                    auto tables = NewTables(2);
                    MEMSTREAM_A stream;
                    Fill(stream, isWritten ? seed : lines);
                    tables->Get(CgTab::TAB_DMM, stream, static_cast<int32_t>(seed.size()));
                    if (isWritten) {  // the user area of what is, perhaps, no line, behind an index
                        tables->Insert(u"d");
                        const unsigned char usr[2] = {lines[at], lines[at]};
                        auto line = static_cast<int32_t>(at);
                        tables->Write(CgTab::TAB_DMM, line, usr);
                        MEMSTREAM_A now;
                        tables->Put(CgTab::TAB_DMM, now);
                        lines.assign(now.GetData(), now.GetData() + now.GetSize());
                    }
                    const int32_t walked = WalkTo(lines, name);
                    const int32_t end = static_cast<int32_t>(lines.size());
                    EXPECT_EQ(tables->Insert(name.c_str()), walked == -1   ? end
                                                            : walked == -2 ? -1
                                                                           : walked)
                        << at << " = " << value << (isWritten ? " written" : "");
                }
            }
        }
    }
}

// A line that ends before what is to be replaced leaves the one behind it as it is.
TEST(DamagedLines, NoOtherLineIsWrittenTo) {
    const Image label = {8, 0, 0, 0, 1, 'b', 0, 0, 1, 0, 0, 0};
    const Image temporary = {13, 0, 0, 0, 1, 0, 'b', 0, 1, 2, 0, 0, 0, 1, 0, 0, 0};
    const struct {
        CgTab::TAB_ID id;
        Image damaged;
        const Image& behind;
        std::function<int32_t(CgTab&)> enter;
    } cases[] = {
        {CgTab::TAB_LBL,
         {3, 0, 0, 0, 1, 'a', 0},
         label,
         [](CgTab& tables) { return tables.Insert(u"a", static_cast<CgTab::LBL_INFO>(1)); }},
        {CgTab::TAB_TMP,
         {4, 0, 0, 0, 1, 0, 'a', 0},
         temporary,
         [](CgTab& tables) { return tables.Insert(u"a", IEC_INT, CgTab::TYP_DSC{}, 9); }},
        {CgTab::TAB_TMP,
         {8, 0, 0, 0, 1, 0, 'a', 0, 7, 0, 0, 0},
         temporary,
         [](CgTab& tables) {
             return CgTabCompiler::ReplaceTemporary(tables, u"a", IEC_INT, CgTab::TYP_DSC{}, 9);
         }},
    };
    for (const auto& one : cases) {
        Image lines = one.damaged;
        lines.insert(lines.end(), one.behind.begin(), one.behind.end());
        auto tables = NewTables();
        MEMSTREAM_A stream;
        Fill(stream, lines);
        tables->Get(one.id, stream, static_cast<int32_t>(lines.size()));
        EXPECT_EQ(one.enter(*tables), -1);
        MEMSTREAM_A now;
        tables->Put(one.id, now);
        ASSERT_GE(static_cast<size_t>(now.GetSize()), lines.size());
        EXPECT_TRUE(
            std::equal(one.behind.begin(), one.behind.end(), now.GetData() + one.damaged.size()));
    }
}

}  // namespace
}  // namespace lq::test
