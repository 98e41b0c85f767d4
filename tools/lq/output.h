// Results on standard output: aligned columns and colour on a terminal, one line with tabs a row
// anywhere else.
#pragma once

#include <functional>
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

// The cells of a row that is a JSON object with a member a column: null leaves a cell empty, a list
// is written with blanks between its items.
std::vector<std::string> CellsOf(const std::vector<Table::Column>& columns, const Json& row);

// A table of such rows.
Table TableOf(const std::string& title, const std::vector<Table::Column>& columns,
              const Json& rows);

void Print(const Table& table);

// Prints a table whose rows are made when they are printed, on a terminal twice.
void Print(const std::string& title, const std::vector<Table::Column>& columns, size_t count,
           const std::function<std::vector<std::string>(size_t)>& cellsOf);

// A JSON value as it is printed, on one line with an indent of -1; bytes that are no UTF-8 become
// replacement characters.
std::string JsonText(const Json& document, int indent);

void PrintJson(const Json& document);

// The pieces of a document that is too large to be held as one, as PrintJson would print it. The
// depth is how many lists and objects a value stands in.
std::string JsonPiece(int depth, const Json& value);
// An object without its end, "}" on a line of its own.
std::string OpenJsonPiece(int depth, const Json& object);
// Blanks at the beginning of a line.
std::string JsonIndent(int depth);
// `printItem` prints an item, one deeper than the list.
void PrintJsonList(int depth, size_t count, const std::function<void(size_t)>& printItem);

// The text as it stands.
void PrintText(const std::string& text);

// A line of its own.
void PrintLine(const std::string& line);

}  // namespace lq::tool
