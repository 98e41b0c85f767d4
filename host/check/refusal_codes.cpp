// Which check says the same as a refusal of the tables, and as a report of a reader.

#include "host/check/checks.h"
#include "host/model/report_codes.h"
#include "lq_data/host/check/check.h"
#include "lq_data/translate.h"

namespace lq::host {

namespace {

constexpr uint16_t kNotEntered = 21;

uint16_t CodeOf(DeclFault fault) {
    switch (fault) {
        case DeclFault::kNameTooLong:
            return 1014;
        case DeclFault::kTypeName:
        case DeclFault::kArrayType:
            return 2001;
        case DeclFault::kInitialValue:
            return 3001;
        case DeclFault::kStringLength:
            return 2009;
        case DeclFault::kAddress:
            return 4001;
        case DeclFault::kNone:
        case DeclFault::kTypeKind:
        case DeclFault::kScope:
        case DeclFault::kTableType:
        case DeclFault::kTextTooLong:
        case DeclFault::kMemory:
            break;
    }
    return kNotEntered;
}

uint16_t CodeOf(RefusalReason reason, DeclFault fault) {
    switch (reason) {
        case RefusalReason::kDeclaration:
            return CodeOf(fault);
        case RefusalReason::kNoIdentifier:
            return 1001;
        case RefusalReason::kGlobalTwice:
            return 1011;
        case RefusalReason::kComponentTwice:
            return 1003;
        case RefusalReason::kNoGlobal:
            return 5001;
        case RefusalReason::kUnitName:
        case RefusalReason::kLabelName:
            return 1014;
        case RefusalReason::kLabelTwice:
            return 8009;
        case RefusalReason::kTypeName:
        case RefusalReason::kTemporary:
        case RefusalReason::kUnit:
        case RefusalReason::kComponents:
            break;
    }
    return kNotEntered;
}

}  // namespace

const Check& CheckOf(RefusalReason reason, DeclFault fault) noexcept {
    return *check::FindRow(CodeOf(reason, fault));
}

// A reader of an embedder's own may have no codes.
const Check& CheckOf(const Report& report) noexcept {
    const Check* const row = check::FindRow(report.code);
    return row ? *row : *check::FindRow(report.error ? kUnreadable : kNotRead);
}

}  // namespace lq::host
