#include "rows.h"

#include <fstream>

#include <gtest/gtest.h>

namespace lq::test {

namespace {

template <typename Char>
std::basic_string<Char> Decode(const std::string& text) {
    std::basic_string<Char> decoded;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\') {
            decoded += static_cast<Char>(text[at]);
            continue;
        }
        const std::string letters = "nrtvf0s\\";
        const size_t letter = letters.find(text.at(++at));
        if (letter != letters.npos) {
            decoded += static_cast<Char>("\n\r\t\v\f\0 \\"[letter]);
            continue;
        }
        const size_t digits = text[at] == 'x' ? 2 : text[at] == 'u' ? 4 : 8;
        const auto code = std::stoul(text.substr(at + 1, digits), nullptr, 16);
        at += digits;
        if (code > 0xFFFF) {
            decoded += static_cast<Char>(0xD7C0 + (code >> 10));
        }
        decoded += static_cast<Char>(code > 0xFFFF ? 0xDC00 + (code & 0x3FF) : code);
    }
    return decoded;
}

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

}  // namespace

std::string Row::operator[](size_t column) const {
    return column < cells.size() ? Decode<char>(cells[column]) : "";
}

std::u16string Row::Wide(size_t column) const {
    return column < cells.size() ? Decode<char16_t>(cells[column]) : u"";
}

int64_t Row::Number(size_t column) const {
    return std::stoll(cells.at(column), nullptr, 0);
}

std::vector<Row> Rows(const std::string& file, const std::string& table) {
    std::ifstream lines(LQ_TEST_SOURCE "/" + file);
    std::vector<Row> rows;
    bool isWanted = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("== ")) {
            isWanted = line.substr(3) == table;
        } else if (isWanted && !line.empty() && !line.starts_with("// ")) {
            Row& row = rows.emplace_back(Row{line, {}});
            line += ' ';
            for (size_t at = 0, bar = 0; bar != line.npos; at = bar + 2) {
                bar = line.find(" | ", at);
                row.cells.push_back(Trimmed(line.substr(at, bar - at)));
            }
        }
    }
    EXPECT_FALSE(rows.empty()) << file << " has no table " << table;
    return rows;
}

}  // namespace lq::test
