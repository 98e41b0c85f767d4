// The parser is libinih; the line reader between it and the file removes what the parser would
// stumble over. It drops lines that are longer than the parser's buffer (the parser would take the
// rest for a line of its own), drops indentation (which would continue the value before), turns a
// heading that is too long into one that matches nothing, and lets an entry follow each heading, so
// that a section without entries is heard of as well.
#include "host/framework/ini_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>

#include <ini.h>

#include "lq_data/detail/chars.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/memory.h"

namespace lq::host {

namespace {

constexpr char kHeadingEntry[] = "\x01=1\n";
constexpr char kNoHeading[] = "[\x02]\n";
// The parser cuts section names and keys at this length, terminator included.
constexpr std::size_t kMaxNameBytes = 50;

struct Reader {
    std::FILE* file;
    bool isAtStart = true;
    bool owesEntry = false;
};

// Reads a line of the file into `line`; an oversized one becomes `instead`, by its first character.
bool ReadPhysicalLine(std::FILE* file, char* line, int size, bool& isTooLong) noexcept {
    if (!std::fgets(line, size, file)) {
        return false;
    }
    const std::size_t length = std::strlen(line);
    isTooLong = length + 1 == static_cast<std::size_t>(size) && line[length - 1] != '\n';
    if (isTooLong) {
        for (int c = std::getc(file); c != EOF && c != '\n';) {
            c = std::getc(file);
        }
    }
    return true;
}

bool IsNameTooLong(const char* start, const char* ends) noexcept {
    return std::strcspn(start, ends) >= kMaxNameBytes;
}

// One line for the parser.
char* ReadLine(char* line, int size, void* stream) {
    auto& reader = *static_cast<Reader*>(stream);
    if (reader.owesEntry) {
        reader.owesEntry = false;
        return std::strcpy(line, kHeadingEntry);
    }
    bool isTooLong = false;
    if (!ReadPhysicalLine(reader.file, line, size, isTooLong)) {
        return nullptr;
    }
    const char* start = line;
    if (reader.isAtStart && std::strncmp(start, "\xEF\xBB\xBF", 3) == 0) {
        start += 3;
    }
    reader.isAtStart = false;
    start += std::strspn(start, " \t\r\v\f");
    if (*start == '[') {
        reader.owesEntry = true;
        if (isTooLong || IsNameTooLong(start + 1, "]")) {
            return std::strcpy(line, kNoHeading);
        }
    } else if (isTooLong || IsNameTooLong(start, "=:")) {
        return std::strcpy(line, "\n");
    }
    std::memmove(line, start, std::strlen(start) + 1);
    return line;
}

struct Search {
    const char16_t* section;
    const char16_t* key;
    char16_t* value;
    IniLookup result = IniLookup::kNoSection;
};

bool IsNamed(const char* name, const char16_t* wanted) noexcept {
    char16_t wide[kMaxNameBytes];
    return CopyUtf8ToUtf16(name, wide, std::size(wide)) && chars::EqualNoCase(wide, wanted);
}

int OnEntry(void* user, const char* section, const char* key, const char* value) {
    auto& search = *static_cast<Search*>(user);
    if (search.result == IniLookup::kFound || !IsNamed(section, search.section)) {
        return 1;
    }
    search.result = IniLookup::kNoKey;
    if (search.key && IsNamed(key, search.key)) {
        CopyUtf8ToUtf16(value, search.value, std::size(IniValue{}));
        search.result = IniLookup::kFound;
    }
    return 1;
}

}  // namespace

IniLookup FindInIni(const char* path, const char16_t* section, const char16_t* key,
                    IniValue& value) noexcept {
    value[0] = 0;
    std::FILE* file = std::fopen(path, "re");
    if (!file) {
        if (errno == ENOMEM) {
            ReportShortage();
        }
        return IniLookup::kNoSection;
    }
    Reader reader{file};
    Search search{section, key, value};
    ini_parse_stream(ReadLine, &reader, OnEntry, &search);
    std::fclose(file);
    return search.result;
}

uint32_t ParseInteger(const char16_t* text, const char16_t** end) noexcept {
    const char16_t* at = text;
    const bool isNegative = *at == u'-';
    if (*at == u'-' || *at == u'+') {
        ++at;
    }
    uint32_t base = 10;
    if (at == text && at[0] == u'0' && chars::ToUpper(at[1]) == u'X' && chars::IsHex(at[2])) {
        at += 2;
        base = 16;
    }
    const char16_t* const digits = at;
    uint32_t number = 0;
    while (base == 16 ? chars::IsHex(*at) : chars::IsDigit(*at)) {
        number = number * base + chars::HexValue(*at);
        ++at;
    }
    *end = at == digits ? text : at;
    return isNegative ? 0u - number : number;
}

}  // namespace lq::host
