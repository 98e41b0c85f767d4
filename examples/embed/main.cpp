// From a project to tables: embed PROJECT UNIT IMAGE
#include <cstdio>
#include <lq_data/lq_data.h>
#include <vector>

using lq::host::EncodeUtf8;

bool Read(const char* path, lq::host::Project& project) {
    std::vector<lq::host::Report> reports;
    const bool isRead = lq::host::ReadPlcopenFile(path, project, reports);
    for (const lq::host::Report& report : reports) {
        std::fprintf(stderr, "%s\n", lq::host::ToText(report).c_str());
    }
    return isRead;
}

// Looks a unit up, and shows its components with their initial values.
void Show(CgTab& tables, const char16_t* unit) {
    CgTab::POU_LINE found = {};
    tables.Look(unit, &found, 0);
    lq::Lines<CgTab::TAB_CMP> section(tables, lq::UnitInfo::From(found.info).Section());
    for (const auto& [pos, line] : section) {
        CgTab::CstLine constant;
        int32_t at = line.cstLine;
        const bool hasValue = at >= 0 && tables.Read(at, constant, 0, nullptr);
        std::printf("%d: %s := %s\n", pos, EncodeUtf8(line.name).c_str(),
                    hasValue ? EncodeUtf8(constant.text).c_str() : "?");
    }
}

int main(int argc, char** argv) {
    lq::host::Project project, edited;
    uint32_t userAreas[CgTab::kUserTables] = {0, 4, 4, 4, 4, 4, 4, 4, 4};  // as lq has them
    int ok = 0;
    CgTab tables(ok, &userAreas);
    if (argc != 4 || !ok || !Read(argv[1], project) || !Read(argv[1], edited)) {
        return 2;
    }
    lq::host::SetProject(&project);  // the one of this thread
    lq::host::ProjectSource source(project);
    for (const lq::TranslationRefusal& refusal : lq::Translate(source, tables, nullptr)) {
        std::printf("line %u is refused, reason %d\n", refusal.place.line, int(refusal.reason));
    }
    std::u16string name;
    lq::host::DecodeUtf8(argv[2], name);
    Show(tables, name.c_str());

    // After an edit the unit is read and entered once more, and nothing else.
    const ID unit = project.FindPou(name);
    project.ReplacePou(unit, edited, edited.FindPou(name));
    const auto outcome = lq::TranslateUnit(source, tables, nullptr, unit).outcome;
    Show(tables, name.c_str());

    FILESTREAM_A image;
    const bool isSaved =
        image.Open(argv[3], FILESTREAM_A::WRITE) && tables.Save(image) && image.Close();
    std::printf("%s\n", EncodeUtf8(GetResString(10000)).c_str());  // a text of the library's
    lq::host::SetProject(nullptr);
    return isSaved && outcome == lq::TranslationOutcome::kDone ? 0 : 1;
}
