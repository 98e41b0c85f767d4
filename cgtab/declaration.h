// A declaration as the table set decodes it.
#pragma once

#include <cstdint>

#include "cgtab/line.h"
#include "lq_data/cgtab.h"
#include "lq_data/cgtab_compiler.h"
#include "lq_data/env/lq_base.h"

namespace lq::cgtab {

using lq::DeclFault;

// The texts that the string and array types are read from begin behind the leading word.
const char16_t* BehindWord(const char16_t* text);

// What a STRING type without a length of its own gets: the settings file's answer, or 32.
uint32_t DefaultStringLength();
// The length that follows the word STRING in the scanner's text, to its end.
uint32_t ScanStringLength(Scanner& scanner);

// Reads an array type from behind the word ARRAY into `a.info`, which the caller has cleared, and
// `a.elemDsc`. `typeName` receives the name of a structured element type.
bool ScanArrDsc(Scanner& scanner, CgTab::ArrDsc& a, CLQString& typeName);

// Reads a text that is one direct address; `text` receives its numeric part, at which `adr` then
// points.
bool GetAdrDsc(Scanner& scanner, Address& adr, CLQString& text);

}  // namespace lq::cgtab

// Points into the declaration record and into itself: valid as long as both live and the record is
// not changed.
struct CgTab::DECL_ASCII {
    DECL_ASCII() = default;
    DECL_ASCII(const DECL_ASCII&) = delete;
    DECL_ASCII& operator=(const DECL_ASCII&) = delete;

    const char16_t* name = u"";
    uint32_t scope = 0;
    Address adr;
    IEC_TYPE type = IEC_NO_TYPE;
    TYP_DSC dsc = {.arr = {nullptr, 0}};
    const char16_t* typeText = u"";  // of structures, function blocks and arrays of structures
    const char16_t* initText = u"";
    Val init;
    lq::cgtab::DeclFault fault = lq::cgtab::DeclFault::kNone;

    CLQString addressText;
    CLQString elementTypeName;

    bool Fail(lq::cgtab::DeclFault why) {
        fault = why;
        return false;
    }
};
