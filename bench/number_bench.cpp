// Literals alone, beside the bare conversion of the same digits: the text cut out already, 8-bit,
// nothing around it.
#include <charconv>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
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
    void (*convert)(const std::string& text);
};

constexpr Family kFamilies[] = {
    {"integers", TK_INTEGER, Decimal, "from_chars",
     [](const std::string& t) { FromChars<uint32_t>(t, 0, 10); }},
    {"based integers", TK_BASED_INTEGER, Based, "from_chars",
     [](const std::string& t) { FromChars<uint32_t>(t, 3, 16); }},
    {"short reals", TK_REAL, Real, "from_chars", FromCharsDouble},
    {"long reals", TK_REAL, LongReal, "from_chars", FromCharsDouble},
    {"long reals", TK_REAL, LongReal, "strtod",
     [](const std::string& t) { benchmark::DoNotOptimize(std::strtod(t.c_str(), nullptr)); }},
    {"durations", TK_TIME, Duration, "from_chars", Components},
    {"times of day", TK_TIME_OF_DAY, Clock, "from_chars", Components},
    {"strings", TK_STRING, Quoted, "plain loop", Unquote},
};

void ScanLiterals(benchmark::State& state, const Family& family) {
    std::u16string text;
    for (const std::string& literal : MakeLiterals(family.make)) {
        text.append(literal.begin(), literal.end());
        text += u' ';
    }
    const auto length = static_cast<int32_t>(text.size());
    const std::unique_ptr<Scanner> scanner(static_cast<Scanner*>(Scanner::CreateObject()));
    int seen = 0;
    for (auto _ : state) {
        MEMSTREAM_W stream(text.data(), length, length, nullptr);
        scanner->AssignStream(stream, 1);
        seen = 0;
        for (Token token = scanner->GetToken(); token.kind == family.kind;
             token = scanner->GetToken()) {
            benchmark::DoNotOptimize(token);
            ++seen;
        }
        scanner->ReleaseStream();
    }
    if (seen != kCount) {
        state.SkipWithError("a literal was not taken for what it is");
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}

void ConvertLiterals(benchmark::State& state, const Family& family) {
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
    for (const Family& family : kFamilies) {
        const std::string ours = std::string("literals/") + family.name + "/lq_data";
        const std::string rival = std::string("literals/") + family.name + "/" + family.rival;
        if (ours != last) {
            benchmark::RegisterBenchmark(ours.c_str(), ScanLiterals, family);
        }
        last = ours;
        benchmark::RegisterBenchmark(rival.c_str(), ConvertLiterals, family);
        Compare({std::string(family.name) + " alone, a literal", ours, rival, 2.0});
    }
    return true;
}();

}  // namespace
}  // namespace lq::bench
