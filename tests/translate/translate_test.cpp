// lq::Translate on projects of the host's model. What it enters, byte for byte, the tests of the
// tool show, and the package's that a model of one's own gets the same.
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/host/text_source/text_source.h"
#include "tests/support/memory_jobs.h"
#include "tests/translate/small_project.h"

namespace lq::test {
namespace {

std::string Row(const std::u16string& name, RefusalReason reason, DeclFault fault,
                POUH_ATTRIBUTE_FLAG attribute, SourcePlace place) {
    std::string row = Ascii(name.c_str());
    for (const unsigned number : {static_cast<unsigned>(reason), static_cast<unsigned>(fault),
                                  unsigned{attribute}, place.line, place.column}) {
        row += " " + std::to_string(number);
    }
    return row + "\n";
}

TEST(Translate, RefusesWithReasonAttributeAndPlace) {
    using enum RefusalReason;
    using Fault = DeclFault;
    const std::u16string longName(256, u'n');
    SmallProject project;
    const std::u16string longText = u"'" + std::u16string(70'000, u'x') + u"'";
    const ID units[] = {project.unit, project.NewPou(LQ_KIND_PROGRAM, longName.c_str()), ID(7),
                        project.NewPou(LQ_KIND_PROGRAM, u"Full")};
    const struct {
        ID owner;
        const char16_t* name;
        const char16_t* type;
        host::Section section;
        RefusalReason reason;
        DeclFault fault;
        POUH_ATTRIBUTE_FLAG attribute;
        const char16_t* init = u"";
        const char16_t* address = u"";
    } declared[] = {
        {project.list, u"1x", u"INT", pouh::kGlobal, kNoIdentifier, Fault::kNone, POUH_NAME},
        {project.list, u"FINE", u"INT", pouh::kGlobal, kGlobalTwice, Fault::kNone, POUH_NAME},
        {project.list, u"a", u"Nothing", pouh::kGlobal, kDeclaration, Fault::kTypeName, POUH_TYPE},
        {project.list, u"b", u"INT", pouh::kGlobal, kDeclaration, Fault::kInitialValue,
         POUH_INITVALUE, u"1 2"},
        {project.list, u"c", u"INT", pouh::kGlobal, kDeclaration, Fault::kAddress, POUH_ADDRESS,
         u"", u"QW4"},
        {project.list, u"d", u"ANY_INT", pouh::kGlobal, kDeclaration, Fault::kTableType, POUH_TYPE},
        {project.unit, u"2x", u"INT", kTemp, kNoIdentifier, Fault::kNone, POUH_NAME},
        {project.unit, u"2X", u"INT", kTemp, kComponentTwice, Fault::kNone, POUH_NAME},
        {project.unit, u"local", u"INT", kInput, kComponentTwice, Fault::kNone, POUH_NAME},
        {project.unit, u"Missing", u"INT", kExternal, kNoGlobal, Fault::kNone, POUH_NAME},
        {project.unit, u"e", u"Nothing", kTemp, kDeclaration, Fault::kTypeName, POUH_TYPE},
    };
    project.Declare(project.list, u"Fine", u"INT", pouh::kGlobal, u"1");
    project.Declare(project.unit, u"Local", u"INT");
    std::string expected;
    for (const auto& d : declared) {
        project.Declare(d.owner, d.name, d.type, d.section, d.init, d.address);
        expected +=
            Row(d.name, d.reason, d.fault, d.attribute, {project.Line(), project.Line() * 10});
    }
    project.AddBody({{u"L1", 30, 300},
                     {u"l1", 31, 310},
                     {&longName[9], 32, 320}});  // too long behind "Unit.Act."
    expected += Row(u"Unit/l1", kLabelTwice, Fault::kNone, POUH_NAME, {31, 310});
    expected += Row(u"Unit/" + longName.substr(9), kLabelName, Fault::kNone, POUH_NAME, {32, 320});
    expected += Row(longName + u"/", kUnitName, Fault::kNone, POUH_DECLLIST, {});
    expected += Row(u"/", kUnit, Fault::kNone, POUH_DECLLIST, {});  // the model has no such object
    project.Declare(units[3], u"fine", u"INT");
    project.Declare(units[3], u"large", u"STRING(9)", kLocal, longText.c_str());
    expected += Row(u"Full/", kComponents, Fault::kNone, POUH_DECLLIST, {});

    struct Source : host::ProjectSource {
        using ProjectSource::ProjectSource;
        const LQSELECTION* GetUnits() override { return &units; }
        IdSelection units;
    } source(project);
    source.units = IdSelection(units, 4);
    const auto tables = NewTables();
    const TranslationResult result = Translate(source, *tables, nullptr);
    std::string refused;
    for (const TranslationRefusal& refusal : result) {
        const std::u16string name = refusal.object != ID()
                                        ? project.NameOf(refusal.object)
                                        : std::u16string(project.NameOf(refusal.owner)) + u"/" +
                                              (refusal.mark ? refusal.mark : u"");
        refused += Row(name, refusal.reason, refusal.fault, refusal.attribute, refusal.place);
    }
    EXPECT_EQ(refused, expected);
    EXPECT_EQ(result.outcome, TranslationOutcome::kDone);
    EXPECT_EQ(result.declarations, 15u);
    EXPECT_EQ(result.entered, 2u);
    EXPECT_EQ(result.units, 2u);
}

// The header of so long a unit is loaded in parts; what it becomes is what AppendCmp makes of the
// whole one, and a name is declared twice across the parts, too.
TEST(Translate, ALongUnit) {
    SmallProject project, fine;
    std::vector<uint32_t> refused;
    const host::Section sections[] = {kLocal, kInput, kTemp, pouh::kOutput};
    for (int i = 0; i < 4000; ++i) {
        const bool isTwice = i % 500 == 499;
        const bool isBad = i % 700 == 600;
        const int number = isTwice ? i / 2 - 1 : i;
        const char16_t* const name = project.Intern((isBad     ? u"1x"
                                                     : isTwice ? u"v"
                                                               : u"V") +
                                                    pouh::Number(number));
        const host::Section section = sections[number % 7 % 4];
        const char16_t* const type = i % 10 == 0   ? u"ARRAY [0..9] OF INT"
                                     : i % 10 == 1 ? u"TON"
                                                   : u"INT";
        const char16_t* const init = i % 10 > 1 ? project.Intern(pouh::Number(i % 99)) : u"";
        project.Declare(project.unit, name, type, section, init);
        if (isBad || isTwice) {
            refused.push_back(project.Line());
        } else {
            fine.Declare(fine.unit, name, type, section, init);
        }
    }
    ASSERT_EQ(refused.size(), 13u);
    SetProject(&fine);
    const auto expected = NewTables();
    POU_HEADER_TYP* header = CreatePOUHeader();
    POU_LIST instances;
    CgTab::POS_DSC range;
    EXPECT_EQ(LoadPOUHeader(header, fine.unit, 0), 1);
    EXPECT_EQ(CgTabCompiler::AppendCmp(*expected, header, 0x84, &instances, range, 1), 1);
    DestroyPOUHeader(header);
    SetProject(&project);
    for (const bool isTooLong : {false, true}) {
        if (isTooLong) {
            const std::u16string text = u"'" + std::u16string(70'000, u'x') + u"'";
            project.Declare(project.unit, u"large", u"STRING(9)", kLocal, project.Intern(text));
            refused.push_back(0);  // the unit's components
        }
        const auto tables = NewTables();
        host::ProjectSource source(project);
        const TranslationResult result = Translate(source, *tables, nullptr);
        std::vector<uint32_t> lines;
        for (const TranslationRefusal& refusal : result) {
            lines.push_back(refusal.place.line);
        }
        EXPECT_EQ(lines, refused);
        EXPECT_EQ(result.entered, isTooLong ? 0u : 3987u);
        EXPECT_TRUE(ImageOf(*tables, CgTab::TAB_CMP) ==
                    (isTooLong ? "" : ImageOf(*expected, CgTab::TAB_CMP)));
        for (const CgTab::TAB_ID id : {CgTab::TAB_CST, CgTab::TAB_ARR}) {
            EXPECT_TRUE(ImageOf(*tables, id).starts_with(ImageOf(*expected, id))) << id;
        }
        CgTab::POU_LINE unit;
        ASSERT_EQ(tables->Look(u"Unit", &unit, 0), 0);
        const UnitInfo info = UnitInfo::From(unit.info);
        EXPECT_EQ(info.lines, isTooLong ? 0u : 3987u);
        EXPECT_EQ(info.instances, 400u);
    }
}

TEST(Translate, ATemporaryHasTheTypeOfItsComponent) {
    SmallProject project;
    project.Declare(project.unit, u"x", u"INT", kTemp);
    project.Declare(project.unit, u"X", u"REAL", kInput);  // comes first in the section
    host::ProjectSource source(project);
    const auto tables = NewTables();
    EXPECT_EQ(Translate(source, *tables, nullptr).GetRefusalCount(), 1u);
    CgTab::TMP_LINE line;
    int32_t pos = 0;
    ASSERT_EQ(tables->Read(pos, line, 0, nullptr), 1);
    EXPECT_EQ(Ascii(line.name), "Unit.x");
    EXPECT_EQ(line.type, IEC_REAL);
}

// Areas of every size, and none; lines that were there before keep theirs.
TEST(Translate, FillsTheUserAreasOfNewLines) {
    WholeProject project;
    host::ProjectSource source(project);
    uint32_t sizes[CgTab::kUserTables] = {1, 2, 3, 4, 5, 6, 7, 0, 9};
    int ok = 0;
    CgTab tables(ok, &sizes);
    CgTab bare(ok, nullptr);
    Lit before;
    ASSERT_TRUE(before.SetText(u"77") && before.val.Set(before.text, 0));
    tables.Insert(before);
    bare.Insert(before);
    Client client;
    const TranslationResult result = Translate(source, tables, &client);
    EXPECT_EQ(result.GetRefusalCount(), 0u);
    EXPECT_EQ(result.entered, 7u);
    const std::map<int, std::string> lines = {
        {CgTab::TAB_DBG, "0 "},     {CgTab::TAB_POU, "0 "},   {CgTab::TAB_CMP, "5 7 4 6 8 "},
        {CgTab::TAB_GLB, "2 3 "},   {CgTab::TAB_ADR, "2 3 "}, {CgTab::TAB_CST, "2 3 5 "},
        {CgTab::TAB_LBL, "30 31 "}, {CgTab::TAB_DMM, "3 "}};
    EXPECT_EQ(client.lines, lines);

    // The bytes are there, and nothing else depends on them.
    MEMSTREAM_A areas;
    EXPECT_EQ(tables.PutUsr(CgTab::TAB_CST, areas), 4 * 6);
    EXPECT_EQ(Hex(areas.GetData(), 24),
              "00 00 00 00 00 00 02 02 02 02 02 02 03 03 03 03 03 03 "
              "05 05 05 05 05 05");
    struct Debug : TranslationClient {
        uint32_t FillDebugRecord(const LineOrigin& origin, const char16_t* name, uint32_t kind,
                                 unsigned char* data) override {
            return Client().FillDebugRecord(origin, name, kind, data);
        }
    } debug;
    EXPECT_EQ(Translate(source, bare, &debug).entered, 7u);
    for (const CgTab::TAB_ID id : {CgTab::TAB_TMP, CgTab::TAB_ARR}) {
        EXPECT_EQ(ImageOf(tables, id), ImageOf(bare, id));
    }
    CgTab::POU_LINE unit;
    ASSERT_EQ(bare.Look(u"UNIT", &unit, 0), 0);
    const UnitInfo info = UnitInfo::From(unit.info);
    EXPECT_EQ(info.start, 0u);
    EXPECT_EQ(static_cast<int32_t>(info.end), CgTabCompiler::LengthOf(bare, CgTab::TAB_CMP));
    EXPECT_EQ(info.lines, 5u);
    EXPECT_EQ(info.kind, PT_PROGRAM);
    EXPECT_EQ(info.instances, 1u);
}

TEST(Translate, EndsWhenTheClientSaysSo) {
    WholeProject project;
    host::ProjectSource source(project);
    for (const uint32_t at : {1u, 2u, 5u}) {
        const auto tables = NewTables();
        Client client;
        client.cancelAt = at;
        const TranslationResult result = Translate(source, *tables, &client);
        EXPECT_EQ(result.outcome, TranslationOutcome::kCancelled);
        EXPECT_EQ(result.declarations, at);
        EXPECT_EQ(result.units, 0u);
    }
}

TEST(Translate, TellsWantOfMemory) {
    struct Short : TranslationSource {
        const LQSELECTION* GetUnits() override {
            ReportShortage();
            return nullptr;
        }
    } atUnits;
    EXPECT_EQ(Translate(atUnits, *NewTables(), nullptr).outcome, TranslationOutcome::kNoMemory);
    WholeProject project;
    project.Declare(project.list, u"1x", u"INT", pouh::kGlobal);
    project.Declare(project.unit, u"2x", u"INT");
    project.AddBody({{u"L1", 1}});
    RunWithFailures({"translate", [&project] {
                         return [&project]() -> std::string {
                             int ok = 0;
                             uint32_t sizes[CgTab::kUserTables] = {0, 4, 4, 4, 4, 4, 4, 4, 4};
                             CgTab tables(ok, &sizes);
                             host::ProjectSource source(project);
                             Client client;
                             if (!ok) {
                                 return kShort;
                             }
                             const TranslationResult result = Translate(source, tables, &client);
                             MEMSTREAM_A image;
                             if (result.outcome != TranslationOutcome::kDone ||
                                 !tables.Save(image)) {
                                 return kShort;
                             }
                             return std::to_string(result.GetRefusalCount()) + ": " +
                                    Hex(image.GetData(), static_cast<size_t>(image.GetSize()));
                         };
                     }});
    // On the same set: what failed is whole the next time.
    RunWithFailures({"translate a unit", [&project]() -> Attempt {
                         const std::shared_ptr<CgTab> tables = Translated(project);
                         return [&project, tables]() -> std::string {
                             host::ProjectSource source(project);
                             Client client;
                             EXPECT_TRUE(CgTabAccess::Check(*tables));
                             const TranslationResult result =
                                 TranslateUnit(source, *tables, &client, project.unit);
                             return result.outcome == TranslationOutcome::kDone
                                        ? std::to_string(result.GetRefusalCount())
                                        : kShort;
                         };
                     }});
}

// Byte for byte, but for the lines, which are each source's own.
TEST(Translate, ATextGivesTheTablesOfItsDocument) {
    std::unique_ptr<CgTab> tables[2];
    for (const bool isText : {false, true}) {
        host::Project project;
        std::vector<host::Report> reports;
        ASSERT_TRUE(
            isText ? host::ReadTextFile(LQ_TEST_EXAMPLES "/plant/plant.st", project, reports)
                   : host::ReadPlcopenFile(LQ_TEST_EXAMPLES "/plant/plant.xml", project, reports));
        for (const host::Declaration& one : project.Declarations()) {
            const_cast<host::Declaration&>(one).line = 0;
        }
        for (uint32_t i = 0; i < project.Pous().size(); ++i) {
            host::Pou& pou = *project.EditPou(host::MakeId(host::Sort::kPou, i));
            pou.line = 0;
            for (host::Body& body : pou.bodies) {
                for (host::Mark& label : body.labels) {
                    label.line = 0;
                }
            }
        }
        host::SetProject(&project);
        tables[isText ? 1 : 0] = Translated(project);
        host::SetProject(nullptr);
    }
    EXPECT_TRUE(Saved(*tables[0]) == Saved(*tables[1]));
}

}  // namespace
}  // namespace lq::test
