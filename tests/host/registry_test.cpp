#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "host/framework/ini_file.h"
#include "lq_base.h"
#include "lq_framework.h"
#include "tests/host/temp_folder.h"

namespace {

using namespace lq::host;

// The inputs are INI lines below "[Options]"; the key asked for is "Length", the fallback 32.
TEST(Settings, ReadsIntegers) {
    const std::string longText(500, 'x');
    const struct {
        std::string lines;
        uint32_t expected;
    } cases[] = {
        {"", 32},
        {"Length=80\n", 80},
        {"Length = 80 ; characters\n", 80},
        {"Length: 80", 80},
        {"\t  length=80\r\n", 80},
        {"Other=1\n  Length=80\n", 80},
        {"Length=80\nLength=90\n", 80},
        {"Length=80\n  90\n", 80},
        {"Length=0x1F\n", 31},
        {"Length=0X1f\n", 31},
        {"Length=0\n", 0},
        {"Length=0x\n", 0},
        {"Length=-1\n", 0xFFFFFFFFu},
        {"Length=+7\n", 7},
        {"Length=4294967297\n", 1},
        {"Length=12 metres\n", 12},
        {"Length=metres\n", 0},
        {"Length=\n", 32},
        {"Length\n", 32},
        {";Length=80\n#Length=80\n", 32},
        {"[Other]\nLength=80\n", 32},
        {"[Other]\n[Options]\nLength=80\n", 80},
        // Beyond the reader's limits.
        {"# " + longText + "Length=90\nLength=80\n", 80},
        {longText + "\nLength=80\n", 80},
        {longText + "=1\nLength=80\n", 80},
        {"Length=" + longText + "\n", 32},
        {"[" + longText + "]\nLength=80\n", 32},
        {"[" + std::string(60, 'x') + "]\nLength=80\n", 32},
        {std::string(197, 'x') + "Length=90\nLength=80\n", 80},
        {std::string(198, 'x') + "Length=90\nLength=80\n", 80},
        {std::string(199, 'x') + "Length=90\nLength=80\n", 80},
        {std::string(200, 'x') + "Length=90\nLength=80\n", 80},
    };
    const lq::test::TempFolder folder;
    const lq::test::EnvironmentVariable moved("LQ_DATA_CONFIG", folder.GetPath().c_str());
    for (const auto& c : cases) {
        folder.Write("user/settings.ini", "\xEF\xBB\xBF[Options]\n" + c.lines);
        EXPECT_EQ(GetPrivateProfileIntW(u"Options", u"Length", 32, GetIniName()), c.expected)
            << c.lines;
    }
    EXPECT_EQ(GetPrivateProfileIntW(u"Options", u"Length", -5, u"/no/such/file"), 0u - 5u);
    EXPECT_EQ(
        GetPrivateProfileIntW(u"Options", u"Length", 32, folder.GetPath().u16string().c_str()),
        32u);
}

TEST(Settings, PrefersTheUsersFile) {
    const lq::test::TempFolder folder;
    const lq::test::EnvironmentVariable moved("LQ_DATA_CONFIG", folder.GetPath().c_str());
    const auto user = folder.GetPath() / "user/settings.ini";
    const auto machine = folder.GetPath() / "machine/settings.ini";
    EXPECT_EQ(std::u16string(GetIniName()), user.u16string());
    folder.Write("machine/settings.ini", "");
    EXPECT_EQ(std::u16string(GetIniName()), machine.u16string());
    folder.Write("user/settings.ini", "");
    EXPECT_EQ(std::u16string(GetIniName()), user.u16string());
}

TEST(Settings, FollowsTheUsersConfigurationFolder) {
    const lq::test::EnvironmentVariable notMoved("LQ_DATA_CONFIG", nullptr);
    const lq::test::TempFolder folder;
    const std::string home = folder.GetPath();
    const lq::test::EnvironmentVariable homeVariable("HOME", home.c_str());
    {
        const lq::test::EnvironmentVariable config("XDG_CONFIG_HOME", "");
        const auto file = folder.Write(".config/lq_data/settings.ini", "");
        EXPECT_EQ(std::u16string(GetIniName()), file.u16string());
    }
    const lq::test::EnvironmentVariable config("XDG_CONFIG_HOME", (home + "/etc").c_str());
    const auto file = folder.Write("etc/lq_data/settings.ini", "");
    EXPECT_EQ(std::u16string(GetIniName()), file.u16string());
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
        const char16_t* path;
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
        {nullptr, u"SOFTWARE\\Machine", ERROR_INVALID_HANDLE},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(c.path)));
        HKEY key = HKEY_CURRENT_USER;
        EXPECT_EQ(RegOpenKeyExW(c.root, c.path, 0, KEY_READ, &key), c.result);
        EXPECT_EQ(key != nullptr, c.result == ERROR_SUCCESS);
        EXPECT_EQ(RegCloseKey(key), key ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
    }
}

TEST_F(Registry, ReadsValues) {
    const struct {
        const char16_t* name;
        uint32_t capacity;
        int32_t result;
        uint32_t type, size, number;  // `number` is what a 4-byte buffer holds afterwards
    } cases[] = {
        {u"Number", 4, ERROR_SUCCESS, REG_DWORD, 4, 1252},
        {u"NUMBER", 4, ERROR_SUCCESS, REG_DWORD, 4, 1252},
        {u"Hex", 4, ERROR_SUCCESS, REG_DWORD, 4, 0x3A4},
        {u"Number", 3, ERROR_MORE_DATA, REG_DWORD, 4, 77},
        {u"Text", 4, ERROR_MORE_DATA, REG_SZ, 6, 77},
        {u"Mixed", 4, ERROR_MORE_DATA, REG_SZ, 10, 77},
        {u"Missing", 4, ERROR_FILE_NOT_FOUND, 99, 4, 77},
    };
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"SOFTWARE\\Firm\\App", 0, KEY_READ, &key), 0);
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(c.name)));
        uint32_t number = 77;
        uint32_t type = 99;
        uint32_t size = c.capacity;
        EXPECT_EQ(RegQueryValueExW(key, c.name, nullptr, &type,
                                   reinterpret_cast<unsigned char*>(&number), &size),
                  c.result);
        EXPECT_EQ(type, c.type);
        EXPECT_EQ(size, c.size);
        EXPECT_EQ(number, c.number);
    }
    char16_t text[3] = {};
    uint32_t size = sizeof text;
    EXPECT_EQ(RegQueryValueExW(key, u"Text", nullptr, nullptr,
                               reinterpret_cast<unsigned char*>(text), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(std::u16string(text), u"ab");
    RegCloseKey(key);
}

}  // namespace
