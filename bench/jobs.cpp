// Fixed jobs whose instructions are counted (./dev bench --check): what is timed elsewhere, small
// enough for a simulator, and the same on every run.
//
//   lq_jobs JOB, under valgrind --tool=callgrind --instr-atstart=no
#include <cstdio>
#include <memory>
#include <sstream>
#include <string_view>
#include <valgrind/callgrind.h>

#include "bench/declared_global.h"
#include "bench/inputs.h"
#include "lq_data/cgtab.h"
#include "lq_data/detail/text_hash.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/hash_table.h"
#include "lq_data/host/base/streams.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/scanner.h"
#include "tools/lq/keywords.h"
#include "tools/lq/translation.h"

namespace lq::bench {
namespace {

// What lies between its life's ends is counted.
class Counted {
  public:
    Counted() { CALLGRIND_START_INSTRUMENTATION; }
    ~Counted() { CALLGRIND_STOP_INSTRUMENTATION; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
};

std::unique_ptr<CgTab> NewTables() {
    int ok = 0;
    return std::make_unique<CgTab>(ok, nullptr);
}

bool Scan() {
    const std::u16string text = GeneratedSource(2000);
    const auto length = static_cast<int32_t>(text.size());
    MEMSTREAM_W stream(text.data(), length, length, nullptr);
    const std::unique_ptr<Scanner> scanner(static_cast<Scanner*>(Scanner::CreateObject()));
    tool::RegisterKeywords(*scanner);
    const Counted counted;
    scanner->Initialize(stream);
    for (;;) {
        const Token token = scanner->GetToken();
        if (token.kind == TK_EOF || token.kind == TK_ERROR) {
            return token.kind == TK_EOF;
        }
    }
}

bool Hash() {
    const std::vector<std::u16string> names = Names(20'000);
    HashTable table(10001, 0);
    const Counted counted;
    int32_t id = 0;
    for (const std::u16string& name : names) {
        table.Insert(name.c_str(), id++);
    }
    int32_t found = 0;
    for (const std::u16string& name : names) {
        found += table.GetID(name.c_str()) >= 0 ? 1 : 0;
    }
    return found == id;
}

bool RecordFile() {
    constexpr uint32_t kBlock = 4096;
    unsigned char bytes[kBlock] = {};
    R_FILE file(kBlock);
    const Counted counted;
    for (int i = 0; i < 20'000; ++i) {
        file.Write(bytes, 40);
    }
    for (int i = 0; i < 200; ++i) {
        file.Lseek(i * 1000, 0);
        file.InsWrite(bytes, i % 2 == 0 ? kBlock : 40);
        file.Lseek(i * 700, 0);
        file.Delete(40);
    }
    file.Lseek(0, 0);
    const void* block = nullptr;
    int32_t read = 0;
    while (const uint32_t size = file.BlRead(block)) {
        read += static_cast<int32_t>(size);
    }
    return read == file.Filelength();
}

bool Tables() {
    const std::vector<std::u16string> names = Names(5000);
    DeclaredGlobal global;
    const auto tables = NewTables();
    const auto restored = NewTables();
    MEMSTREAM_A image;
    const Counted counted;
    for (const std::u16string& name : names) {
        tables->Insert(global.Named(name));
    }
    if (!tables->Save(image) || !restored->Restore(image)) {
        return false;
    }
    for (const std::u16string& name : names) {
        CgTab::GLB_LINE line;
        if (restored->Look(name.c_str(), &line, 0) < 0) {
            return false;
        }
    }
    return true;
}

bool Translate() {
    std::istringstream xml(Project(2000, 100));
    host::Project project;
    std::vector<host::Report> reports;
    const Counted counted;
    const bool read = host::ReadPlcopen(xml, "generated", project, reports);
    const tool::Translation translation = tool::Translate(project);
    host::SetProject(nullptr);
    return read && translation.refusals.empty() && translation.declarations == 2300;
}

constexpr struct {
    std::string_view name;
    bool (*run)();
} kJobs[] = {{"scan", Scan},
             {"hash", Hash},
             {"record-file", RecordFile},
             {"tables", Tables},
             {"translate", Translate}};

}  // namespace
}  // namespace lq::bench

int main(int argc, char** argv) {
    for (const auto& job : lq::bench::kJobs) {
        if (argc == 2 && job.name == argv[1]) {
            lq::text_hash::SetSeed(1);
            const bool done = job.run();
            std::fprintf(stderr, "%s: %s\n", argv[1], done ? "done" : "went wrong");
            return done ? 0 : 1;
        }
    }
    std::fprintf(stderr, "usage: lq_jobs JOB, one of:");
    for (const auto& job : lq::bench::kJobs) {
        std::fprintf(stderr, " %s", job.name.data());
    }
    std::fprintf(stderr, "\n");
    return 2;
}
