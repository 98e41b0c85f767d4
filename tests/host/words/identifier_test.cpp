#include <gtest/gtest.h>

#include "host/text/utf.h"
#include "lq_model.h"

namespace {

using lq::host::EncodeUtf8;

TEST(CheckIdentifier, AcceptsIecNames) {
    for (const char16_t* name : {u"a", u"Pump1", u"_start", u"a_b_c", u"Beh\u00e4lter", u"ENX",
                                 u"INTEGER", u"TON", u"VA", u"VARS"}) {
        EXPECT_EQ(CheckIdentifier(nullptr, name, 0), 0) << EncodeUtf8(name);
    }
    for (const char16_t* name : {u"", u"1a", u"a__b", u"a_", u"_", u"__a", u"a b", u"a.b", u"a-b",
                                 u"INT", u"int", u"ACTION", u"Xor", u"eno", u"VAR_TEMP"}) {
        EXPECT_NE(CheckIdentifier(nullptr, name, 0), 0) << EncodeUtf8(name);
    }
    EXPECT_NE(CheckIdentifier(nullptr, nullptr, 0), 0);
}

TEST(CheckIdentifier, AddsNoCharacterToThoseOfNames) {
    for (const char16_t* beginning : {u"a", u"a$", u"12a", u"a:"}) {
        EXPECT_NE(CheckIdentifier(nullptr, beginning, 1), 0) << EncodeUtf8(beginning);
    }
}

}  // namespace
