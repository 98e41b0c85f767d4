#include "lq_data/frame.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "lq_data/env/lq_base.h"
#include "lq_data/host/framework/extension_module.h"
#include "lq_data/host/framework/string_table.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/types.h"
#include "tests/host/temp_folder.h"
#include "tests/support/test_allocator.h"

namespace {

using namespace lq::host;

const std::string kUserKey = "[SOFTWARE\\Veldrane\\Talmor2\\App]\n";
const std::string kMachineKey = "[SOFTWARE\\Veldrane\\Talmor2\\Startup\\App]\n";

std::string Utf8(const char16_t* text) {
    return EncodeUtf8(text);
}

// Empty when the resource library has no text, or there is no resource library.
std::string LibraryText(unsigned id) {
    const CResourceSwitch toLibrary;
    CLQString text;
    text.LoadStringW(id);
    return Utf8(text);
}

std::filesystem::path FileOf(HINSTANCE module) {
    char16_t name[4096];
    GetModuleFileNameW(module, name, 4096);
    return Utf8(name);
}

class Frame : public testing::Test {
  protected:
    Frame() : module_(GetFirstLibrary()->module), config_("LQ_DATA_CONFIG", Path("").c_str()) {}

    // Later tests find the library as the loader left it.
    ~Frame() override {
        const lq::test::EnvironmentVariable none("LQ_DATA_CONFIG", Path("none").c_str());
        const lq::test::EnvironmentVariable usual("LQ_DATA_RESOURCES", nullptr);
        Reattach(module_);
        SetApplicationStrings(nullptr);
    }

    std::string Path(const char* name) const { return folder_.GetPath() / name; }

    // The resource library in English, under another name.
    void CopyEnglish(const std::string& name) const {
        const HINSTANCE english = AfxLoadLibrary(u"lq_data_RC_1252.dll");
        ASSERT_NE(english, nullptr);
        std::filesystem::create_directories(
            std::filesystem::path(Path(name.c_str())).parent_path());
        std::filesystem::copy_file(FileOf(english), Path(name.c_str()));
        EXPECT_EQ(AfxFreeLibrary(english), 1);
    }

    static int Reattach(HINSTANCE module) {
        LqDataEntry(module, LQ_PROCESS_DETACH, nullptr);
        return LqDataEntry(module, LQ_PROCESS_ATTACH, nullptr);
    }

    lq::test::TempFolder folder_;
    HINSTANCE module_;
    lq::test::EnvironmentVariable config_;
};

TEST_F(Frame, IsAttachedByTheLoader) {
    ASSERT_NE(module_, nullptr);
    EXPECT_EQ(FileOf(module_).stem(), "lq_data");
    EXPECT_STREQ(Utf8(GetResString(6491)).c_str(), "STRING");
    EXPECT_STREQ(Utf8(GetResString(6492)).c_str(), "ARRAY");
    EXPECT_EQ(NS_LQ_DATA::GetDLLVersion(), 65536u);
}

TEST_F(Frame, ChoosesTheCodePage) {
    const struct {
        std::string user, machine;  // registry files
        const char* loaded;         // by the end of the file name
    } cases[] = {
        {"", "", "1252"},
        {kUserKey + "CodePage=932\n", "", "932"},
        {"", kMachineKey + "CodePage=932\n", "932"},
        {"", kMachineKey + "CodePage=0x3A4\n", "932"},
        {kUserKey + "CodePage=4294967295\n", "", "-1"},
        {kUserKey + "CodePage=7\n", kMachineKey + "CodePage=932\n", "7"},
        // The first key that opens decides.
        {kUserKey, kMachineKey + "CodePage=932\n", "1252"},
        {kUserKey + "Other=932\n", kMachineKey + "CodePage=932\n", "1252"},
        // Too large for the buffer.
        {kUserKey + "CodePage=Japanese\n", "", "1252"},
        // Each key counts below its own root only.
        {kMachineKey + "CodePage=932\n", "", "1252"},
        {"", kUserKey + "CodePage=932\n", "1252"},
    };
    const lq::test::EnvironmentVariable resources("LQ_DATA_RESOURCES", Path("rc").c_str());
    for (const auto& c : cases) {
        SCOPED_TRACE(c.user + "---\n" + c.machine);
        folder_.Write("user/registry.ini", c.user);
        folder_.Write("machine/registry.ini", c.machine);
        // Only this one name is there, and no other folder has a library for this module's name.
        LQ_MODULE other{u"other"};
        std::filesystem::remove_all(Path("rc"));
        folder_.Write("rc/unused", "");
        EXPECT_EQ(Reattach(&other), 1);
        EXPECT_EQ(LibraryText(6491), "");
        CopyEnglish(std::string("rc/other_RC_") + c.loaded + ".dll");
        EXPECT_EQ(Reattach(&other), 1);
        EXPECT_EQ(LibraryText(6491), "STRING");
    }
}

// The module's file name without folder and extension, as much of it as fits.
TEST_F(Frame, NamesTheResourceLibraryAfterTheModule) {
    folder_.Write("user/registry.ini", kUserKey + "CodePage=0x80000000\n");
    const std::string part(220, 'd');  // a folder's name is no limit of a file's
    const std::string file = part + "/" + part + "/" + part + "/" + part + "/" + part + "/module";
    CopyEnglish(file);
    const HINSTANCE module = AfxLoadLibrary((folder_.GetPath() / file).u16string().c_str());
    ASSERT_NE(module, nullptr);
    const lq::test::EnvironmentVariable resources("LQ_DATA_RESOURCES", Path("rc").c_str());
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{236}, std::size_t{237}, std::size_t{250}}) {
        const std::string name = length != 0 ? std::string(length, 'n') : "module";
        const std::u16string wide(name.begin(), name.end());
        LQ_MODULE longNamed{wide.c_str(), nullptr, module->loader};
        std::filesystem::remove_all(Path("rc"));
        const std::string expected = (name + "_RC_-2147483648.dll").substr(0, 255);
        CopyEnglish("rc/" + expected);
        EXPECT_EQ(Reattach(length != 0 ? &longNamed : module), 1);
        EXPECT_EQ(LibraryText(6491), "STRING") << expected;
    }
    AfxFreeLibrary(module);
}

