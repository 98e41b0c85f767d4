// Documents in memory, read into a project of their own.
#pragma once

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/text_source/text_source.h"

namespace lq::host {

struct ReadProject {
    ReadProject() = default;
    explicit ReadProject(const std::string& document) { Read(document); }

    void Read(const std::string& document) {
        std::istringstream source(document);
        complete = ReadPlcopen(source, "test.xml", project, reports);
    }
    void ReadAsText(const std::string& text) {
        std::istringstream source(text);
        complete = ReadText(source, "src/test.st", project, reports);
    }

    // The reports, a line each, the code first.
    std::string Told() const {
        std::string told;
        for (const Report& report : reports) {
            told += std::to_string(report.code) + " " + ToText(report) + "\n";
        }
        return told;
    }

    Project project;
    std::vector<Report> reports;
    bool complete = false;
};

}  // namespace lq::host
