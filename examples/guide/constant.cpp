// Tells what a constant is, and whether a variable of type INT can take it.
#include <cstdio>
#include <lq_data/host/text/utf.h>
#include <lq_data/types.h>
#include <string>

using lq::host::EncodeUtf8;

namespace {

// [constant]
// The elementary types that can hold an integer constant.
uint32_t TypesOf(const ANY_INT_32& integer, bool hasBase) {
    uint32_t types = 0;
    if (hasBase) {
        DCE_GetBOHConstRange(static_cast<int32_t>(integer.magnitude), &types);
    } else {
        DCE_GetIntConstRange(integer.sign, integer.magnitude, &types);
    }
    return types;
}

void Check(const char16_t* text) {
    const std::string shown = EncodeUtf8(text);
    Val value(text, 0);
    ANY_INT_32 integer;
    if (value.type == VT_NONE) {
        std::printf("%s is no constant\n", shown.c_str());
    } else if (!value.Get(integer)) {
        std::printf("%s is %s\n", shown.c_str(),
                    value.type == VT_LREAL  ? "a real"
                    : value.type == VT_TIME ? "a duration"
                                            : "another constant");
    } else {
        const bool hasBase = shown.find('#') != shown.npos;
        const uint32_t types = TypesOf(integer, hasBase);
        const auto ofInt = static_cast<uint32_t>(MapTypeToBitset(IEC_INT));
        int32_t smallest = static_cast<int32_t>(types);
        MapBitsetToMinSize(&smallest);
        std::printf("%s %s an INT; the smallest type is %s\n", shown.c_str(),
                    (types & ofInt) != 0 ? "fits" : "does not fit",
                    EncodeUtf8(IecTypeConv().GetName(MapBitsetToType(smallest))).c_str());
    }
}
// [/constant]

}  // namespace

int main() {
    for (const char16_t* text : {u"300", u"-5", u"70000", u"16#FF", u"1.5", u"T#1h", u"1x"}) {
        Check(text);
    }
    return 0;
}
