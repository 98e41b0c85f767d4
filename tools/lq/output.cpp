#include "tools/lq/output.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <numeric>
#include <streambuf>
#include <string_view>
#include <unistd.h>
#include <uniwidth.h>

#include "lq_data/host/text/message.h"
#include "tools/lq/escape.h"
#include "tools/lq/messages.h"
#include "tools/lq/terminal.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr size_t kGap = 2;  // blanks between columns
constexpr int kJsonIndent = 2;
constexpr size_t kRowsForWidths = 1000;

// The columns that the text takes on a terminal: a wide letter two, a mark above another none,
// whatever the process's locale is. Letters that are wide in old East Asian fonts alone take one.
size_t Width(const std::string& text) {
    return static_cast<size_t>(
        u8_width(reinterpret_cast<const uint8_t*>(text.data()), text.size(), "UTF-8"));
}

// Where the text ends that takes so many columns; it is longer.
size_t EndWithin(const std::string& text, size_t columns) {
    size_t end = text.size();
    do {
        while (end > 0 && (static_cast<unsigned char>(text[--end]) & 0xC0) == 0x80) {
        }
    } while (end > 0 && Width(text.substr(0, end)) > columns);
    return end;
}

// What of the text fits into so many columns; its end gives way to a sign that more follows.
std::string Cut(const std::string& text, size_t columns) {
    return Width(text) <= columns ? text : text.substr(0, EndWithin(text, columns - 1)) + "\u2026";
}

size_t WidthOfRow(const std::vector<size_t>& widths) {
    return std::accumulate(widths.begin(), widths.end(), kGap * (widths.size() - 1));
}

// Takes from the widest columns of texts until a row has no more than so many columns, or none has
// more than the least.
void Narrow(std::vector<size_t>& widths, const std::vector<Column>& columns, size_t room,
            size_t least) {
    for (size_t sum = WidthOfRow(widths); sum > room; --sum) {
        size_t widest = widths.size();
        for (size_t i = 0; i < widths.size(); ++i) {
            if (!columns[i].isNumber && widths[i] > least &&
                (widest == widths.size() || widths[i] > widths[widest])) {
                widest = i;
            }
        }
        if (widest == widths.size()) {
            return;
        }
        --widths[widest];
    }
}

