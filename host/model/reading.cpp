#include "host/model/reading.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "lq_data/detail/chars.h"

namespace lq::host {

namespace {

// Why the path cannot be read as a file; empty when it can.
std::string Obstacle(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        return Say("there is no such file");
    }
    return std::filesystem::is_directory(status) ? Say("this is a folder, not a file") : "";
}

const char* Settings(bool constant, bool retain) {
    return !constant ? "retain" : retain ? "constant retain" : "constant";
}

}  // namespace

bool OpenSource(std::ifstream& source, ReportList& reports) {
    std::string obstacle = Obstacle(reports.FileName());
    if (obstacle.empty()) {
        source.open(reports.FileName(), std::ios::binary);
        obstacle = source ? "" : Say("the file cannot be opened");
    }
    if (!obstacle.empty()) {
        reports.Fail(0, 0, obstacle);
    }
    return obstacle.empty();
}

Section SectionOf(Scope scope, unsigned marks, std::string_view list,
                  std::vector<std::string>& faults) {
    Section section{scope};
    section.constant = (marks & kMarkConstant) != 0;
    section.retain = (marks & kMarkRetain) != 0;
    if ((marks & kMarkNonRetain) != 0 && section.retain) {
        faults.push_back(Say("{} is retain and nonretain: it was read as nonretain", list));
        section.retain = false;
        marks &= ~kMarkRetain;
    }
    if ((marks & kMarkPersistent) != 0) {
        faults.push_back(
            Say("{} is persistent, which has no section keyword: it was read as retain", list));
        section.retain = true;
    }
    Section nearest = NearestSection(section);
    if (nearest != section) {
        faults.push_back(Say(
            "{} with {} has no section keyword: it was read without {}", list,
            Settings(section.constant, section.retain),
            Settings(section.constant && !nearest.constant, section.retain && !nearest.retain)));
    }
    nearest.marks = static_cast<uint8_t>(marks);
    return nearest;
}

bool EnoPair::Take(Project& project, const Declaration& declaration) {
    const Pou* const pou = project.GetPou(declaration.owner);
    const Scope scope = declaration.section.scope;
    const bool isPlain = !*declaration.comment && !*declaration.initValue && !*declaration.address;
    const bool isOne = isPlain && pou && pou->kind != LQ_KIND_PROGRAM &&
                       chars::EqualNoCase(declaration.type, u"BOOL") &&
                       ((scope == Scope::kInput && chars::EqualNoCase(declaration.name, u"EN")) ||
                        (scope == Scope::kOutput && chars::EqualNoCase(declaration.name, u"ENO")));
    if (isOne) {
        taken_.push_back(project.AddAside(declaration));
    }
    return isOne;
}

void EnoPair::Close(Project& project, ID pou) {
    const auto scope = [&project](ID id) { return project.GetDeclaration(id)->section.scope; };
    if (taken_.size() == 2 && scope(taken_[0]) != scope(taken_[1])) {
        project.EditPou(pou)->eno = true;
    } else {
        std::ranges::for_each(taken_, [&project](ID id) { project.Adopt(id); });
    }
    taken_.clear();
}

}  // namespace lq::host
