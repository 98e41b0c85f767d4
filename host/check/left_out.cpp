#include "host/check/left_out.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "host/model/report_codes.h"

namespace lq::host::check {

namespace {

struct Beginning {
    std::pair<uint32_t, uint32_t> place;  // line and column
    ID object;
};

bool IsHolder(ID object) {
    return SortOf(object) == Sort::kPou || SortOf(object) == Sort::kDataType;
}

// The units and types of each file, and what begins behind them, by their lines.
std::map<std::string, std::vector<Beginning>> Beginnings(const Project& project) {
    std::map<std::string, std::vector<Beginning>> files;
    const SourceFile* last = nullptr;
    std::vector<Beginning>* beginnings = nullptr;
    const auto enter = [&](Sort sort, const auto& records) {
        for (uint32_t i = 0; i < records.size(); ++i) {
            const ID id = MakeId(sort, i);
            const SourceFile* file = project.FileOf(id);
            if (file && records[i].line != 0) {
                beginnings = file == last ? beginnings : &files[Utf8(file->name)];
                last = file;
                beginnings->push_back({{records[i].line, project.ColumnOf(id)}, id});
            }
        }
    };
    enter(Sort::kPou, project.Pous());
    enter(Sort::kDataType, project.DataTypes());
    enter(Sort::kConfiguration, project.Configurations());
    for (auto& [name, all] : files) {
        std::ranges::sort(all, {}, &Beginning::place);
    }
    return files;
}

// Whether what is reported there is more than a mark or value of one declaration. Elements that
// stand in front of the bodies name nothing.
bool HoldsNames(const Project& project, const Report& report, ID object) {
    const Pou* pou = project.GetPou(object);
    const bool isXml = !report.path.empty();
    if (isXml) {
        return pou && (pou->bodies.empty() || report.line >= pou->bodies.front().line ||
                       report.path.find("/addData") != report.path.npos);  // methods, anywhere
    }
    return std::ranges::none_of(project.Below(object),
                                [&](ID id) { return project.LineOf(id) == report.line; });
}

}  // namespace

LeftOut::LeftOut(const Run& run)
    : graph_(run.graph), isOf_(run.project.Pous().size() + run.project.DataTypes().size()) {
    constexpr uint16_t kCodes[] = {kNotKept, kNotRead, kUnknownElement};
    if (!run.options.reports || run.options.reports->empty()) {
        return;
    }
    const auto files = Beginnings(run.project);
    for (const Report& report : *run.options.reports) {
        const auto file = files.find(report.file);
        if (report.line == 0 || std::ranges::find(kCodes, report.code) == std::end(kCodes)) {
            continue;
        }
        const bool isText = report.path.empty();
        // In a text what stands in front of a unit on its line is about the unit.
        const std::pair place(report.line, isText ? UINT32_MAX : report.column);
        if (file == files.end() || place < file->second.front().place) {
            mayDeclare_ = mayDeclare_ || isText;
            continue;
        }
        const std::vector<Beginning>& all = file->second;
        const auto next = std::ranges::upper_bound(all, place, {}, &Beginning::place);
        ofConfigurations_ =
            ofConfigurations_ || (isText && report.code == kNotKept &&
                                  SortOf(std::prev(next)->object) == Sort::kConfiguration);
        if (!IsHolder(std::prev(next)->object) ||
            !HoldsNames(run.project, report, std::prev(next)->object)) {
            continue;
        }
        any_ = true;
        for (const Beginning& other : all) {
            // Where the further places are is not known.
            if (IsHolder(other.object) &&
                (other.object == std::prev(next)->object || report.more > 0)) {
                isOf_[graph_.NodeOf(other.object)] = true;
            }
        }
    }
}

}  // namespace lq::host::check
