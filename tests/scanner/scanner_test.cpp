// The scanner's frame: streams, keywords, positions, very long tokens.
#include "lq_data/memory.h"
#include "tests/scanner/scan_util.h"

namespace lq::test {
namespace {

TEST(Scanner, IsCreatedByName) {
    std::unique_ptr<CObject> object(CRuntimeClass::CreateObject("Scanner"));
    ASSERT_NE(object, nullptr);
    EXPECT_STREQ(object->GetRuntimeClass()->name, "Scanner");
    for (const char* name : {"Token", "Address", "BufferPair", "Time"}) {
        EXPECT_NE(CRuntimeClass::FromName(name), nullptr) << name;
    }
}

TEST(Scanner, TheFirstIdOfAKeywordStays) {
    TestScanner scanner(u"OF BIG aa");
    EXPECT_EQ(scanner->RegisterKeyword(u"OF", 4), 1);
    EXPECT_EQ(scanner->RegisterKeyword(u"OF", 5), 0);
    EXPECT_EQ(scanner->RegisterKeyword(u"BIG", 0x12345), 1);
    EXPECT_EQ(scanner->RegisterKeyword(u"aaff", 6), 1);  // where "aa" would have its place
    EXPECT_EQ(ScanAll(*scanner), "KEY[OF]=4 KEY[BIG]=9029 ID[aa]");
}

TEST(Scanner, KnowsAnyNumberOfKeywords) {
    std::u16string text;
    std::string expected;
    std::vector<std::u16string> names;
    for (int id = 0; id < 2000; ++id) {
        const std::string name = "k" + std::to_string(id * 37) + "_";
        names.emplace_back(name.begin(), name.end());
        text += names.back() + u" x" + names.back() + u";";
        expected += "KEY[" + name + "]=" + std::to_string(id) + " ID[x" + name + "] OP[;]=7 ";
    }
    TestScanner scanner(text, 0);
    ASSERT_EQ(scanner->RegisterKeyword(u"", 7), 1) << "and is never met";
    for (size_t id = 0; id < names.size(); ++id) {
        ASSERT_EQ(scanner->RegisterKeyword(names[id].c_str(), static_cast<int>(id)), 1);
    }
    EXPECT_EQ(ScanAll(*scanner) + " ", expected);
}

// On both sides of the lengths that the scanner copies in one step, in a few, and by the long way.
TEST(Scanner, KeepsTextsOfEveryLength) {
    for (size_t length = 1; length <= 130; ++length) {
        SCOPED_TRACE(length);
        const std::u16string blanks(length, u' ');
        const std::u16string word(length, u'w');
        const std::u16string number(length, u'1');
        TestScanner scanner(blanks + word + u"\n " + number + u";");
        Token token = scanner->GetToken();
        EXPECT_EQ(token.kind, TK_IDENTIFIER);
        EXPECT_TRUE(token.space == blanks && token.text == word) << Utf8(token.text);
        token = scanner->GetToken();
        EXPECT_EQ(token.kind, length <= 10 ? TK_INTEGER : TK_ERROR);
        EXPECT_TRUE(token.text == number) << Utf8(token.text);
    }
}

TEST(Scanner, HandsTheStreamBackAndGoesOnWithAnother) {
    MEMSTREAM_W first(u"a\nb", 3, 3, nullptr);
    MEMSTREAM_W second(u"xx y", 4, 4, nullptr);
    auto scanner = NewScanner();
    EXPECT_EQ(scanner->ReleaseStream(), nullptr);
    EXPECT_EQ(scanner->GetStreamPosition(), -1);
    scanner->Initialize(first);
    scanner->GetToken();
    EXPECT_EQ(scanner->GetStreamPosition(), 1);
    EXPECT_EQ(scanner->ReleaseStream(), &first);
    EXPECT_EQ(first.TellRead(), 1) << "behind the last token";
    EXPECT_EQ(scanner->ReleaseStream(), nullptr);
    second.SeekRead(3, nullptr);
    scanner->AssignStream(second, 7);
    const Token token = scanner->GetToken();
    EXPECT_EQ(Describe(token), "ID[y]");
    EXPECT_EQ(token.line, 7);
    EXPECT_EQ(scanner->GetStreamPosition(), 3) << "the end of input is not counted";
    EXPECT_EQ(scanner->IsEOF(), 1);
    scanner->Initialize(first);
    EXPECT_EQ(scanner->GetStreamPosition(), 1) << "and nothing is left of the one before";
}

// Halves of three characters, and no owner for the text of a long token.
TEST(BufferPair, LooksAheadAndStaysAtTheEnd) {
    const std::u16string text = u"abcdefg";
    const std::u16string all = text + u"\u001Ahi";  // whose own mark is the end
    SlowStream stream(all, 1000);
    BufferPair reader(stream, 4);
    EXPECT_EQ(reader.GetPosition(), -1);
    for (size_t i = 0; i < text.size(); ++i) {
        EXPECT_EQ(reader.Peek(), text[i]);
        EXPECT_EQ(reader.Peek(), text[i]);
        EXPECT_EQ(reader.NextChar(), text[i]);
        EXPECT_EQ(reader.GetPosition(), static_cast<int32_t>(i));
        if (i == 0) {
            reader.BeginToken();
        }
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(reader.Peek(), Scanner::kEndOfInput);
        EXPECT_EQ(reader.NextChar(), Scanner::kEndOfInput);
        EXPECT_EQ(reader.GetPosition(), 6);
    }
}

// One token of each length, in each place of the ring.
class LongToken : public testing::TestWithParam<size_t> {};

TEST_P(LongToken, IsWholeInTheOverflowTextAndMarkedInTheToken) {
    struct Shape {
        std::u16string open, close, mark;
        int32_t kind;
    };
    const Shape shapes[] = {
        {u"(*", u"*)", u"..*)", TK_COMMENT},
        {u"'", u"'", u"..'", TK_STRING},
        {u"\"", u"\"", u"..", TK_STRING},
        {u"n", u"n", u"..", TK_IDENTIFIER},
    };
    const size_t length = GetParam();
    for (const Shape& shape : shapes) {
        std::u16string source = shape.open;
        while (source.size() < length - shape.close.size()) {
            source += static_cast<char16_t>(u'a' + source.size() % 26);
        }
        source += shape.close;
        for (const unsigned blanks : {0u, 1000u, 1022u, 1023u, 1500u, 2045u, 2046u}) {
            for (const int32_t step : {1, 13, 1000}) {
                SCOPED_TRACE(testing::Message() << "kind " << shape.kind << ", length " << length
                                                << ", blanks " << blanks << ", step " << step);
                TestScanner scanner(std::u16string(blanks, u' ') + source + u" next", step);
                const Token token = scanner->GetToken();
                EXPECT_EQ(token.kind, shape.kind);
                if (length < 2048) {
                    EXPECT_EQ(std::u16string(token.text), source);
                } else {
                    const size_t kept = 2048 - shape.mark.size();
                    EXPECT_EQ(std::u16string(token.text), source.substr(0, kept) + shape.mark);
                    ASSERT_NE(scanner->GetSrcEx(), nullptr);
                }
                EXPECT_EQ(WholeText(*scanner, token), source);
                EXPECT_EQ(Describe(scanner->GetToken()), "ID[next]");
                EXPECT_EQ(scanner->GetSrcEx(), nullptr);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Lengths, LongToken,
                         testing::Values(1021, 1022, 1023, 1024, 1025, 2045, 2046, 2047, 2048, 2049,
                                         2050, 3069, 3070, 4096, 10000));

TEST(Scanner, ACallerMayTakeTheOverflowTextOver) {
    const std::u16string longName(5000, u'x');
    TestScanner scanner(longName + u" y " + longName);
    scanner->GetToken();
    char16_t* taken = scanner->GetSrcEx();
    scanner->SetSrcEx(nullptr);
    scanner->GetToken();
    EXPECT_EQ(scanner->GetHugeBufLen() + scanner->IsHugeBufComplete(), 0);
    scanner->GetToken();
    EXPECT_EQ(std::u16string(taken), longName);
    EXPECT_EQ(std::u16string(scanner->GetSrcEx()), longName);
    lq::Release(taken);
}

TEST(Scanner, KeepsTheFirstCharactersOfALongString) {
    TestScanner scanner(u"'" + std::u16string(2047, u'a') + u"$Nb'");
    const Token token = scanner->GetToken();
    EXPECT_EQ(std::u16string(token.GetValueText()), std::u16string(2047, u'a') + u"\r");
}

}  // namespace
}  // namespace lq::test
