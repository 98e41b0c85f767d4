// A unit of 100 variables in a project of 1,000 such units is translated anew, as at every
// keystroke.
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/model/translation_source.h"
#include "lq_data/translate.h"

namespace lq::bench {
namespace {

constexpr int kUnits = 1000;
constexpr int kVariables = 100;
constexpr int kLabels = 5;
constexpr double kMillisecond = 1e6;

host::Text Numbered(host::Project& project, const char* text, int number) {
    const std::string name = text + std::to_string(number);
    return project.Intern(std::u16string(name.begin(), name.end()));
}

// The units, by identifier.
std::vector<ID> Fill(host::Project& project) {
    static constexpr const char16_t* kTypes[] = {u"INT", u"BOOL", u"REAL", u"ARRAY [0..9] OF INT"};
    std::vector<ID> units;
    for (int i = 0; i < kUnits; ++i) {
        host::Pou pou;
        pou.name = Numbered(project, "Unit_", i);
        units.push_back(project.AddPou(pou));
        host::Body& body = project.EditPou(units.back())->bodies.emplace_back();
        for (int n = 0; n < kLabels; ++n) {
            body.labels.push_back({Numbered(project, "L", n)});
        }
        for (int n = 0; n < kVariables; ++n) {
            host::Declaration declaration;
            declaration.owner = units.back();
            declaration.name = Numbered(project, "Variable_", n);
            declaration.type = kTypes[n % 10 < 3 ? n % 10 : n % 10 == 9 ? 3 : 0];
            declaration.initValue = n % 2 == 0 && n % 10 != 9 ? u"1" : u"";
            project.AddDeclaration(declaration);
        }
    }
    return units;
}

void TranslateAnew(benchmark::State& state) {
    host::Project project;
    const std::vector<ID> units = Fill(project);
    host::SetProject(&project);
    host::ProjectSource source(project);
    std::unique_ptr<CgTab> tables;
    const auto makeSet = [&] {
        int ok = 0;
        tables = std::make_unique<CgTab>(ok, nullptr);
        Translate(source, *tables, nullptr);
    };
    makeSet();
    std::size_t i = 0;
    for (auto _ : state) {
        i = i + 7 < units.size() ? i + 7 : i + 7 - units.size();
        const auto outcome = TranslateUnit(source, *tables, nullptr, units[i]).outcome;
        if (outcome == TranslationOutcome::kProject) {
            state.PauseTiming();
            makeSet();
            state.ResumeTiming();
        } else if (outcome != TranslationOutcome::kDone) {
            state.SkipWithError("the unit was not translated");
        }
    }
    tables.reset();
    host::SetProject(nullptr);
    state.SetItemsProcessed(state.iterations());
}

const bool kRegistered = [] {
    benchmark::RegisterBenchmark("translate/unit anew", TranslateAnew);
    Compare({"translate a unit of 100 variables anew", "translate/unit anew", "", kMillisecond});
    return true;
}();

}  // namespace
}  // namespace lq::bench
