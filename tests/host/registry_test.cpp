#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "host/framework/ini_file.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/env/lq_framework.h"
#include "tests/host/temp_folder.h"

namespace {

using namespace lq::host;
using namespace std::string_view_literals;

// The inputs are INI lines below "[Options]"; the key asked for is "Length", the fallback 32.
TEST(Settings, ReadsIntegers) {
    const std::string longText(500, 'x');
    // The beginning of a line, before its key, that is within the reader's limit or beyond it.
    const auto line = [](std::size_t count) {
        return std::string(count, 'x') + "Length=90\nLength=80\n";
    };
    const auto blank = [](std::size_t count) { return std::string(count, ' ') + "Length=80\n"; };
    // clang-format off
    const struct {
        std::string lines;
        uint32_t expected;
    } cases[] = {
        {"", 32}, {"Length=80\n", 80}, {"Length = 80 ; characters\n", 80}, {"Length: 80", 80},
        {"\t  length=80\r\n", 80}, {"Other=1\n  Length=80\n", 80}, {"Length=80\nLength=90\n", 80},
        {"Length=80\n  90\n", 80}, {"Length=0x1F\n", 31}, {"Length=0X1f\n", 31}, {"Length=0\n", 0},
        {"Length=0x\n", 0}, {"Length=-0x1F\n", 0}, {"Length=-1\n", 0xFFFFFFFFu}, {"Length=+7\n", 7},
        {"Length=4294967297\n", 1}, {"Length=12 metres\n", 12}, {"Length=metres\n", 0},
        {"Length=\n", 32}, {"Length\n", 32}, {";Length=80\n#Length=80\n", 32},
        {"[Other]\nLength=80\n", 32}, {"[Other]\n[Options]\nLength=80\n", 80},
        // Beyond the reader's limits.
        {"# " + longText + "Length=90\nLength=80\n", 80}, {longText + "\nLength=80\n", 80},
        {longText + "=1\nLength=80\n", 80}, {"Length=" + longText + "\n", 32},
        {"[" + longText + "]\nLength=80\n", 32}, {"[" + std::string(60, 'x') + "]\nLength=80\n", 32},
        {line(197), 80}, {line(198), 80}, {line(199), 80}, {line(200), 80}, {blank(100), 80},
    };
    // clang-format on
    const lq::test::TempFolder folder;
    const lq::test::EnvironmentVariable moved("LQ_DATA_CONFIG", folder.GetPath().c_str());
    for (const auto& c : cases) {
        folder.Write("user/settings.ini", "\xEF\xBB\xBF[Options]\n" + c.lines);
        EXPECT_EQ(GetPrivateProfileIntW(u"Options", u"Length", 32, GetIniName()), c.expected)
            << c.lines;
    }
    // Names of as many bytes as can be, and one more.
    for (const std::size_t size : {49u, 50u}) {
        const std::u16string name(size, u'n');
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
                      "[SOFTWARE\\Firm\\App]\nNumber=1252\nHex=0x3A4\nText=ab\nMixed=12ab\n"
                      "[SOFTWARE\\Empty]\n[SOFTWARE\\Last]");
        folder_.Write("machine/registry.ini", "[SOFTWARE\\Machine]\nNumber=932\n");
    }

    lq::test::TempFolder folder_;
    lq::test::EnvironmentVariable moved_;
};

TEST_F(Registry, OpensTheKeysThatExist) {
    const struct {
        HKEY root;
        std::u16string path;
        int32_t result;
    } cases[] = {
        {HKEY_CURRENT_USER, u"SOFTWARE\\Firm\\App", ERROR_SUCCESS},
        {HKEY_CURRENT_USER, u"software\\firm\\APP", ERROR_SUCCESS},
        {HKEY_CURRENT_USER, u"SOFTWARE\\Empty", ERROR_SUCCESS},
        {HKEY_CURRENT_USER, u"SOFTWARE\\Last", ERROR_SUCCESS},
        {HKEY_CURRENT_USER, u"SOFTWARE\\Firm", ERROR_FILE_NOT_FOUND},
        {HKEY_CURRENT_USER, u"SOFTWARE\\Machine", ERROR_FILE_NOT_FOUND},
        {HKEY_LOCAL_MACHINE, u"SOFTWARE\\Machine", ERROR_SUCCESS},
        {HKEY_CURRENT_USER, u"", ERROR_FILE_NOT_FOUND},
        {HKEY_CURRENT_USER, std::u16string(128, u'k'), ERROR_FILE_NOT_FOUND},
        {nullptr, u"SOFTWARE\\Machine", ERROR_INVALID_HANDLE},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.path));
        HKEY key = HKEY_CURRENT_USER;
        EXPECT_EQ(RegOpenKeyExW(c.root, c.path.c_str(), 0, KEY_READ, &key), c.result);
        EXPECT_EQ(key != nullptr, c.result == ERROR_SUCCESS);
        EXPECT_EQ(RegCloseKey(key), key ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
    }
}

TEST_F(Registry, ReadsValues) {
    const struct {
        const char16_t* name;
        uint32_t capacity;
        int32_t result;
        uint32_t type, size;
        std::u16string_view text;  // what the buffer holds afterwards; at first u"????"
    } cases[] = {
        {u"Number", 4, ERROR_SUCCESS, REG_DWORD, 4, u"\x4E4\0??"sv},
        {u"NUMBER", 8, ERROR_SUCCESS, REG_DWORD, 4, u"\x4E4\0??"sv},
        {u"Hex", 4, ERROR_SUCCESS, REG_DWORD, 4, u"\x3A4\0??"sv},
        {u"Number", 3, ERROR_MORE_DATA, REG_DWORD, 4, u"????"sv},
        {u"Text", 6, ERROR_SUCCESS, REG_SZ, 6, u"ab\0?"sv},
        {u"Text", 5, ERROR_MORE_DATA, REG_SZ, 6, u"????"sv},
        {u"Mixed", 8, ERROR_MORE_DATA, REG_SZ, 10, u"????"sv},
        {u"Missing", 8, ERROR_FILE_NOT_FOUND, 99, 8, u"????"sv},
    };
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"SOFTWARE\\Firm\\App", 0, KEY_READ, &key), 0);
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(c.name)));
        char16_t buffer[] = u"????";
        uint32_t type = 99;
        uint32_t size = c.capacity;
        EXPECT_EQ(RegQueryValueExW(key, c.name, nullptr, &type,
                                   reinterpret_cast<unsigned char*>(buffer), &size),
                  c.result);
        EXPECT_EQ(type, c.type);
        EXPECT_EQ(size, c.size);
        EXPECT_EQ(std::u16string_view(buffer, c.text.size()), c.text);
    }
    RegCloseKey(key);
}

}  // namespace
