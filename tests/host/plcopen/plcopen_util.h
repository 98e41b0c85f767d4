// Documents in memory, read into a project of their own.
#pragma once

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "host/model/project.h"
#include "host/plcopen/plcopen.h"
#include "host/text/utf.h"

namespace lq::host {

struct ReadProject {
    explicit ReadProject(const std::string& document) {
        std::istringstream source(document);
        complete = ReadPlcopen(source, "test.xml", project, reports);
    }

    // The messages, a line each.
    std::string Messages() const {
        std::string messages;
        for (const Report& report : reports) {
            messages += report.message;
            messages += report.more ? " +" + std::to_string(report.more) + "\n" : "\n";
        }
        return messages;
    }

    // The first POU that is not the library's.
    const Pou& FirstPou() const { return *project.GetPou(project.Below(project.PouPool()).at(0)); }

    // "VAR_INPUT a AT %IX0 : INT := 1 (* comment *)"
    std::string Describe(ID id) const {
        const Declaration& d = *project.GetDeclaration(id);
        const auto part = [](std::string_view before, Text text, std::string_view behind = "") {
            return *text ? std::string(before).append(EncodeUtf8(text)).append(behind) : "";
        };
        return EncodeUtf8(KeywordOf(d.section)) + part(" ", d.name) + part(" AT ", d.address) +
               part(" : ", d.type) + part(" := ", d.initValue) + part(" (* ", d.comment, " *)");
    }

    Project project;
    std::vector<Report> reports;
    bool complete = false;
};

inline std::string Document(const std::string& types, const std::string& instances = "") {
    return R"(<project xmlns="http://www.plcopen.org/xml/tc6_0201" )"
           R"(xmlns:xhtml="http://www.w3.org/1999/xhtml"><fileHeader/><contentHeader name="t"/>)"
           "<types>" +
           types + "</types><instances><configurations>" + instances +
           "</configurations></instances></project>";
}

inline std::string PouDocument(const std::string& interface, const std::string& body = "",
                               const std::string& pouType = "functionBlock") {
    return Document("<pous><pou name=\"P\" pouType=\"" + pouType + "\"><interface>" + interface +
                    "</interface>" + body + "</pou></pous>");
}

}  // namespace lq::host
