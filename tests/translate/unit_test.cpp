// lq::TranslateUnit: a unit is entered once more, after an edit.
#include "tests/translate/small_project.h"

namespace lq::test {
namespace {

// What a set says of a unit, without positions: its components, labels and temporaries.
std::string Said(CgTab& tables, const char16_t* name) {
    std::string said;
    CgTab::POU_LINE unit;
    CgTab::CMP_LINE component;
    CgTab::LBL_LINE label;
    CgTab::TMP_LINE temporary;
    if (tables.Look(name, &unit, 0) < 0) {
        return said;
    }
    const UnitInfo info = UnitInfo::From(unit.info);
    const auto add = [&said](const char16_t* text, auto... numbers) {
        said += Ascii(text);
        ((said += " " + std::to_string(numbers)), ...);
    };
    uint32_t line = 0;
    add(u"", info.lines, info.kind, info.instances, info.end - info.start);
    for (auto pos = static_cast<int32_t>(info.start); pos < static_cast<int32_t>(info.end);) {
        EXPECT_TRUE(tables.Read(pos, component, 0, &line));
        CgTab::CstLine constant;
        int32_t at = component.cstLine;
        const bool hasValue = at >= 0 && tables.Read(at, constant, 0, nullptr);
        add(component.name, component.scope, int{component.type}, component.count, line);
        add(hasValue ? constant.text : u"");
    }
    for (int32_t pos = 0; tables.Read(pos, label, 0, &line);) {
        const bool isIts = std::u16string_view(label.name).starts_with(name);
        if (isIts && (label.count != 0 || label.info != 0)) {
            add(label.name, label.info, label.count, line);
        }
    }
    for (int32_t pos = 0; tables.Read(pos, temporary, 0, &line);) {
        if (std::u16string_view(temporary.name).starts_with(name)) {
            add(temporary.name, int{temporary.type}, temporary.count, line);
            add(u"", temporary.type == IEC_STRING ? temporary.dsc.strLen : 0);
        }
    }
    return said;
}

int64_t SizeOf(const CgTab& tables) {
    int64_t size = 0;
    for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
        size += CgTabCompiler::LengthOf(tables, static_cast<CgTab::TAB_ID>(id));
    }
    return size;
}

TEST(TranslateUnit, SaysWhatAFreshSetSays) {
    WholeProject project;
    const ID otherUnit = project.NewPou(LQ_KIND_PROGRAM, u"Other");
    project.Declare(otherUnit, u"Half", u"REAL", kLocal, u"0.5");
    project.EditPou(otherUnit)->bodies.emplace_back().labels.push_back({u"L1", 60});
    auto tables = Translated(project);
    host::ProjectSource source(project);
    const std::string other = Said(*tables, u"Other");
    const auto enter = [&](ID unit) {
        Client client;
        const TranslationResult result = TranslateUnit(source, *tables, &client, unit);
        EXPECT_EQ(result.GetRefusalCount(), 0u);
        EXPECT_TRUE(CgTabAccess::Check(*tables));
        return result.outcome;
    };
    const int32_t pos = tables->Look(u"Unit", static_cast<CgTab::POU_LINE*>(nullptr), 0);
    const std::string before = Said(*tables, u"Unit");
    EXPECT_EQ(enter(project.unit), TranslationOutcome::kDone);
    EXPECT_EQ(Said(*tables, u"Unit"), before) << "without an edit";

    // Read anew: others in the place of the declarations, of the temporary's type and of the
    // labels.
    const auto replace = [&project](auto fill) {
        SmallProject read;
        fill(read);
        EXPECT_TRUE(project.ReplacePou(project.unit, read, read.unit));
    };
    replace([](SmallProject& read) {
        read.Declare(read.unit, u"Short", u"ARRAY [0..9] OF REAL", kTemp);
        read.Declare(read.unit, u"Third", u"INT", kLocal, u"33");
        read.Declare(read.unit, u"inner", u"WORD");
        read.AddBody({{u"L1", 52}, {u"L2", 50}});
        read.EditPou(read.unit)->bodies.back().jumps.assign(3, {u"L2", 51});
    });
    host::SetProject(&project);
    EXPECT_EQ(enter(project.unit), TranslationOutcome::kDone);
    const auto fresh = Translated(project);
    EXPECT_EQ(Said(*tables, u"Unit"), Said(*fresh, u"Unit"));
    EXPECT_EQ(tables->Look(u"Unit", static_cast<CgTab::POU_LINE*>(nullptr), 0), pos);
    EXPECT_EQ(Said(*tables, u"Other"), other);
    for (const CgTab::TAB_ID id : {CgTab::TAB_DBG, CgTab::TAB_GLB, CgTab::TAB_ADR}) {
        EXPECT_EQ(ImageOf(*tables, id), ImageOf(*fresh, id));
    }

    // Another type with a descriptor has room in the line.
    replace([](SmallProject& read) { read.Declare(read.unit, u"Short", u"STRING(9)", kTemp); });
    host::SetProject(&project);
    EXPECT_EQ(enter(project.unit), TranslationOutcome::kDone);
    EXPECT_EQ(Said(*tables, u"Unit"), Said(*Translated(project), u"Unit"));

    // A type of another size has no room in the temporary's line: nothing is changed.
    const std::string now = Said(*tables, u"Unit");
    replace([](SmallProject& read) { read.Declare(read.unit, u"Short", u"REAL", kTemp); });
    host::SetProject(&project);
    const int64_t size = SizeOf(*tables);
    EXPECT_EQ(enter(project.unit), TranslationOutcome::kProject);
    EXPECT_EQ(Said(*tables, u"Unit"), now);
    EXPECT_EQ(SizeOf(*tables), size);

    // A unit that the set does not have yet.
    const ID added = project.NewPou(LQ_KIND_PROGRAM, u"Added");
    project.Declare(added, u"x", u"INT");
    EXPECT_EQ(enter(added), TranslationOutcome::kDone);
    EXPECT_EQ(Said(*tables, u"Added"), Said(*Translated(project), u"Added"));
}

TEST(TranslateUnit, NeverMakesASetTwiceAsLargeAsAFreshOne) {
    SmallProject project;
    for (int i = 0; i < 500; ++i) {
        const std::u16string name = u"V" + pouh::Number(i);
        project.Declare(project.unit, project.Intern(name),
                        i % 3 ? u"INT" : u"ARRAY [0..9] OF INT");
        project.Declare(project.list, project.Intern(u"G" + name), u"INT", pouh::kGlobal);
    }
    host::ProjectSource source(project);
    auto tables = Translated(project);
    const int64_t fresh = SizeOf(*tables);
    int32_t renewed = 0;
    for (int i = 0; i < 200; ++i) {
        if (TranslateUnit(source, *tables, nullptr, project.unit).outcome ==
            TranslationOutcome::kProject) {
            tables = Translated(project);
            ++renewed;
        }
        ASSERT_LT(SizeOf(*tables), 2 * fresh + 128 * 1024);
    }
    EXPECT_GT(renewed, 10);
    EXPECT_LT(renewed, 100);
}

}  // namespace
}  // namespace lq::test
