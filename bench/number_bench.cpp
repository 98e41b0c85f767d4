// Literals alone. Integers, based integers and durations beside a hand-written loop that delivers
// the same tokens; all others beside the bare conversion of the same digits: the text cut out
// already, 8-bit, nothing around it.
#include <charconv>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "bench/rivals/rivals.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/scanner.h"

namespace lq::bench {
namespace {

constexpr int kCount = 100'000;

using Literals = std::vector<std::string>;

template <typename Make>
Literals MakeLiterals(Make make) {
    Literals literals;
    for (int i = 0; i < kCount; ++i) {
        literals.push_back(make(static_cast<uint32_t>(i) * 2654435761u));
    }
    return literals;
}

std::string Decimal(uint32_t number) {
    return std::to_string(number >> number % 32);
}

std::string Based(uint32_t number) {
    char text[16];
    std::snprintf(text, sizeof(text), "16#%X", number >> number % 32);
    return text;
}

std::string Real(uint32_t number) {
    return std::to_string(number % 10000) + "." + std::to_string(number / 10000 % 1000);
}

std::string LongReal(uint32_t number) {
    char text[40];
    std::snprintf(text, sizeof(text), "%.14e", number * 1.234567891e-7);
    return text;
}

std::string Duration(uint32_t number) {
    return "T#" + std::to_string(number % 24) + "h" + std::to_string(number / 24 % 60) + "m" +
           std::to_string(number / 1440 % 60) + "s";
}

std::string Clock(uint32_t number) {
    return "TOD#" + std::to_string(number % 24) + ":" + std::to_string(number / 24 % 60) + ":" +
           std::to_string(number / 1440 % 60) + ".5";
}

std::string Quoted(uint32_t number) {
    return "'Motor " + std::to_string(number) + " is too hot$N'";
}

const char* End(const std::string& text) {
    return text.data() + text.size();
}

template <typename Number>
void FromChars(const std::string& text, std::size_t prefix, int base) {
    Number number = 0;
    std::from_chars(text.data() + prefix, End(text), number, base);
    benchmark::DoNotOptimize(number);
}

void FromCharsDouble(const std::string& text) {
    double number = 0;
    std::from_chars(text.data(), End(text), number);
    benchmark::DoNotOptimize(number);
}

// Every run of digits, as an integer or, with a fraction, as a double.
void Components(const std::string& text) {
    double sum = 0;
    for (const char* p = text.data(); p != End(text);) {
        uint32_t number = 0;
        const auto result = std::from_chars(p, End(text), number);
        if (result.ec != std::errc()) {
            ++p;
        } else if (result.ptr != End(text) && *result.ptr == '.') {
            double fraction = 0;
            p = std::from_chars(p, End(text), fraction).ptr;
            sum += fraction;
        } else {
            p = result.ptr;
            sum += number;
        }
    }
    benchmark::DoNotOptimize(sum);
}

// The simplest decoder: one character after the other.
void Unquote(const std::string& text) {
    static char buffer[2049];
    char* out = buffer;
    for (std::size_t i = 1; text[i] != '\''; ++i) {
        if (text[i] == '$' && text[i + 1] == 'N') {
            *out++ = '\r';
            *out++ = '\n';
            ++i;
        } else {
            *out++ = text[i];
        }
    }
    *out = 0;
    benchmark::DoNotOptimize(buffer);
}

struct Family {
    const char* name;
    TOKEN_KIND kind;
    std::string (*make)(uint32_t number);
    const char* rival;
    void (*convert)(const std::string& text);  // null: the loop delivers the tokens
};

constexpr Family kFamilies[] = {
    {"integers", TK_INTEGER, Decimal, "loop", nullptr},
    {"integers", TK_INTEGER, Decimal, "from_chars",
     [](const std::string& t) { FromChars<uint32_t>(t, 0, 10); }},
    {"based integers", TK_BASED_INTEGER, Based, "loop", nullptr},
    {"based integers", TK_BASED_INTEGER, Based, "from_chars",
     [](const std::string& t) { FromChars<uint32_t>(t, 3, 16); }},
    {"short reals", TK_REAL, Real, "from_chars", FromCharsDouble},
    {"long reals", TK_REAL, LongReal, "from_chars", FromCharsDouble},
    {"long reals", TK_REAL, LongReal, "strtod",
     [](const std::string& t) { benchmark::DoNotOptimize(std::strtod(t.c_str(), nullptr)); }},
    {"durations", TK_TIME, Duration, "loop", nullptr},
    {"durations", TK_TIME, Duration, "from_chars", Components},
    {"times of day", TK_TIME_OF_DAY, Clock, "from_chars", Components},
    {"strings", TK_STRING, Quoted, "plain loop", Unquote},
};

std::u16string LiteralText(const Family& family) {
    std::u16string text;
    for (const std::string& literal : MakeLiterals(family.make)) {
        text.append(literal.begin(), literal.end());
        text += u' ';
    }
    return text;
}

// `get` gives the next token.
template <typename Get>
int CountTokens(TOKEN_KIND kind, Get get) {
    int seen = 0;
    for (auto token = get(); token.kind == kind; token = get()) {
        benchmark::DoNotOptimize(token);
        ++seen;
    }
    return seen;
}

void ScanLiterals(benchmark::State& state, const Family& family) {
    const std::u16string text = LiteralText(family);
    const auto length = static_cast<int32_t>(text.size());
    const std::unique_ptr<Scanner> scanner(static_cast<Scanner*>(Scanner::CreateObject()));
    int seen = 0;
    for (auto _ : state) {
        MEMSTREAM_W stream(text.data(), length, length, nullptr);
        scanner->AssignStream(stream, 1);
        seen = CountTokens(family.kind, [&] { return scanner->GetToken(); });
        scanner->ReleaseStream();
    }
    if (seen != kCount) {
        state.SkipWithError("a literal was not taken for what it is");
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}

bool IsSame(const Token& ours, const RivalToken& rival) {
    if (ours.kind != rival.kind || ours.line != rival.line ||
        std::u16string_view(ours.text) != rival.text ||
        std::u16string_view(ours.space) != rival.space) {
        return false;
    }
    if (ours.kind != TK_TIME) {
        return ours.GetNumber() == rival.value;
    }
    const Time& time = *ours.GetTime();
    const auto& loops = *reinterpret_cast<const RivalTime*>(rival.value);
    return time.days == loops.days && time.sign == loops.sign && !(time.ms < loops.ms) &&
           !(time.ms > loops.ms);
}

bool DeliverTheSame(const std::u16string& text) {
    const auto length = static_cast<int32_t>(text.size());
    MEMSTREAM_W stream(text.data(), length, length, nullptr);
    const std::unique_ptr<Scanner> scanner(static_cast<Scanner*>(Scanner::CreateObject()));
    scanner->AssignStream(stream, 1);
    LiteralLoop loop(text);
    for (;;) {
        const Token ours = scanner->GetToken();
        const RivalToken rival = loop.GetToken();
        if (ours.kind == TK_EOF && rival.kind == TK_EOF) {
            return true;
        }
        if (!IsSame(ours, rival)) {
            return false;
        }
    }
}

void LoopOverLiterals(benchmark::State& state, const Family& family) {
    const std::u16string text = LiteralText(family);
    int seen = 0;
    for (auto _ : state) {
        LiteralLoop loop(text);
        seen = CountTokens(family.kind, [&] { return loop.GetToken(); });
    }
    if (seen != kCount || !DeliverTheSame(text)) {
        state.SkipWithError("the loop delivers other tokens");
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}

void ConvertLiterals(benchmark::State& state, const Family& family) {
    if (!family.convert) {
        LoopOverLiterals(state, family);
        return;
    }
    const Literals literals = MakeLiterals(family.make);
    for (auto _ : state) {
        for (const std::string& literal : literals) {
            family.convert(literal);
        }
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}

const bool kRegistered = [] {
    std::string last;
    bool hasLoop = false;
    for (const Family& family : kFamilies) {
        const std::string ours = std::string("literals/") + family.name + "/lq_data";
        const std::string rival = std::string("literals/") + family.name + "/" + family.rival;
        if (ours != last) {
            benchmark::RegisterBenchmark(ours.c_str(), ScanLiterals, family);
            hasLoop = !family.convert;
        }
        last = ours;
        benchmark::RegisterBenchmark(rival.c_str(), ConvertLiterals, family);
        Compare({std::string(family.name) + " alone, a literal", ours, rival,
                 !family.convert ? 1.3
                 : hasLoop       ? 0.0
                                 : 2.0});
    }
    return true;
}();

}  // namespace
}  // namespace lq::bench
