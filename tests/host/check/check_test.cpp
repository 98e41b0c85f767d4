// What the checks find: their examples, planted faults, and nothing in a project without any.

#include "lq_data/host/check/check.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>

#include "tests/host/plcopen/plcopen_util.h"
#include "tests/support/rows.h"

namespace lq::host {

namespace {

using test::Row;
using test::Rows;

constexpr char kHead[] =
    "<project xmlns='http://www.plcopen.org/xml/tc6_0201'><fileHeader companyName='c' "
    "productName='p' productVersion='1' creationDateTime='2024-01-01T00:00:00'/><contentHeader "
    "name='n'/><types><dataTypes/><pous>\n";
constexpr char kTail[] = "</pous></types></project>";
constexpr char kEmptyBody[] = "<body><ST><p xmlns='http://www.w3.org/1999/xhtml'>;</p></ST></body>";
constexpr char kTask[] = "TASK t(INTERVAL := T#10ms, PRIORITY := 1); PROGRAM p WITH t : Main;";

std::string Replace(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::string InResource(const std::string& text) {
    return " CONFIGURATION c RESOURCE r " + text + " END_RESOURCE END_CONFIGURATION";
}

// "a : INT; t : TON;" as elements.
std::string VariablesOf(std::string_view declarations) {
    std::string variables;
    while (declarations.find(':') != declarations.npos) {
        const std::string name(declarations.substr(0, declarations.find(" :")));
        declarations.remove_prefix(declarations.find(": ") + 2);
        const std::string type(declarations.substr(0, declarations.find(';')));
        declarations.remove_prefix(std::min(declarations.find("; ") + 2, declarations.size()));
        const bool isElementary = type == "BOOL" || type == "INT" || type == "TIME";
        variables += "<variable name='" + name + "'><type>" +
                     (isElementary ? "<" + type + "/>" : "<derived name='" + type + "'/>") +
                     "</type></variable>";
    }
    return "<localVars>" + variables + "</localVars>";
}

std::string PouOf(const std::string& interface, const std::string& body) {
    return "<pou name='Main' pouType='program'><interface>" + interface + "</interface>" + body +
           "</pou>";
}

// A fragment as a project, on the same lines; XML begins on the second one. "{a : INT;} a := 1;" is
// a program with its variables, whose code begins on the third line, "FBD{a : INT;}" and what
// follows, "LD" and "SFC" alike, a drawing, "@RUN" what runs the program Main.
std::string Whole(std::string text) {
    text = Replace(text, "@RUN", InResource(kTask));
    text = Replace(text, "@LONG", std::string(1025, 'n'));
    const std::size_t brace = text.find('{');
    if (brace <= 3 && text[brace + 1] != '*') {
        const std::string variables = text.substr(brace + 1, text.find('}') - brace - 1);
        const std::string language = text.substr(0, brace);
        const std::string code = text.substr(text.find('}') + 1);
        if (language.empty()) {
            return "PROGRAM Main VAR\n" + variables + " END_VAR\n" + code + "\nEND_PROGRAM";
        }
        return kHead +
               PouOf(VariablesOf(variables),
                     "<body><" + language + ">\n" + code + "</" + language + "></body>") +
               kTail;
    }
    if (text.starts_with("<?xml")) {
        return text;
    }
    if (text.starts_with("<")) {
        text = text.starts_with("<variable") ? "<localVars>" + text + "</localVars>" : text;
        return kHead + (text.starts_with("<pou") ? text : PouOf(text, kEmptyBody)) + kTail;
    }
    if (text.starts_with("VAR")) {
        return "PROGRAM Main " + text + " ; END_PROGRAM";
    }
    if (text.starts_with("TASK") || text.starts_with("PROGRAM p")) {
        return "PROGRAM Main ; END_PROGRAM" + InResource(text);
    }
    return text;
}

// "8001 2:3", with the severity where it is not the check's, and so on.
std::string FindingsIn(const std::string& text, const CheckOptions& given) {
    Project none;
    ReadProject read;
    read.project.KeepCode();
    if (text.starts_with("<")) {
        read.Read(text);
    } else {
        read.ReadAsText(text);
    }
    Project& project = read.complete ? read.project : none;
    CheckOptions options = given;
    options.reports = &read.reports;
    std::string found;
    SetProject(&project);
    RunChecks(project, options, [&](const Finding& finding) {
        found += found.empty() ? "" : ", ";
        found += CodeText(finding.check->code) + " " + std::to_string(finding.line) + ":" +
                 std::to_string(finding.column);
        const auto asked = options.severity.find(finding.check->code);
        if (finding.severity !=
            (asked != options.severity.end() ? asked->second : finding.check->severity)) {
            found += std::string(" ") + NameOf(finding.severity);
        }
    });
    SetProject(nullptr);
    return found;
}

// For a row that is about the code, with the words behind it. Most declarations of fragments are
// not used; those of rows about bodies, and about "uses", are.
CheckOptions OptionsFor(const std::string& code) {
    CheckOptions options;
    const auto set = [&options](std::string_view words, Severity severity) {
        for (const Check* check : ChecksNamed(words)) {
            options.severity[check->code] = severity;
        }
    };
    set("6003", Severity::kOff);
    if (!code.starts_with("8") && code.find("uses") == code.npos) {
        for (const char* unused : {"8001", "8002", "8003", "8004", "8005", "8013", "8033"}) {
            set(unused, Severity::kOff);
        }
    }
    const std::vector<const Check*> checks = ChecksNamed(code.substr(0, 4));
    if (!checks.empty() && checks[0]->severity == Severity::kOff) {
        set(code.substr(0, 4), Severity::kNote);
    } else if (!checks.empty()) {
        options.severity.erase(checks[0]->code);
    }
    options.closed = code.find("closed") != code.npos;
    options.edition = code.find("edition 3") != code.npos ? Edition::kThird : Edition::kSecond;
    options.addresses = code.find("byte") != code.npos || code.starts_with("4008")
                            ? AddressModel::kByte
                        : code.find("element") != code.npos ? AddressModel::kElement
                                                            : AddressModel::kSeparate;
    return options;
}

}  // namespace

TEST(Checks, FindTheirWrongExamplesAndNotTheirRightOnes) {
    std::map<std::string, std::string> places;
    for (const Row& row : Rows("host/check/checks.rows", "places of the wrong examples")) {
        for (const std::string& cell : row.cells) {
            places[cell.substr(0, 4)] = cell;
        }
    }
    for (const Check* check : AllChecks()) {
        if (*check->wrong) {
            const std::string code = CodeText(check->code);
            const CheckOptions options = OptionsFor(code);
            EXPECT_EQ(FindingsIn(Whole(check->wrong), options), places[code]) << check->wrong;
            EXPECT_EQ(FindingsIn(Whole(check->right), options), "") << code << check->right;
        }
    }
}

TEST(Checks, FindPlantedFaults) {
    std::map<std::string, int> counts;
    for (const Row& row : Rows("host/check/checks.rows", "planted faults")) {
        const std::string code = row[0].substr(0, 4);
        EXPECT_EQ(FindingsIn(Whole(row[2]), OptionsFor(row[0])), code + " " + row[1]) << row.line;
        ++counts[code];
    }
    for (const Check* check : AllChecks()) {
        const int planted = counts[CodeText(check->code)] + (*check->wrong ? 1 : 0);
        EXPECT_TRUE(check->code < 1000 || planted >= 3) << check->code << ": " << planted;
    }
}

TEST(Checks, SayThatThereAreMoreReports) {
    std::string variables;
    for (int i = 0; i <= 1000; ++i) {
        variables += "<e" + std::to_string(i) + "/>";
    }
    const std::string found = FindingsIn(Whole("<localVars>" + variables + "</localVars>"), {});
    EXPECT_NE(found.find("0003"), found.npos);
}

TEST(Checks, LeaveAloneWhatIsRight) {
    for (const Row& row : Rows("host/check/checks.rows", "no faults")) {
        EXPECT_EQ(FindingsIn(Whole(row[1]), OptionsFor(row[0])), "") << row.line;
    }
}

TEST(Checks, FindNothingInCleanProjects) {
    for (const char* name : {"/host/check/clean.st", "/host/check/clean.xml"}) {
        std::ifstream file(std::string(LQ_TEST_SOURCE) + name);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        ASSERT_GT(text.size(), 1000u) << name;
        CheckOptions options;
        options.closed = true;
        EXPECT_EQ(FindingsIn(text, options), "") << name;
    }
}

// In the order of their places, whatever the severities; two of one cause are told apart.
TEST(Checks, HandOutFindingsAgainAndBySeverity) {
    ReadProject read;
    read.project.KeepCode();
    read.ReadAsText("PROGRAM Main VAR a, b : INT; END_VAR\na := a; b := 1;\na := a;\nEND_PROGRAM" +
                    InResource("VAR_GLOBAL g : INT; END_VAR " + std::string(kTask)));
    SetProject(&read.project);
    const Findings findings(read.project, {});
    const auto all = [&](auto... severity) {
        std::vector<std::string> found;
        findings.ForEach(severity..., [&](const Finding& finding) {
            found.push_back(CodeText(finding.check->code) + " " + finding.unit + "." +
                            finding.name + " " + finding.fingerprint);
        });
        return found;
    };
    const std::vector<std::string> once = all();
    ASSERT_EQ(once.size(), 3u);
    EXPECT_EQ(findings.Count(), 3u);
    EXPECT_EQ(once[0].substr(0, 12), "8016 Main.a ");
    EXPECT_EQ(once[1].substr(0, 12), "8016 Main.a ");
    EXPECT_NE(once[0], once[1]);
    EXPECT_EQ(once[2].substr(0, 11), "8005 c.r.g ");
    EXPECT_EQ(all(), once);
    EXPECT_EQ(all(Severity::kWarning), std::vector(once.begin(), once.begin() + 2));
    EXPECT_EQ(all(Severity::kNote), std::vector(once.begin() + 2, once.end()));
    SetProject(nullptr);
}

}  // namespace lq::host
