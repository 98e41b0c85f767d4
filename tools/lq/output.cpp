#include "tools/lq/output.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <streambuf>
#include <string_view>
#include <unistd.h>
#include <uniwidth.h>

#include "tools/lq/escape.h"
#include "tools/lq/output_file.h"
#include "tools/lq/terminal.h"

namespace lq::tool {

namespace {

constexpr size_t kGap = 2;  // blanks between columns
constexpr int kJsonIndent = 2;

// The columns that the text takes on a terminal: a wide letter two, a mark above another none,
// whatever the process's locale is. Letters that are wide in old East Asian fonts alone take one.
size_t Width(const std::string& text) {
    return static_cast<size_t>(
        u8_width(reinterpret_cast<const uint8_t*>(text.data()), text.size(), "UTF-8"));
}

std::string Aligned(const std::vector<std::string>& cells, const std::vector<size_t>& widths,
                    const std::vector<Table::Column>& columns) {
    std::string line;
    for (size_t i = 0; i < cells.size(); ++i) {
        const std::string padding(widths[i] - Width(cells[i]), ' ');
        const bool isLast = i + 1 == cells.size();
        if (columns[i].isNumber) {
            line += padding + cells[i];
        } else {
            line += cells[i] + (isLast ? "" : padding);
        }
        line += std::string(isLast ? 0 : kGap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

std::string WithTabs(const std::vector<std::string>& cells) {
    std::string line;
    for (size_t i = 0; i < cells.size(); ++i) {
        line += (i == 0 ? "" : "\t") + cells[i];
    }
    return line;
}

std::string Cell(const Json& value) {
    if (value.is_null()) {
        return "";
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? "yes" : "no";
    }
    if (value.is_array()) {
        std::string text;
        for (const auto& item : value) {
            text += (text.empty() ? "" : " ") + Cell(item);
        }
        return text;
    }
    return value.is_string() ? OneLine(value.get<std::string>()) : value.dump();
}

// Standard output with nothing of the C library between, which would repeat for ever a write that
// takes no bytes. On a terminal a line shows when it is whole.
class ResultsBuffer : public std::streambuf {
  public:
    ResultsBuffer() { setp(std::begin(bytes_), std::end(bytes_)); }

  protected:
    int sync() override {
        const std::string_view bytes(pbase(), static_cast<size_t>(pptr() - pbase()));
        setp(std::begin(bytes_), std::end(bytes_));
        return WriteAll(STDOUT_FILENO, bytes) == 0 ? 0 : -1;
    }
    int_type overflow(int_type c) override {
        if (sync() != 0) {
            return traits_type::eof();
        }
        return traits_type::eq_int_type(c, traits_type::eof())
                   ? traits_type::not_eof(c)
                   : sputc(traits_type::to_char_type(c));
    }
    std::streamsize xsputn(const char* from, std::streamsize count) override {
        const std::streamsize taken = std::streambuf::xsputn(from, count);
        const bool isWhole = isTerminal_ && taken > 0 && from[taken - 1] == '\n';
        return isWhole && sync() != 0 ? 0 : taken;
    }

  private:
    const bool isTerminal_ = IsTerminal(Stream::kResults);
    char bytes_[size_t{1} << 15];
};

// std::cout flushes what it writes to when the program ends, after the statics are gone: the buffer
// stays.
std::ostream& Results() {
    alignas(ResultsBuffer) static unsigned char place[sizeof(ResultsBuffer)];
    static auto* const buffer = new (place) ResultsBuffer;
    if (std::cout.rdbuf() != buffer) {
        std::cout.rdbuf(buffer);
    }
    return std::cout;
}

}  // namespace

std::string MemberOf(std::string title) {
    std::replace(title.begin(), title.end(), ' ', '_');
    return title;
}

Json NewDocument() {
    return {{"schema", kJsonSchema}};
}

std::vector<std::string> CellsOf(const std::vector<Table::Column>& columns, const Json& row) {
    std::vector<std::string> cells;
    cells.reserve(columns.size());
    for (const Table::Column& column : columns) {
        cells.push_back(Cell(row.at(MemberOf(column.title))));
    }
    return cells;
}

Table TableOf(const std::string& title, const std::vector<Table::Column>& columns,
              const Json& rows) {
    Table table{title, columns, {}};
    for (const auto& row : rows) {
        table.rows.push_back(CellsOf(columns, row));
    }
    return table;
}

std::string JsonText(const Json& document, int indent) {
    return HarmlessJson(document.dump(indent, ' ', false, Json::error_handler_t::replace));
}

void PrintJson(const Json& document) {
    PrintLine(JsonText(document, kJsonIndent));
}

std::string JsonIndent(int depth) {
    return std::string(static_cast<size_t>(kJsonIndent * depth), ' ');
}

std::string JsonPiece(int depth, const Json& value) {
    std::string text;
    for (const char c : JsonText(value, kJsonIndent)) {
        text += c;
        text += c == '\n' ? JsonIndent(depth) : "";
    }
    return text;
}

std::string OpenJsonPiece(int depth, const Json& object) {
    std::string text = JsonPiece(depth, object);
    text.erase(text.rfind('\n'));
    return text;
}

void PrintJsonList(int depth, size_t count, const std::function<void(size_t)>& printItem) {
    PrintText("[");
    for (size_t i = 0; i < count; ++i) {
        PrintText((i == 0 ? "\n" : ",\n") + JsonIndent(depth + 1));
        printItem(i);
    }
    PrintText(count == 0 ? "]" : "\n" + JsonIndent(depth) + "]");
}

void PrintText(const std::string& text) {
    Results() << text;
}

void PrintLine(const std::string& line) {
    Results() << line + '\n';
}

void Print(const Table& table) {
    Print(table.title, table.columns, table.rows.size(), [&](size_t i) { return table.rows[i]; });
}

void Print(const std::string& title, const std::vector<Table::Column>& columns, size_t count,
           const std::function<std::vector<std::string>(size_t)>& cellsOf) {
    std::vector<std::string> titles;
    std::vector<size_t> widths;
    for (const Table::Column& column : columns) {
        titles.push_back(column.title);
        widths.push_back(Width(column.title));
    }
    if (!title.empty()) {
        PrintLine(Bold(Stream::kResults, OneLine(title)));
    }
    if (!IsTerminal(Stream::kResults)) {
        PrintLine(WithTabs(titles));
        for (size_t i = 0; i < count; ++i) {
            PrintLine(WithTabs(cellsOf(i)));
        }
        return;
    }
    for (size_t row = 0; row < count; ++row) {
        const std::vector<std::string> cells = cellsOf(row);
        for (size_t i = 0; i < cells.size(); ++i) {
            widths[i] = std::max(widths[i], Width(cells[i]));
        }
    }
    PrintLine(Bold(Stream::kResults, Aligned(titles, widths, columns)));
    for (size_t row = 0; row < count; ++row) {
        PrintLine(Aligned(cellsOf(row), widths, columns));
    }
}

}  // namespace lq::tool
