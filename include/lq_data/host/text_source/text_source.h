// Reads IEC 61131-3 text (units with their bodies, data types, global variables, configurations)
// into a project.
#pragma once

#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lq_data/export.h"
#include "lq_data/host/text/report.h"
#include "lq_data/host/text/utf.h"

namespace lq::host {

class Project;

// Adds what the text declares to `project`, with the texts of types and values that ReadPlcopen
// builds. Of every unit that is read, each name that is declared is in the project or in a report
// with its place; what has no place in the project (methods, classes, access paths) is reported and
// left out. Initial values, and names of types, are not judged. Bodies are read for labels, jumps
// and calls only.
//
// After a fault the reader goes on at the next place where it is sure, with one report a fault.
// True unless the text was not read to its end (its bytes are no text, 2^31 characters or more,
// memory short): the last report then says why, and the project holds what was read until then.
// Throws nothing; when even the report finds no memory, there is none.
//
// What it holds comes from a file of that name (Project::FileOf), whose stem ("Plant" of
// "src/Plant.gvl") is the name of the lists of global variables outside of configurations. Names
// are resolved by nothing here: several texts, and documents, make one project in any order.
//
// Pragmas are passed over. Bytes are read in the code page, if one is given, else as those of any
// source (DecodeAnySource).
LQ_DATA_API bool ReadText(std::istream& source, const std::string& fileName, Project& project,
                          std::vector<Report>& reports,
                          std::optional<TextEncoding> codePage = {}) noexcept;
// The same for a text in memory.
LQ_DATA_API bool ReadText(std::u16string_view text, const std::string& fileName, Project& project,
                          std::vector<Report>& reports) noexcept;

// The same for a file.
LQ_DATA_API bool ReadTextFile(const std::string& path, Project& project,
                              std::vector<Report>& reports,
                              std::optional<TextEncoding> codePage = {}) noexcept;

}  // namespace lq::host
