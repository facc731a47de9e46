// Frames from upstream, which no selector asks for by itself.

#include "entities/Context.h"
#include "host/ObjectReferences.h"
#include "shell/RenderUpstream.h"
#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

class Upstream : public ShellTest {};

// Called from a callback of a frame of this instance.
TEST_F(Upstream, FramesBecomeTheInputOfAnEarlierTime) {
    HostSession& session = start(
        "var dim; function setup() {} function draw() {"
        " dim = QL_getSurfaceDim(QL_getSequenceTexture()); }");
    HostInstance& instance = session.apply();
    instance.currentTime = 20;
    instance.timeStep = 4;
    const auto input = Picture(session, 8, 5, 3);
    std::uint32_t framesBack = 0;
    std::uint32_t uploadedWidth = 0;
    PF_InData* given = nullptr;
    session.hooks().before = [&](PF_Cmd, PF_InData& in, PF_OutData&) { given = &in; };
    session.hooks().upstream = [&](HostInstance&, A_Time) { return session.newWorld(7, 2, 8); };
    bool isDone = false;
    session.hooks().at[Callback::worldFormat] = [&](auto&) {
        if (std::exchange(isDone, true)) return;
        renderUpstream(*given, host::kPluginId, framesBack, 8);
        Context& entities = Context::Instance();
        uploadedWidth = entities.FindTexture(entities.CurrentSequence().texture).width;
    };
    const struct {
        std::uint32_t back;
        int time;  // -1: not asked for
    } kCases[] = {{0, 20}, {3, 8}, {5, 0}, {6, -1}, {0x40000000, -1}};
    for (const auto& [back, time] : kCases) {
        framesBack = back;
        isDone = false;
        session.clearRecords();
        EXPECT_EQ(session.renderFrame(instance, {input}).error(), 0);
        EXPECT_EQ(uploadedWidth, back == 0 ? 7u : 5u) << "an earlier frame is a separate layer";
        ASSERT_THAT(session.records().upstreamTimes, SizeIs(time < 0 ? 0 : 1)) << back;
        for (const A_Time& asked : session.records().upstreamTimes) {
            EXPECT_EQ(asked.value, time);
            EXPECT_EQ(asked.scale, 30u);
        }
    }
}

}  // namespace
}  // namespace quillon::test
