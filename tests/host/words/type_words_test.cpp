#include <memory>

#include <gtest/gtest.h>

#include "frame/chars.h"
#include "host/text/utf.h"
#include "lq_data/scanner.h"
#include "lq_model.h"

namespace {

using lq::host::EncodeUtf8;

TEST(TypeWords, AreWholeWords) {
    constexpr struct {
        const char16_t* text;
        int string;
        int array;
    } kCases[] = {
        {u"STRING", 1, 0},       {u"STRING(20)", 1, 0},  {u"string[5]", 1, 0}, {u"STRING ", 1, 0},
        {u"STRINGS", 0, 0},      {u"STRING_1", 0, 0},    {u"STRING2", 0, 0},   {u" STRING", 0, 0},
        {u"WSTRING", 0, 0},      {u"STRIN", 0, 0},       {u"", 0, 0},          {nullptr, 0, 0},
        {u"ARRAY [1..2]", 0, 1}, {u"ARRAY[1..2]", 0, 1}, {u"Array", 0, 1},     {u"ARRAYS", 0, 0},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(IsStringType(c.text), c.string) << EncodeUtf8(c.text ? c.text : u"null");
        EXPECT_EQ(IsArrayType(c.text), c.array) << EncodeUtf8(c.text ? c.text : u"null");
    }
}

// What CheckStringSize makes of the text, and the kind of the token behind it.
TEST(CheckStringSize, ReadsALengthOrTheEnd) {
    constexpr int32_t kUntouched = -7;
    constexpr struct {
        const char16_t* text;
        int accepted;
        int32_t size;
        int32_t next;
    } kCases[] = {
        {u"", 1, 0, TK_EOF},
        {u"  \n", 1, 0, TK_EOF},
        {u"(20)", 1, 20, TK_EOF},
        {u" [ 16#FF ] ", 1, 255, TK_EOF},
        {u"(1) x", 1, 1, TK_IDENTIFIER},
        {u"(2147483647)", 1, 2147483647, TK_EOF},
        {u"(2147483648)", 0, kUntouched, TK_OPERATOR},
        {u"(0)", 0, kUntouched, TK_OPERATOR},
        {u"(-1)", 0, kUntouched, TK_INTEGER},
        {u"()", 0, kUntouched, TK_EOF},
        {u"(n)", 0, kUntouched, TK_OPERATOR},
        {u"(20]", 0, kUntouched, TK_EOF},
        {u"(20", 0, kUntouched, TK_EOF},
        {u"20", 0, kUntouched, TK_EOF},
        {u"x", 0, kUntouched, TK_EOF},
    };
    for (const auto& c : kCases) {
        const auto length = static_cast<int32_t>(lq::chars::Length(c.text));
        MEMSTREAM_W stream(c.text, length, length, nullptr);
        const std::unique_ptr<CObject> object(Scanner::CreateObject());
        auto& scanner = static_cast<Scanner&>(*object);
        scanner.Initialize(stream);
        int32_t size = kUntouched;
        EXPECT_EQ(CheckStringSize(&scanner, size), c.accepted) << EncodeUtf8(c.text);
        EXPECT_EQ(size, c.size) << EncodeUtf8(c.text);
        EXPECT_EQ(scanner.GetToken().kind, c.next) << EncodeUtf8(c.text);
    }
    int32_t size = kUntouched;
    EXPECT_EQ(CheckStringSize(nullptr, size), 0);
}

}  // namespace
