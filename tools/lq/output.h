// Results on standard output: aligned columns and colour on a terminal, one line with tabs a row
// anywhere else.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace lq::tool {

using Json = nlohmann::ordered_json;

// The number of the form of all JSON documents (docs/schema/). It counts changes that break a
// reader; new members are none.
inline constexpr int kJsonSchema = 1;

// What every document begins with.
Json NewDocument();

struct Table {
    struct Column {
        std::string title;
        bool isNumber = false;  // aligned to the right
    };

    std::string title;  // a heading; may be empty
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;  // as long as `columns`
};

// The member of a JSON object that a title names: with underlines for blanks.
std::string MemberOf(std::string title);

// A table of rows that are JSON objects with a member a column: null leaves a cell empty, a list is
// written with blanks between its items.
Table TableOf(const std::string& title, const std::vector<Table::Column>& columns,
              const Json& rows);

void Print(const Table& table);

// A JSON value as it is printed, on one line with an indent of -1; bytes that are no UTF-8 become
// replacement characters.
std::string JsonText(const Json& document, int indent);

void PrintJson(const Json& document);

// The text as it stands.
void PrintText(const std::string& text);

// A line of its own.
void PrintLine(const std::string& line);

}  // namespace lq::tool
