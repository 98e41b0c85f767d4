// Documents that are damaged, hostile or something else, and the encodings.
#include "host/plcopen/xml.h"

#include <cstring>

#include <gtest/gtest.h>

#include "lq_data/host/plcopen/plcopen.h"
#include "tests/host/plcopen/plcopen_util.h"
#include "tests/host/temp_folder.h"
#include "tests/support/rows.h"

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

std::string Header(const std::string& attributes) {
    return kRoot + "<contentHeader" + attributes + "/></project>";
}

// A document of the table, its short forms written out.
std::string Document(std::string text) {
    const std::pair<const char*, std::string> kForms[] = {
        {"ROOT", kRoot},
        {"DTD", "<!DOCTYPE project PUBLIC 'x' 'x.dtd'>\n"},
        {"BLANKS", std::string(70'000, ' ')},  // more than is read at a time
    };
    const std::size_t open = text.find('{');
    if (open != text.npos) {
        text.replace(open, text.size(), Header(text.substr(open + 1, text.size() - open - 2)));
    }
    for (const auto& [name, form] : kForms) {
        const std::size_t at = text.find(name);
        text = at != text.npos ? text.replace(at, std::strlen(name), form) : text;
    }
    return text;
}

// In UTF-8 with its mark and without, and, unless the document says or is something else, in
// UTF-16.
TEST(Xml, IsAcceptedOrRefusedWithAReason) {
    const auto deep = [](int depth, const std::string& tag) {
        return kRoot + Times(depth - 1, "<" + tag + ">") + Times(depth - 1, "</" + tag + ">") +
               "</project>";
    };
    const std::string many = "an element has more than 256 attributes";
    const std::string space = "the name of a namespace has more than 1024 bytes";
    constexpr int kMost = plcopen::kMaxDepth;
    const std::string nested = "elements are nested deeper than " + std::to_string(kMost);
    struct Case {
        std::string document;
        std::string place;  // of the refusal, or its beginning; empty when there is none
        std::string told;   // the beginning of the message, or the project's name
    };
    std::vector<Case> cases = {
        // Limits, on both sides.
        {Header(" name='a'" + Attributes(255)), "", "a"},
        {Header(" name='a'" + Attributes(256)), "1:54", many},
        {Header(" name='a' xmlns:p='" + std::string(1024, 'u') + "'"), "", "a"},
        {Header("\n name='a' xmlns:p='" + std::string(1025, 'u') + "'"), "1:54", space},
        {deep(kMost, "types"), "", ""},
        {deep(kMost + 1, "types"), "1:", nested},
        {deep(kMost, "unknown"), "", ""},
        {deep(kMost + 1, "unknown"), "1:", nested},
    };
    for (const auto& row : lq::test::Rows("host/plcopen/documents.rows", "documents")) {
        cases.push_back({Document(row[0]), row[1], row[2]});
    }
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

// Names and places are those of the same document in UTF-8.
TEST(Xml, CodePagesAreThoseThatAreDeclared) {
    const auto document = [](const std::string& encoding, const std::string& name) {
        return "<?xml version='1.0' encoding='" + encoding + "'?>" + kRoot +
               "<contentHeader name='" + name + "'/><strange/></project>";
    };
    for (const auto& row : lq::test::Rows("host/plcopen/documents.rows", "code pages")) {
        const ReadProject read(document(row[0], row[1]));
        EXPECT_EQ(read.complete, !row[2].empty()) << row[0] << read.Told();
        if (read.complete) {
            const ReadProject same(document("UTF-8", row[2]));
            EXPECT_EQ(EncodeUtf8(read.project.Name()), row[2]);
            EXPECT_EQ(read.reports.front().column,
                      same.reports.front().column + row[0].size() - std::strlen("UTF-8"));
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

// What repeats is counted; behind the thousandth complaint no new one is told.
TEST(Xml, TellsAThousandThings) {
    std::string document = kRoot;
    for (int i = 0; i < 1003; ++i) {
        document += "<u" + std::to_string(i % 1002) + "/>";
    }
    const ReadProject read(document + "</project>");
    ASSERT_EQ(read.reports.size(), 1001u);
    EXPECT_EQ(read.reports[0].more, 1u);
    EXPECT_EQ(read.reports[999].more, 0u);
    EXPECT_EQ(read.reports[1000].more, 1u);
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
    struct Broken : std::streambuf {
        int_type underflow() override { throw std::exception(); }
    } broken;
    std::istream source(&broken);
    source.exceptions(std::ios::badbit);
    Project none;
    std::vector<Report> thrown;
    EXPECT_FALSE(ReadPlcopen(source, "test.xml", none, thrown));
    ASSERT_EQ(thrown.size(), 1u);
    EXPECT_TRUE(thrown[0].error) << thrown[0].message;
    EXPECT_TRUE(ReadPlcopenFile(LQ_TEST_EXAMPLES "/plant/plant.xml", none, thrown));
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
