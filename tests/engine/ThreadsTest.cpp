#include <future>

#include "support/EngineTest.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

template <class Call>
auto Elsewhere(Call call) {
    return std::async(std::launch::async, call).get();
}

class EngineThreads : public EngineTest {
protected:
    void SetUp() override {
        start(CopyScript(false), {{"copy.frag", kCopyFragment}});
        addInstance();
    }
};

TEST_F(EngineThreads, MayTakeTurnsFromCallToCall) {
    for (const std::uint32_t bits : {8u, 32u, 16u, 8u}) {
        const Bytes picture = DistinctPicture(4, 3, bits);
        EXPECT_EQ(InHostRange(Elsewhere([&] { return frame(4, 3, bits, picture); }), bits), picture);
        EXPECT_EQ(InHostRange(frame(4, 3, bits, picture), bits), picture);
    }
    EXPECT_TRUE(Elsewhere([&] { return engine.restartScript(); }));
    addInstance();
    const Bytes picture = DistinctPicture(4, 3, 8);
    EXPECT_EQ(frame(4, 3, 8, picture), picture);
}

TEST_F(EngineThreads, RunTheScriptWithoutGLWhileTheContextIsElsewhere) {
    std::promise<void> held, done;
    auto holder = std::async(std::launch::async, [&] {
        const bool locked = engine.lockGL();
        held.set_value();
        done.get_future().wait();
        if (locked) engine.unlockGL();
        return locked;
    });
    held.get_future().wait();
    std::uint32_t width = 0, height = 0;
    engine.preRender(5, 6, &width, &height);
    EXPECT_EQ(width, 5u);
    EXPECT_TRUE(frame(4, 3, 8).empty());
    done.set_value();
    EXPECT_TRUE(holder.get());
}

}  // namespace
}  // namespace quillon::test
