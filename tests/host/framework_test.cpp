// Modules, resource libraries and runtime classes.
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "lq_data/env/lq_framework.h"
#include "lq_data/host/framework/extension_module.h"
#include "lq_data/host/framework/string_table.h"
#include "lq_data/host/text/utf.h"
#include "tests/host/temp_folder.h"

namespace {

using namespace lq::host;

class Base : public CObject {
    LQ_DECLARE_DYNAMIC(Base)
  public:
    static CObject* CreateObject() { return new Base; }
};
class Derived : public Base {
    LQ_DECLARE_DYNAMIC(Derived)
};

LQ_IMPLEMENT_DYNAMIC(Base, CObject, CreateObject)
LQ_IMPLEMENT_DYNAMIC(Derived, Base, nullptr)

TEST(Module, NamesItsFile) {
    const std::string program = std::filesystem::read_symlink("/proc/self/exe");
    const std::string folder = std::filesystem::path(program).parent_path();
    LQ_MODULE named{u"engine"};
    for (const auto& [module, file] :
         {std::pair<HINSTANCE, std::string>(nullptr, program),
          std::pair<HINSTANCE, std::string>(GetApplicationModule(), program),
          std::pair<HINSTANCE, std::string>(&named, folder + "/engine.so")}) {
        char16_t name[4096] = {};
        EXPECT_EQ(GetModuleFileNameW(module, name, 4096), file.size());
        EXPECT_EQ(EncodeUtf8(name), file);
        // A buffer that is too small takes the beginning.
        char16_t small[5] = {};
        EXPECT_EQ(GetModuleFileNameW(module, small, 5), 4u) << file;
        EXPECT_EQ(EncodeUtf8(small), file.substr(0, 4));
    }
    EXPECT_EQ(GetModuleFileNameW(nullptr, nullptr, 0), 0u);

    // A pair that does not fit whole is left out, and the name cut all the same.
    LQ_MODULE pair{u"\U0001F600"};
    std::u16string name(folder.size() + 3, u'x');
    const auto size = static_cast<uint32_t>(name.size());
    EXPECT_EQ(GetModuleFileNameW(&pair, name.data(), size), size - 1);
    EXPECT_EQ(EncodeUtf8(name.c_str()), folder + "/");
}

TEST(Module, LoadsAndFreesLibraries) {
    const HINSTANCE english = AfxLoadLibrary(u"lq_data_RC_1252.dll");
    ASSERT_NE(english, nullptr);
    EXPECT_EQ(EncodeUtf8(FindString(english, 6491)), "STRING");
    EXPECT_EQ(FindString(english, 1), nullptr);
    EXPECT_EQ(AfxFreeLibrary(english), 1);
    EXPECT_EQ(AfxFreeLibrary(nullptr), 0);
    EXPECT_EQ(AfxFreeLibrary(GetApplicationModule()), 0);

    // Those of a chosen folder go before the program's own.
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    const lq::test::TempFolder folder;
    folder.Write("text.dll", "no library");
    const lq::test::EnvironmentVariable here("LQ_DATA_RESOURCES", folder.GetPath().c_str());
    for (const char16_t* name : {u"text.dll", u"missing.dll", u"", u"/", u"..", u"a/b"}) {
        EXPECT_EQ(AfxLoadLibrary(name), nullptr) << EncodeUtf8(name);
    }
    EXPECT_EQ(AfxLoadLibrary(nullptr), nullptr);
    const auto libraries = program.parent_path() / "../lib";
    std::filesystem::copy(libraries / "lq_data_RC_932.dll", folder.GetPath() / "chosen.dll");
    const HINSTANCE chosen = AfxLoadLibrary(u"chosen.dll");
    ASSERT_NE(chosen, nullptr);
    EXPECT_EQ(EncodeUtf8(FindString(chosen, 10000)), "(64ビット値)");
    AfxFreeLibrary(chosen);
}

TEST(Module, ExtensionsComeAndGo) {
    CDynLinkLibrary* const before = GetFirstLibrary();
    LQ_MODULE modules[3];
    AFX_EXTENSION_MODULE states[3];
    EXPECT_EQ(AfxInitExtensionModule(states[0], nullptr), 0);
    EXPECT_EQ(states[0].bInitialized, 0);
    CDynLinkLibrary* libraries[3];
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(AfxInitExtensionModule(states[i], &modules[i]), 1);
        libraries[i] = new CDynLinkLibrary(states[i]);
        EXPECT_EQ(GetFirstLibrary(), libraries[i]);
    }
    // Out of order; each takes only its own.
    AfxTermExtensionModule(states[1]);
    EXPECT_EQ(states[1].hModule, nullptr);
    EXPECT_EQ(GetFirstLibrary(), libraries[2]);
    EXPECT_EQ(libraries[2]->nextLibrary, libraries[0]);
    EXPECT_EQ(libraries[0]->nextLibrary, before);
    AfxTermExtensionModule(states[2]);
    AfxTermExtensionModule(states[0]);
    EXPECT_EQ(GetFirstLibrary(), before);
}

TEST(RuntimeClass, IsFoundByName) {
    EXPECT_EQ(CRuntimeClass::FromName("CObject"), &CObject::classCObject);
    EXPECT_EQ(CRuntimeClass::FromName("Derived"), &Derived::classDerived);
    EXPECT_EQ(CRuntimeClass::FromName("derived"), nullptr);
    EXPECT_EQ(CRuntimeClass::FromName(""), nullptr);
    const std::unique_ptr<CObject> made(CRuntimeClass::CreateObject("Base"));
    ASSERT_NE(made, nullptr);
    EXPECT_STREQ(made->GetRuntimeClass()->name, "Base");
    EXPECT_EQ(CRuntimeClass::CreateObject("Derived"), nullptr);
    EXPECT_EQ(CRuntimeClass::CreateObject("Nobody"), nullptr);
    Derived derived;
    const CObject& object = derived;
    EXPECT_STREQ(object.GetRuntimeClass()->name, "Derived");
    EXPECT_TRUE(object.IsKindOf(&CObject::classCObject));
    EXPECT_TRUE(object.IsKindOf(&Derived::classDerived));
    EXPECT_FALSE(Base().IsKindOf(&Derived::classDerived));
}

// A module's classes leave with it; the others stay, and one that two modules share, with the last.
TEST(RuntimeClass, LeavesWithItsModule) {
    CRuntimeClass first{"First", &CObject::classCObject, nullptr, nullptr};
    CRuntimeClass second{"Second", &CObject::classCObject, nullptr, nullptr};
    auto later = std::make_unique<AFX_CLASSINIT>(&second);
    auto enters = std::make_unique<AFX_CLASSINIT>(&first);
    auto again = std::make_unique<AFX_CLASSINIT>(&first);
    EXPECT_EQ(CRuntimeClass::FromName("Second"), &second);
    EXPECT_EQ(CRuntimeClass::FromName("Nobody"), nullptr) << "the chain has an end";
    enters.reset();
    EXPECT_EQ(CRuntimeClass::FromName("First"), &first);
    again.reset();
    EXPECT_EQ(CRuntimeClass::FromName("First"), nullptr);
    EXPECT_EQ(CRuntimeClass::FromName("Second"), &second);
    later.reset();
    EXPECT_EQ(CRuntimeClass::FromName("Second"), nullptr);
    EXPECT_EQ(CRuntimeClass::FromName("Base"), &Base::classBase);
}

}  // namespace
