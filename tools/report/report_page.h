// The report's page: one document with style, script and data in it, which loads nothing. It is
// written as it is made.
#pragma once

#include <string>
#include <string_view>

#include "tools/lq/output.h"
#include "tools/lq/output_file.h"

namespace lq::tool {

// Writes the page around its data: the tables, then the project. Throws CommandError.
class ReportPage {
  public:
    // Writes what stands in front of the data.
    explicit ReportPage(OutputFile& file);
    ReportPage(const ReportPage&) = delete;
    ReportPage& operator=(const ReportPage&) = delete;

    // Add to the data. What is no text of a project stands as it is.
    void Add(std::string_view json);
    void AddText(std::string_view text);
    void AddValue(const Json& value);
    // An object without its end.
    void AddOpen(const Json& object);

    // As AddText adds it.
    static void AppendText(std::string& to, std::string_view text);

    // Writes what stands between the tables and the project.
    void EndTables();

    // Writes what stands behind the data.
    void Finish();

  private:
    void Write();

    OutputFile& file_;
    std::string pending_;
};

}  // namespace lq::tool
