// The small siblings: user adapter, address check, editor library, identifier characters.
#include <string>

#include <gtest/gtest.h>

#include "host/addrcheck/address_check.h"
#include "host/mdi/pou_ref.h"
#include "host/useradapt/user_adapter.h"

namespace {

using namespace lq::host;

int32_t Ask(uint32_t question, void* reply = nullptr) {
    return ProcessUserDLLMessage(nullptr, LQ_WM_USER, question, reinterpret_cast<intptr_t>(reply));
}

TEST(UserAdapter, AnswersOptionsAsSet) {
    for (const int32_t answer : {0, 1}) {
        GetUserAdapterAnswers().intAsBits = answer;
        GetUserAdapterAnswers().nulEscape = answer;
        LQ_OPTION_REPLY option{99, 5};
        EXPECT_EQ(Ask(LQ_ASK_INT_AS_BITS), answer);
        EXPECT_EQ(Ask(LQ_ASK_BITS_AS_INT), 0);
        Ask(LQ_ASK_NUL_ESCAPE, &option);
        EXPECT_EQ(option.option, answer);
        EXPECT_EQ(option.reserved, 5);
    }
    GetUserAdapterAnswers() = {};
}

TEST(UserAdapter, FillsInterfacesOnlyWhenItHasThem) {
    const LQ_INTERFACE_ENTRY entry{2, u"X", 1, u"TRUE"};
    const LQ_INTERFACE_REPLY known{1, &entry};
    for (const uint32_t question : {LQ_ASK_SFC_STEP, LQ_ASK_SFC_ACTION, LQ_ASK_SFC_DEBUG}) {
        LQ_INTERFACE_REPLY reply{77, nullptr};
        EXPECT_NE(Ask(question, &reply), 0) << question;
        EXPECT_EQ(reply.count, 77u) << question;
    }
    GetUserAdapterAnswers().sfcAction = &known;
    LQ_INTERFACE_REPLY reply{77, nullptr};
    EXPECT_NE(Ask(LQ_ASK_SFC_STEP, &reply), 0);
    EXPECT_EQ(Ask(LQ_ASK_SFC_ACTION, &reply), 0);
    EXPECT_EQ(reply.count, 1u);
    EXPECT_EQ(reply.entries, &entry);
    GetUserAdapterAnswers() = {};
}

TEST(AddressCheck, FollowsItsRules) {
    CLQString normalised(u"old");
    EXPECT_EQ(IsCustomAdress(u"X1", 1, 1), 0);
    EXPECT_EQ(bIsVdConstant(u"K+1", 1, 1), 0);
    IsAdressValidOnl(u"%ix1", 1, 0, &normalised);
    EXPECT_EQ(std::u16string(normalised), u"%ix1");

    GetAddressRules().isCustomAddress = [](const char16_t* text, int checkAccess, int) {
        return text[0] == u'X' ? checkAccess : 0;
    };
    GetAddressRules().normalise = [](const char16_t*, CLQString* out) {
        *out = u"%IX1";
        return 1;
    };
    EXPECT_EQ(IsCustomAdress(u"X1", 1, 1), 1);
    EXPECT_EQ(IsCustomAdress(u"X1", 0, 1), 0);
    IsAdressValidOnl(u"%ix1", 1, 0, &normalised);
    EXPECT_EQ(std::u16string(normalised), u"%IX1");
    GetAddressRules() = {};
}

TEST(PouRef, WritesItsName) {
    CLQString name;
    const NamedPouRef pou(u"MAIN");
    static_cast<const CPouRef&>(pou).GetName(&name);
    EXPECT_EQ(std::u16string(name), u"MAIN");
}

TEST(IdentifierCharacters, AreLettersDigitsAndUnderscore) {
    for (const char16_t c : std::u16string(u"azAZ09_\u00E4\u3042")) {
        EXPECT_NE(__istcsym(c), 0) << static_cast<unsigned>(c);
    }
    const char16_t others[] = {0, u'@', u'[', u'`', u'{', u'/', u':', u' ', 0x00D7, 0xD800, 0xDC00};
    for (const char16_t c : others) {
        EXPECT_EQ(__istcsym(c), 0) << static_cast<unsigned>(c);
    }
}

}  // namespace
