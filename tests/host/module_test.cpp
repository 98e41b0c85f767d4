#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "host/framework/extension_module.h"
#include "host/framework/string_table.h"
#include "host/text/utf.h"
#include "lq_framework.h"
#include "tests/host/temp_folder.h"

namespace {

using namespace lq::host;

TEST(Module, NamesItsFile) {
    const std::string program = std::filesystem::read_symlink("/proc/self/exe");
    const std::string folder = std::filesystem::path(program).parent_path();
    LQ_MODULE named{u"engine"};
    const struct {
        HINSTANCE module;
        std::string file;
    } cases[] = {
        {nullptr, program}, {GetApplicationModule(), program}, {&named, folder + "/engine.so"}};
    for (const auto& c : cases) {
        char16_t name[4096] = {};
        const uint32_t length = GetModuleFileNameW(c.module, name, 4096);
        EXPECT_EQ(EncodeUtf8(name), c.file);
        EXPECT_EQ(length, std::u16string(name).size()) << c.file;
        // A buffer that is too small takes the beginning.
        char16_t small[5] = {};
        EXPECT_EQ(GetModuleFileNameW(c.module, small, 5), 4u) << c.file;
        EXPECT_EQ(EncodeUtf8(small), c.file.substr(0, 4));
    }
    EXPECT_EQ(GetModuleFileNameW(nullptr, nullptr, 0), 0u);
}

TEST(Module, LoadsAndFrees) {
    const HINSTANCE english = AfxLoadLibrary(u"lq_data_RC_1252.dll");
    ASSERT_NE(english, nullptr);
    EXPECT_EQ(EncodeUtf8(FindString(english, 6491)), "STRING");
    EXPECT_EQ(FindString(english, 1), nullptr);
    EXPECT_EQ(AfxFreeLibrary(english), 1);
    EXPECT_EQ(AfxFreeLibrary(nullptr), 0);
    EXPECT_EQ(AfxFreeLibrary(GetApplicationModule()), 0);
}

TEST(Module, RefusesWhatIsNoLibrary) {
    const lq::test::TempFolder folder;
    folder.Write("text.dll", "no library");
    const lq::test::EnvironmentVariable here("LQ_DATA_RESOURCES", folder.GetPath().c_str());
    for (const char16_t* name : {u"text.dll", u"missing.dll", u"", u"/", u"..", u"a/b"}) {
        EXPECT_EQ(AfxLoadLibrary(name), nullptr) << EncodeUtf8(name);
    }
    EXPECT_EQ(AfxLoadLibrary(nullptr), nullptr);
}

TEST(Module, ExtensionsComeAndGo) {
    CDynLinkLibrary* const before = GetFirstLibrary();
    LQ_MODULE modules[2];
    AFX_EXTENSION_MODULE states[2];
    EXPECT_EQ(AfxInitExtensionModule(states[0], nullptr), 0);
    EXPECT_EQ(states[0].bInitialized, 0);
    CDynLinkLibrary* libraries[2];
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(AfxInitExtensionModule(states[i], &modules[i]), 1);
        libraries[i] = new CDynLinkLibrary(states[i]);
        EXPECT_EQ(GetFirstLibrary(), libraries[i]);
    }
    // Out of order; each takes only its own.
    AfxTermExtensionModule(states[0]);
    EXPECT_EQ(states[0].hModule, nullptr);
    EXPECT_EQ(GetFirstLibrary(), libraries[1]);
    EXPECT_EQ(libraries[1]->nextLibrary, before);
    AfxTermExtensionModule(states[1]);
    EXPECT_EQ(GetFirstLibrary(), before);
}

}  // namespace
