// Documents, the model that is read of each, as the library sees it, and what is reported. The text
// beside a document was checked against it by eye; LQ_UPDATE_GOLDEN=1 writes it anew.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "lq_data/host/uses/uses.h"
#include "tests/host/model/model_util.h"
#include "tests/host/plcopen/plcopen_util.h"

namespace {

using namespace lq::host;

std::string Part(std::string_view before, Text text, std::string_view behind = "") {
    return *text ? std::string(before).append(EncodeUtf8(text)).append(behind) : "";
}

std::string Place(uint32_t line, uint32_t column) {
    return std::to_string(line) + ":" + std::to_string(column);
}

std::string PlaceOf(ID id) {
    return Place(GetProject()->LineOf(id), GetProject()->ColumnOf(id));
}

std::string KindName(int32_t kind) {
    constexpr std::pair<int32_t, const char*> kNames[] = {
        {LQ_KIND_PROGRAM, "program"},
        {LQ_KIND_FUNCTION_BLOCK, "function block"},
        {LQ_KIND_FUNCTION, "function"},
        {LQ_KIND_GVL_DECL, "global"},
        {LQ_KIND_LOCAL_DECL, "local"},
        {kKindHeaderDeclaration, "header"},
        {kKindProgramInstance, "program instance"},
    };
    const auto* name = std::ranges::find(kNames, kind, &std::pair<int32_t, const char*>::first);
    return name != std::end(kNames) ? name->second : "kind " + std::to_string(kind);
}

// What the declaration manager answers of a declaration, a program instance or a POU:
// "3:5 header VAR_INPUT a AT %IX0 : INT := 1 (* comment *)".
std::string DescribeDeclaration(ID id) {
    const Project& project = *GetProject();
    if (const Pou* pou = project.GetPou(id)) {
        return KindName(pou->kind) + Part(" ", pou->name);
    }
    const std::unique_ptr<LQOBJECT> view(LQDECLMAN::Get()->Get(id));
    const auto* header = dynamic_cast<const LQPOUHDECL*>(view.get());
    const auto* global = dynamic_cast<const LQGVLDECL*>(view.get());
    return PlaceOf(id) + " " + KindName(view->GetKind()) +
           (header ? Part(" ", header->GetClass()) : "") +
           (global ? Part(" ", global->GetClass()) : "") + Part(" ", view->GetName()) +
           Part(" AT ", view->GetAddress()) + Part(" : ", view->GetType()) +
           Part(" := ", view->GetInitValue()) + Part(" (* ", view->GetDeclComment(), " *)");
}

std::string Lines(const LQSELECTION& selection, const std::string& indent) {
    std::string text;
    for (int32_t i = 0; i < selection.GetCount(); ++i) {
        text += indent + DescribeDeclaration(selection.GetID(i)) + "\n";
    }
    return text;
}

constexpr const char* kRoles[] = {"ST",           "IL",     "in",        "out",     "in-out",
                                  "contact",      "coil",   "block",     "input",   "output",
                                  "input-output", "step",   "initial",   "macro",   "jump",
                                  "transition",   "action", "indicator", "duration"};

std::string Marks(std::string_view title, const std::vector<Mark>& marks) {
    std::string text;
    for (const Mark& mark : marks) {
        text += (text.empty() ? std::string(title) : "") + Part(" ", mark.name) + "@" +
                Place(mark.line, mark.column) + (mark.conditional ? "?" : "");
    }
    return text;
}

std::string Describe(const Project& project, ID id) {
    constexpr const char* kLanguages[] = {"no body", "ST", "IL", "FBD", "LD", "SFC"};
    auto& view = static_cast<LQFUN&>(*LQNAVIOBJECTMAN::Get()->Get(id));
    const Pou& pou = *project.GetPou(id);
    const LQOBJECT& header = *view.GetHeader();
    std::string text =
        Place(pou.line, pou.column) + " " + KindName(view.GetKind()) + Part(" ", view.GetName()) +
        Part(" : ", view.GetResultType()) + (view.GetEnoFlag() != 0 ? " with ENO" : "") +
        Part(" (* ", view.GetComment(0), " *)") + Part(" header (* ", header.GetComment(0), " *)") +
        "\n" + Lines(*view.GetSelection(), "    ");
    for (const Body& body : pou.bodies) {
        text += "    " + Place(body.line, body.column) + " " +
                kLanguages[static_cast<std::size_t>(body.language)] + Part(" ", body.name) +
                Marks(" labels", body.labels) + Marks(" jumps", body.jumps) + "\n";
    }
    std::string calls;
    for (const Text call : pou.calls) {
        calls += Part(" ", call);
    }
    text += calls.empty() ? "" : "    calls" + calls + "\n";
    std::string reached;
    for (const ID other : project.Below(project.PouPool())) {
        const Text callee = project.NameOf(other);
        reached += CheckIsRecursiveCallEx(pou.name, callee, 0) != 0 ? Part(" ", callee) : "";
    }
    return text + (reached.empty() ? "" : "    reaches" + reached + "\n");
}

std::string DescribeTypes(const Project& project) {
    std::string text;
    for (uint32_t i = 0; i < project.DataTypes().size(); ++i) {
        LQNAVIOBJECT& view = *LQNAVIOBJECTMAN::Get()->Get(MakeId(Sort::kDataType, i));
        text += PlaceOf(MakeId(Sort::kDataType, i)) + " type" + Part(" ", view.GetName()) +
                (view.GetKind() == LQ_KIND_DUT ? " STRUCT" : "") + Part(" : ", view.GetType()) +
                Part(" := ", view.GetInitValue()) + Part(" (* ", view.GetDeclComment(), " *)") +
                "\n" + Lines(*view.GetSelection(), "    ");
    }
    return text;
}

std::string DescribeResources(const Project& project) {
    std::string text;
    const LQCOLLECTION& resources = *LQNAVIOBJECTMAN::Get()->GetResourcePool();
    for (int32_t i = 0; i < resources.GetMemberCount(); ++i) {
        const Resource& resource = *project.GetResource(resources.GetID(i));
        text += PlaceOf(resources.GetID(i)) + " resource " +
                EncodeUtf8(project.NameOf(resource.configuration)) + "." +
                EncodeUtf8(resource.name) + Part(" (* ", resource.comment, " *)") + "\n";
        for (const ID id : resource.tasks) {
            auto& task = static_cast<LQTASK&>(*LQNAVIOBJECTMAN::Get()->Get(id));
            text += "    " + PlaceOf(id) + " task" + Part(" ", task.GetName()) +
                    Part(" priority ", task.GetPriority()) +
                    Part(" interval ", task.GetInterval()) + Part(" event ", task.GetEvent()) +
                    Part(" (* ", task.GetComment(0), " *)") + "\n" +
                    Lines(*task.GetSelection(), "        ");
        }
        for (const ID id : resource.programs) {
            text += "    " + DescribeDeclaration(id) + "\n";
        }
    }
    return text;
}

std::string Describe(const Project& project) {
    std::string text = "project" + Part(" ", project.Name()) + "\n";
    for (const Configuration& configuration : project.Configurations()) {
        text += Place(configuration.line, configuration.column) + " configuration" +
                Part(" ", configuration.name) + Part(" (* ", configuration.comment, " *)") + "\n";
    }
    text += DescribeResources(project);
    for (uint32_t i = 0; i < project.VariableLists().size(); ++i) {
        const VariableList& list = project.VariableLists()[i];
        LQNAVIOBJECT& view = *LQNAVIOBJECTMAN::Get()->Get(MakeId(Sort::kVariableList, i));
        text += Place(list.line, list.column) + " globals " +
                EncodeUtf8(project.NameOf(list.parent)) + "." + EncodeUtf8(view.GetName()) +
                Part(" (* ", view.GetComment(0), " *)") + "\n" +
                Lines(*view.GetSelection(), "    ");
    }
    text += DescribeTypes(project);
    for (const ID id : project.Below(project.PouPool())) {
        text += Describe(project, id);
    }
    for (const Declaration& declaration : project.Declarations()) {
        const Scope scope = declaration.section.scope;
        if (scope == Scope::kAccess || scope == Scope::kConfig) {
            text += Place(declaration.line, declaration.column) +
                    Part(" ", WrittenSection(declaration.section).c_str()) +
                    Part(" ", project.NameOf(declaration.owner)) + Part(".", declaration.name) +
                    Part(" AT ", declaration.address) + Part(" : ", declaration.comment2) +
                    Part(" : ", declaration.type) + Part(" (* ", declaration.comment, " *)") + "\n";
        }
    }
    return text;
}

// A piece a line: "3:5 kContact 2 in front of 1 | 3:7 a 3:8 . 3:9 b".
std::string DescribeCode(const Project& project, const Body& body) {
    std::string text;
    const BodyCode& code = *project.CodeOf(body);
    const auto tokens = [](const std::vector<BodyToken>& all, std::size_t at, std::size_t end) {
        std::string line;
        for (; at < end; ++at) {
            line += " " + Place(all[at].line, all[at].column) + Part(" ", all[at].text);
        }
        return line + "\n";
    };
    for (std::size_t i = 0; i < code.pieces.size(); ++i) {
        const BodyPiece& piece = code.pieces[i];
        const bool isLast = i + 1 == code.pieces.size();
        text += "    " + Place(piece.line, piece.column) + " " +
                kRoles[static_cast<int>(piece.role)] + Part(" ", piece.name) +
                Part(" ", piece.second) + " " + std::to_string(piece.id) + "<" +
                std::to_string(piece.wire) + " |" +
                tokens(code.tokens, piece.first,
                       isLast ? code.tokens.size() : code.pieces[i + 1].first);
    }
    return text + (code.pragmaWords.empty()
                       ? ""
                       : "    pragmas" + tokens(code.pragmaWords, 0, code.pragmaWords.size()));
}

std::string DescribeCode(const Project& project) {
    std::string text;
    for (const ID id : project.Below(project.PouPool())) {
        for (const Body& body : project.GetPou(id)->bodies) {
            text += EncodeUtf8(project.NameOf(id)) + Part(".", body.name) + "\n";
            text += body.code != 0 ? DescribeCode(project, body) : "";
        }
    }
    return text;
}

std::string Golden(const std::string& name) {
    const bool isOfText = name.starts_with("text_source/");
    return LQ_TEST_SOURCE "/host/" + (isOfText ? name : "plcopen/golden/" + name);
}

std::string ReadAll(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

void ExpectGolden(const std::string& name, const std::string& text) {
    if (std::getenv("LQ_UPDATE_GOLDEN")) {
        std::ofstream(Golden(name), std::ios::binary) << text;
    }
    EXPECT_EQ(text, ReadAll(Golden(name)));
}

class Documents : public testing::TestWithParam<const char*> {};

TEST_P(Documents, BecomeModels) {
    const std::string name = GetParam();
    ReadProject read(
        ReadAll(name == "plant" ? LQ_TEST_EXAMPLES "/plant/plant.xml" : Golden(name + ".xml")));
    SetProject(&read.project);
    std::string text = Describe(read.project);
    SetProject(nullptr);
    ExpectGolden(name + ".txt", text + read.Told());
}

INSTANTIATE_TEST_SUITE_P(Golden, Documents,
                         testing::Values("plant", "units", "types", "sections", "values",
                                         "intervals", "configurations", "unknown", "drawings", "il",
                                         "st", "calls", "names", "added", "unit", "iec10"),
                         [](const auto& document) { return std::string(document.param); });

// Of what the texts hold, DescribeCode shows the tokens.
class Texts : public testing::TestWithParam<const char*> {};

TEST_P(Texts, BecomeModels) {
    const std::string name = std::string("text_source/golden/") + GetParam();
    ReadProject read;
    read.project.KeepCode();
    read.ReadAsText(ReadAll(Golden(name + ".st")));
    EXPECT_TRUE(read.complete);
    SetProject(&read.project);
    const std::string text = Describe(read.project);
    SetProject(nullptr);
    const bool hasBodies = GetParam() == std::string("foreign");
    ExpectGolden(name + ".txt", text + read.Told() + (hasBodies ? DescribeCode(read.project) : ""));
}

INSTANTIATE_TEST_SUITE_P(Golden, Texts,
                         testing::Values("units", "types", "configurations", "faults", "foreign"),
                         [](const auto& text) { return std::string(text.param); });

TEST(Code, IsKeptWhereItIsAskedFor) {
    for (const std::string name : {"drawings", "il", "st"}) {
        ReadProject read;
        read.project.KeepCode();
        read.Read(ReadAll(Golden(name + ".xml")));
        ExpectGolden(name + "_code.txt", DescribeCode(read.project));
    }
}

// Whatever their text is made of: names in it that begin with "q" stand once in the document.
TEST(Code, PlacesAreThoseOfTheFile) {
    const std::string body =
        "<xhtml:p>IF q0 &lt; q1 THEN '&amp;\u00E9\U00010000' q2;<xhtml:br/>q3 := q4;<xhtml:br/>\n"
        "q5<![CDATA[ := q6 < q7; (* & *) q8]]> q9 <![CDATA[qa ]]>qb</xhtml:p><xhtml:p>qc\n"
        " qd</xhtml:p>\n <xhtml:p> qe {qf &#60; qg}</xhtml:p>";
    const std::string document =
        "<project xmlns='http://www.plcopen.org/xml/tc6_0201' "
        "xmlns:xhtml='http://www.w3.org/1999/xhtml'><fileHeader/><contentHeader name='c'/>\n"
        "<types><dataTypes/><pous><pou name='P' pouType='program'><interface/><actions>"
        "<action name='A'><body><ST>" +
        body +
        "</ST></body></action></actions><body><FBD><inVariable localId='1'><expression>\n"
        " qh + (qi &gt; 3) + qj</expression></inVariable></FBD></body></pou></pous></types>"
        "<instances><configurations/></instances></project>";
    ReadProject read;
    read.project.KeepCode();
    read.Read(document);
    std::size_t count = 0;
    const auto check = [&](const std::vector<BodyToken>& tokens) {
        for (const BodyToken& token : tokens) {
            const std::string name = EncodeUtf8(token.text);
            const std::size_t at = document.find(name);
            if (name.size() == 2 && name.starts_with('q')) {
                const std::string before = document.substr(0, at);
                const std::string line = before.substr(before.rfind('\n') + 1);
                EXPECT_EQ(token.line, 1 + std::ranges::count(before, '\n')) << name;
                EXPECT_EQ(token.column, 1 + std::ranges::count_if(
                                                line, [](char c) { return (c & 0xC0) != 0x80; }))
                    << name;
                ++count;
            }
        }
    };
    for (const Pou& pou : read.project.Pous()) {
        for (const Body& code : pou.bodies) {
            check(read.project.CodeOf(code)->tokens);
            check(read.project.CodeOf(code)->pragmaWords);
        }
    }
    EXPECT_EQ(count, 20u);
}

// "9:17 write variable Text.i i".
TEST(Uses, AreResolvedAsTheLanguageDoes) {
    constexpr const char* kObjects[] = {"?",         "variable", "global", "result", "enumerator",
                                        "unit",      "type",     "list",   "part",   "function",
                                        "parameter", "member",   "address"};
    constexpr const char* kKinds[] = {"read", "write", "read-write", "call", "unknown", "declare"};
    ReadProject read;
    read.project.KeepCode();
    read.Read(ReadAll(Golden("uses.xml")));
    const Project& project = read.project;
    std::string text;
    ForEachUse(project, {}, [&](const Use& use) {
        const Declaration* declaration = project.GetDeclaration(use.id);
        const Declaration* global = project.GetDeclaration(use.global);
        text += Place(use.line, use.column) + " " + kKinds[static_cast<int>(use.kind)] + " " +
                kObjects[static_cast<int>(use.object)] +
                Part(" ", declaration ? project.NameOf(declaration->owner) : u"") +
                Part(" ", project.NameOf(use.id)) + (global ? " of " : "") +
                Part("", global ? project.NameOf(global->owner) : u"") + " |" +
                Part(" ", use.name) + (use.isInPragma ? " in a pragma" : "") + "\n";
    });
    ExpectGolden("uses.txt", text);
}

TEST(StandardBlocks, HaveTheirInterfaces) {
    CurrentProject project;
    std::string text;
    for (const ID id : project.Below(project.LibraryPool())) {
        text += Describe(project, id);
    }
    ExpectGolden("standard_blocks.txt", text);
}

}  // namespace
