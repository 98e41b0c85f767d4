// Reads a PLCopen XML project, loads the header of one of its units and types the initial values of
// its declarations: embed plant.xml Clamp
#include <cstdio>
#include <lq_data/code_page.h>
#include <lq_data/frame.h>
#include <lq_data/handles.h>
#include <lq_data/host/model/project.h>
#include <lq_data/host/plcopen/plcopen.h>
#include <lq_data/host/text/message.h>
#include <lq_data/host/text/utf.h>
#include <lq_data/records.h>
#include <lq_data/types.h>
#include <vector>

using lq::host::EncodeUtf8;

namespace {

// [header]
// Loads the header of a unit from the current project and prints its declarations.
bool Print(const char16_t* unit) {
    const lq::HeaderPtr header(CreatePOUHeader());
    if (!LoadPOUHeader(header.get(), unit)) {
        return false;
    }
    for (const lq::Declaration decl : lq::Declarations(header.get())) {
        const bool isElementary = decl.TypeKind() == DT_ELEMENTARY;
        const std::u16string_view initial = isElementary ? decl.InitialValue() : u"";
        Val value;
        const bool isConstant = value.Set(initial.data(), 0) != 0;
        std::printf("%s%s%s%s\n", EncodeUtf8(decl.Name()).c_str(),
                    initial.empty() ? "" : " := ", EncodeUtf8(initial).c_str(),
                    isConstant ? " (a constant)" : "");
    }
    return true;
}
// [/header]

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
    const bool isLoaded = Print(unit.c_str());
    lq::host::SetProject(nullptr);
    // A text of the library's resources, which lie beside it.
    std::printf("%s\n", EncodeUtf8(GetResString(10000)).c_str());
    return isLoaded ? 0 : 1;
}
