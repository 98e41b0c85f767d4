// Scanning source text, beside scanners that only classify. Ours delivers every token with its
// text, its blanks, its line and its value, from 16-bit characters that come through a stream.
#include <memory>

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

KindCounts CountWithScanner(const std::u16string& text) {
    const auto length = static_cast<int32_t>(text.size());
    MEMSTREAM_W stream(text.data(), length, length, nullptr);
    const std::unique_ptr<Scanner> scanner(static_cast<Scanner*>(Scanner::CreateObject()));
    tool::RegisterKeywords(*scanner);
    scanner->Initialize(stream);
    KindCounts counts;
    for (;;) {
        const Token token = scanner->GetToken();
        if (token.kind == TK_EOF) {
            return counts;
        }
        ++counts.of[token.kind];
    }
}

std::string RivalText() {
    return Narrow(SourceText(kLength)) + std::string(2, '\0');
}

void Report(benchmark::State& state, const KindCounts& counts) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(counts.Total()));
}

// The rivals do not look at values: a number that is too large is none of their errors. So a few
// tokens in ten thousand may differ.
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

void ScanOurs(benchmark::State& state) {
    const std::u16string& text = SourceText(kLength);
    KindCounts counts;
    for (auto _ : state) {
        counts = CountWithScanner(text);
    }
    Report(state, counts);
}

template <typename Count>
void ScanRival(benchmark::State& state, Count count) {
    static std::string text = RivalText();
    static const KindCounts ours = CountWithScanner(SourceText(kLength));
    KindCounts counts;
    for (auto _ : state) {
        counts = count(text);
    }
    if (!IsSameWork(ours, counts)) {
        state.SkipWithError("the rival sees other tokens");
    }
    Report(state, counts);
}

const bool kRegistered = [] {
    benchmark::RegisterBenchmark("scan/lq_data", ScanOurs);
    benchmark::RegisterBenchmark("scan/flex -CF",
                                 [](auto& state) { ScanRival(state, CountWithFlex); });
    benchmark::RegisterBenchmark("scan/re2c", [](auto& state) { ScanRival(state, CountWithRe2c); });
    Compare({"scan 20 M characters, a token", "scan/lq_data", "scan/flex -CF", 1.0});
    Compare({"scan 20 M characters, a token", "scan/lq_data", "scan/re2c"});
    return true;
}();

}  // namespace
}  // namespace lq::bench
