#include "tools/lq/keywords.h"

#include <new>
#include <string>

namespace lq::tool {

namespace {

// The numbers of OF, TRUE and FALSE are those that the library gives them; all others follow from
// their place.
constexpr int kFirstFreeId = 100;

// Tables of annex C of the standard, the names of types and standard functions aside.
constexpr const char16_t* kKeywords[] = {u"ACTION",
                                         u"ARRAY",
                                         u"AT",
                                         u"BY",
                                         u"CASE",
                                         u"CONFIGURATION",
                                         u"CONSTANT",
                                         u"DO",
                                         u"ELSE",
                                         u"ELSIF",
                                         u"END_ACTION",
                                         u"END_CASE",
                                         u"END_CONFIGURATION",
                                         u"END_FOR",
                                         u"END_FUNCTION",
                                         u"END_FUNCTION_BLOCK",
                                         u"END_IF",
                                         u"END_PROGRAM",
                                         u"END_REPEAT",
                                         u"END_RESOURCE",
                                         u"END_STEP",
                                         u"END_STRUCT",
                                         u"END_TRANSITION",
                                         u"END_TYPE",
                                         u"END_VAR",
                                         u"END_WHILE",
                                         u"EXIT",
                                         u"FOR",
                                         u"FROM",
                                         u"FUNCTION",
                                         u"FUNCTION_BLOCK",
                                         u"IF",
                                         u"INITIAL_STEP",
                                         u"NON_RETAIN",
                                         u"NOT",
                                         u"AND",
                                         u"OR",
                                         u"XOR",
                                         u"MOD",
                                         u"ON",
                                         u"PROGRAM",
                                         u"READ_ONLY",
                                         u"READ_WRITE",
                                         u"REPEAT",
                                         u"RESOURCE",
                                         u"RETAIN",
                                         u"RETURN",
                                         u"STEP",
                                         u"STRUCT",
                                         u"TASK",
                                         u"THEN",
                                         u"TO",
                                         u"TRANSITION",
                                         u"TYPE",
                                         u"UNTIL",
                                         u"VAR",
                                         u"VAR_ACCESS",
                                         u"VAR_CONFIG",
                                         u"VAR_EXTERNAL",
                                         u"VAR_GLOBAL",
                                         u"VAR_IN_OUT",
                                         u"VAR_INPUT",
                                         u"VAR_OUTPUT",
                                         u"VAR_TEMP",
                                         u"WHILE",
                                         u"WITH"};

void Register(Scanner& scanner, const std::u16string& name, int id) {
    std::u16string small = name;
    for (char16_t& c : small) {
        if (c >= u'A' && c <= u'Z') {
            c = static_cast<char16_t>(c + (u'a' - u'A'));
        }
    }
    if (!scanner.RegisterKeyword(name.c_str(), id) || !scanner.RegisterKeyword(small.c_str(), id)) {
        throw std::bad_alloc();
    }
}

}  // namespace

void RegisterKeywords(Scanner& scanner) {
    Register(scanner, u"OF", KW_OF);
    Register(scanner, u"TRUE", KW_TRUE);
    Register(scanner, u"FALSE", KW_FALSE);
    int id = kFirstFreeId;
    for (const char16_t* keyword : kKeywords) {
        Register(scanner, keyword, id++);
    }
}

}  // namespace lq::tool
