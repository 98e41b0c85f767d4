// Documents that are damaged, hostile or something else, and the encodings.
#include "host/plcopen/xml.h"

#include <gtest/gtest.h>

#include "host/plcopen/plcopen.h"
#include "tests/host/plcopen/plcopen_util.h"
#include "tests/host/temp_folder.h"

namespace {

using namespace lq::host;

constexpr std::string_view kRoot = R"(<project xmlns="http://www.plcopen.org/xml/tc6_0201">)";

std::string Attributes(int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += " a" + std::to_string(i) + "=''";
    }
    return all;
}

std::string Utf16(std::u16string_view text) {
    std::string bytes = "\xFF\xFE";
    for (const char16_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    return bytes;
}

std::string Utf16(const std::string& utf8) {
    std::u16string text;
    DecodeUtf8(utf8, text);
    return Utf16(text);
}

TEST(Xml, RefusesWhatIsNoProject) {
    const std::string root(kRoot);
    const struct {
        std::string document;
        std::string_view message;
        uint32_t line;
    } cases[] = {
        {"", "the file is not well-formed XML: no element found", 1},
        {"PROGRAM P\nEND_PROGRAM", "the file is not well-formed XML: syntax error", 1},
        {std::string("\0\1\2", 3),
         "the file is not well-formed XML: not well-formed (invalid token)", 1},
        {root + "\n<types>\n</typos></project>", "the file is not well-formed XML: mismatched tag",
         3},
        {root + "<types>", "the file is not well-formed XML: no element found", 1},
        {"<html/>", "the file is no PLCopen project: its root element is <{}html>", 1},
        {"<project/>", "the file is no PLCopen project: its root element is <{}project>", 1},
        {R"(<pou xmlns="http://www.plcopen.org/xml/tc6_0201"/>)",
         "the file is no PLCopen project: its root element is <pou>", 1},
        {"<?xml version='1.0' encoding='windows-0'?>" + root + "</project>",
         "the file is not well-formed XML: unknown encoding", 1},
        {root + "<types" + Attributes(257) + "/></project>",
         "an element has more than 256 attributes", 1},
        {root + "\n<types xmlns:p='" + std::string(1025, 'u') + "'/></project>",
         "the name of a namespace has more than 1024 bytes", 2},
        {root + "&b;</project>", "the file is not well-formed XML: undefined entity", 1},
    };
    for (const auto& c : cases) {
        const ReadProject read(c.document);
        EXPECT_FALSE(read.complete) << c.document;
        ASSERT_EQ(read.reports.size(), 1u) << c.document;
        EXPECT_EQ(read.reports[0].message, c.message) << c.document;
        EXPECT_EQ(read.reports[0].line, c.line) << c.document;
        EXPECT_TRUE(read.reports[0].error) << c.document;
    }
}

// What is told of a document type, and of references, in either encoding.
TEST(Xml, AcceptsNeitherDeclarationsNorEntities) {
    const std::string elsewhere = "<!DOCTYPE project PUBLIC 'x' 'x.dtd'>\n";
    const std::string blanks(70'000, ' ');  // more than is read at a time
    const auto project = [](const std::string& name) {
        return std::string(kRoot) + "<contentHeader" + name + "/></project>";
    };
    const std::string plain = project(" name='a'");
    const std::string declared = "the document type declares '";
    const std::string undeclared = "the entity '";
    const struct {
        std::string document;
        std::string told;  // the beginning of the message; empty when the document is accepted
        uint32_t line = 0;
        uint32_t column = 0;  // 0: where expat has it, near the declaration
    } cases[] = {
        {"<!DOCTYPE project>" + plain, ""},
        {"<!DOCTYPE project []>" + plain, ""},
        {elsewhere + project(" name='&#65;&amp;&#x42;&lt;&gt;&apos;&quot;'"), ""},
        {"<!DOCTYPE project [\n<!ENTITY e 'x'>]>" + project(" name='&e;'"), declared + "e'", 2},
        {"<!DOCTYPE project [<!ENTITY e SYSTEM 'file:///etc/hosts'>]>" + plain, declared + "e'", 1},
        {"<!DOCTYPE project [<!ENTITY % p SYSTEM 'file:///etc/hosts'>%p;]>" + plain,
         declared + "p'", 1},
        {"<!DOCTYPE project [ <!ATTLIST v a CDATA 'x'>]>" + plain, declared + "a'", 1},
        {"<!DOCTYPE project [<!ELEMENT v (#PCDATA)>]>" + plain, declared + "v'", 1},
        {"<!DOCTYPE project [<!NOTATION n SYSTEM 'x'>]>" + plain, declared + "n'", 1},
        {"<!DOCTYPE project [%p;]>" + project(" name='&e;'"), undeclared + "p'", 1},
        {"<!DOCTYPE project SYSTEM 'x' [%p; <!ATTLIST v a CDATA 'x'>]>" + plain, undeclared + "p'",
         1},
        {elsewhere + project(" name='Sp&f\u00fc;eed'"), undeclared + "f\u00fc'", 2, 54},
        {elsewhere + project(blanks + " name='&amp;&e;'"), undeclared + "e'", 2, 54},
        {elsewhere + project(" xmlns:p='u&e;'"), undeclared + "e'", 2, 54},
        {elsewhere + project("><u name='&e;'/></contentHeader><u"), undeclared + "e'", 2, 69},
        {elsewhere + project("/>&e;<u"), undeclared + "e'", 2, 70},
        {project(" name='&e;'"), "the file is not well-formed XML: undefined entity", 1},
        {"<?xml version='1.0' standalone='yes'?>" + elsewhere + project(" name='&e;'"),
         "the file is not well-formed XML: undefined entity", 2},
    };
    for (const auto& c : cases) {
        for (const std::string& bytes : {c.document, Utf16(c.document)}) {
            const ReadProject read(bytes);
            const std::string what = c.document.substr(0, 200);
            EXPECT_EQ(read.complete, c.told.empty()) << what << read.Messages();
            ASSERT_EQ(read.reports.size(), read.complete ? 0u : 1u) << what << read.Messages();
            if (!read.complete) {
                EXPECT_TRUE(read.reports[0].message.starts_with(c.told)) << what << read.Messages();
                EXPECT_EQ(read.reports[0].line, c.line) << what;
                EXPECT_TRUE(c.column == 0 || read.reports[0].column == c.column) << what;
                EXPECT_EQ(std::u16string_view(read.project.Name()), u"") << what;
            }
        }
    }
    EXPECT_EQ(std::u16string_view(ReadProject(cases[2].document).project.Name()), u"A&B<>'\"");
}

TEST(Xml, BoundsTheDepth) {
    using plcopen::kMaxDepth;
    for (const int depth : {kMaxDepth, kMaxDepth + 1, 100000}) {
        for (const char* tag : {"types", "unknown"}) {
            std::string document(kRoot);
            for (int i = 1; i < depth; ++i) {
                document.append("<").append(tag).append(">");
            }
            for (int i = 1; i < depth; ++i) {
                document.append("</").append(tag).append(">");
            }
            const ReadProject read(document + "</project>");
            EXPECT_EQ(read.complete, depth <= kMaxDepth) << tag << " " << depth;
        }
    }
}

TEST(Xml, ToleratesADocumentTypeAndReadsEitherEncoding) {
    const std::u16string document =
        u"<!DOCTYPE project SYSTEM 'http://nowhere.invalid/x.dtd' [ <!-- %p; --><?p <!ENTITY?> ]>"
        u"<project xmlns='http://www.plcopen.org/xml/tc6.xsd'>"
        u"<contentHeader name='M\u00fchle &#x1F600; &amp;'/></project>";
    for (const std::string& bytes :
         {EncodeUtf8(document), "\xEF\xBB\xBF" + EncodeUtf8(document), Utf16(document)}) {
        const ReadProject read(bytes);
        EXPECT_TRUE(read.complete) << read.Messages();
        EXPECT_EQ(std::u16string_view(read.project.Name()), u"M\u00fchle \U0001F600 &");
        EXPECT_EQ(read.Messages(), "");
    }
}

using PlaceList = std::vector<std::pair<uint32_t, uint32_t>>;

PlaceList PlacesOfVariables(std::u16string_view document) {
    PlaceList places;
    uint32_t line = 1;
    uint32_t column = 1;
    for (std::size_t i = 0; i < document.size(); ++i) {
        if (document.substr(i).starts_with(u"<variable")) {
            places.emplace_back(line, column);
        }
        const char16_t c = document[i];
        const bool pair = document.substr(i, 2) == u"\r\n";
        line += c == u'\n' || (c == u'\r' && !pair) ? 1 : 0;
        column = c == u'\n' || c == u'\r' ? 1 : column + 1;
    }
    return places;
}

PlaceList PlacesRead(const std::string& bytes) {
    const ReadProject read(bytes);
    EXPECT_TRUE(read.complete) << read.Messages();
    PlaceList places;
    for (const ID id : read.FirstPou().declarations) {
        const Declaration& declaration = *read.project.GetDeclaration(id);
        places.emplace_back(declaration.line, declaration.column);
    }
    return places;
}

TEST(Xml, TellsTheLineAndColumnOfEveryElement) {
    constexpr std::size_t kBlock = 64 * 1024;    // of the reading
    std::vector<std::size_t> sizes{3 * kBlock};  // longer than blocks
    for (std::size_t i = 0; i < 32; ++i) {
        sizes.insert(sizes.end(), {i, kBlock - 450 + 14 * i, kBlock / 2 - 450 + 14 * i});
    }
    const auto variable = [](std::u16string name, std::u16string behind) {
        return u"<variable name='" + name + u"'><type><INT/></type></variable>" + behind;
    };
    for (const std::size_t size : sizes) {
        for (const char16_t letter : {u'a', u'\u00fc'}) {
            std::u16string comment(size, letter);
            for (std::size_t i = 50; i < size; i += 100) {
                comment[i] = u'\t';
            }
            const std::u16string body =
                u"?>\r\n<project xmlns='http://www.plcopen.org/xml/tc6_0201'><types><pous>\r"
                u"<pou name='P' pouType='functionBlock'><interface>\n<inputVars><!--" +
                comment + u"-->" + variable(u"a", u"\r") + variable(u"b", u"\n\r \t") +
                variable(u"c\n", u"<!-- \u00e4\r\n -->") +
                variable(u"d", u"<!-- only ASCII \r\n and of some length -->") +
                variable(u"e", u"        ") + variable(u"f", u"\r\n\r\n") + variable(u"g", u"") +
                u"</inputVars></interface></pou></pous></types></project>";
            const std::u16string document = u"<?xml version='1.0'" + body;
            std::string latin = "<?xml version='1.0' encoding='iso-8859-1'";
            for (const char16_t c : body) {
                latin += static_cast<char>(c);
            }
            const PlaceList expected = PlacesOfVariables(document);
            ASSERT_EQ(expected.size(), 7u);
            for (const std::string& bytes : {EncodeUtf8(document), latin, Utf16(document)}) {
                EXPECT_EQ(PlacesRead(bytes), expected) << size;
            }
        }
    }
}

TEST(Xml, KeepsWhatCameBeforeTheDamage) {
    const std::string whole =
        PouDocument(R"(<inputVars><variable name="a"><type><INT/></type></variable></inputVars>)");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const ReadProject read(whole.substr(0, length));
        EXPECT_FALSE(read.complete) << length;
        EXPECT_TRUE(read.reports.back().error) << length;
    }
    const ReadProject cut(whole.substr(0, whole.find("</inputVars>")));
    EXPECT_EQ(cut.FirstPou().declarations.size(), 1u);
}

TEST(Xml, EndsWhenNothingCanBeRead) {
    for (const auto state : {std::ios::failbit, std::ios::badbit}) {
        std::istringstream source("<project/>");
        source.setstate(state);
        Project project;
        std::vector<Report> reports;
        EXPECT_FALSE(ReadPlcopen(source, "test.xml", project, reports)) << state;
        ASSERT_EQ(reports.size(), 1u) << state;
        EXPECT_EQ(reports[0].message, "the file cannot be read");
    }
}

TEST(ReadPlcopenFile, SaysWhyAFileCannotBeRead) {
    const lq::test::TempFolder folder;
    const struct {
        std::string path;
        std::string_view message;
    } cases[] = {
        {folder.GetPath().string(), "this is a folder, not a file"},
        {(folder.GetPath() / "absent.xml").string(), "there is no such file"},
    };
    for (const auto& c : cases) {
        Project project;
        std::vector<Report> reports;
        EXPECT_FALSE(ReadPlcopenFile(c.path, project, reports)) << c.path;
        ASSERT_EQ(reports.size(), 1u) << c.path;
        EXPECT_EQ(ToText(reports[0]), c.path + ": error: " + std::string(c.message));
    }
}

}  // namespace
