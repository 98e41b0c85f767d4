#include <filesystem>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "host/framework/settings.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/env/lq_framework.h"
#include "tests/host/temp_folder.h"
#include "tests/support/rows.h"

namespace {

using namespace lq::host;
using lq::test::Row;
using lq::test::Rows;

// The inputs are INI lines below "[Options]"; the key asked for is "Length", the fallback 32.
TEST(Settings, ReadsIntegers) {
    const std::string longText(500, 'x');
    // The beginning of a line, before its key, that is within the reader's limit or beyond it.
    const auto line = [](std::size_t count) {
        return std::string(count, 'x') + "Length=90\nLength=80\n";
    };
    const auto blank = [](std::size_t count) { return std::string(count, ' ') + "Length=80\n"; };
    struct Case {
        std::string lines;
        int64_t expected;
    };
    // clang-format off
    std::vector<Case> cases = {  // beyond the reader's limits
        {"# " + longText + "Length=90\nLength=80\n", 80}, {longText + "\nLength=80\n", 80},
        {longText + "=1\nLength=80\n", 80}, {"Length=" + longText + "\n", 32},
        {"[" + longText + "]\nLength=80\n", 32}, {"[" + std::string(60, 'x') + "]\nLength=80\n", 32},
        {line(197), 80}, {line(198), 80}, {line(199), 80}, {line(200), 80}, {blank(100), 80},
    };
    // clang-format on
    for (const Row& row : Rows("host/settings.rows", "settings")) {
        cases.push_back({row[0], row.Number(1)});
    }
    const lq::test::TempFolder folder;
    const lq::test::EnvironmentVariable moved("LQ_DATA_CONFIG", folder.GetPath().c_str());
    for (const Case& c : cases) {
        folder.Write("user/settings.ini", "\xEF\xBB\xBF[Options]\n" + c.lines);
        EXPECT_EQ(GetPrivateProfileIntW(u"Options", u"Length", 32, GetIniName()), c.expected)
            << c.lines;
    }
    // Names of as many bytes as can be, and one more, of which the parser would keep as many.
    for (const std::size_t size : {49u, 50u}) {
        const std::u16string name(49, u'n');
        folder.Write("user/settings.ini",
                     "[" + std::string(size, 'N') + "]\n" + std::string(size, 'N') + "=80\n");
        EXPECT_EQ(GetPrivateProfileIntW(name.c_str(), name.c_str(), 32, GetIniName()),
                  size == 49 ? 80u : 32u);
    }
    EXPECT_EQ(GetPrivateProfileIntW(u"Options", u"Length", -5, u"/no/such/file"), 0u - 5u);
    EXPECT_EQ(
        GetPrivateProfileIntW(u"Options", u"Length", 32, folder.GetPath().u16string().c_str()),
        32u);
}

// The user's before the machine's, found anew each time.
TEST(Settings, AreWhereTheEnvironmentSays) {
    const lq::test::TempFolder folder;
    const std::string home = folder.GetPath();
    const auto file = [&home](const std::string& name) {
        return std::filesystem::path(home + "/" + name).u16string();
    };
    const auto name = [] { return std::u16string(GetIniName()); };
    {
        const lq::test::EnvironmentVariable moved("LQ_DATA_CONFIG", home.c_str());
        EXPECT_EQ(name(), file("user/settings.ini"));
        folder.Write("machine/settings.ini", "");
        EXPECT_EQ(name(), file("machine/settings.ini"));
        folder.Write("user/settings.ini", "");
        EXPECT_EQ(name(), file("user/settings.ini"));
    }
    const lq::test::EnvironmentVariable homeVariable("HOME", home.c_str());
    for (const char* moved : {"", static_cast<const char*>(nullptr)}) {
        const lq::test::EnvironmentVariable notMoved("LQ_DATA_CONFIG", moved);
        lq::host::PathBuffer machine = "";
        EXPECT_TRUE(GetConfigPath(lq::host::ConfigOwner::kMachine, "file", machine));
        EXPECT_STREQ(machine, "/etc/lq_data/file");
        for (const std::string config : {"", "etc"}) {
            const lq::test::EnvironmentVariable variable(
                "XDG_CONFIG_HOME", config.empty() ? "" : (home + "/" + config).c_str());
            EXPECT_EQ(name(),
                      file((config.empty() ? ".config" : config) + "/lq_data/settings.ini"));
        }
    }
}

class Registry : public testing::Test {
  protected:
    Registry() : moved_("LQ_DATA_CONFIG", folder_.GetPath().c_str()) {
        folder_.Write("user/registry.ini",
                      "[SOFTWARE\\Firm\\App]\nNumber=1252\nHex=0x3A4\nText=ab\nMixed=12ab\nNone=\n"
                      "[SOFTWARE\\Empty]\n[SOFTWARE\\Last]");
        folder_.Write("machine/registry.ini", "[SOFTWARE\\Machine]\nNumber=932\n");
    }

    lq::test::TempFolder folder_;
    lq::test::EnvironmentVariable moved_;
};

TEST_F(Registry, OpensTheKeysThatExist) {
    const auto open = [](HKEY root, const std::u16string& path) {
        HKEY key = HKEY_CURRENT_USER;
        const int32_t result = RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key);
        EXPECT_EQ(key != nullptr, result == ERROR_SUCCESS);
        EXPECT_EQ(RegCloseKey(key), key ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
        return result;
    };
    for (const Row& row : Rows("host/settings.rows", "keys")) {
        const HKEY root = row[0] == "user" ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
        EXPECT_EQ(open(root, row.Wide(1)), row[2] == "open" ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND)
            << row.line;
    }
    EXPECT_EQ(open(HKEY_CURRENT_USER, std::u16string(128, u'k')), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(open(nullptr, u"SOFTWARE\\Machine"), ERROR_INVALID_HANDLE);
}

TEST_F(Registry, ReadsValues) {
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"SOFTWARE\\Firm\\App", 0, KEY_READ, &key), 0);
    const std::map<std::string, std::pair<int32_t, uint32_t>> results = {
        {"number", {ERROR_SUCCESS, REG_DWORD}},
        {"text", {ERROR_SUCCESS, REG_SZ}},
        {"number, no room", {ERROR_MORE_DATA, REG_DWORD}},
        {"text, no room", {ERROR_MORE_DATA, REG_SZ}},
        {"none", {ERROR_FILE_NOT_FOUND, 99}},
    };
    for (const Row& row : Rows("host/settings.rows", "values")) {
        SCOPED_TRACE(row.line);
        char16_t buffer[] = u"????";
        uint32_t type = 99;
        auto size = static_cast<uint32_t>(row.Number(1));
        const int32_t result = RegQueryValueExW(key, row.Wide(0).c_str(), nullptr, &type,
                                                reinterpret_cast<unsigned char*>(buffer), &size);
        EXPECT_EQ(std::pair(result, type), results.at(row[2]));
        EXPECT_EQ(size, row.Number(3));
        EXPECT_EQ(std::u16string(buffer, 4), row.Wide(4));
    }
    RegCloseKey(key);
}

}  // namespace
