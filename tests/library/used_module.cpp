// A module that uses the library and its host layer, as an embedder's plug-in does:
// unload_test.cpp loads and unloads it.
#include <sstream>

#include "host/base/check_scanner.h"
#include "lq_data/cgtab.h"
#include "lq_data/frame.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/pouh.h"
#include "lq_data/scanner.h"
#include "lq_data/types.h"

class Used : public CObject {
    LQ_DECLARE_DYNAMIC(Used)
};
LQ_IMPLEMENT_DYNAMIC(Used, CObject, nullptr)

namespace {

constexpr char kProject[] =
    "<project xmlns='http://www.plcopen.org/xml/tc6_0201'><types><dataTypes/><pous>"
    "<pou name='Größe' pouType='function'><interface><returnType><INT/></returnType></interface>"
    "<body><ST/></body></pou></pous></types></project>";

// From a document to a header, tables and their constants.
bool DoesItsWork() {
    lq::host::Project project;
    std::vector<lq::host::Report> reports;
    std::istringstream source(kProject);
    if (!lq::host::ReadPlcopen(source, "project", project, reports)) {
        return false;
    }
    lq::host::SetProject(&project);
    POU_HEADER_TYP* const header = CreatePOUHeader();
    const bool isLoaded = LoadPOUHeader(header, u"größe") != 0;
    DestroyPOUHeader(header);
    lq::host::SetProject(nullptr);
    int ok = 0;
    CgTab tables(ok, nullptr);
    Lit real;
    return isLoaded && ok && real.SetText(u"1.7E400") && real.val.Set(u"1.7E300", 0) &&
           tables.Insert(u"L1", CgTab::kLabelDefinition) >= 0 &&
           IecTypeConv().GetId(u"STRING(7)") == IEC_STRING &&
           IecTypeConv().GetId(u"ARRAY [1..2] OF INT") == IEC_ARRAY;
}

}  // namespace

// The library's text for a number of 64 bits, in UTF-8; empty when something went wrong.
extern "C" LQ_DATA_API void LqUse(char (&text)[64]) {
    const bool works = DoesItsWork();
    const std::string found = works ? lq::host::EncodeUtf8(GetResString(10000)) : "";
    text[found.copy(text, sizeof text - 1)] = 0;
}

// Whether texts are still there, which are kept for the thread.
extern "C" LQ_DATA_API bool LqHasTexts() {
    return *GetResString(10000) != 0;
}

// What a thread does that used the library and stays when it goes.
extern "C" LQ_DATA_API void LqRelease() {
    lq::ReleaseThread();
}
