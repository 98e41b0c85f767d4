// Reads a PLCopen XML project, loads the header of one of its units and types the initial values of
// its declarations: embed plant.xml Clamp
#include <cstdio>
#include <frame/code_page.h>
#include <host/model/project.h>
#include <host/plcopen/plcopen.h>
#include <host/text/message.h>
#include <host/text/utf.h>
#include <lq_data/containers.h>
#include <lq_data/frame.h>
#include <lq_data/pouh.h>
#include <lq_data/types.h>
#include <vector>

namespace {

void Print(const DECL_TYP* decl) {
    char16_t name[256] = {};
    char16_t initial[256] = {};
    UNNAMED_TYPE_TYP* type = nullptr;
    SIMPLE_SPEC_TYP* spec = nullptr;
    uint32_t kind = 0;
    GetAttrOfDecl(decl, POUH_NAME, name);
    GetAttrOfDecl(decl, POUH_TYPE, &type);
    GetAttrOfUnnamedType(type, POUH_TYPEKIND, &kind);
    if (kind == DT_ELEMENTARY) {
        GetAttrOfUnnamedType(type, POUH_TYPESPEC, &spec);
        GetAttrOfSimpleSpec(spec, POUH_INITVALUE, initial);
    }
    Val value;
    const bool isTyped = value.Set(initial, 0) != 0;
    std::printf("%s%s%s%s\n", lq::host::EncodeUtf8(name).c_str(), initial[0] ? " := " : "",
                lq::host::EncodeUtf8(initial).c_str(), isTyped ? " (a constant)" : "");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: embed PROJECT UNIT\n");
        return 2;
    }
    lq::host::UseLanguage(lq::frame::ReadCodePage());  // what the reader reports is in it
    lq::host::Project project;
    std::vector<lq::host::Report> reports;
    const bool isRead = lq::host::ReadPlcopenFile(argv[1], project, reports);
    for (const lq::host::Report& report : reports) {
        std::fprintf(stderr, "%s\n", lq::host::ToText(report).c_str());
    }
    if (!isRead) {
        return 1;
    }
    lq::host::SetProject(&project);

    std::u16string unit;
    lq::host::DecodeUtf8(argv[2], unit);
    POU_HEADER_TYP* const header = CreatePOUHeader();
    POUH_DECL_LIST_TYP* list = nullptr;
    FLIST* declarations = nullptr;
    const bool isLoaded = LoadPOUHeader(header, unit.c_str()) != 0;
    if (isLoaded) {
        GetAttrOfPOUHeader(header, POUH_DECLLIST, &list);
        GetAttrOfPOUHDeclList(list, POUH_LIST, &declarations);
        void* slot = nullptr;
        for (uint32_t at = ListGet(declarations, slot, nullptr, LC_FIRST, 0); at != 0;
             at = ListGet(declarations, slot, nullptr, LC_NEXT, 0)) {
            Print(*static_cast<DECL_TYP**>(slot));
        }
    }
    DestroyPOUHeader(header);
    lq::host::SetProject(nullptr);
    // A text of the library's resources, which lie beside it.
    std::printf("%s\n", lq::host::EncodeUtf8(GetResString(10000)).c_str());
    return isLoaded ? 0 : 1;
}