TEST_F(Frame, RefusesToAttachWithoutAModule) {
    EXPECT_EQ(LqDataEntry(nullptr, LQ_PROCESS_ATTACH, nullptr), 0);
    EXPECT_EQ(GetFirstLibrary()->module, module_);
    EXPECT_STREQ(Utf8(GetResString(6491)).c_str(), "STRING");
    EXPECT_NE(LqDataEntry(nullptr, LQ_THREAD_ATTACH, nullptr), 0);
    EXPECT_NE(LqDataEntry(nullptr, LQ_THREAD_DETACH, nullptr), 0);
}

TEST_F(Frame, LeavesNothingWhenDetachedWithLittleMemoryToo) {
    folder_.Write("user/registry.ini", kUserKey + "CodePage=932\n");
    EXPECT_NE(LqDataEntry(module_, LQ_PROCESS_DETACH, nullptr), 0);
    EXPECT_EQ(LibraryText(6491), "");
    {
        const CResourceSwitch toNoModule;
        EXPECT_EQ(AfxGetResourceHandle(), nullptr);
    }
    lq::test::FailEachAllocation([this](const lq::test::FailingAllocation&) {
        EXPECT_EQ(LqDataEntry(module_, LQ_PROCESS_ATTACH, nullptr), 1);
        LqDataEntry(module_, LQ_PROCESS_DETACH, nullptr);
        EXPECT_EQ(GetFirstLibrary(), nullptr);
    });
}

TEST_F(Frame, FallsBackToTheApplicationsStrings) {
    const LQ_STRING_RESOURCE strings[] = {{6491, u"own"}, {77, u"seventy-seven"}};
    const LQ_STRING_TABLE table{2, strings};
    SetApplicationStrings(&table);
    EXPECT_STREQ(Utf8(GetResString(6491)).c_str(), "STRING");
    EXPECT_STREQ(Utf8(GetResString(77)).c_str(), "seventy-seven");
    EXPECT_STREQ(Utf8(GetResString(78)).c_str(), "");
    // Without a resource library the application's texts count, and behind them the English ones.
    LqDataEntry(module_, LQ_PROCESS_DETACH, nullptr);
    EXPECT_STREQ(Utf8(GetResString(6491)).c_str(), "own");
    EXPECT_STREQ(Utf8(GetResString(6492)).c_str(), "ARRAY");
    SetApplicationStrings(nullptr);
    EXPECT_EQ(IecTypeConv().GetId(u"STRING(3)"), IEC_STRING);
    EXPECT_EQ(IecTypeConv().GetId(u"ARRAY [1..2] OF INT"), IEC_ARRAY);
}

TEST_F(Frame, KeepsTheLastFiftyTexts) {
    const char16_t* texts[51];
    for (int i = 0; i < 51; ++i) {
        texts[i] = GetResString(i % 2 == 0 ? 6491 : 6492);
    }
    EXPECT_EQ(texts[50], texts[0]);
    for (int i = 1; i < 51; ++i) {
        EXPECT_EQ(Utf8(texts[i]), i % 2 == 0 ? "STRING" : "ARRAY") << i;
        EXPECT_NE(texts[i], texts[i - 1]) << i;
    }
}

}  // namespace
