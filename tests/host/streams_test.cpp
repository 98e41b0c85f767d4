#include "lq_data/host/base/streams.h"

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
    // Impossible sizes are cut.
    for (const auto& [buffer, size, length, readable] :
         {std::tuple(source, 2, 3, 2), std::tuple(source, 2, -1, 0), std::tuple(source, -1, 2, 0),
          std::tuple(static_cast<const char16_t*>(nullptr), 2, 2, 0)}) {
        MEMSTREAM_W cut(buffer, size, length, nullptr);
        char16_t all[8];
        EXPECT_EQ(cut.GetBlock(all, 8, nullptr), readable) << size << ", " << length;
    }
}

TEST(Streams, WritesIntoACallersBuffer) {
    char16_t target[] = u"abcdef";
    MEMSTREAM_W stream(target, 6, 3, nullptr);
    STREAMERROR error = STREAM_OK;
    EXPECT_EQ(stream.PutBlock(u"XYZW", 4, &error), 3);
    EXPECT_EQ(error, STREAM_FULL);
    EXPECT_EQ(std::u16string(target), u"abcXYZ");
    EXPECT_EQ(stream.SeekWrite(7, &error), 0);
    EXPECT_EQ(stream.SeekWrite(1, &error), 1);
    EXPECT_EQ(stream.PutBlock(u"-", 1, &error), 1);
    EXPECT_EQ(stream.TellWrite(), 2);
    char16_t all[8] = {};
    EXPECT_EQ(stream.GetBlock(all, 8, nullptr), 6);
    EXPECT_EQ(std::u16string(all), u"a-cXYZ");
}

// Streams that grow keep what they have when memory is short; block sizes lie on both sides of each
// growth.
TEST(Streams, GrowOnTheHeap) {
    lq::test::FailEachAllocation([](const lq::test::FailingAllocation& failing) {
        HEAPSTREAM_W wide;
        MEMSTREAM_A bytes;
        std::u16string text;
        std::u16string ofBytes;
        for (int32_t count = 1; count < 600; count += 37) {
            const std::u16string block(static_cast<std::size_t>(count),
                                       static_cast<char16_t>(u'A' + count % 26));
            STREAMERROR error = STREAM_OK;
            const int32_t put = wide.PutBlock(block.c_str(), count, &error);
            EXPECT_EQ(error, put == count ? STREAM_OK : STREAM_FULL);
            const int32_t putBytes = bytes.PutBlock(block.c_str(), 2 * count, &error);
            EXPECT_EQ(error, putBytes == 2 * count ? STREAM_OK : STREAM_FULL);
            EXPECT_TRUE((put == count && putBytes == 2 * count) || failing.HasFailed());
            EXPECT_TRUE((put == 0 || put == count) && (putBytes == 0 || putBytes == 2 * count));
            text += put == count ? block : u"";
            ofBytes += putBytes == 2 * count ? block : u"";
        }
        std::u16string all(6000, u' ');
        const auto length = static_cast<int32_t>(text.size());
        EXPECT_EQ(wide.GetBlock(all.data(), 6000, nullptr), length);
        EXPECT_EQ(all.substr(0, text.size()), text);
        const auto lengthOfBytes = 2 * static_cast<int32_t>(ofBytes.size());
        EXPECT_EQ(bytes.GetSize(), lengthOfBytes);
        EXPECT_EQ(bytes.GetBlock(all.data(), lengthOfBytes, nullptr), lengthOfBytes);
        EXPECT_EQ(all.substr(0, ofBytes.size()), ofBytes);
        STREAMERROR error = STREAM_OK;
        EXPECT_EQ(bytes.GetBlock(all.data(), 1, &error), 0);
        EXPECT_EQ(error, STREAM_END);
    });
    MEMSTREAM_A bytes;
    EXPECT_EQ(HEAPSTREAM_W().PutBlock(u"a", 0, nullptr), 0);
    EXPECT_EQ(bytes.PutBlock("abcde", 5, nullptr), 5);
    EXPECT_EQ(bytes.SeekRead(5, nullptr), 1);
    bytes.Truncate(9);
    EXPECT_EQ(bytes.GetSize(), 5);
    bytes.Truncate(3);
    EXPECT_EQ(bytes.TellRead(), 3);
    EXPECT_EQ(bytes.SeekRead(4, nullptr), 0);
    EXPECT_EQ(bytes.SeekRead(1, nullptr), 1);
    char rest[9] = {};
    EXPECT_EQ(bytes.GetBlock(rest, 9, nullptr), 2);
    EXPECT_STREQ(rest, "bc");
}

TEST(Streams, GoThroughAFile) {
    const lq::test::TempFolder folder;
    const std::string path = folder.GetPath() / "image";
    FILESTREAM_A file;
    EXPECT_EQ(file.GetErrno(), 0);
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
    // The reason of a failure stays; it ends with the next file.
    EXPECT_EQ(file.Open((path + "/missing").c_str(), FILESTREAM_A::READ), 0);
    EXPECT_EQ(file.GetErrno(), ENOTDIR);
    EXPECT_EQ(file.GetBlock(buffer, 1, &error), 0);
    EXPECT_EQ(error, STREAM_FAILED);
    // A full device accepts nothing; the loss shows at the latest when the file is closed.
    ASSERT_EQ(file.Open("/dev/full", FILESTREAM_A::WRITE), 1);
    file.PutBlock("x", 1, nullptr);
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.GetErrno(), ENOSPC);
    ASSERT_EQ(file.Open("/dev/full", FILESTREAM_A::WRITE), 1);
    EXPECT_EQ(file.GetBlock(buffer, 1, nullptr), 0);
    file.PutBlock("x", 1, nullptr);
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.GetErrno(), EBADF) << "the first reason";
}

}  // namespace
