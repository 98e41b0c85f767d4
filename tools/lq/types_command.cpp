#include "lq_data/host/text/utf.h"
#include "lq_data/types.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/output.h"

namespace lq::tool {

namespace {

const char* KindOf(IEC_TYPE type) {
    return IsElementaryType(type) ? "elementary" : IsGenericType(type) ? "generic" : "derived";
}

std::string HexSet(uint32_t bits) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%06X", bits);
    return text;
}

}  // namespace

int RunTypes(const TypesOptions& options) {
    const IecTypeConv names;
    Json rows = Json::array();
    for (const IEC_TYPE_DSC* dsc = GetIecTypeDsc(); dsc != GetIecTypeDsc() + GetIecDscSize();
         ++dsc) {
        rows.push_back({{"number", static_cast<int32_t>(dsc->id)},
                        {"name", host::EncodeUtf8(dsc->name)},
                        {"kind", KindOf(dsc->id)},
                        {"size", IecTypeSize().Get(dsc->id)},
                        {"set", HexSet(static_cast<uint32_t>(MapTypeToBitset(dsc->id)))}});
    }
    if (options.json) {
        Json document = NewDocument();
        document["types"] = rows;
        PrintJson(document);
    } else {
        Print(TableOf("", {{"number", true}, {"name"}, {"kind"}, {"size", true}, {"set"}}, rows));
    }
    return kDone;
}

}  // namespace lq::tool
