// Reading projects into the model: IEC text beside the bare scan of the same text, and beside the
// same project in PLCopen XML.
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "bench/inputs.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/host/text_source/text_source.h"
#include "lq_data/scanner.h"

namespace lq::bench {
namespace {

constexpr int64_t kGlobals = 20'000;
constexpr int64_t kUnits = 5'000;

int64_t Characters() {
    int64_t all = 0;
    for (const std::u16string& text : SourceTexts()) {
        all += static_cast<int64_t>(text.size());
    }
    return all;
}

// File by file: behind the stray quote of one, the bare scan would take the next ones for a string.
void ReadTexts(benchmark::State& state) {
    for (auto _ : state) {
        host::Project project;
        std::vector<host::Report> reports;
        for (const std::u16string& text : SourceTexts()) {
            if (!host::ReadText(text, "text", project, reports)) {
                state.SkipWithError("a text was not read");
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * Characters());
}

void ScanTexts(benchmark::State& state) {
    for (auto _ : state) {
        for (const std::u16string& text : SourceTexts()) {
            const auto length = static_cast<int32_t>(text.size());
            MEMSTREAM_W stream(text.data(), length, length, nullptr);
            const std::unique_ptr<CObject> object(Scanner::CreateObject());
            auto& scanner = static_cast<Scanner&>(*object);
            scanner.Initialize(stream);
            while (scanner.GetToken().kind != TK_EOF) {
            }
            scanner.ReleaseStream();
        }
    }
    state.SetItemsProcessed(state.iterations() * Characters());
}

// What Project (inputs.h) declares, as text.
std::string ProjectAsText() {
    std::ostringstream text;
    for (int64_t i = 0; i < kUnits; ++i) {
        text << "FUNCTION_BLOCK Unit_" << i << "\nVAR_INPUT\n    Enable : BOOL;\n"
             << "    Setpoint : REAL := 1.5;\nEND_VAR\nVAR_OUTPUT\n    Ready : BOOL;\nEND_VAR\n"
             << "    Ready := Enable AND (Setpoint > " << i << ".0);\nEND_FUNCTION_BLOCK\n\n";
    }
    text << "CONFIGURATION c\n  RESOURCE r ON CPU\n    VAR_GLOBAL\n";
    for (int64_t i = 0; i < kGlobals; ++i) {
        text << "      Conveyor_Motor_" << i << " : INT := " << i % 1000 << ";\n";
    }
    text << "    END_VAR\n  END_RESOURCE\nEND_CONFIGURATION\n";
    return text.str();
}

template <typename Read>
void ReadProject(benchmark::State& state, const std::string& bytes, Read read) {
    std::size_t declarations = 0;
    for (auto _ : state) {
        std::istringstream source(bytes);
        host::Project project;
        std::vector<host::Report> reports;
        read(source, project, reports);
        declarations = project.Declarations().size() - host::Project().Declarations().size();
    }
    if (declarations != static_cast<std::size_t>(kGlobals + 3 * kUnits)) {
        state.SkipWithError("not all was read");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(declarations));
}

void ReadAsText(benchmark::State& state) {
    ReadProject(state, ProjectAsText(), [](auto& source, auto& project, auto& reports) {
        host::ReadText(source, "project", project, reports);
    });
}

void ReadAsXml(benchmark::State& state) {
    ReadProject(state, Project(kGlobals, kUnits), [](auto& source, auto& project, auto& reports) {
        host::ReadPlcopen(source, "project", project, reports);
    });
}

const bool kRegistered = [] {
    benchmark::RegisterBenchmark("read/text", ReadTexts);
    benchmark::RegisterBenchmark("read/bare scan", ScanTexts);
    benchmark::RegisterBenchmark("read/project as text", ReadAsText);
    benchmark::RegisterBenchmark("read/project as XML", ReadAsXml);
    Compare({"read source texts, a character", "read/text", "read/bare scan", 4.0});
    Compare(
        {"read 35,000 declarations as text", "read/project as text", "read/project as XML", 1.0});
    return true;
}();

}  // namespace
}  // namespace lq::bench
