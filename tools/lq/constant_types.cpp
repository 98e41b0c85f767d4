#include "tools/lq/constant_types.h"

#include <cmath>
#include <cstring>

#include "lq_data/host/text/utf.h"

namespace lq::tool {

namespace {

std::string NameOf(IEC_TYPE type) {
    return host::EncodeUtf8(IecTypeConv().GetName(type));
}

uint32_t BitsOf(IEC_TYPE type) {
    return static_cast<uint32_t>(MapTypeToBitset(type));
}

uint32_t BitsOf(std::u16string_view text, Val value) {
    uint32_t bits = 0;
    ANY_INT_32 integer;
    if (value.Get(integer)) {
        if (text.find(u'#') != text.npos && !integer.sign) {
            DCE_GetBOHConstRange(static_cast<int32_t>(integer.magnitude), &bits);
        } else {
            DCE_GetIntConstRange(integer.sign, integer.magnitude, &bits);
        }
        return bits;
    }
    switch (value.type) {
        case VT_BOOL:
            return BitsOf(IEC_BOOL);
        case VT_LREAL: {
            double number = 0.0;
            std::memcpy(&number, value.payload, sizeof(number));
            DCE_GetRealConstRange(std::fabs(number), &bits);
            return bits;
        }
        case VT_TIME:
            return BitsOf(IEC_TIME);
        case VT_DATE:
            return BitsOf(IEC_DATE);
        case VT_TOD:
            return BitsOf(IEC_TOD);
        case VT_DT:
            return BitsOf(IEC_DT);
        default:
            return 0;
    }
}

}  // namespace

std::vector<std::string> TypeNames(uint32_t bits) {
    std::vector<std::string> names;
    for (const IEC_TYPE_DSC* dsc = GetIecTypeDsc(); dsc != GetIecTypeDsc() + GetIecDscSize();
         ++dsc) {
        const bool isFirstName = NameOf(dsc->id) == host::EncodeUtf8(dsc->name);
        if (IsElementaryType(dsc->id) && isFirstName && (BitsOf(dsc->id) & bits) != 0) {
            names.push_back(NameOf(dsc->id));
        }
    }
    return names;
}

ConstantTypes TypesOf(std::u16string_view text, const Val& value) {
    const uint32_t bits = BitsOf(text, value);
    auto smallest = static_cast<int32_t>(bits);
    MapBitsetToMinSize(&smallest);
    const bool isOne = smallest != 0 && (smallest & (smallest - 1)) == 0;
    return {TypeNames(bits), NameOf(MapAllBitsetToType(static_cast<int32_t>(bits))),
            isOne ? NameOf(MapBitsetToType(smallest)) : ""};
}

}  // namespace lq::tool
