#include "tools/lq/output.h"

#include <algorithm>
#include <iostream>

#include "tools/lq/escape.h"
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
    std::cout << text;
}

void PrintLine(const std::string& line) {
    std::cout << line << '\n';
}

void Print(const Table& table) {
    std::vector<std::string> titles;
    std::vector<size_t> widths;
    for (const Table::Column& column : table.columns) {
        titles.push_back(column.title);
        widths.push_back(Width(column.title));
    }
    if (!table.title.empty()) {
        PrintLine(Bold(Stream::kResults, table.title));
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
