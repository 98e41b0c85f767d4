// What is not read is reported, except for layout.
#include <gtest/gtest.h>

#include "tests/host/plcopen/plcopen_util.h"

namespace {

using namespace lq::host;

TEST(Schema, ReportsWhatIsLeftOut) {
    constexpr struct {
        std::string_view interface;
        std::string_view messages;
    } kCases[] = {
        {"<strange/>", "<strange> in <interface> is not known and was left out\n"},
        {"<strange/><strange><a/></strange>",
         "<strange> in <interface> is not known and was left out +1\n"},
        {"<accessVars/>",
         "<accessVars> in <interface> has no place in the project and was left out\n"},
        {"<localVars color=\"red\" name=\"n\"/>",
         "attribute 'color' of <localVars> is not known and was left out\n"},
        {"<localVars>text</localVars>", "text in <localVars> is not known and was left out\n"},
        {"<localVars><variable name=\"v\" globalId=\"g\"><type><INT unit=\"m\">5</INT></type>"
         "<range/></variable></localVars>",
         "attribute 'unit' of <INT> is not known and was left out\n"
         "text in <INT> is not known and was left out\n"
         "<range> in <variable> is not known and was left out\n"},
        {"<addData><data name=\"urn:a\" handleUnknown=\"preserve\"><x/></data>"
         "<data name=\"urn:b\" handleUnknown=\"discard\"><y z=\"1\">t</y></data></addData>",
         "additional data 'urn:a' is not read\n"},
        {"<localVars><documentation><xhtml:p lang=\"de\">a<strange/></xhtml:p></documentation>"
         "</localVars>",
         "<documentation> in <localVars> has no place in the project and was left out\n"},
        {"<localVars><variable name=\"v\"><type><struct><documentation/></struct></type></variable>"
         "</localVars>",
         "<documentation> in <struct> has no place in the project and was left out\n"},
        {"<a:localVars xmlns:a=\"urn:a\"/>",
         "<{urn:a}localVars> in <interface> is not known and was left out\n"},
    };
    for (const auto& c : kCases) {
        const ReadProject read(PouDocument(std::string(c.interface)));
        EXPECT_TRUE(read.complete) << c.interface;
        EXPECT_EQ(read.Messages(), c.messages) << c.interface;
    }
}

TEST(Schema, PassesLayoutOver) {
    const ReadProject read(PouDocument("", R"(<body globalId="g"><LD>
        <leftPowerRail localId="1" width="1" height="2"><position x="0" y="0"/>
        <connectionPointOut formalParameter=""><relPosition x="0" y="0"/></connectionPointOut>
        </leftPowerRail>
        <contact localId="2" negated="true" edge="rising"><variable>a</variable></contact>
        <coil localId="3" storage="set"><variable>b</variable></coil>
        <comment localId="4"><content><xhtml:p>c</xhtml:p></content></comment>
        <vendorElement localId="5"/></LD></body>)"));
    EXPECT_EQ(read.Messages(),
              "<vendorElement> in <LD> has no place in the project and was left out\n");
}

}  // namespace
