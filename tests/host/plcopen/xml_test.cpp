// Documents that are damaged, hostile or something else, and the encodings.
#include "host/plcopen/xml.h"

#include <gtest/gtest.h>

#include "lq_data/host/plcopen/plcopen.h"
#include "tests/host/plcopen/plcopen_util.h"
#include "tests/host/temp_folder.h"

namespace {

using namespace lq::host;

const std::string kRoot = "<project xmlns='http://www.plcopen.org/xml/tc6_0201'>";

std::string Times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

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

// What is refused, where, and why; what is accepted, with the project's name. In UTF-8 with its
// mark and without, and, unless the document says or is something else, in UTF-16.
TEST(Xml, IsAcceptedOrRefusedWithAReason) {
    const auto project = [](const std::string& name) {
        return kRoot + "<contentHeader" + name + "/></project>";
    };
    const auto deep = [](int depth, const std::string& tag) {
        return kRoot + Times(depth - 1, "<" + tag + ">") + Times(depth - 1, "</" + tag + ">") +
               "</project>";
    };
    const std::string plain = project(" name='a'");
    const std::string elsewhere = "<!DOCTYPE project PUBLIC 'x' 'x.dtd'>\n";
    const std::string blanks(70'000, ' ');  // more than is read at a time
    const std::string malformed = "the file is not well-formed XML: ";
    const std::string other = "the file is no PLCopen project: its root element is ";
    const std::string declared = "the document type declares '";
    const std::string many = "an element has more than 256 attributes";
    const std::string space = "the name of a namespace has more than 1024 bytes";
    constexpr int kMost = plcopen::kMaxDepth;
    const std::string nested = "elements are nested deeper than " + std::to_string(kMost);
    const struct {
        std::string document;
        std::string place;  // of the refusal, or its beginning; empty when there is none
        std::string told;   // the beginning of the message, or the project's name
    } cases[] = {
        {"", "1:1", malformed + "no element found"},
        {"PROGRAM P\nEND_PROGRAM", "1:1", malformed + "syntax error"},
        {std::string("\0\1\2", 3), "1:1", malformed + "not well-formed (invalid token)"},
        {kRoot + "\n<types>\n</typos></project>", "3:", malformed + "mismatched tag"},
        {kRoot + "<types>", "1:", malformed + "no element found"},
        {kRoot + "&b;</project>", "1:", malformed + "undefined entity"},
        {"<?xml version='1.0' encoding='windows-0'?>" + plain,
         "1:", malformed + "unknown encoding"},
        {"<html/>", "1:1", other + "<{}html>"},
        {"<project/>", "1:1", other + "<{}project>"},
        {"<pou xmlns='http://www.plcopen.org/xml/tc6_0201'/>", "1:1", other + "<pou>"},
        // Limits, on both sides.
        {project(" name='a'" + Attributes(255)), "", "a"},
        {project(" name='a'" + Attributes(256)), "1:54", many},
        {project(" name='a' xmlns:p='" + std::string(1024, 'u') + "'"), "", "a"},
        {project("\n name='a' xmlns:p='" + std::string(1025, 'u') + "'"), "1:54", space},
        {deep(kMost, "types"), "", ""},
        {deep(kMost + 1, "types"), "1:", nested},
        {deep(kMost, "unknown"), "", ""},
        {deep(kMost + 1, "unknown"), "1:", nested},
        // Document types and references.
        {"<!DOCTYPE project>" + plain, "", "a"},
        {"<!DOCTYPE project []>" + plain, "", "a"},
        {"<!DOCTYPE project SYSTEM 'http://nowhere.invalid/x.dtd' [ <!-- %p; --><?p <!ENTITY?> ]>"
         "<project xmlns='http://www.plcopen.org/xml/tc6.xsd'>"
         "<contentHeader name='M\u00fchle &#x1F600; &amp;'/></project>",
         "", "M\u00fchle \U0001F600 &"},
        {elsewhere + project(" name='&#65;&amp;&#x42;&lt;&gt;&apos;&quot;'"), "", "A&B<>'\""},
        {"<!DOCTYPE project [\n<!ENTITY e 'x'>]>" + project(" name='&e;'"), "2:", declared + "e'"},
        {"<!DOCTYPE project [<!ENTITY e SYSTEM 'file:///etc/hosts'>]>" + plain,
         "1:", declared + "e'"},
        {"<!DOCTYPE project [<!ENTITY % p SYSTEM 'file:///etc/hosts'>%p;]>" + plain,
         "1:", declared + "p'"},
        {"<!DOCTYPE project [ <!ATTLIST v a CDATA 'x'>]>" + plain, "1:", declared + "a'"},
        {"<!DOCTYPE project [<!ELEMENT v (#PCDATA)>]>" + plain, "1:", declared + "v'"},
        {"<!DOCTYPE project [<!NOTATION n SYSTEM 'x'>]>" + plain, "1:", declared + "n'"},
        {"<!DOCTYPE project [%p;]>" + project(" name='&e;'"), "1:", "the entity 'p'"},
        {"<!DOCTYPE project SYSTEM 'x' [%p; <!ATTLIST v a CDATA 'x'>]>" + plain,
         "1:", "the entity 'p'"},
        {elsewhere + project(" name='Sp&f\u00fc;eed'"), "2:54", "the entity 'f\u00fc'"},
        {elsewhere + project(blanks + " name='&amp;&e;'"), "2:54", "the entity 'e'"},
        {elsewhere + project(" xmlns:p='u&e;'"), "2:54", "the entity 'e'"},
        {elsewhere + project("><u name='&e;'/></contentHeader><u"), "2:69", "the entity 'e'"},
        {elsewhere + project("/>&e;<u"), "2:70", "the entity 'e'"},
        {project(" name='&e;'"), "1:", malformed + "undefined entity"},
        {"<?xml version='1.0' standalone='yes'?>" + elsewhere + project(" name='&e;'"),
         "2:", malformed + "undefined entity"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> forms{c.document, "\xEF\xBB\xBF" + c.document};
        std::u16string wide;
        DecodeUtf8(c.document, wide);
        if (wide.starts_with(u"<!") || wide.starts_with(u"<p")) {
            forms.push_back(Utf16(wide));
        }
        for (const std::string& bytes : forms) {
            const ReadProject read(bytes);
            const std::string what = c.document.substr(0, 200) + "\n" + read.Told();
            EXPECT_EQ(read.complete, c.place.empty()) << what;
            if (read.complete) {
                EXPECT_EQ(EncodeUtf8(read.project.Name()), c.told) << what;
                continue;
            }
            ASSERT_FALSE(read.reports.empty()) << what;
            const Report& report = read.reports.back();
            EXPECT_TRUE(report.error) << what;
            EXPECT_TRUE(report.message.starts_with(c.told)) << what;
            EXPECT_TRUE(ToText(report).starts_with("test.xml:" + c.place) ||
                        (bytes != c.document && report.line == 1))  // the mark takes a column
                << what;
            EXPECT_EQ(EncodeUtf8(read.project.Name()), "") << what;
        }
    }
}

TEST(Xml, KeepsWhatCameBeforeTheDamage) {
    const std::string whole = kRoot +
                              "<types><pous><pou name='P' pouType='program'><interface><localVars>"
                              "<variable name='a'><type><INT/></type></variable></localVars>"
                              "</interface></pou></pous></types></project>";
    const std::size_t before = Project().Declarations().size();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const ReadProject read(whole.substr(0, length));
        EXPECT_FALSE(read.complete) << length;
        EXPECT_TRUE(read.reports.back().error) << length;
        EXPECT_EQ(read.project.Declarations().size(),
                  before + (length < whole.find("</localVars>") ? 0u : 1u))
            << length;
    }
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
    const lq::test::TempFolder folder;
    const std::string path = folder.GetPath();
    for (const auto& [file, message] : {std::pair(path, "this is a folder, not a file"),
                                        std::pair(path + "/absent.xml", "there is no such file")}) {
        Project project;
        std::vector<Report> reports;
        EXPECT_FALSE(ReadPlcopenFile(file, project, reports)) << file;
        ASSERT_EQ(reports.size(), 1u) << file;
        EXPECT_EQ(ToText(reports[0]), file + ": error: " + message);
    }
}

}  // namespace
