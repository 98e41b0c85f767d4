#include "host/text_source/words.h"

#include <array>
#include <cstddef>

namespace lq::host::text_source {

namespace {

// ORDER: as Word.
constexpr std::u16string_view kWords[] = {
    u"",
    u"VAR",
    u"VAR_INPUT",
    u"VAR_OUTPUT",
    u"VAR_IN_OUT",
    u"VAR_TEMP",
    u"VAR_EXTERNAL",
    u"VAR_GLOBAL",
    u"VAR_INST",
    u"VAR_STAT",
    u"VAR_CONFIG",
    u"VAR_ACCESS",
    u"END_VAR",
    u"END_STRUCT",
    u"END_UNION",
    u"END_RESOURCE",
    u"END_PROGRAM",
    u"END_FUNCTION",
    u"END_FUNCTION_BLOCK",
    u"END_METHOD",
    u"END_PROPERTY",
    u"END_CLASS",
    u"END_INTERFACE",
    u"END_NAMESPACE",
    u"END_TYPE",
    u"END_CONFIGURATION",
    u"END_TEST",
    u"PROGRAM",
    u"FUNCTION",
    u"FUNCTION_BLOCK",
    u"METHOD",
    u"PROPERTY",
    u"CLASS",
    u"INTERFACE",
    u"NAMESPACE",
    u"TYPE",
    u"CONFIGURATION",
    u"TEST",
    u"STRUCT",
    u"UNION",
    u"RESOURCE",
    u"TASK",
    u"CONSTANT",
    u"RETAIN",
    u"NON_RETAIN",
    u"PERSISTENT",
    u"PUBLIC",
    u"PRIVATE",
    u"PROTECTED",
    u"INTERNAL",
    u"ABSTRACT",
    u"FINAL",
    u"OVERRIDE",
    u"AND",
    u"OR",
    u"XOR",
    u"NOT",
    u"MOD",
    u"THEN",
    u"DO",
    u"TO",
    u"BY",
    u"OF",
    u"AT",
    u"ARRAY",
    u"STRING",
    u"WSTRING",
    u"REF_TO",
    u"POINTER",
    u"REFERENCE",
    u"R_EDGE",
    u"F_EDGE",
    u"READ_ONLY",
    u"READ_WRITE",
    u"EXTENDS",
    u"IMPLEMENTS",
    u"USING",
    u"WITH",
    u"ON",
    u"INTERVAL",
    u"SINGLE",
    u"PRIORITY",
    u"STEP",
    u"INITIAL_STEP",
    u"TRANSITION",
    u"ACTION",
    u"END_ACTION",
};
static_assert(std::size(kWords) == static_cast<std::size_t>(Word::kEndAction) + 1);

constexpr TypeWord kTypes[] = {
    {},
    {u"BOOL", true},
    {u"BYTE", true},
    {u"WORD", true},
    {u"DWORD", true},
    {u"LWORD", true},
    {u"SINT", true},
    {u"INT", true},
    {u"DINT", true},
    {u"LINT", true},
    {u"USINT", true},
    {u"UINT", true},
    {u"UDINT", true},
    {u"ULINT", true},
    {u"REAL", false},
    {u"LREAL", false},
    {u"TIME", false},
    {u"LTIME", false},
    {u"DATE", false},
    {u"LDATE", false},
    {u"TOD", false},
    {u"LTOD", false},
    {u"TIME_OF_DAY", false},
    {u"LTIME_OF_DAY", false},
    {u"DT", false},
    {u"LDT", false},
    {u"DATE_AND_TIME", false},
    {u"LDATE_AND_TIME", false},
    {u"CHAR", false},
    {u"WCHAR", false},
    {u"STRING", false},
    {u"WSTRING", false},
    {u"ANY", false},
    {u"ANY_DERIVED", false},
    {u"ANY_ELEMENTARY", false},
    {u"ANY_MAGNITUDE", false},
    {u"ANY_NUM", false},
    {u"ANY_REAL", false},
    {u"ANY_INT", false},
    {u"ANY_UNSIGNED", false},
    {u"ANY_SIGNED", false},
    {u"ANY_DURATION", false},
    {u"ANY_BIT", false},
    {u"ANY_CHARS", false},
    {u"ANY_STRING", false},
    {u"ANY_CHAR", false},
    {u"ANY_DATE", false},
    {u"ANY_SIMPLE", false},
};

constexpr std::size_t kLongest = 20;

constexpr char16_t Capital(char16_t c) {
    return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
}

// Few of the words have the same.
constexpr std::size_t kSlots = 512;
constexpr std::size_t SlotOf(std::u16string_view text) {
    const std::size_t mixed = text.size() * 37 + Capital(text.front()) * std::size_t{13} +
                              Capital(text[text.size() / 2]) * std::size_t{7} +
                              Capital(text.back()) * std::size_t{101};
    return mixed % kSlots;
}

// By slot the first row of a table, and of each row the next one of its slot; 0 ends.
struct Index {
    std::array<uint8_t, kSlots> first{};
    std::array<uint8_t, 128> next{};
};

constexpr std::u16string_view NameOf(std::u16string_view row) {
    return row;
}
constexpr std::u16string_view NameOf(const TypeWord& row) {
    return row.name;
}

template <typename Row, std::size_t kRows>
consteval Index MakeIndex(const Row (&rows)[kRows]) {
    Index index;
    for (std::size_t i = 1; i < kRows; ++i) {
        const std::size_t slot = SlotOf(NameOf(rows[i]));
        index.next[i] = index.first[slot];
        index.first[slot] = static_cast<uint8_t>(i);
    }
    return index;
}

constexpr Index kWordIndex = MakeIndex(kWords);
constexpr Index kTypeIndex = MakeIndex(kTypes);

// The row of that name, in whatever case; else the first one, which has no name.
template <typename Row, std::size_t kRows>
std::size_t Find(const Row (&rows)[kRows], const Index& index, std::u16string_view text) {
    if (text.empty() || text.size() > kLongest) {
        return 0;
    }
    std::size_t i = index.first[SlotOf(text)];
    const auto isSame = [text](std::u16string_view name) {
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (Capital(text[at]) != name[at]) {
                return false;
            }
        }
        return true;
    };
    while (i != 0 && (NameOf(rows[i]).size() != text.size() || !isSame(NameOf(rows[i])))) {
        i = index.next[i];
    }
    return i;
}

}  // namespace

Word WordOf(std::u16string_view text) {
    return static_cast<Word>(Find(kWords, kWordIndex, text));
}

std::string Spelled(Word word) {
    const std::u16string_view text = kWords[static_cast<std::size_t>(word)];
    return {text.begin(), text.end()};
}

TypeWord TypeWordOf(std::u16string_view text) {
    return kTypes[Find(kTypes, kTypeIndex, text)];
}

}  // namespace lq::host::text_source
