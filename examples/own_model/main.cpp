// Translates the global variables of the embedder's own model (model.cpp) into the tables.
#include <cstdio>
#include <lq_data/cgtab.h>
#include <lq_data/containers.h>
#include <lq_data/pouh.h>
#include <string>
#include <string_view>

int main() {
    SYMBOL_TABLE_TYP* const symbols = CreateSymbolTable();
    FLIST* declarations = nullptr;
    int ok = 0;
    CgTab tables(ok, nullptr);
    if (!ok || !LoadSelectedSymbolTable(symbols, ID(1)) ||
        !GetAttrOfSymbolTable(symbols, POUH_LIST, &declarations)) {
        return 1;
    }
    void* slot = nullptr;
    for (uint32_t at = ListGet(declarations, slot, nullptr, LC_FIRST, 0); at != 0;
         at = ListGet(declarations, slot, nullptr, LC_NEXT, 0)) {
        int32_t pos = tables.Insert(*static_cast<DECL_TYP**>(slot));
        CgTab::GLB_LINE line;
        if (pos < 0 || !tables.Read(pos, line, 0, nullptr)) {
            return 1;
        }
        const std::u16string_view name(line.name);  // plain letters
        std::printf("%s: type %d, constant at %d\n", std::string(name.begin(), name.end()).c_str(),
                    static_cast<int>(line.type), static_cast<int>(line.cstLine));
    }
    DestroySymbolTable(symbols);
    return 0;
}
