#include "tools/lq/project_input.h"

#include <iostream>
#include <istream>
#include <streambuf>

#include "tools/lq/command.h"
#include "tools/lq/input.h"
#include "tools/lq/input_buffer.h"

namespace lq::tool {

namespace {

// Reads bytes in place.
class BytesBuffer : public std::streambuf {
  public:
    explicit BytesBuffer(std::string_view bytes) {
        char* begin = const_cast<char*>(bytes.data());  // only read
        setg(begin, begin, begin + bytes.size());
    }
};

void ReadFrom(std::istream& source, const std::string& path, host::Project& project,
              std::vector<host::Report>& reports) {
    if (!host::ReadPlcopen(source, DisplayName(path), project, reports)) {
        throw CommandError(reports.empty() ? DisplayName(path) + ": cannot be read"
                                           : host::ToText(reports.back()));
    }
    host::SetProject(&project);
}

}  // namespace

void ReadProject(const std::string& path, host::Project& project,
                 std::vector<host::Report>& reports) {
    InputBuffer bytes(path, kMaxProject);
    std::istream source(&bytes);
    try {
        ReadFrom(source, path, project, reports);
    } catch (const CommandError&) {
        bytes.ThrowFailure();  // says more
        throw;
    }
}

void ReadProject(const std::string& path, std::string_view bytes, host::Project& project,
                 std::vector<host::Report>& reports) {
    BytesBuffer buffer(bytes);
    std::istream source(&buffer);
    ReadFrom(source, path, project, reports);
}

int ReadAndReport(const std::string& path, host::Project& project) {
    std::vector<host::Report> reports;
    ReadProject(path, project, reports);
    for (const host::Report& report : reports) {
        std::cerr << host::ToText(report) << '\n';
    }
    return reports.empty() ? kDone : kInputHasFaults;
}

}  // namespace lq::tool
