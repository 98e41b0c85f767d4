#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "lq_data/host/symbols/symbols.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/escape.h"
#include "tools/lq/generate.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/progress.h"
#include "tools/lq/project_input.h"
#include "tools/lq/terminal.h"
#include "tools/lq/use_counts.h"

namespace lq::tool {

using host::EncodeUtf8;
using host::Say;
using host::Symbol;
using host::Unexpanded;

namespace {

const std::vector<Column> kColumns = {{"path"},       {"name"},        {"section"}, {"type"},
                                      {"address"},    {"initial"},     {"comment"}, {"file"},
                                      {"line", true}, {"column", true}};

std::vector<Column> ColumnsOf(const SymbolsOptions& options) {
    std::vector<Column> columns = kColumns;
    if (options.expand) {
        columns.push_back({"reason"});
    }
    if (options.uses) {
        columns.push_back({"uses", true});
    }
    return columns;
}

std::string ReasonText(const Symbol& symbol) {
    switch (symbol.unexpanded) {
        case Unexpanded::kNone:
            break;
        case Unexpanded::kUnknownType:
            return Say("no data type and no function block is called '{}'",
                       EncodeUtf8(symbol.unexpandedType));
        case Unexpanded::kRecursive:
            return Say("the type '{}' contains itself", EncodeUtf8(symbol.unexpandedType));
        case Unexpanded::kReference:
            return Say("it stands for a variable that is declared elsewhere");
        case Unexpanded::kBounds:
            return Say(
                "the array type does not read as whole numbers in order and an element type");
        case Unexpanded::kElements:
            return Say("the array has more than {} elements", host::kMostElements);
        case Unexpanded::kDepth:
            return Say("it stands in more than {} types and arrays", host::kMostDepth);
        case Unexpanded::kMembers:
            return Say("the variable has more than {} members", host::kMostMembers);
        case Unexpanded::kNameless:
            return Say("the structure has no name");
        case Unexpanded::kEmpty:
            return Say("the type '{}' has no members", EncodeUtf8(symbol.unexpandedType));
        case Unexpanded::kUnsupportedType:
            return Say("the type '{}' is not supported", EncodeUtf8(symbol.unexpandedType));
        case Unexpanded::kOnlyBeginning:
            return Say("it begins at the address; where its members lie is not certain");
    }
    return "";
}

// `uses` of the variables by their declarations; none without counts.
Row RowOf(const Symbol& symbol, bool withReason, const std::vector<uint32_t>& uses) {
    Row row = {EncodeUtf8(symbol.path),    EncodeUtf8(symbol.name),    EncodeUtf8(symbol.section),
               EncodeUtf8(symbol.type),    EncodeUtf8(symbol.address), EncodeUtf8(symbol.initial),
               EncodeUtf8(symbol.comment), EncodeUtf8(symbol.file),    int64_t{symbol.line},
               int64_t{symbol.column}};
    if (withReason) {
        row.emplace_back(ReasonText(symbol));
    }
    if (!uses.empty()) {
        row.emplace_back(int64_t{uses[host::IndexOf(symbol.declaration)]});
    }
    return row;
}

// -- CSV ------------------------------------------------------------------------------------------

// "12", "1.5", "1.5E-3": what no spreadsheet calculates.
bool IsNumber(std::string_view text) {
    const auto takeDigits = [&text] {
        const size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
        text.remove_prefix(count);
        return count;
    };
    const auto take = [&text](std::string_view any) {
        const bool isOne = !text.empty() && any.find(text.front()) != any.npos;
        text.remove_prefix(isOne ? 1 : 0);
        return isOne;
    };
    size_t digits = takeDigits();
    digits += take(".") ? takeDigits() : 0;
    if (digits != 0 && take("eE")) {
        take("+-");
        digits = takeDigits();
    }
    return digits != 0 && text.empty();
}

// Whether a spreadsheet would take the cell for a formula; the full-width signs count where
// Japanese is written. A number with its sign is none.
bool IsFormula(std::string_view cell) {
    constexpr std::string_view kBeginnings[] = {"=",  "+",      "-",      "@",      "\t",    "\r",
                                                "\n", "\uFF1D", "\uFF0B", "\uFF0D", "\uFF20"};
    const bool isBegun = std::ranges::any_of(
        kBeginnings, [cell](std::string_view beginning) { return cell.starts_with(beginning); });
    const bool isSigned = cell.starts_with('+') || cell.starts_with('-');
    return isBegun && !(isSigned && IsNumber(cell.substr(1)));
}

// RFC 4180: lines end in CR LF, and a cell is quoted where it has to be.
class CsvPrinter {
  public:
    CsvPrinter(const SymbolsOptions& options, const std::vector<Column>& columns)
        : delimiter_(options.delimiter.empty() ? "," : options.delimiter),
          isHarmless_(options.noFormulas) {
        Row titles;
        for (const Column& column : columns) {
            titles.emplace_back(column.title);
        }
        PrintText(options.mark ? "\uFEFF" : "");
        Take(titles);
    }

    void Take(const Row& row) {
        line_.clear();
        for (const Cell& cell : row) {
            line_ += &cell == &row.front() ? "" : delimiter_;
            const auto* text = std::get_if<std::string>(&cell);
            Append(text ? *text : std::to_string(std::get<int64_t>(cell)));
        }
        PrintText(line_ += "\r\n");
    }

