// The files that a project is read from: those that are named, and those in folders.
#pragma once

#include <string>
#include <vector>

#include "lq_data/host/text/report.h"
#include "tools/lq/commands.h"

namespace lq::tool {

struct SourceFile {
    std::string path;
    bool isLibrary = false;
    // It was found in a folder: where it cannot be read, the others are.
    bool isFound = false;
};

// The files in order, libraries last. A folder stands for the files in it and in the folders below,
// in the order of their names, whose endings are those of sources. Left out there are hidden files,
// what is no ordinary file, and what links lead to a second time. A folder below that cannot be
// read is reported. Throws CommandError for a file
// that is named twice, a folder without files, and endings and an encoding that are none.
std::vector<SourceFile> FilesOf(const ProjectFiles& files, std::vector<host::Report>& reports);

bool IsFolder(const std::string& path);

}  // namespace lq::tool
