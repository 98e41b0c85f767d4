// Reads the header of a unit, with the initial values that are constants.
#include <cstdio>
#include <lq_data/handles.h>
#include <lq_data/host/model/project.h>
#include <lq_data/host/plcopen/plcopen.h>
#include <lq_data/host/text/utf.h>
#include <lq_data/records.h>
#include <lq_data/types.h>
#include <sstream>
#include <string>
#include <vector>

using lq::host::EncodeUtf8;

namespace {

constexpr char kProject[] = R"(<project xmlns="http://www.plcopen.org/xml/tc6_0201"><types>
<dataTypes/><pous><pou name="Clamp" pouType="function"><interface>
<returnType><REAL/></returnType><inputVars>
<variable name="value"><type><REAL/></type></variable>
<variable name="limits"><type><array><dimension lower="1" upper="2"/><baseType><REAL/></baseType>
</array></type></variable>
<variable name="factor"><type><REAL/></type><initialValue><simpleValue value="1.5"/></initialValue>
<documentation><p xmlns="http://www.w3.org/1999/xhtml">Multiplies the value</p></documentation>
</variable></inputVars></interface></pou></pous></types></project>)";

// [header]
// Loads the header of a unit from the current project and prints its declarations.
bool Print(const char16_t* unit) {
    const lq::HeaderPtr header(CreatePOUHeader());
    if (!LoadPOUHeader(header.get(), unit)) {
        return false;
    }
    for (const lq::Declaration decl : lq::Declarations(header.get())) {
        std::printf("%s %s: %s", EncodeUtf8(decl.Section()).c_str(),
                    EncodeUtf8(decl.Name()).c_str(), EncodeUtf8(decl.TypeText()).c_str());
        Val value;
        if (decl.TypeKind() == DT_ELEMENTARY && value.Set(decl.InitialValue().data(), 0)) {
            std::printf(" := %s, a constant", EncodeUtf8(decl.InitialValue()).c_str());
        }
        std::printf("%s%s\n", decl.Comment().empty() ? "" : ", ",
                    EncodeUtf8(decl.Comment()).c_str());
    }
    return true;
}
// [/header]

}  // namespace

int main() {
    std::istringstream source{std::string(kProject)};
    lq::host::Project project;
    std::vector<lq::host::Report> reports;
    if (!lq::host::ReadPlcopen(source, "clamp.xml", project, reports)) {
        return 1;
    }
    lq::host::SetProject(&project);
    const bool isLoaded = Print(u"Clamp");
    lq::host::SetProject(nullptr);
    return isLoaded ? 0 : 1;
}
