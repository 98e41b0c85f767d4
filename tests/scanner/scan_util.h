// Scanning a text in a test: token lists as one line of text, streams that hand out little at a
// time, readers with small halves.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <initializer_list>

#include "lq_data/host/text/utf.h"
#include "lq_data/scanner.h"
#include "scanner/buffer_pair.h"

// The tests' way to a scanner's reader.
struct ScannerTestAccess {
    // Replaces the reader by one with halves of another size.
    static void UseHalves(Scanner& scanner, STREAM_W& stream, int32_t half) {
        delete scanner.reader;
        scanner.reader = new BufferPair(stream, half);
        scanner.reader->SetOwner(&scanner);
        scanner.reader->NextChar();
    }
};

namespace lq::test {

// Hands out at most `step` characters a call.
class SlowStream : public STREAM_W {
  public:
    SlowStream(std::u16string text, int32_t step) : text_(std::move(text)), step_(step) {}

    int32_t GetBlock(char16_t* buffer, int32_t count, STREAMERROR*) override {
        const auto left = static_cast<int32_t>(text_.size()) - read_;
        const int32_t n = std::min({count, step_, left});
        std::copy_n(text_.data() + read_, n, buffer);
        read_ += n;
        return n;
    }
    int32_t PutBlock(const char16_t*, int32_t, STREAMERROR*) override { return 0; }
    int32_t TellRead() override { return read_; }
    int32_t TellWrite() override { return 0; }
    int SeekRead(int32_t position, STREAMERROR*) override {
        read_ = position;
        return 1;
    }
    int SeekWrite(int32_t, STREAMERROR*) override { return 0; }

  private:
    std::u16string text_;
    int32_t step_;
    int32_t read_ = 0;
};

inline std::unique_ptr<Scanner> NewScanner() {
    return std::unique_ptr<Scanner>(static_cast<Scanner*>(Scanner::CreateObject()));
}

inline std::string Utf8(const char16_t* text) {
    std::string out;
    for (; *text != 0; ++text) {
        if (*text >= 0x20 && *text < 0x7F) {
            out += static_cast<char>(*text);
        } else {
            char code[8];
            std::snprintf(code, sizeof(code), "<%X>", static_cast<unsigned>(*text));
            out += code;
        }
    }
    return out;
}

inline std::string DescribeTime(const Time& t) {
    char text[80];
    std::snprintf(text, sizeof(text), "%d:%.10g:%d", t.days, t.ms, t.sign);
    return text;
}

// "kind[text]=value" with the value where the kind has one.
inline std::string Describe(const Token& token) {
    static constexpr const char* kNames[] = {"ERR", "OP",   "INT", "BASED", "REAL", "ID",
                                             "KEY", "NL",   "ADR", "COM",   "STR",  "TIME",
                                             "DT",  "DATE", "TOD", "RANGE", "EOF",  "NONE"};
    const std::string out = std::string(kNames[token.kind]) + "[" + Utf8(token.text) + "]";
    const auto with = [&out](const std::string& value) { return out + "=" + value; };
    switch (token.kind) {
        case TK_ERROR:
        case TK_INTEGER:
        case TK_BASED_INTEGER:
        case TK_RANGE_START:
            return with(std::to_string(token.GetNumber()));
        case TK_OPERATOR:
        case TK_KEYWORD:
            return with(std::to_string(token.GetCode()));
        case TK_REAL: {
            char number[40];
            std::snprintf(number, sizeof(number), "%.17g", token.GetReal());
            return with(number);
        }
        case TK_COMMENT:
        case TK_STRING:
            return with(Utf8(token.GetValueText()));
        case TK_ADDRESS: {
            const Address& at = *token.GetAddress();
            return with(std::to_string(at.location) + "," + std::to_string(at.size) + "," +
                        Utf8(at.text));
        }
        case TK_TIME:
        case TK_DATE:
        case TK_DATE_AND_TIME:
        case TK_TIME_OF_DAY:
            return with(DescribeTime(*token.GetTime()));
        default:
            return out;
    }
}

// The token's text, from the overflow text when there is one.
inline std::u16string WholeText(Scanner& scanner, const Token& token) {
    if (!scanner.GetSrcEx()) {
        return token.text;
    }
    const std::u16string whole = scanner.GetSrcEx();
    EXPECT_EQ(scanner.GetHugeBufLen(), static_cast<int32_t>(whole.size()) + 1);
    EXPECT_TRUE(scanner.IsHugeBufComplete() || token.kind == TK_ERROR);
    return whole;
}

// The line of a token and the blanks in front of it.
using Place = std::pair<int32_t, std::u16string>;

// All tokens up to the end, a blank between them; the end itself is left out. `places` receives
// the places of all, the end included.
inline std::string ScanAll(Scanner& scanner, std::vector<Place>* places = nullptr) {
    std::string out;
    for (;;) {
        const Token token = scanner.GetToken();
        if (places) {
            places->emplace_back(token.line, token.space);
        }
        if (token.kind == TK_EOF) {
            return out;
        }
        out += (out.empty() ? "" : " ") + Describe(token);
    }
}

// A scanner on its own stream, which hands out `step` characters at a time, or all at once when 0.
// `half`: the size of the reader's halves, 0 for the usual one.
class TestScanner {
  public:
    explicit TestScanner(std::u16string text, int32_t step = 1000, int32_t half = 0)
        : text_(std::move(text)), scanner_(NewScanner()) {
        scanner_->RegisterKeyword(u"TRUE", KW_TRUE);
        scanner_->Initialize(MakeStream(step));
        if (half != 0) {
            ScannerTestAccess::UseHalves(*scanner_, MakeStream(step), half);
        }
    }
    Scanner& operator*() const { return *scanner_; }
    Scanner* operator->() const { return scanner_.get(); }

