#include <algorithm>
#include <iostream>
#include <optional>

#include <nlohmann/json.hpp>

#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/image_file.h"
#include "tools/lq/input.h"
#include "tools/lq/input_buffer.h"
#include "tools/lq/output.h"
#include "tools/lq/project_input.h"
#include "tools/lq/table_rows.h"
#include "tools/lq/tables.h"
#include "tools/lq/translation.h"
#include "tools/lq/unit_rows.h"

namespace lq::tool {

using Json = nlohmann::ordered_json;

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
    throw CommandError("no table is called '" + name + "'; the tables are " + all);
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

// The input's tables: an image's, or those that a project translates to.
std::unique_ptr<CgTab> TablesOf(const ShowOptions& options, int& status) {
    const std::string bytes = ReadInput(options.input, kMaxProject);
    if (IsImage(bytes) || !LooksLikeXml(bytes)) {
        return RestoreImage(bytes, options.input);
    }
    std::vector<host::Report> reports;
    CurrentProject current;
    ReadProject(options.input, bytes, current.project, reports);
    Translation translation = Translate(current.project);
    for (const host::Report& report : reports) {
        std::cerr << host::ToText(report) << '\n';
    }
    PrintRefusals(DisplayName(options.input), translation.refusals);
    if (!reports.empty() || !translation.refusals.empty()) {
        status = kInputHasFaults;
    }
    return std::move(translation.tables);
}

}  // namespace

int RunShow(const ShowOptions& options) {
    const std::vector<CgTab::TAB_ID> ids = ChosenTables(options.tables);
    int status = kDone;
    const std::unique_ptr<CgTab> tables = TablesOf(options, status);
    if (!options.save.empty()) {
        SaveImage(*tables, options.save);
    }
    if (options.save == "-") {
        return status;  // the image alone
    }
    Json document = Json::object();
    bool isFirst = true;
    bool isFound = options.find.empty();
    for (const CgTab::TAB_ID id : ids) {
        TableRows rows = RowsOf(*tables, id);
        if (rows.damagedAt) {
            std::cerr << DisplayName(options.input) << ": table " << kTableNames[id]
                      << ": the line at " << *rows.damagedAt << " is damaged\n";
            status = kInputHasFaults;
        }
        const bool withComponents = id == CgTab::TAB_POU && !options.tables.empty();
        if (id == CgTab::TAB_CMP) {
            NameUnits(rows, SectionsOf(*tables));
        }
        if (!options.find.empty()) {
            KeepNamed(rows, options.find);
            if (rows.rows.empty()) {
                continue;
            }
            isFound = true;
        }
        if (options.json) {
            document[std::string(kTableNames[id])] =
                withComponents ? UnitsWithComponents(*tables, rows) : rows.rows;
            continue;
        }
        if (!isFirst) {
            PrintLine("");
        }
        isFirst = false;
        if (withComponents) {
            PrintUnits(*tables, rows);
        } else {
            Print(AsTable(rows));
        }
    }
    if (options.json) {
        PrintJson(document);
    }
    if (!isFound) {
        std::cerr << DisplayName(options.input) << ": nothing is called '" << options.find << "'\n";
        status = kInputHasFaults;
    }
    return status;
}

}  // namespace lq::tool
