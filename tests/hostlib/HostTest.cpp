// Sizes that no host would make a world of.

#include <gtest/gtest.h>

#include "hostlib/FakeEffect.h"

namespace quillon::host::test {
namespace {

TEST(Frames, AreLeftOutWhereNoHostWouldMakeTheOutput) {
    HostSession session{EffectModule(FakeEntry), {.route = Route::classic}};
    HostInstance& instance = session.newInstance();
    const A_long kWidths[] = {0, -1, 30001, 2147483647};
    for (const A_long width : kWidths) {
        Act() = [=](const Given& given) { return given.out.width = width, 0; };
        const FrameResult result = session.renderFrame(instance, {.input = session.newWorld(4, 3, 8)});
        EXPECT_TRUE(result.leftOut && !result.output) << width;
    }
    EXPECT_EQ(session.records().count(Callback::copy), 0);
}

}  // namespace
}  // namespace quillon::host::test
