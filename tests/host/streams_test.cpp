#include "host/base/streams.h"

#include <cerrno>
#include <string>

#include <gtest/gtest.h>

#include "tests/host/temp_folder.h"
#include "tests/support/test_allocator.h"

namespace {

TEST(Streams, ReadsACallersBuffer) {
    const char16_t source[] = u"abcdef";
    STREAMERROR error = STREAM_FAILED;
    MEMSTREAM_W stream(source, 6, 5, &error);
    EXPECT_EQ(error, STREAM_OK);
    const struct {
        int32_t seek, count, read;
        STREAMERROR error;
        const char16_t* text;
    } cases[] = {
        {0, 2, 2, STREAM_OK, u"ab"}, {2, 3, 3, STREAM_OK, u"cde"}, {2, 1023, 3, STREAM_END, u"cde"},
        {5, 1, 0, STREAM_END, u""},  {5, 0, 0, STREAM_OK, u""},    {0, -1, 0, STREAM_OK, u""},
    };
    for (const auto& c : cases) {
        char16_t buffer[8] = {};
        EXPECT_EQ(stream.SeekRead(c.seek, nullptr), 1);
        EXPECT_EQ(stream.GetBlock(buffer, c.count, &error), c.read) << c.count;
        EXPECT_EQ(error, c.error) << c.count;
        EXPECT_EQ(std::u16string(buffer), c.text);
        EXPECT_EQ(stream.TellRead(), c.seek + c.read);
    }
    EXPECT_EQ(stream.PutBlock(u"x", 1, &error), 0);
    EXPECT_EQ(error, STREAM_FAILED);
    for (const int32_t outside : {-1, 6}) {
        EXPECT_EQ(stream.SeekRead(outside, &error), 0) << outside;
        EXPECT_EQ(error, STREAM_END);
    }
    EXPECT_EQ(stream.TellRead(), 0);
}

TEST(Streams, CutsImpossibleSizes) {
    const struct {
        const char16_t* buffer;
        int32_t size, length, readable;
    } cases[] = {{u"ab", 2, 3, 2}, {u"ab", 2, -1, 0}, {u"ab", -1, 2, 0}, {nullptr, 2, 2, 0}};
    for (const auto& c : cases) {
        MEMSTREAM_W stream(c.buffer, c.size, c.length, nullptr);
        char16_t buffer[8];
        EXPECT_EQ(stream.GetBlock(buffer, 8, nullptr), c.readable) << c.size << ", " << c.length;
    }
}

TEST(Streams, WritesIntoACallersBuffer) {
    char16_t target[] = u"abcdef";
    MEMSTREAM_W stream(target, 6, 3, nullptr);
    STREAMERROR error = STREAM_OK;
    EXPECT_EQ(stream.PutBlock(u"XYZW", 4, &error), 3);
    EXPECT_EQ(error, STREAM_FULL);
    EXPECT_EQ(std::u16string(target), u"abcXYZ");
    EXPECT_EQ(stream.SeekWrite(1, &error), 1);
    EXPECT_EQ(stream.PutBlock(u"-", 1, &error), 1);
    EXPECT_EQ(stream.TellWrite(), 2);
    char16_t all[8] = {};
    EXPECT_EQ(stream.GetBlock(all, 8, nullptr), 6);
    EXPECT_EQ(std::u16string(all), u"a-cXYZ");
}

TEST(Streams, GrowsOnTheHeap) {
    HEAPSTREAM_W wide;
    MEMSTREAM_A bytes;
    std::u16string text;
    // Block sizes on both sides of each growth.
    for (int32_t count = 1; count < 600; count += 37) {
        const std::u16string block(static_cast<std::size_t>(count),
                                   static_cast<char16_t>(u'A' + count % 26));
        text += block;
        EXPECT_EQ(wide.PutBlock(block.c_str(), count, nullptr), count);
        EXPECT_EQ(bytes.PutBlock(block.c_str(), 2 * count, nullptr), 2 * count);
    }
    const auto length = static_cast<int32_t>(text.size());
    std::u16string fromWide(text.size(), u' ');
    EXPECT_EQ(wide.GetBlock(fromWide.data(), length, nullptr), length);
    EXPECT_EQ(fromWide, text);
    std::u16string fromBytes(text.size(), u' ');
    STREAMERROR error = STREAM_OK;
    EXPECT_EQ(bytes.GetSize(), 2 * length);
    EXPECT_EQ(bytes.GetBlock(fromBytes.data(), 2 * length, &error), 2 * length);
    EXPECT_EQ(fromBytes, text);
    EXPECT_EQ(bytes.GetBlock(fromBytes.data(), 1, &error), 0);
    EXPECT_EQ(error, STREAM_END);

    bytes.Truncate(3);
    EXPECT_EQ(bytes.TellRead(), 3);
    EXPECT_EQ(bytes.SeekRead(4, nullptr), 0);
    EXPECT_EQ(bytes.SeekRead(1, nullptr), 1);
    EXPECT_EQ(bytes.GetBlock(fromBytes.data(), 9, nullptr), 2);
}

TEST(Streams, KeepsWhatItHasWhenMemoryIsShort) {
    lq::test::FailEachAllocation([](const lq::test::FailingAllocation&) {
        const std::u16string block(200, u'x');
        HEAPSTREAM_W wide;
        MEMSTREAM_A bytes;
        int32_t written = 0;
        int32_t writtenBytes = 0;
        for (int i = 0; i < 4; ++i) {
            STREAMERROR error = STREAM_OK;
            const int32_t put = wide.PutBlock(block.c_str(), 200, &error);
            EXPECT_EQ(error, put == 200 ? STREAM_OK : STREAM_FULL);
            written += put;
            writtenBytes += bytes.PutBlock(block.c_str(), 400, nullptr);
        }
        std::u16string all(801, u' ');
        EXPECT_EQ(wide.GetBlock(all.data(), 801, nullptr), written);
        EXPECT_EQ(written % 200, 0);
        EXPECT_EQ(bytes.GetSize(), writtenBytes);
        EXPECT_EQ(writtenBytes % 400, 0);
    });
}

TEST(Streams, GoesThroughAFile) {
    const lq::test::TempFolder folder;
    const std::string path = folder.GetPath() / "image";
    FILESTREAM_A file;
    ASSERT_EQ(file.Open(path.c_str(), FILESTREAM_A::WRITE), 1);
    EXPECT_EQ(file.PutBlock("a\0b", 3, nullptr), 3);
    EXPECT_EQ(file.Close(), 1);

    ASSERT_EQ(file.Open(path.c_str(), FILESTREAM_A::READ), 1);
    char buffer[8] = {};
    STREAMERROR error = STREAM_OK;
    EXPECT_EQ(file.GetBlock(buffer, 8, &error), 3);
    EXPECT_EQ(error, STREAM_END);
    EXPECT_EQ(std::string(buffer, 3), std::string("a\0b", 3));
    EXPECT_EQ(file.PutBlock("x", 1, &error), 0);
    EXPECT_EQ(error, STREAM_FAILED);
    EXPECT_EQ(file.GetErrno(), EBADF);
    EXPECT_EQ(file.Close(), 0);
}

TEST(Streams, KeepsTheReasonOfAFileFailure) {
    const lq::test::TempFolder folder;
    const std::string missing = folder.GetPath() / "missing" / "image";
    FILESTREAM_A file;
    char byte = 0;
    STREAMERROR error = STREAM_OK;
    EXPECT_EQ(file.Open(missing.c_str(), FILESTREAM_A::READ), 0);
    EXPECT_EQ(file.GetErrno(), ENOENT);
    EXPECT_EQ(file.GetBlock(&byte, 1, &error), 0);
    EXPECT_EQ(error, STREAM_FAILED);
    // A full device accepts nothing; the loss shows at the latest when the file is closed.
    ASSERT_EQ(file.Open("/dev/full", FILESTREAM_A::WRITE), 1);
    file.PutBlock("x", 1, nullptr);
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.GetErrno(), ENOSPC);
}

}  // namespace
