// Results on standard output: aligned columns and colour on a terminal, one line with tabs a row
// anywhere else.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace lq::tool {

struct Table {
    struct Column {
        std::string title;
        bool isNumber = false;  // aligned to the right
    };

    std::string title;  // a heading; may be empty
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;  // as long as `columns`
};

// Whether standard output is a terminal.
bool IsTerminal();

// A table of rows that are JSON objects with a member a column: null leaves a cell empty, a list is
// written with blanks between its items.
Table TableOf(const std::string& title, const std::vector<Table::Column>& columns,
              const nlohmann::ordered_json& rows);

void Print(const Table& table);

// A JSON document; bytes that are no UTF-8 become replacement characters.
void PrintJson(const nlohmann::ordered_json& document);

// A fault of the input, on standard error.
void ReportFault(const std::string& message);

// A line of its own.
void PrintLine(const std::string& line);

// Text as it fits one line: control characters become escapes.
std::string OneLine(const std::string& text);

}  // namespace lq::tool
