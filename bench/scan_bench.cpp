// Scanning source text. The re2c scanner delivers the tokens that ours delivers, of the same text:
// kind, text, blanks and line of each. What it does not do is told beside it. Flex only classifies,
// 8-bit text.
#include <memory>
#include <string_view>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "bench/inputs.h"
#include "bench/rivals/rivals.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/scanner.h"
#include "tools/lq/keywords.h"

namespace lq::bench {
namespace {

constexpr std::size_t kLength = 20'000'000;

// Ours over a text, with the keywords.
class OurScan {
  public:
    explicit OurScan(const std::u16string& text)
        : stream_(text.data(), Length(text), Length(text), nullptr),
          scanner_(static_cast<Scanner*>(Scanner::CreateObject())) {
        tool::RegisterKeywords(*scanner_);
        scanner_->Initialize(stream_);
    }
    Token GetToken() { return scanner_->GetToken(); }
    // Of a token longer than the ring the text is in the overflow block.
    std::u16string_view WholeText(const Token& token) const {
        return scanner_->IsHugeBufComplete() ? scanner_->GetSrcEx() : token.text;
    }

  private:
    static int32_t Length(const std::u16string& text) { return static_cast<int32_t>(text.size()); }

    MEMSTREAM_W stream_;
    std::unique_ptr<Scanner> scanner_;
};

template <typename Scan>
KindCounts CountKinds(Scan scan) {
    KindCounts counts;
    for (;;) {
        const auto token = scan.GetToken();
        if (token.kind == TK_EOF) {
            return counts;
        }
        ++counts.of[token.kind];
    }
}

std::u16string PaddedText() {
    return SourceText(kLength) + std::u16string(kPadding, u'\0');
}

// To re2c a keyword is an identifier.
int32_t KindForRe2c(const Token& token) {
    return token.kind == TK_KEYWORD ? int32_t{TK_IDENTIFIER} : token.kind;
}

// Whether both deliver the same tokens, and the values of those whose values re2c has.
bool DeliverTheSame() {
    const std::u16string text = PaddedText();
    OurScan ours(SourceText(kLength));
    Re2cScanner re2c(text);
    for (;;) {
        const Token token = ours.GetToken();
        const RivalToken rival = re2c.GetToken();
        if (token.kind == TK_EOF && rival.kind == TK_EOF) {
            return true;
        }
        const bool hasValue = token.kind == TK_INTEGER || token.kind == TK_BASED_INTEGER;
        if (KindForRe2c(token) != rival.kind || ours.WholeText(token) != rival.text ||
            std::u16string_view(token.space) != rival.space || token.line != rival.line ||
            (hasValue && token.GetNumber() != rival.value) ||
            (token.kind == TK_OPERATOR && token.GetCode() != rival.value)) {
            return false;
        }
    }
}

// Flex does not look at values: a number that is too large is none of its errors. So a few tokens
// in ten thousand may differ.
bool IsSameWork(const KindCounts& ours, const KindCounts& rival) {
    KindCounts expected = ours;
    expected.of[TK_IDENTIFIER] += expected.of[TK_KEYWORD];
    expected.of[TK_KEYWORD] = 0;
    const uint64_t allowed = ours.Total() / 2000;
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        if (expected.of[kind] > rival.of[kind] + allowed ||
            rival.of[kind] > expected.of[kind] + allowed) {
            return false;
        }
    }
    return true;
}

// `count` scans the text.
template <typename Count>
void Scan(benchmark::State& state, Count count) {
    static const KindCounts ours = CountKinds(OurScan(SourceText(kLength)));
    KindCounts counts;
    for (auto _ : state) {
        counts = count();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(counts.Total()));
    if (counts.of[TK_KEYWORD] == 0 && !IsSameWork(ours, counts)) {
        state.SkipWithError("the rival sees other tokens");
    }
}

void ScanOurs(benchmark::State& state) {
    Scan(state, [] { return CountKinds(OurScan(SourceText(kLength))); });
}

void ScanRe2c(benchmark::State& state) {
    static const bool isSame = DeliverTheSame();
    static const std::u16string text = PaddedText();
    Scan(state, [] { return CountKinds(Re2cScanner(text)); });
    if (!isSame) {
        state.SkipWithError("the rival delivers other tokens");
    }
}

void ScanFlex(benchmark::State& state) {
    static std::string text = Narrow(SourceText(kLength)) + std::string(2, '\0');
    Scan(state, [] { return CountWithFlex(text); });
}

const bool kRegistered = [] {
    benchmark::RegisterBenchmark("scan/lq_data", ScanOurs);
    benchmark::RegisterBenchmark("scan/re2c", ScanRe2c);
    benchmark::RegisterBenchmark("scan/flex -CF", ScanFlex);
    Compare({"scan 20 M characters, a token", "scan/lq_data", "scan/re2c", 1.5});
    Compare({"scan 20 M characters, a token", "scan/lq_data", "scan/flex -CF", 1.0});
    return true;
}();

}  // namespace
}  // namespace lq::bench
