// Section keywords to scopes.

#include <cstring>
#include <string_view>

#include "lq_data/detail/chars.h"
#include "lq_data/hash_table.h"
#include "lq_data/pouh.h"
#include "lq_data/records.h"

namespace {

using std::u16string_view;

struct Keyword {
    u16string_view text;
    DECL_SCOPE scope;
};

// Constant, so that any number of threads may search it.
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

}  // namespace

DECL_SCOPE GetDeclScope(const char16_t* keyword) {
    const u16string_view text(keyword ? keyword : u"", keyword ? lq::chars::Length(keyword) : 0);
    for (const Keyword& one : kKeywords) {
        if (one.text.size() == text.size() &&
            std::memcmp(one.text.data(), text.data(), text.size() * sizeof(char16_t)) == 0) {
            return one.scope;
        }
    }
    return DS_UNKNOWN;
}

void LQHeadReleaseHashTable() {}

const char16_t* lq::pouh::KeywordOfScope(uint32_t scope) {
    for (const Keyword& keyword : kKeywords) {
        if (keyword.scope == scope) {
            return keyword.text.data();
        }
    }
    return u"";
}
