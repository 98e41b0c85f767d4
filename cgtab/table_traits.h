// What distinguishes the ten tables, as data.
//
// A line is, behind its 4-byte length: the fixed key bytes, the name length field, the name, the
// table's extra bytes, the user area.
#pragma once

#include <cstdint>

#include "lq_data/cgtab.h"
#include "lq_data/detail/in_order.h"
#include "lq_data/line_bytes.h"

namespace lq::cgtab {

inline constexpr uint32_t kBlockSize = kTableBlockSize;

struct TableTraits {
    uint8_t fixedKey;      // key bytes in front of the name length field
    uint8_t nameLenBytes;  // width of the name length field; 0: lines have no name
    uint8_t nameUnit;      // bytes that one unit of the name length stands for
    bool isHashed;         // found through an index alone
    bool isUnique;         // one entry a search text in that index
    bool hasUserArea;
    bool caseSensitiveIndex;
    bool countsUses;  // a lookup may count: the count ends the extra bytes

    // Searched as if line by line, in an index as far as there is one.
    bool IsWalked() const { return !isHashed && countsUses; }
};

// clang-format off
inline constexpr RowOf<CgTab::TAB_ID, TableTraits> kTraits[] = {
    //                key len unit hashed unique user   case   counts
    {CgTab::TAB_DBG, {0, 1, 1, false, false, true, false, false}},
    {CgTab::TAB_POU, {0, 1, 2, true, false, true, false, false}},
    {CgTab::TAB_CMP, {0, 1, 2, true, false, true, false, true}},
    {CgTab::TAB_GLB, {0, 1, 2, true, true, true, false, false}},
    {CgTab::TAB_ADR, {2, 2, 2, true, true, true, false, false}},
    {CgTab::TAB_CST, {1, 2, 2, true, true, true, true, false}},
    {CgTab::TAB_LBL, {0, 1, 2, true, false, true, false, true}},
    {CgTab::TAB_TMP, {0, 2, 2, false, false, true, true, true}},
    {CgTab::TAB_DMM, {0, 2, 2, false, false, true, true, true}},
    {CgTab::TAB_ARR, {0, 0, 0, false, false, false, false, false}},
};
// clang-format on
static_assert(AreInOrder(kTraits, CgTab::TAB_ARR));

constexpr bool IsTableId(int32_t id) {
    return id >= 0 && id < CgTab::TAB_COUNT;
}
constexpr const TableTraits& TraitsOf(int32_t id) {
    return kTraits[id].value;
}

// Whether an extra descriptor of 4 bytes follows the type in a line.
constexpr bool HasStoredDescriptor(IEC_TYPE type) {
    return type == IEC_STRING || type == IEC_STRUCTURE || type == IEC_FUNCTION_BLOCK;
}

// Scopes of references to globals.
constexpr bool IsExternalScope(uint32_t scope) {
    return scope == DS_VAR_EXTERNAL || scope == DS_VAR_EXTERNAL_RETAIN ||
           scope == DS_VAR_EXTERNAL_CONSTANT || scope == DS_VAR_EXTERNAL_CONSTANT_RETAIN;
}

// Scopes whose declarations may have an address: the globals and the references to them.
constexpr bool IsLocatedScope(uint32_t scope) {
    return IsExternalScope(scope) || scope == DS_VAR_GLOBAL || scope == DS_VAR_GLOBAL_RETAIN ||
           scope == DS_VAR_GLOBAL_CONSTANT || scope == DS_VAR_GLOBAL_CONSTANT_RETAIN;
}

// Scopes of a unit's interface.
constexpr bool IsInterfaceScope(uint32_t scope) {
    return scope == DS_VAR_INPUT || scope == DS_VAR_INPUT_CONSTANT || scope == DS_VAR_OUTPUT ||
           scope == DS_VAR_IN_OUT || scope == DS_VAR_INPUT_RETAIN || scope == DS_VAR_OUTPUT_RETAIN;
}

}  // namespace lq::cgtab
