// Translates the embedder's own model (model.cpp) into the tables: own_model IMAGE
#include <cstdio>
#include <cstring>
#include <lq_data/host/base/streams.h>
#include <lq_data/translate.h>

#include "model.h"

namespace {

struct Source final : lq::TranslationSource {
    const LQSELECTION* GetGlobals() override { return &lists; }
    const LQSELECTION* GetUnits() override { return &units; }
    lq::SourcePlace GetPlace(ID id) override { return {LineOf(id), 0}; }
    lq::IdSelection lists{&kList, 1};
    lq::IdSelection units{&kProgram, 1};
};

// The line of the source stands behind every line of the tables, as lq reads it.
struct Client final : lq::TranslationClient {
    void FillUserArea(CgTab::TAB_ID, const lq::LineOrigin& origin, unsigned char* area,
                      uint32_t size) override {
        std::memcpy(area, &origin.place.line, size);
    }
    uint32_t FillDebugRecord(const lq::LineOrigin& unit, const char16_t* name, uint32_t kind,
                             unsigned char* data) override {
        std::memcpy(data, &unit.place.line, 4);
        data[4] = static_cast<unsigned char>(kind);
        uint32_t size = 5;
        for (; *name; ++name) {  // plain letters
            data[size++] = static_cast<unsigned char>(*name);
        }
        return size;
    }
};

}  // namespace

int main(int argc, char** argv) {
    uint32_t areas[CgTab::kUserTables] = {0, 4, 4, 4, 4, 4, 4, 4, 4};
    int ok = 0;
    CgTab tables(ok, &areas);
    if (argc != 2 || !ok) {
        return 2;
    }
    Source source;
    Client client;
    const lq::TranslationResult result = lq::Translate(source, tables, &client);
    std::printf("%u of %u declarations, %u units\n", result.entered, result.declarations,
                result.units);
    for (const lq::TranslationRefusal& refusal : result) {
        std::printf("line %u is refused: %d\n", refusal.place.line,
                    static_cast<int>(refusal.fault));
    }
    FILESTREAM_A image;
    const bool isSaved = result.outcome == lq::TranslationOutcome::kDone &&
                         image.Open(argv[1], FILESTREAM_A::WRITE) && tables.Save(image) &&
                         image.Close();
    return isSaved ? 0 : 1;
}
