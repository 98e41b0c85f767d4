// Section keywords to scopes, through a hash table that is filled on first use.

#include "lq_data/detail/chars.h"
#include "lq_data/hash_table.h"
#include "lq_data/pouh.h"
#include "pouh/record_access.h"

namespace {

struct Keyword {
    const char16_t* text;
    DECL_SCOPE scope;
};

// In the order of their entry into the table.
constexpr Keyword kKeywords[] = {
    {u"VAR_GLOBAL", DS_VAR_GLOBAL},
    {u"VAR_GLOBAL_CONSTANT", DS_VAR_GLOBAL_CONSTANT},
    {u"VAR_GLOBAL_RETAIN", DS_VAR_GLOBAL_RETAIN},
    {u"VAR_GLOBAL_CONSTANT_RETAIN", DS_VAR_GLOBAL_CONSTANT_RETAIN},
    {u"VAR", DS_VAR},
    {u"VAR_CONSTANT", DS_VAR_CONSTANT},
    {u"VAR_RETAIN", DS_VAR_RETAIN},
    {u"VAR_CONSTANT_RETAIN", DS_VAR_CONSTANT_RETAIN},
    {u"VAR_INPUT", DS_VAR_INPUT},
    {u"VAR_INPUT CONSTANT", DS_VAR_INPUT_CONSTANT},
    {u"VAR_OUTPUT", DS_VAR_OUTPUT},
    {u"VAR_IN_OUT", DS_VAR_IN_OUT},
    {u"VAR_INPUT_RETAIN", DS_VAR_INPUT_RETAIN},
    {u"VAR_OUTPUT_RETAIN", DS_VAR_OUTPUT_RETAIN},
    {u"VAR_EXTERNAL", DS_VAR_EXTERNAL},
    {u"VAR_EXTERNAL_CONSTANT", DS_VAR_EXTERNAL_CONSTANT},
    {u"VAR_EXTERNAL_RETAIN", DS_VAR_EXTERNAL_RETAIN},
    {u"VAR_EXTERNAL_CONSTANT_RETAIN", DS_VAR_EXTERNAL_CONSTANT_RETAIN},
    {u"VAR_IN_EXT", DS_VAR_IN_EXT},
};

constexpr unsigned kBuckets = 233;

// One table for the process.
HashTable scopeTable(kBuckets, 1);
bool isFilled = false;

bool Fill() {
    for (const Keyword& keyword : kKeywords) {
        if (!scopeTable.Insert(keyword.text, static_cast<int32_t>(keyword.scope))) {
            scopeTable.RemoveAll();
            return false;
        }
    }
    return true;
}

// The same answer without the table, for which memory may be too short.
DECL_SCOPE SearchKeywords(const char16_t* text) {
    for (const Keyword& keyword : kKeywords) {
        if (lq::chars::Equal(keyword.text, text)) {
            return keyword.scope;
        }
    }
    return DS_UNKNOWN;
}

}  // namespace

DECL_SCOPE GetDeclScope(const char16_t* keyword) {
    if (!keyword) {
        return DS_UNKNOWN;
    }
    isFilled = isFilled || Fill();
    if (!isFilled) {
        return SearchKeywords(keyword);
    }
    uint32_t scope = DS_UNKNOWN;
    scopeTable.Lookup(keyword, scope);
    return static_cast<DECL_SCOPE>(scope);
}

void LQHeadReleaseHashTable() {
    scopeTable.RemoveAll();
    isFilled = false;
}

const char16_t* lq::pouh::KeywordOfScope(uint32_t scope) {
    for (const Keyword& keyword : kKeywords) {
        if (keyword.scope == scope) {
            return keyword.text;
        }
    }
    return u"";
}
