// That another owner of the interface's names can be included, too: that this compiles is the test.
#include <type_traits>

#include <gtest/gtest.h>

#include "lq_data/lq_data.h"

// clang-format off
#include "lq_data/foreign_begin.h"
#if __has_include(<X11/Xlib.h>)
#include <X11/Xlib.h>
#endif
extern "C" {
typedef unsigned long Time;
typedef int ID;
typedef struct Token {
    Time time;
    ID id;
} Token;
enum Scanner { Val, Lit, Address };
typedef void *HashTable, *BufferPair, *CgTab, *ArrInfo;
}
#include "lq_data/foreign_end.h"

// What a macro was before, it is again.
#define Time 7
#include "lq_data/foreign_begin.h"
using OneMore = Time;
#include "lq_data/foreign_end.h"
static_assert(Time == 7);
#undef Time
// clang-format on

namespace {

static_assert(std::is_same_v<ForeignTime, unsigned long>);
static_assert(std::is_same_v<decltype(ForeignToken::time), ForeignTime>);
static_assert(std::is_same_v<lq::Time, ::Time> && std::is_class_v<lq::Time>);
static_assert(!std::is_same_v<lq::Token, ForeignToken>);

TEST(Names, MeanTheLibrarysBesideAnotherOwner) {
    lq::Val value;
    EXPECT_TRUE(value.Set(u"T#1s", 0));
    EXPECT_EQ(VT_TIME, value.type);
}

}  // namespace
