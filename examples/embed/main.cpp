// Reads a PLCopen XML project, loads the header of one of its units and types the initial values of
// its declarations: embed plant.xml Clamp
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <lq_data/code_page.h>
#include <lq_data/containers.h>
#include <lq_data/frame.h>
#include <lq_data/host/model/project.h>
#include <lq_data/host/plcopen/plcopen.h>
#include <lq_data/host/text/message.h>
#include <lq_data/host/text/utf.h>
#include <lq_data/pouh.h>
#include <lq_data/types.h>
#include <string_view>
#include <vector>

namespace {

// The records copy a text with its terminator into a buffer that must be large enough, and tell the
// length of initial values and comments alone. A name is one of the model's, between two question
// marks if it is faulty, or that of an implicit parameter: none needs more room than this.
size_t RoomForNames(const lq::host::Project& project) {
    size_t longest = std::u16string_view(u"ENO").size();
    for (const lq::host::Pou& pou : project.Pous()) {  // a function returns its result by its name
        longest = std::max(longest, std::u16string_view(pou.name).size());
    }
    for (const lq::host::Declaration& declaration : project.Declarations()) {
        longest = std::max(longest, std::u16string_view(declaration.name).size());
    }
    return longest + std::size("??");
}

void Print(const DECL_TYP* decl, size_t room) {
    std::vector<char16_t> name(room);
    std::vector<char16_t> initial(1);
    UNNAMED_TYPE_TYP* type = nullptr;
    SIMPLE_SPEC_TYP* spec = nullptr;
    uint32_t kind = 0;
    GetAttrOfDecl(decl, POUH_NAME, name.data());
    GetAttrOfDecl(decl, POUH_TYPE, &type);
    GetAttrOfUnnamedType(type, POUH_TYPEKIND, &kind);
    if (kind == DT_ELEMENTARY) {
        GetAttrOfUnnamedType(type, POUH_TYPESPEC, &spec);
        uint32_t length = 0;
        GetAttrOfSimpleSpec(spec, POUH_INITVALUELEN, &length);
        initial.resize(length + 1);
        GetAttrOfSimpleSpec(spec, POUH_INITVALUE, initial.data());
    }
    Val value;
    const bool isTyped = value.Set(initial.data(), 0) != 0;
    std::printf("%s%s%s%s\n", lq::host::EncodeUtf8(name.data()).c_str(), initial[0] ? " := " : "",
                lq::host::EncodeUtf8(initial.data()).c_str(), isTyped ? " (a constant)" : "");
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
        const size_t room = RoomForNames(project);
        void* slot = nullptr;
        for (uint32_t at = ListGet(declarations, slot, nullptr, LC_FIRST, 0); at != 0;
             at = ListGet(declarations, slot, nullptr, LC_NEXT, 0)) {
            Print(*static_cast<DECL_TYP**>(slot), room);
        }
    }
    DestroyPOUHeader(header);
    lq::host::SetProject(nullptr);
    // A text of the library's resources, which lie beside it.
    std::printf("%s\n", lq::host::EncodeUtf8(GetResString(10000)).c_str());
    return isLoaded ? 0 : 1;
}