  private:
    STREAM_W& MakeStream(int32_t step) {
        const auto size = static_cast<int32_t>(text_.size());
        if (step == 0) {
            streams_.push_back(std::make_unique<MEMSTREAM_W>(text_.data(), size, size, nullptr));
        } else {
            streams_.push_back(std::make_unique<SlowStream>(text_, step));
        }
        return *streams_.back();
    }

    std::u16string text_;
    std::vector<std::unique_ptr<STREAM_W>> streams_;
    std::unique_ptr<Scanner> scanner_;
};

inline std::string Scan(const std::u16string& text, std::vector<Place>* places = nullptr) {
    return ScanAll(*TestScanner(text, 0), places);
}

// How many characters a stream hands out at a time.
inline constexpr int32_t kSteps[] = {1, 2, 3, 5, 7, 13, 32, 1000};

struct ScanCase {
    const char16_t* text;
    const char* tokens;
};

// Each text must give its tokens, each at its place: from memory, from streams that hand out little
// at a time, and at every start near the end of a small half.
inline void CheckScan(const std::u16string& text, const std::string& tokens) {
    SCOPED_TRACE(Utf8(text.c_str()));
    std::vector<Place> places;
    EXPECT_EQ(Scan(text, &places), tokens);
    for (const int32_t step : kSteps) {
        std::vector<Place> found;
        EXPECT_EQ(ScanAll(*TestScanner(text, step), &found), tokens) << "in steps of " << step;
        EXPECT_EQ(found, places) << "in steps of " << step;
    }
    constexpr int32_t kHalf = 48;
    for (int32_t start = 0; start < 2 * kHalf; ++start) {
        const std::u16string blanks(static_cast<size_t>(start), u' ');
        const int32_t step = kSteps[static_cast<size_t>(start) % std::size(kSteps)];
        std::vector<Place> found;
        EXPECT_EQ(ScanAll(*TestScanner(blanks + text, step, kHalf), &found), tokens)
            << "at " << start;
        ASSERT_EQ(found.size(), places.size());
        for (size_t i = 0; i < found.size(); ++i) {
            EXPECT_EQ(found[i].first, places[i].first) << "line, at " << start;
        }
    }
}

inline void CheckScans(std::initializer_list<ScanCase> cases) {
    for (const ScanCase& c : cases) {
        CheckScan(c.text, c.tokens);
    }
}

}  // namespace lq::test
