// Results on standard output: aligned columns and colour on a terminal, one line with tabs a row
// anywhere else.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/lq/output_file.h"

namespace lq::tool {

using Json = nlohmann::ordered_json;

// The number of the form of JSON documents (docs/schema/); of those that have another, their
// command knows it. It counts changes that break a reader; new members are none.
inline constexpr int kJsonSchema = 1;

// What every document begins with.
Json NewDocument(int schema = kJsonSchema);

// A column of a table of results. In JSON its title is a member's name.
struct Column {
    std::string title;
    bool isNumber = false;  // aligned to the right
};

// What a row holds in a column; nothing is null in JSON, and an empty cell.
using Cell = std::variant<std::monostate, std::string, int64_t, bool>;
using Row = std::vector<Cell>;  // as long as the columns

struct Table {
    std::string title;  // a heading; may be empty
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;  // as long as `columns`
};

// The member of a JSON object that a title names: with underlines for blanks.
std::string MemberOf(std::string title);

// The texts of a row.
std::vector<std::string> CellsOf(const Row& row);

// A table of rows that are JSON objects with a member a column: a list is written with blanks
// between its items.
Table TableOf(const std::string& title, const std::vector<Column>& columns, const Json& rows);

void Print(const Table& table);

// Prints a table row by row. On a terminal the first 1,000 rows are held back until they have given
// the columns their widths; where these are more than the terminal's, texts are cut, to four
// columns at least. A longer cell of a later row moves what stands behind it, or is cut.
class TablePrinter {
  public:
    // A title that is empty is left out.
    TablePrinter(const std::string& title, std::vector<Column> columns);
    TablePrinter(const TablePrinter&) = delete;
    TablePrinter& operator=(const TablePrinter&) = delete;

    void Take(const std::vector<std::string>& cells);
    // Prints what is held back, and tells whether cells were cut; to be called behind the last row.
    void End();

  private:
    std::vector<std::string> Fitting(std::vector<std::string> cells) const;
    void PrintWaiting();

    std::vector<Column> columns_;
    std::vector<size_t> widths_;
    std::vector<std::vector<std::string>> waiting_;  // the titles, and the first rows
    const bool isTerminal_;
    bool isWaiting_;
    bool isNarrow_ = false;  // the terminal is, and cells are cut
};

// A JSON value as it is printed, on one line with an indent of -1; bytes that are no UTF-8 become
// replacement characters.
std::string JsonText(const Json& document, int indent);

void PrintJson(const Json& document);

// Appends a text as it is printed in a JSON document.
void AppendJson(std::string& out, std::string_view text);

// The pieces of a document that is too large to be held as one, as PrintJson would print it. The
// depth is how many lists and objects a value stands in.

// A JSON value.
std::string JsonPiece(int depth, const Json& value);
// An object without its end, "}" on a line of its own.
std::string OpenJsonPiece(int depth, const Json& object);
// Blanks at the beginning of a line.
std::string JsonIndent(int depth);

// Rows as JSON objects.
class JsonRows {
  public:
    JsonRows(const std::vector<Column>& columns, int depth);

    // Appends the row without its end, and the end.
    void Open(std::string& out, const Row& row) const;
    void Close(std::string& out) const { out += end_; }

  private:
    std::vector<std::string> heads_;  // what stands in front of each value
    std::string end_;
};

// Prints a list at that depth, whose items the caller prints, one deeper.
class JsonList {
  public:
    explicit JsonList(int depth);

    // To be called before each item, and behind the last.
    void Next();
    void End();

  private:
    int depth_;
    bool isEmpty_ = true;
};

// Takes the results in place of standard output, from its beginning to the end of the program. Both
// throw CommandError.
class ResultsFile {
  public:
    explicit ResultsFile(const std::string& path);

    // All is printed.
    void Finish();

  private:
    OutputFile file_;
};

// The text as it stands.
void PrintText(const std::string& text);

// A line of its own.
void PrintLine(const std::string& line);

// Sentences, on a terminal broken between words where it ends; in Japanese between letters.
void PrintProse(std::string text);

}  // namespace lq::tool
