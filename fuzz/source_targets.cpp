// Source texts and the uses in them, from arbitrary texts and from arbitrary rows of their words.
#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/declared_names.h"
#include "fuzz/targets.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/text_source/text_source.h"
#include "lq_data/host/uses/uses.h"

namespace lq::fuzz {

namespace {

using std::u16string_view;

// What stands where in a text.
class Places {
  public:
    explicit Places(u16string_view text) {
        for (;;) {
            const std::size_t end = text.find(u'\n');
            lines_.push_back(text.substr(0, end));
            if (end == text.npos) {
                return;
            }
            text.remove_prefix(end + 1);
        }
    }

    // What is behind a place, which must be one.
    u16string_view Behind(uint32_t line, uint32_t column) const {
        Require(line >= 1 && line <= lines_.size(), "a place is in the text");
        u16string_view left = lines_[line - 1];
        for (uint32_t passed = 1; passed < column || (!left.empty() && IsSecondHalf(left[0]));) {
            Require(!left.empty(), "a place is in its line");
            passed += IsSecondHalf(left[0]) ? 0u : 1u;
            left.remove_prefix(1);
        }
        return left;
    }

  private:
    static bool IsSecondHalf(char16_t c) { return (c >> 10) == 0x37; }

    std::vector<u16string_view> lines_;
};

// Every name that the text declares is in the project, or a report tells it, or where it or
// something in front of it in its block is.
void RequireAllDeclared(u16string_view text, const host::Project& project,
                        const std::vector<host::Report>& reports) {
    const std::vector<DeclaredName> names = DeclaredNames(text);
    std::set<std::pair<u16string_view, uint32_t>> known;
    for (const host::Declaration& one : project.Declarations()) {
        known.emplace(one.name, one.line);
    }
    for (const host::DataType& one : project.DataTypes()) {
        known.emplace(one.name, one.line);
    }
    for (const DeclaredName& one : names) {
        const std::string quoted = "'" + host::EncodeUtf8(one.name) + "'";
        const bool isTold = std::ranges::any_of(reports, [&](const host::Report& report) {
            return (report.line >= one.blockLine && report.line <= one.line) ||
                   (report.more != 0 && report.line <= one.line) ||
                   report.message.find(quoted) != std::string::npos;
        });
        Require(known.contains({one.name, one.line}) || isTold, "no declared name is lost");
    }
}

void ReadSource(u16string_view text) {
    host::Project project;
    project.KeepCode();
    std::vector<host::Report> reports;
    Require(host::ReadText(text, "input", project, reports), "a text is read to its end");
    const Places places(text);
    for (const host::Report& report : reports) {
        if (report.line != 0) {
            places.Behind(report.line, report.column);
        }
    }
    for (const host::Declaration& one : project.Declarations()) {
        if (one.line != 0) {
            Require(places.Behind(one.line, one.column).starts_with(one.name),
                    "a name is in its place");
        }
    }
    RequireAllDeclared(text, project, reports);
}

// A text of words, one a byte.
std::u16string WordsOf(const uint8_t* data, size_t size) {
    constexpr u16string_view kWords[] = {u"a",
                                         u"b",
                                         u"c",
                                         u"d",
                                         u"e",
                                         u"f",
                                         u"INT",
                                         u"BOOL",
                                         u"STRING",
                                         u"REAL",
                                         u"T",
                                         u"1",
                                         u"2",
                                         u"7",
                                         u"1.5",
                                         u"T#1s",
                                         u"INT#5",
                                         u"c#a",
                                         u"16#FF",
                                         u":",
                                         u":",
                                         u";",
                                         u";\n",
                                         u";\n",
                                         u"\n",
                                         u",",
                                         u":=",
                                         u"(",
                                         u")",
                                         u"[",
                                         u"]",
                                         u"..",
                                         u".",
                                         u"=>",
                                         u"=",
                                         u"+",
                                         u"^",
                                         u"AT",
                                         u"%IX0.1",
                                         u"%M",
                                         u"\nVAR\n",
                                         u"VAR",
                                         u"VAR_INPUT",
                                         u"VAR_OUTPUT",
                                         u"\nVAR_GLOBAL\n",
                                         u"VAR_TEMP",
                                         u"CONSTANT",
                                         u"RETAIN",
                                         u"\nEND_VAR\n",
                                         u"END_VAR",
                                         u"\nPROGRAM",
                                         u"PROGRAM",
                                         u"\nFUNCTION",
                                         u"\nFUNCTION_BLOCK",
                                         u"\nEND_PROGRAM\n",
                                         u"\nEND_FUNCTION\n",
                                         u"\nEND_FUNCTION_BLOCK\n",
                                         u"\nTYPE\n",
                                         u"TYPE",
                                         u"\nEND_TYPE\n",
                                         u"STRUCT",
                                         u"END_STRUCT",
                                         u"ARRAY",
                                         u"OF",
                                         u"POINTER",
                                         u"TO",
                                         u"REF_TO",
                                         u"\nCONFIGURATION",
                                         u"\nEND_CONFIGURATION\n",
                                         u"\nRESOURCE",
                                         u"END_RESOURCE",
                                         u"TASK",
                                         u"WITH",
                                         u"INTERVAL",
                                         u"SINGLE",
                                         u"IF",
                                         u"THEN",
                                         u"END_IF",
                                         u"FOR",
                                         u"DO",
                                         u"END_FOR",
                                         u"CASE",
                                         u"END_CASE",
                                         u"NOT",
                                         u"R_EDGE",
                                         u"LD",
                                         u"ST",
                                         u"CAL",
                                         u"JMP",
                                         u"S",
                                         u"R",
                                         u"CU",
                                         u"ADD",
                                         u"\nSTEP",
                                         u"\nEND_STEP\n",
                                         u"\nTRANSITION",
                                         u"\nACTION",
                                         u"\nEND_ACTION\n",
                                         u"FROM",
                                         u"USING",
                                         u"PUBLIC",
                                         u"FINAL",
                                         u"EN",
                                         u"ENO",
                                         u"SUPER",
                                         u"THIS",
                                         u"'x'",
                                         u"(* a *)",
                                         u"// b\n",
                                         u"{a}"};
    std::u16string text;
    for (const uint8_t byte : std::basic_string_view(data, size)) {
        // The rest are names of two letters.
        const std::size_t over = byte - std::min<std::size_t>(byte, std::size(kWords));
        if (byte < std::size(kWords)) {
            text += kWords[byte];
        } else {
            text += static_cast<char16_t>(u'g' + over / 26);
            text += static_cast<char16_t>(u'a' + over % 26);
        }
        text += u' ';
    }
    return text;
}

bool IsSame(u16string_view a, u16string_view b) {
    return a.size() == b.size() && chars::CompareNoCase(a.data(), b.data(), a.size()) == 0;
}

// A use says what it is of, and that has the name.
void RequireNamed(const host::Project& project, const host::Use& use) {
    using host::UseObject;
    const ID id = use.object == UseObject::kGlobal ? use.global : use.id;
    switch (use.object) {
        case UseObject::kVariable:
        case UseObject::kGlobal:
        case UseObject::kResult:
        case UseObject::kUnit:
        case UseObject::kType:
        case UseObject::kList:
            Require(id != ID() || use.id != ID(), "what is used is told");
            Require(IsSame(project.NameOf(id != ID() ? id : use.id), use.name),
                    "what is used has the name");
            break;
        case UseObject::kEnumerator:
            Require(id != ID(), "an enumerator is one of a type");
            break;
        default:
            break;
    }
}

// Uses of a text's bodies stand in their bodies, each behind the last, where the text spells them.
void WalkSource(u16string_view text) {
    host::Project project;
    project.KeepCode();
    std::vector<host::Report> reports;
    Require(host::ReadText(text, "input", project, reports), "a text is read to its end");
    const Places places(text);
    const host::Body* body = nullptr;
    std::pair<uint32_t, uint32_t> last;
    host::ForEachUse(project, {}, [&](const host::Use& use) {
        RequireNamed(project, use);
        if (!use.body) {
            return;
        }
        const std::pair place(use.line, use.column);
        Require(places.Behind(use.line, use.column).starts_with(use.name), "a use is in its place");
        Require(place >= std::pair(use.body->line, use.body->column) || use.isInPragma,
                "a use is in its body");
        Require(body != use.body || last < place || use.isInPragma, "uses have an order");
        body = use.body;
        last = place;
    });
}

void WalkDocument(const uint8_t* data, size_t size) {
    std::istringstream document(std::string(reinterpret_cast<const char*>(data), size));
    host::Project project;
    project.KeepCode();
    std::vector<host::Report> reports;
    if (host::ReadPlcopen(document, "input", project, reports)) {
        host::ForEachUse(project, {}, [&](const host::Use& use) { RequireNamed(project, use); });
    }
}

}  // namespace

// A text is read to its end, every declaration stands where it says, and none is lost.
void TextSource(const uint8_t* data, size_t size) {
    ReadSource(Input(data, size).AnyRest());
}

void TextWords(const uint8_t* data, size_t size) {
    const std::u16string text = WordsOf(data, size);
    ReadSource(text);
    WalkSource(text);
}

void Uses(const uint8_t* data, size_t size) {
    if (size != 0 && data[0] == '<') {
        WalkDocument(data, size);
    } else {
        WalkSource(Input(data, size).AnyRest());
    }
}

}  // namespace lq::fuzz
