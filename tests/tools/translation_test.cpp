// A translation with every allocation of the library failing in turn: what is missing in the tables
// has a refusal, or the translation as a whole has failed.
#include "tools/lq/translation.h"

#include <new>

#include <gtest/gtest.h>

#include "host/base/streams.h"
#include "tests/host/plcopen/plcopen_util.h"
#include "tests/support/test_allocator.h"

namespace lq::test {
namespace {

std::string ImageOf(CgTab& tables) {
    MEMSTREAM_A stream;
    if (!tables.Save(stream)) {
        return "";
    }
    return {reinterpret_cast<const char*>(stream.GetData()), static_cast<size_t>(stream.GetSize())};
}

TEST(Translation, NothingIsLostInSilenceWhenMemoryIsShort) {
    host::ReadProject read(host::Document(
        R"(<dataTypes><dataType name="Pair"><baseType><struct>
             <variable name="a"><type><INT/></type></variable>
           </struct></baseType></dataType></dataTypes>
           <pous><pou name="Main" pouType="program"><interface>
             <localVars><variable name="pair"><type><derived name="Pair"/></type></variable>
               <variable name="list"><type><array><dimension lower="1" upper="3"/>
                 <baseType><INT/></baseType></array></type></variable></localVars>
             <tempVars><variable name="t"><type><BOOL/></type></variable></tempVars>
           </interface><body><ST><xhtml:p>JMP L; L: ;</xhtml:p></ST></body></pou></pous>)",
        R"(<configuration name="C"><resource name="R"/><globalVars>
             <variable name="speed" address="%QW1"><type><INT/></type>
               <initialValue><simpleValue value="5"/></initialValue></variable>
           </globalVars></configuration>)"));
    ASSERT_TRUE(read.complete) << read.Messages();
    const std::string whole = ImageOf(*tool::Translate(read.project).tables);
    ASSERT_GT(whole.size(), 200u);
    const int64_t liveBlocks = LiveBlocks();
    int complete = 0;
    int64_t rounds = 0;
    for (const bool all : {false, true}) {
        bool failed = true;
        for (int64_t nth = 1; failed; ++nth, ++rounds) {
            SCOPED_TRACE(testing::Message() << "failing allocation " << nth << ", all " << all);
            tool::Translation out;
            bool thrown = false;
            {
                const FailingAllocation failing(nth, all);
                try {
                    out = tool::Translate(read.project);
                } catch (const std::bad_alloc&) {
                    thrown = true;
                }
                failed = failing.HasFailed();
            }
            if (!thrown && out.refusals.empty()) {
                ++complete;
                ASSERT_TRUE(ImageOf(*out.tables) == whole);
            }
            ASSERT_TRUE(failed || !thrown);
            out = {};
            ASSERT_EQ(LiveBlocks(), liveBlocks);
        }
    }
    host::SetProject(nullptr);
    EXPECT_GE(complete, 2);
    EXPECT_GT(rounds, 150);
}

}  // namespace
}  // namespace lq::test
