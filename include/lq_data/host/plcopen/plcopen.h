// Reads PLCopen XML (TC6, versions 1.01 to 2.01) into a project: whole ones, and a single <pou> as
// editors export it, in UTF-8, UTF-16, windows-1252 or Shift_JIS. Lists of global variables, units
// and types that producers keep in additional data of a project, configuration or resource are read
// as what they are. Documents of IEC 61131-10, the format's successor, are read as far as they hold
// the same: units with their sections and bodies in text, structures, arrays and enumerations,
// global variables, tasks. Of drawings only the language is read, which is reported, as all else.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "lq_data/export.h"
#include "lq_data/host/text/report.h"

namespace lq::host {

class Project;

// Adds what the document holds to `project`. What the reader does not know, or what has no place in
// the project, is reported and left out. True unless the document was not read to its end (not
// well-formed, no PLCopen project, a limit exceeded, memory short): the last report then says why,
// and the project holds what was read until then. Throws nothing; when even the report finds no
// memory, there is none.
//
// A document is a project or a single unit (<pou>), in UTF-8, UTF-16, ISO-8859-1, windows-1252 or
// Shift_JIS. Lists of global variables that a producer keeps in its additional data (<addData>) are
// read as others; at the project they have no parent.
//
// What it holds comes from a file of that name (Project::FileOf). Several documents make one
// project, libraries last (Project::CountAsLibrary, to be called behind each).
//
// Limits: no declarations in the document type, no entities but those that XML predefines, nothing
// outside the document; 256 nested elements, 256 attributes of an element, 1,024 bytes of a
// namespace's name; 1,024 bytes of the name of what holds others (POUs, actions, data types, lists
// of variables, configurations, resources, tasks), where a longer one is reported and left out;
// 1,000 different reports, behind which one says that there are more.
LQ_DATA_API bool ReadPlcopen(std::istream& source, const std::string& fileName, Project& project,
                             std::vector<Report>& reports) noexcept;

// The same for a file.
LQ_DATA_API bool ReadPlcopenFile(const std::string& path, Project& project,
                                 std::vector<Report>& reports) noexcept;

}  // namespace lq::host
