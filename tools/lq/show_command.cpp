#include <algorithm>

#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/image_file.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/output_conflict.h"
#include "tools/lq/progress.h"
#include "tools/lq/suggestion.h"
#include "tools/lq/table_input.h"
#include "tools/lq/table_rows.h"
#include "tools/lq/tables.h"
#include "tools/lq/unit_rows.h"

namespace lq::tool {

using host::Say;

namespace {

CgTab::TAB_ID TableByName(const std::string& name) {
    const auto* at = std::find(std::begin(kTableNames), std::end(kTableNames), name);
    if (at != std::end(kTableNames)) {
        return static_cast<CgTab::TAB_ID>(at - std::begin(kTableNames));
    }
    std::string all;
    for (const std::string_view known : kTableNames) {
        all += (all.empty() ? "" : ", ") + std::string(known);
    }
    throw CommandError(Say("no table is called '{}'", name) +
                       DidYouMean(name, {std::begin(kTableNames), std::end(kTableNames)},
                                  Say("; the tables are {}", all)));
}

std::vector<CgTab::TAB_ID> ChosenTables(const std::vector<std::string>& names) {
    std::vector<CgTab::TAB_ID> ids;
    ids.reserve(CgTab::TAB_COUNT + names.size());
    for (const std::string& name : names) {
        ids.push_back(TableByName(name));
    }
    for (int id = 0; names.empty() && id < CgTab::TAB_COUNT; ++id) {
        ids.push_back(static_cast<CgTab::TAB_ID>(id));
    }
    return ids;
}

bool WithComponents(const TableRows& rows, const ShowOptions& options) {
    return rows.id == CgTab::TAB_POU && !options.tables.empty();
}

// The rows to show, without the tables that have none of the name that is looked for. What is
// damaged, and a name that is not found, becomes a message.
std::vector<TableRows> ChosenRows(CgTab& tables, const std::vector<CgTab::TAB_ID>& ids,
                                  const ShowOptions& options, int& status) {
    std::vector<TableRows> shown;
    std::vector<std::string> names;
    {
        const Progress progress(Say("reading the tables"));
        for (const CgTab::TAB_ID id : ids) {
            TableRows rows = RowsOf(tables, id);
            if (ReportDamage(options.input, rows)) {
                status = kInputHasFaults;
            }
            if (id == CgTab::TAB_CMP) {
                NameUnits(rows, SectionsOf(tables));
            }
            if (!options.find.empty()) {
                AddNames(rows, names);
                KeepNamed(rows, options.find);
            }
            if (options.find.empty() || !rows.rows.empty()) {
                shown.push_back(std::move(rows));
            }
        }
    }
    if (shown.empty()) {
        PrintMessage(Place{DisplayName(options.input)},
                     Say("nothing is called '{}'", options.find) + DidYouMean(options.find, names));
        status = kInputHasFaults;
    }
    return shown;
}

// Piece by piece: what lines share in the tables is in the document as often as they show it.
void PrintTablesAsJson(CgTab& tables, const std::vector<TableRows>& shown,
                       const ShowOptions& options) {
    Json head = NewDocument();
    head["input"] = DisplayName(options.input);
    PrintText(OpenJsonPiece(0, head) + ",\n" + JsonIndent(1) + "\"tables\": {");
    for (const TableRows& rows : shown) {
        PrintText((&rows == &shown.front() ? "\n" : ",\n") + JsonIndent(2) +
                  JsonText(kTableNames[rows.id], -1) + ": ");
        if (WithComponents(rows, options)) {
            PrintUnitsAsJson(tables, rows, 2);
        } else {
            PrintRowsAsJson(rows, 2);
        }
    }
    PrintLine((shown.empty() ? "" : "\n" + JsonIndent(1)) + "}\n}");
}

void PrintTables(CgTab& tables, const std::vector<TableRows>& shown, const ShowOptions& options) {
    for (const TableRows& rows : shown) {
        if (&rows != &shown.front()) {
            PrintLine("");
        }
        if (WithComponents(rows, options)) {
            PrintUnits(tables, rows);
        } else {
            PrintRows(rows, std::string(kTableNames[rows.id]));
        }
    }
}

}  // namespace

int RunShow(const ShowOptions& options) {
    RefuseImageWithJson(options.save, options.json);
    const std::vector<CgTab::TAB_ID> ids = ChosenTables(options.tables);
    auto [tables, isProject, refusals, status] = ReadTables(options.input);
    if (isProject) {  // an image may be saved in its own place
        RefuseInputAsOutput(options.input, options.save);
    }
    const auto save = [&options, &set = *tables] {
        const Progress progress(Say("saving {}", options.save));
        SaveImage(set, options.save);
    };
    if (options.save == "-") {
        save();
        return status;  // the image alone
    }
    const std::vector<TableRows> shown = ChosenRows(*tables, ids, options, status);
    if (!options.save.empty()) {
        save();
    }
    const auto progress = Progress::OfResults(Say("writing the tables"), 0);
    if (options.json) {
        PrintTablesAsJson(*tables, shown, options);
    } else {
        PrintTables(*tables, shown, options);
    }
    return status;
}

}  // namespace lq::tool
