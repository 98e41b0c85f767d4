// What is said of a text alone: names, type words, lengths of strings, initial values.
#include <memory>

#include <gtest/gtest.h>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/scanner.h"

namespace {

using lq::host::EncodeUtf8;

// clang-format off
constexpr const char16_t* kNames[] = {
    u"a", u"Pump1", u"_start", u"a_b_c", u"Beh\u00e4lter", u"ENX", u"INTEGER", u"TON", u"VA", u"VARS",
    u"END_FUNCTION_BLOCKS",
};
constexpr const char16_t* kNoNames[] = {
    u"", u"1a", u"a__b", u"a_", u"_", u"__a", u"a b", u"a.b", u"a-b", u"a\u00d7", u"INT", u"int",
    u"ACTION", u"Xor", u"eno", u"VAR_TEMP", u"End_Function_Block", nullptr,
};
constexpr const char16_t* kValues[] = {
    nullptr, u"", u"  ", u"1", u"-5", u"+ 1.5e3", u"16#FF", u"TRUE", u"Red", u"Color.Red", u"INT#5",
    u"Color#Red", u"UINT#16#FF", u"'it is $'so$', isn$'t it'", u"T#5s", u"-T#1m", u"D#2024-02-29",
    u"TOD#06:00:00", u"DT#2024-02-29-12:30:00", u"%MW4", u"[1, 2, 3(0)]", u"[2([1, 2]), [3, 4]]",
    u"1, 2, 3(0)", u"3()", u"(a := 1, b := (c := 2))", u"a := 1, b := [1, 2]", u"[(a := 1), (a := 2)]",
    u"Limit * 2 - 1", u"5 MOD 3", u"a AND b or c Xor NOT d", u"2 ** 3 / 4 & 5", u"1 (* one *)", u"1\n",
    u"123456789", u"12345.6789", u"1234567890", u"-(1)",
};
constexpr const char16_t* kNoValues[] = {
    u"1 2", u"(1", u"1)", u"[1)", u"(1]", u"1,", u",1", u"a :=", u"1 := 2", u"1;", u"'open", u"[]",
    u"()", u"a b", u"1..2", u"{", u"#", u"INT#", u"* 2", u"a = 1", u"2 * ", u"1 (* ", u"a := := 1",
    u"3(,)", u"T#5 s", u"a : 1", u"[[1]", u"1.", u"3(+)", u"3(1,)", u"(a) := 1", u".", u"-",
};
// clang-format on

TEST(CheckIdentifier, AcceptsIecNames) {
    for (const char16_t* name : kNames) {
        EXPECT_EQ(CheckIdentifier(nullptr, name, 0), 0) << EncodeUtf8(name);
    }
    for (const char16_t* name : kNoNames) {
        EXPECT_NE(CheckIdentifier(nullptr, name, 0), 0) << EncodeUtf8(name ? name : u"null");
    }
    // No character is added to those that the scanner takes.
    for (const char16_t* beginning : {u"a", u"a$", u"12a", u"a:"}) {
        EXPECT_NE(CheckIdentifier(nullptr, beginning, 1), 0) << EncodeUtf8(beginning);
    }
}

TEST(CheckInitSyntax, AcceptsValuesAndNothingElse) {
    for (const char16_t* text : kValues) {
        EXPECT_EQ(CheckInitSyntax(nullptr, text), 0) << EncodeUtf8(text ? text : u"null");
    }
    for (const char16_t* text : kNoValues) {
        EXPECT_NE(CheckInitSyntax(nullptr, text), 0) << EncodeUtf8(text);
    }
    for (const std::size_t depth : {std::size_t{64}, std::size_t{65}, std::size_t{10000}}) {
        for (const char16_t* brackets : {u"()", u"[]"}) {
            const std::u16string text =
                std::u16string(depth, brackets[0]) + u"1" + std::u16string(depth, brackets[1]);
            EXPECT_EQ(CheckInitSyntax(nullptr, text.c_str()) == 0, depth <= 64) << depth;
        }
    }
}

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
    constexpr int32_t kNone = -7;
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
        {u"(2147483648)", 0, kNone, TK_OPERATOR},
        {u"(0)", 0, kNone, TK_OPERATOR},
        {u"(-1)", 0, kNone, TK_INTEGER},
        {u"()", 0, kNone, TK_EOF},
        {u"(n)", 0, kNone, TK_OPERATOR},
        {u"(20]", 0, kNone, TK_EOF},
        {u"(20", 0, kNone, TK_EOF},
        {u"20", 0, kNone, TK_EOF},
        {u"x", 0, kNone, TK_EOF},
    };
    for (const auto& c : kCases) {
        const auto length = static_cast<int32_t>(lq::chars::Length(c.text));
        MEMSTREAM_W stream(c.text, length, length, nullptr);
        const std::unique_ptr<CObject> object(Scanner::CreateObject());
        auto& scanner = static_cast<Scanner&>(*object);
        scanner.Initialize(stream);
        int32_t size = kNone;
        EXPECT_EQ(CheckStringSize(&scanner, size), c.accepted) << EncodeUtf8(c.text);
        EXPECT_EQ(size, c.size) << EncodeUtf8(c.text);
        EXPECT_EQ(scanner.GetToken().kind, c.next) << EncodeUtf8(c.text);
    }
    int32_t size = kNone;
    EXPECT_EQ(CheckStringSize(nullptr, size), 0);
}

}  // namespace