std::string Aligned(const std::vector<std::string>& cells, const std::vector<size_t>& widths,
                    const std::vector<Column>& columns) {
    std::string line;
    for (size_t i = 0; i < cells.size(); ++i) {
        const std::string padding(widths[i] - std::min(widths[i], Width(cells[i])), ' ');
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

// How cells show what they hold.
struct CellText {
    std::string operator()(std::monostate) const { return ""; }
    std::string operator()(const std::string& text) const { return OneLine(text); }
    std::string operator()(int64_t number) const { return std::to_string(number); }
    std::string operator()(bool flag) const { return flag ? "yes" : "no"; }
};

std::string TextOf(const Json& value) {
    if (value.is_null()) {
        return "";
    }
    if (value.is_boolean()) {
        return CellText()(value.get<bool>());
    }
    if (value.is_array()) {
        std::string text;
        for (const auto& item : value) {
            text += (text.empty() ? "" : " ") + TextOf(item);
        }
        return text;
    }
    return value.is_string() ? OneLine(value.get<std::string>()) : value.dump();
}

// Writes to standard output without the C library, which repeats for ever a write that takes no
// bytes. On a terminal each line is written as soon as it is whole.
class ResultsBuffer : public std::streambuf {
  public:
    ResultsBuffer() { setp(std::begin(bytes_), std::end(bytes_)); }

    int Error() const { return error_; }

  protected:
    int sync() override {
        const std::string_view bytes(pbase(), static_cast<size_t>(pptr() - pbase()));
        setp(std::begin(bytes_), std::end(bytes_));
        const int error = WriteAll(STDOUT_FILENO, bytes);
        error_ = error_ == 0 ? error : error_;
        return error == 0 ? 0 : -1;
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
    int error_ = 0;  // the first
    char bytes_[size_t{1} << 15];
};

// std::cout flushes its buffer at the very end of the program, when static objects are destroyed
// already. So this one is made in place and never destroyed.
ResultsBuffer& Buffer() {
    alignas(ResultsBuffer) static unsigned char place[sizeof(ResultsBuffer)];
    static auto* const buffer = new (place) ResultsBuffer;
    return *buffer;
}

std::ostream& Results() {
    if (std::cout.rdbuf() != &Buffer()) {
        std::cout.rdbuf(&Buffer());
    }
    return std::cout;
}

}  // namespace

std::string MemberOf(std::string title) {
    std::replace(title.begin(), title.end(), ' ', '_');
    return title;
}

Json NewDocument(int schema) {
    return {{"schema", schema}};
}

std::vector<std::string> CellsOf(const Row& row) {
    std::vector<std::string> cells;
    cells.reserve(row.size());
    for (const Cell& cell : row) {
        cells.push_back(std::visit(CellText(), cell));
    }
    return cells;
}

Table TableOf(const std::string& title, const std::vector<Column>& columns, const Json& rows) {
    Table table{title, columns, {}};
    for (const auto& row : rows) {
        std::vector<std::string>& cells = table.rows.emplace_back();
        for (const Column& column : columns) {
            cells.push_back(TextOf(row.at(MemberOf(column.title))));
        }
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
    const std::string text = JsonText(value, kJsonIndent);
    const std::string lineStart = '\n' + JsonIndent(depth);
    std::string piece;
    size_t at = 0;
    for (size_t end; (end = text.find('\n', at)) != text.npos; at = end + 1) {
        piece.append(text, at, end - at).append(lineStart);
    }
    return piece.append(text, at);
}

std::string OpenJsonPiece(int depth, const Json& object) {
    std::string text = JsonPiece(depth, object);
    text.erase(text.rfind('\n'));
    return text;
}

void AppendJson(std::string& out, std::string_view text) {
    const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) {
        return c >= ' ' && c < 0x7F && c != '"' && c != '\\';
    });
    if (isPlain) {
        out.append(1, '"').append(text).append(1, '"');
    } else {
        out += JsonText(text, -1);
    }
}

JsonRows::JsonRows(const std::vector<Column>& columns, int depth)
    : end_("\n" + JsonIndent(depth) + "}") {
    for (const Column& column : columns) {
        heads_.push_back((heads_.empty() ? "{\n" : ",\n") + JsonIndent(depth + 1) + '"' +
                         MemberOf(column.title) + "\": ");
    }
}

void JsonRows::Open(std::string& out, const Row& row) const {
    for (size_t i = 0; i < row.size(); ++i) {
        out += heads_[i];
        if (const auto* text = std::get_if<std::string>(&row[i])) {
            AppendJson(out, *text);
        } else if (const auto* number = std::get_if<int64_t>(&row[i])) {
            out += std::to_string(*number);
        } else {
            const auto* flag = std::get_if<bool>(&row[i]);
            out += !flag ? "null" : *flag ? "true" : "false";
        }
    }
}

JsonList::JsonList(int depth) : depth_(depth) {
    PrintText("[");
}

void JsonList::Next() {
    PrintText((isEmpty_ ? "\n" : ",\n") + JsonIndent(depth_ + 1));
    isEmpty_ = false;
}

void JsonList::End() {
    PrintText(isEmpty_ ? "]" : "\n" + JsonIndent(depth_) + "]");
}

ResultsFile::ResultsFile(const std::string& path) : file_(path) {
    if (file_.Descriptor() != STDOUT_FILENO && dup2(file_.Descriptor(), STDOUT_FILENO) < 0) {
        CannotWrite(file_.Name(), errno);
    }
}

void ResultsFile::Finish() {
    if (!Results().flush()) {
        CannotWrite(file_.Name(), Buffer().Error());
    }
    file_.Finish();
}

void PrintText(const std::string& text) {
    Results() << text;
}

void PrintLine(const std::string& line) {
    Results() << line + '\n';
}

void PrintProse(std::string text) {
    const size_t room = Columns(Stream::kResults);
    while (IsTerminal(Stream::kResults) && Width(text) > room) {
        const size_t fitting = EndWithin(text, room);
        if (fitting == 0) {
            break;  // a wide letter, and one column
        }
        const size_t blank = text.rfind(' ', fitting);
        const bool isBlank = blank != text.npos && blank != 0;
        PrintLine(text.substr(0, isBlank ? blank : fitting));
        text.erase(0, isBlank ? blank + 1 : fitting);
    }
    PrintLine(text);
}

void Print(const Table& table) {
    TablePrinter printer(table.title, table.columns);
    for (const std::vector<std::string>& cells : table.rows) {
        printer.Take(cells);
    }
    printer.End();
}

TablePrinter::TablePrinter(const std::string& title, std::vector<Column> columns)
    : columns_(std::move(columns)),
      widths_(columns_.size()),
      isTerminal_(IsTerminal(Stream::kResults)),
      isWaiting_(isTerminal_) {
    if (!title.empty()) {
        PrintLine(Bold(Stream::kResults, OneLine(title)));
    }
    std::vector<std::string> titles;
    for (const Column& column : columns_) {
        titles.push_back(column.title);
    }
    Take(titles);
}

void TablePrinter::Take(const std::vector<std::string>& cells) {
    if (isWaiting_) {
        for (size_t i = 0; i < cells.size(); ++i) {
            widths_[i] = std::max(widths_[i], Width(cells[i]));
        }
        waiting_.push_back(cells);
        if (waiting_.size() > kRowsForWidths) {
            PrintWaiting();
        }
    } else if (isTerminal_) {
        PrintLine(Aligned(Fitting(cells), widths_, columns_));
    } else {
        PrintLine(WithTabs(cells));
    }
}

// The cells, cut where the terminal is narrow.
std::vector<std::string> TablePrinter::Fitting(std::vector<std::string> cells) const {
    for (size_t i = 0; isNarrow_ && i < cells.size(); ++i) {
        cells[i] = columns_[i].isNumber ? cells[i] : Cut(cells[i], widths_[i]);
    }
    return cells;
}

void TablePrinter::End() {
    static bool isTold = false;
    static size_t told = 0;
    if (isWaiting_) {
        PrintWaiting();
    }
    const size_t needed = isNarrow_ ? WidthOfRow(widths_) : 0;
    if (needed > Columns(Stream::kResults)) {
        if (needed > told) {
            told = needed;
            PrintMessage(
                Say("a row takes {} columns of a terminal; behind '| cat' its cells are whole",
                    needed));
        }
    } else if (isNarrow_ && !isTold) {
        isTold = true;
        PrintMessage(Say("cells were cut to fit the terminal; behind '| cat' they are whole"));
    }
}

void TablePrinter::PrintWaiting() {
    const size_t room = Columns(Stream::kResults);
    isNarrow_ = WidthOfRow(widths_) > room;
    for (const size_t least : {size_t{8}, size_t{4}}) {  // what is left of a text
        Narrow(widths_, columns_, room, least);
    }
    for (const std::vector<std::string>& cells : waiting_) {
        const std::string line = Aligned(Fitting(cells), widths_, columns_);
        PrintLine(&cells == &waiting_.front() ? Bold(Stream::kResults, line) : line);
    }
    waiting_.clear();
    isWaiting_ = false;
}

}  // namespace lq::tool
