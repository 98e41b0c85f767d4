// Tables of cases that are data: tests/<folder>/<name>.rows. A line "== name" begins a table, every
// other line is a row; bars with blanks divide its columns, blanks around them do not count. Texts
// are ASCII, with the escapes of the language, and \s for a blank; a line that begins with "// " is
// a comment.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lq::test {

struct Row {
    std::string line;
    std::vector<std::string> cells;

    // Bytes, or units of UTF-16; empty behind the last column.
    std::string operator[](size_t column) const;
    std::u16string Wide(size_t column) const;
    int64_t Number(size_t column) const;  // decimal or, behind 0x, hexadecimal
};

// `file` is named from the folder of the tests on. A table that is not there fails the test.
std::vector<Row> Rows(const std::string& file, const std::string& table);

}  // namespace lq::test