  private:
    void Append(const std::string& text) {
        const std::string cell =
            (isHarmless_ && IsFormula(text) ? "'" : "") + (isTerminal_ ? OneLine(text) : text);
        if (cell.find_first_of("\"\r\n") == cell.npos && cell.find(delimiter_) == cell.npos) {
            line_ += cell;
            return;
        }
        line_ += '"';
        for (const char c : cell) {
            line_.append(c == '"' ? 2 : 1, c);
        }
        line_ += '"';
    }

    const std::string delimiter_;
    const bool isHarmless_;
    const bool isTerminal_ = IsTerminal(Stream::kResults);
    std::string line_;
};

// -- JSON -----------------------------------------------------------------------------------------

class JsonPrinter {
  public:
    explicit JsonPrinter(const std::vector<Column>& columns) : rows_(columns, 2) {
        PrintText(OpenJsonPiece(0, NewDocument()) + ",\n" + JsonIndent(1) + "\"symbols\": ");
        list_.emplace(1);
    }

    void Take(const Row& row) {
        list_->Next();
        text_.clear();
        rows_.Open(text_, row);
        rows_.Close(text_);
        PrintText(text_);
    }

    void End() {
        list_->End();
        PrintText("\n}\n");
    }

  private:
    JsonRows rows_;
    std::optional<JsonList> list_;
    std::string text_;
};

// -- Options --------------------------------------------------------------------------------------

host::SymbolOptions::Order OrderOf(const std::string& name) {
    using Order = host::SymbolOptions::Order;
    if (name.empty() || name == "name") {
        return name.empty() ? Order::kProject : Order::kName;
    }
    if (name != "address") {
        throw CommandError(Say("nothing is sorted by '{}', only by {}", name, Say(kSymbolOrders)));
    }
    return Order::kAddress;
}

void CheckForm(const SymbolsOptions& options) {
    if (options.csv && options.json) {
        throw CommandError(Say("the result can be CSV or JSON, not both of them"));
    }
    const char* const csvOnly = !options.delimiter.empty() ? "--delimiter"
                                : options.noFormulas       ? "--no-formulas"
                                : options.mark             ? "--bom"
                                                           : nullptr;
    if (csvOnly && !options.csv) {
        throw CommandError(Say("the option '{}' is one of CSV: it goes with '--csv'", csvOnly));
    }
    const std::u16string delimiter = DecodeArgument(options.delimiter);
    const bool isPair = delimiter.size() == 2 && delimiter[0] >= 0xD800 && delimiter[0] < 0xDC00;
    if (delimiter.size() > 1 && !isPair) {
        throw CommandError(Say("the delimiter '{}' is not one character", options.delimiter));
    }
    if (delimiter == u"\"" || delimiter == u"\r" || delimiter == u"\n") {
        throw CommandError(Say("the delimiter cannot be a quotation mark or an end of line"));
    }
}

ID UnitOf(const SymbolsOptions& options, const host::Project& project) {
    if (options.unit.empty()) {
        return {};
    }
    const ID unit = project.FindPou(DecodeArgument(options.unit));
    const host::SourceFile* file = project.FileOf(unit);
    if (file && file->isLibrary) {
        throw InputError({EncodeUtf8(file->name)},
                         Say("the unit '{}' is a library's and not listed", options.unit));
    }
    if (unit == ID()) {
        ThrowNoUnit(options.files, project, options.unit, false);
    }
    return unit;
}

void PrintSymbols(const host::Project& project, const host::SymbolOptions& what,
                  const SymbolsOptions& options) {
    const std::vector<Column> columns = ColumnsOf(options);
    const std::vector<uint32_t> uses = options.uses ? CountUses(project) : std::vector<uint32_t>();
    const auto print = [&](auto& printer, auto convert) {
        host::ForEachSymbol(project, what, [&](const Symbol& symbol) {
            printer.Take(convert(RowOf(symbol, options.expand, uses)));
        });
    };
    const auto asItIs = [](Row row) { return row; };
    const auto progress = Progress::OfResults(Say("writing the symbols"), 0);
    if (options.csv) {
        CsvPrinter printer(options, columns);
        print(printer, asItIs);
    } else if (options.json) {
        JsonPrinter printer(columns);
        print(printer, asItIs);
        printer.End();
    } else {
        TablePrinter printer("", columns);
        print(printer, CellsOf);
        printer.End();
    }
}

}  // namespace

int RunSymbols(const SymbolsOptions& options) {
    CheckForm(options);
    host::SymbolOptions what;
    what.order = OrderOf(options.sort);
    what.located = options.located;
    what.expand = options.expand;
    RefuseInputAsOutput(options.files, options.output);
    // As for a translation: the process ends with the command.
    static host::Project& project = *new host::Project;
    if (options.uses) {
        project.KeepCode();
    }
    const int status = ReadAndReport(options.files, project);
    what.unit = UnitOf(options, project);
    std::optional<ResultsFile> file;
    if (!options.output.empty()) {
        file.emplace(options.output);
    }
    PrintSymbols(project, what, options);
    if (file) {
        file->Finish();
    }
    return status;
}

}  // namespace lq::tool
