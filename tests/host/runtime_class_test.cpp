#include <memory>

#include <gtest/gtest.h>

#include "lq_framework.h"

namespace {

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

TEST(RuntimeClass, IsFoundByName) {
    EXPECT_EQ(CRuntimeClass::FromName("CObject"), &CObject::classCObject);
    EXPECT_EQ(CRuntimeClass::FromName("Derived"), &Derived::classDerived);
    EXPECT_EQ(CRuntimeClass::FromName("derived"), nullptr);
    EXPECT_EQ(CRuntimeClass::FromName(""), nullptr);
}

TEST(RuntimeClass, KnowsItsBases) {
    Derived derived;
    const CObject& object = derived;
    EXPECT_STREQ(object.GetRuntimeClass()->name, "Derived");
    EXPECT_TRUE(object.IsKindOf(&CObject::classCObject));
    EXPECT_TRUE(object.IsKindOf(&Derived::classDerived));
    EXPECT_FALSE(Base().IsKindOf(&Derived::classDerived));
}

TEST(RuntimeClass, CreatesObjectsByName) {
    const std::unique_ptr<CObject> made(CRuntimeClass::CreateObject("Base"));
    ASSERT_NE(made, nullptr);
    EXPECT_STREQ(made->GetRuntimeClass()->name, "Base");
    EXPECT_EQ(CRuntimeClass::CreateObject("Derived"), nullptr);
    EXPECT_EQ(CRuntimeClass::CreateObject("Nobody"), nullptr);
}

// A module's classes leave with it; the others stay.
TEST(RuntimeClass, LeavesWithItsModule) {
    CRuntimeClass first{"First", &CObject::classCObject, nullptr, nullptr};
    CRuntimeClass second{"Second", &CObject::classCObject, nullptr, nullptr};
    {
        const AFX_CLASSINIT entersLater(&second);
        {
            auto enters = std::make_unique<AFX_CLASSINIT>(&first);
            EXPECT_EQ(CRuntimeClass::FromName("First"), &first);
            EXPECT_EQ(CRuntimeClass::FromName("Second"), &second);
            auto again = std::make_unique<AFX_CLASSINIT>(&first);
            EXPECT_EQ(CRuntimeClass::FromName("Nobody"), nullptr) << "the chain has an end";
            enters.reset();
            EXPECT_EQ(CRuntimeClass::FromName("First"), &first);
        }
        EXPECT_EQ(CRuntimeClass::FromName("First"), nullptr);
        EXPECT_EQ(CRuntimeClass::FromName("Second"), &second);
    }
    EXPECT_EQ(CRuntimeClass::FromName("Second"), nullptr);
    EXPECT_EQ(CRuntimeClass::FromName("Base"), &Base::classBase);
}

}  // namespace
