// What the model of the fuzz target, which the tests replay, does not have.
#include "lq_data/record_file.h"

#include <string>

#include <gtest/gtest.h>

#include "cgtab/record_file_test_access.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/rows.h"

namespace {

// The content, handed out block by block; the position stays.
std::string Text(R_FILE& file) {
    const int32_t position = file.Tell();
    file.Lseek(0, 0);
    std::string content;
    const void* piece = nullptr;
    while (const uint32_t count = file.BlRead(piece)) {
        content.append(static_cast<const char*>(piece), count);
    }
    EXPECT_NE(piece, nullptr) << "at the end too";
    EXPECT_EQ(file.Lseek(position, 0), position);
    return content;
}

TEST(RecordFile, RefusedArgumentsChangeNothing) {
    R_FILE file(4);
    file.Write("0123456789", 10);
    file.Lseek(8, 0);
    constexpr int32_t kMax = INT32_MAX;
    const auto seek = [&file](int32_t offset, int whence) { return file.Lseek(offset, whence); };
    const unsigned char byte = 0;
    const struct {
        const char* what;
        int64_t result;
        int64_t expected;
    } cases[] = {
        // clang-format off
        {"seek behind the end", seek(1, 2), -1}, {"seek before the start", seek(-1, 0), -1},
        {"seek far ahead", seek(kMax, 1), -1}, {"seek far back", seek(INT32_MIN, 2), -1},
        {"no such origin", seek(0, 3), -1}, {"no such origin", seek(0, -1), -1},
        {"gap below 0", file.Insert(-1), -1}, {"gap too large", file.Insert(kMax - 9), -1},
        {"delete below 0", file.Delete(-1), -1}, {"delete past the end", file.Delete(3), -1},
        {"delete nothing", file.Delete(0), 0}, {"size below 0", file.Chsize(-1), -1},
        {"size below the position", file.Chsize(7), -1},
        {"write too much", file.Write(&byte, kMax - 7), 0},
        {"write far too much", file.Write(&byte, UINT32_MAX), 0},
        {"insert too much", file.InsWrite(&byte, UINT32_MAX), 0},
        // clang-format on
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.result, c.expected) << c.what;
    }
    EXPECT_EQ(file.Tell(), 8);
    EXPECT_EQ(Text(file), "0123456789");
    EXPECT_TRUE(RecordFileTestAccess::Check(file));
    const void* piece = nullptr;
    for (const int32_t at : {0, 1, 2, 3, 8, 9}) {
        file.Lseek(at, 0);
        EXPECT_EQ(file.BlRead(piece), static_cast<uint32_t>(at < 4 ? 4 - at : 10 - at)) << at;
    }
}

// Every growth of a file whose blocks fill several nodes and chunks of nodes.
TEST(RecordFile, GrowthWithoutMemoryChangesNothing) {
    const std::string data(100, 'x');
    struct {
        const char* name;
        bool (*grows)(R_FILE& file, const std::string& data);
    } const cases[] = {
        {"Write", [](R_FILE& f, const std::string& d) { return f.Write(d.data(), 100) == 100; }},
        {"InsWrite",
         [](R_FILE& f, const std::string& d) { return f.InsWrite(d.data(), 100) == 100; }},
        {"Insert", [](R_FILE& f, const std::string&) { return f.Insert(100) == 0; }},
        {"Chsize",
         [](R_FILE& f, const std::string&) { return f.Chsize(f.Filelength() + 100) == 0; }},
    };
    for (const auto& c : cases) {
        const auto make = [] {
            auto file = std::make_shared<R_FILE>(2);
            file->Write("0123456789", 10);
            return file;
        };
        lq::test::RunWithFailures(c.name, make, [&](R_FILE& file) {
            const std::string before = Text(file);
            file.Lseek(3, 0);
            const bool grew = c.grows(file, data);
            EXPECT_TRUE(RecordFileTestAccess::Check(file));
            EXPECT_TRUE(grew || (Text(file) == before && file.Tell() == 3));
            return grew ? Text(file) : lq::test::kShort;
        });
    }
}

TEST(RecordFile, ComparesAndPassesOverTheRecord) {
    for (const uint32_t blockSize : {1u, 5u, 64u}) {
        R_FILE file(blockSize);
        file.Write("..record{ab!", 12);
        for (const lq::test::Row& row : lq::test::Rows("cgtab/tables.rows", "comparison")) {
            const std::string data = row[0];
            const auto total = static_cast<int32_t>(row.Number(1));
            file.Lseek(2, 0);
            int result = 7;
            EXPECT_EQ(file.Cmp({data.data(), static_cast<uint32_t>(data.size()), total,
                                row[2] == "no case" ? 1 : 0},
                               &result),
                      row[3] == "refused" ? -1 : 0)
                << row.line;
            EXPECT_EQ(result == 7 ? row[3] == "refused" || row[3] == "passed"
                                  : (result > 0) - (result < 0) == row.Number(3),
                      true)
                << row.line;
            EXPECT_EQ(file.Tell(), row[3] == "refused" ? 2 : 2 + total) << row.line;
        }
    }
}

TEST(RecordFile, AFileWithoutBlocksIsNotOpen) {
    R_FILE file(0);
    const void* piece = nullptr;
    EXPECT_EQ(file.IsOpen(), 0);
    EXPECT_EQ(file.Lseek(0, 0), -1);
    EXPECT_EQ(file.Write("x", 1), 0u);
    EXPECT_EQ(file.Chsize(1), -1);
    EXPECT_EQ(file.Insert(0), -1);
    EXPECT_EQ(file.BlRead(piece), 0u);
    EXPECT_TRUE(RecordFileTestAccess::Check(file));
}

TEST(RecordFile, TellsThatTheLastOneWasTornDown) {
    for (const uint32_t blockSize : {0u, 256u}) {
        RecordFileTestAccess::SetClosed(0);
        { R_FILE file(blockSize); }
        EXPECT_EQ(R_FILE::IsClosed(), 1) << blockSize;
    }
    EXPECT_EQ(R_FILE::BlCnt(), 15);
}

}  // namespace
