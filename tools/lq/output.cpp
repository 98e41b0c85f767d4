#include "tools/lq/output.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <streambuf>
#include <string_view>
#include <unistd.h>

#include "tools/lq/escape.h"
#include "tools/lq/output_file.h"
#include "tools/lq/terminal.h"

namespace lq::tool {

namespace {

constexpr size_t kGap = 2;  // blanks between columns

// Characters, not bytes: continuation bytes of UTF-8 take no room.
size_t Width(const std::string& text) {
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string Aligned(const std::vector<std::string>& cells, const std::vector<size_t>& widths,
                    const Table& table) {
    std::string line;
    for (size_t i = 0; i < cells.size(); ++i) {
        const std::string padding(widths[i] - Width(cells[i]), ' ');
        const bool isLast = i + 1 == cells.size();
        if (table.columns[i].isNumber) {
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

Table TableOf(const std::string& title, const std::vector<Table::Column>& columns,
              const Json& rows) {
    Table table{title, columns, {}};
    for (const auto& row : rows) {
        std::vector<std::string> cells;
        cells.reserve(columns.size());
        for (const Table::Column& column : columns) {
            cells.push_back(Cell(row.at(MemberOf(column.title))));
        }
        table.rows.push_back(std::move(cells));
    }
    return table;
}

std::string JsonText(const Json& document, int indent) {
    return HarmlessJson(document.dump(indent, ' ', false, Json::error_handler_t::replace));
}

void PrintJson(const Json& document) {
    PrintLine(JsonText(document, 2));
}

void PrintText(const std::string& text) {
    Results() << text;
}

void PrintLine(const std::string& line) {
    Results() << line + '\n';
}

void Print(const Table& table) {
    std::vector<std::string> titles;
    std::vector<size_t> widths;
    for (const Table::Column& column : table.columns) {
        titles.push_back(column.title);
        widths.push_back(Width(column.title));
    }
    if (!table.title.empty()) {
        PrintLine(Bold(Stream::kResults, OneLine(table.title)));
    }
    if (!IsTerminal(Stream::kResults)) {
        PrintLine(WithTabs(titles));
        for (const auto& row : table.rows) {
            PrintLine(WithTabs(row));
        }
        return;
    }
    for (const auto& row : table.rows) {
        for (size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], Width(row[i]));
        }
    }
    PrintLine(Bold(Stream::kResults, Aligned(titles, widths, table)));
    for (const auto& row : table.rows) {
        PrintLine(Aligned(row, widths, table));
    }
}

}  // namespace lq::tool
