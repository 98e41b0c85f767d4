// Lists the located variables of a project.
#include <cstdio>
#include <lq_data/host/model/project.h>
#include <lq_data/host/plcopen/plcopen.h>
#include <lq_data/host/symbols/symbols.h>
#include <lq_data/host/text/utf.h>
#include <sstream>
#include <string>
#include <vector>

using lq::host::EncodeUtf8;

namespace {

constexpr char kProject[] = R"(<project xmlns="http://www.plcopen.org/xml/tc6_0201"><types>
<dataTypes><dataType name="Motor"><baseType><struct>
<variable name="speed"><type><INT/></type></variable>
<variable name="on"><type><BOOL/></type></variable></struct></baseType></dataType></dataTypes>
<pous><pou name="Main" pouType="program"><interface><localVars>
<variable name="fan" address="%QW4"><type><derived name="Motor"/></type></variable>
<variable name="count"><type><INT/></type></variable>
<variable name="lamp" address="%QX0.1"><type><BOOL/></type></variable>
</localVars></interface></pou></pous></types></project>)";

// [symbols]
// Prints what has an address, structures and instances by their members.
void Print(const lq::host::Project& project) {
    lq::host::SymbolOptions options;
    options.located = true;
    options.expand = true;
    lq::host::ForEachSymbol(project, options, [](const lq::host::Symbol& symbol) {
        std::printf("%s.%s : %s at '%s', line %u\n", EncodeUtf8(symbol.path).c_str(),
                    EncodeUtf8(symbol.name).c_str(), EncodeUtf8(symbol.type).c_str(),
                    EncodeUtf8(symbol.address).c_str(), symbol.line);
    });
}
// [/symbols]

}  // namespace

int main() {
    std::istringstream source{std::string(kProject)};
    lq::host::Project project;
    std::vector<lq::host::Report> reports;
    if (!lq::host::ReadPlcopen(source, "fans.xml", project, reports)) {
        return 1;
    }
    Print(project);
    return 0;
}
