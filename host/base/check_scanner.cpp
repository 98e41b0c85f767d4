// The check scanner is made on first use and kept: every construction of a scanner resets a flag
// that all scanners share, so that making one per loan would disturb the others.
#include "host/base/check_scanner.h"

#include <cstdint>

#include "lq_data/env/lq_base.h"
#include "lq_data/scanner.h"

namespace {

struct Keyword {
    int id;
    const char16_t* name;
};

constexpr Keyword kTypeKeywords[] = {
    {6461, u"SINT"},        {6462, u"INT"},     {6463, u"DINT"},
    {6464, u"LINT"},        {6465, u"USINT"},   {6466, u"UINT"},
    {6467, u"UDINT"},       {6468, u"ULINT"},   {6469, u"BOOL"},
    {6470, u"REAL"},        {6471, u"LREAL"},   {6472, u"BYTE"},
    {6473, u"WORD"},        {6474, u"DWORD"},   {6475, u"LWORD"},
    {6476, u"TIME"},        {6477, u"DATE"},    {6478, u"TOD"},
    {6479, u"TIME_OF_DAY"}, {6480, u"DT"},      {6481, u"DATE_AND_TIME"},
    {6482, u"ANY"},         {6483, u"ANY_NUM"}, {6484, u"ANY_REAL"},
    {6485, u"ANY_INT"},     {6486, u"ANY_BIT"}, {6487, u"ANY_DATE"},
    {6488, u"ANY16"},       {6489, u"ANY32"},   {6490, u"ANY_SIMPLE"},
    {6491, u"STRING"},      {6492, u"ARRAY"},   {6493, u"OF"},
    {6504, u"STRUCT"},      {6505, u"UNION"},
};

constinit Scanner* checkScanner = nullptr;
constinit int timesLent = 0;

// A scanner with all keywords and no stream, or null.
Scanner* MakeCheckScanner() {
    auto* scanner = static_cast<Scanner*>(Scanner::CreateObject());
    if (!scanner) {
        return nullptr;
    }
    MEMSTREAM_W nothing(u"", 0, 0, nullptr);
    scanner->Initialize(nothing);
    scanner->ReleaseStream();
    for (const Keyword& keyword : kTypeKeywords) {
        if (!scanner->RegisterKeyword(keyword.name, keyword.id)) {
            delete scanner;
            return nullptr;
        }
    }
    return scanner;
}

}  // namespace

Scanner* GetCheckScanner() {
    ++timesLent;
    if (!checkScanner) {
        checkScanner = MakeCheckScanner();
    }
    return checkScanner;
}

void ReleaseCheckScanner() {
    if (timesLent > 0) {
        --timesLent;
    }
}

int lq::host::DestroyCheckScanner() {
    if (timesLent == 0) {
        delete checkScanner;
        checkScanner = nullptr;
    }
    return timesLent;
}
