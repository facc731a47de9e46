// The render phase of both routes: what the script finds, what the host is asked in which order, what lands where.

#include <algorithm>
#include <cstring>

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

class Render : public ShellTest {
protected:
    static FrameResult FrameOf(HostInstance& instance, const FrameRequest& request) {
        return instance.session.renderFrame(instance, request);
    }
};

TEST_F(Render, ScriptFindsTimeOriginSizesAndComposition) {
    const char* const kFound[] = {
        "[0.5,[1,2],[9,8,16],[9,8,16],[720,576,1.5]]",
        "[0.5,[0,-1],[8,7,16],[9,8,16],[720,576,1.5]]",
        "[0.5,[0,0],[8,7,16],[8,7,16],[720,576,1.5]]",
    };
    for (std::size_t i = 0; i < std::size(kHosts); ++i) {
        HostSettings settings = kHosts[i];
        settings.compWidth = 720;
        settings.compHeight = 576;
        settings.compPixelAspect = {3, 2};
        HostSession& session = start(kFilling, settings, kFill);
        HostInstance& instance = session.apply();
        instance.currentTime = 12;
        instance.timeScale = 24;
        session.hooks().before = [&](PF_Cmd cmd, PF_InData& in, PF_OutData&) {
            in.output_origin_x = 77;  // not this one, but the output's own
            if (cmd == PF_Cmd_SMART_RENDER) in.output_origin_y = 77;
        };
        host::SmartFrame smart(instance, {session.newWorld(9, 8, 16)});
        if (i == 0) {
            ASSERT_EQ(smart.preRender().error, 0);
            smart.answer.result_rect = {-1, -2, 8, 6};
            ASSERT_EQ(smart.makeOutput(), nullptr);
            EXPECT_EQ(smart.render().error, 0);
        } else {
            EXPECT_EQ(FrameOf(instance, {session.newWorld(9, 8, 16)}).error(), 0);
        }
        EXPECT_EQ(eval("found"), kFound[i]);
    }
}

// Premiere's output is cleared and takes the frame in its middle; the frame's input starts at the source origin.
// Channel by channel the picture is unlike anything else.
TEST_F(Render, PremiereClearsAndCenters) {
    HostSession& session = start(CopyScript(true), Premiere(), kCopyFiles);
    HostInstance& instance = session.apply();
    const auto input = Picture(session, 8, 5, 3);
    // The layer of 4 by 3 starts at (1, 1): its part of 3 by 2 is drawn.
    FrameRequest request{.input = input, .sourceOrigin = {1, 1}, .layerWidth = 4, .layerHeight = 3};
    for (const A_long outer : {2, 5, 9}) {
        request.presetWidth = request.presetHeight = outer;
        session.clearRecords();
        const FrameResult frame = FrameOf(instance, request);
        EXPECT_EQ(frame.error(), 0);
        ASSERT_EQ(frame.output->width(), outer);
        const A_long left = (outer - 3) >> 1, top = (outer - 2) >> 1;
        auto wanted = session.newWorld(outer, outer, 8);
        wanted->write(Bytes(wanted->tightBytes().size()));
        for (A_long y = 0; y < 2; ++y)
            for (A_long x = std::max(0, -left); x < std::min(3, outer - left); ++x)
                std::copy_n(input->row(y + 1).begin() + 4 + 4 * x, 4, wanted->row(top + y).begin() + 4 * (left + x));
        EXPECT_EQ(frame.output->tightBytes(), wanted->tightBytes());
        ASSERT_THAT(session.records().fills, SizeIs(outer > 2 ? 1 : 0)) << "only where the frame leaves a part";
        for (const host::FillCall& fill : session.records().fills) EXPECT_TRUE(fill.isWhole && fill.color.alpha == 0);
    }
    // Neither the input is read nor the output written past its world: a layer that says to be larger than it, a world
    // whose depth cannot be asked for.
    request = {.input = input, .presetWidth = 2, .presetHeight = 2, .layerWidth = 9, .layerHeight = 9};
    session.hooks().before = [&](PF_Cmd cmd, PF_InData&, PF_OutData&) {
        session.faults().clear();
        if (cmd == PF_Cmd_RENDER) session.faults().failNth(Callback::premiereFormat, 2);
    };
    EXPECT_EQ(FrameOf(instance, request).error(), 0);
    EXPECT_EQ(eval("QL_getSurfaceDim(QL_getSequenceTexture())"), "[5,3,8]");
}

// Without anything mapped the input is copied. The script takes the framebuffer away in draw().
TEST_F(Render, WithoutAResultTheInputPassesThrough) {
    for (const HostSettings& settings : kHosts) {
        HostSession& session = start(
            "var drawn = 0; function setup() {}"
            "function draw() { ++drawn; QL_release(QL_getSequenceRT()); }",
            settings);
        HostInstance& instance = session.apply();
        const auto input = Picture(session);
        FrameResult frame = FrameOf(instance, {input});
        EXPECT_EQ(frame.error(), 0);
        EXPECT_EQ(eval("drawn"), "1");
        EXPECT_TRUE(std::ranges::equal(frame.output->row(0), input->row(0).first(frame.output->row(0).size())));
        EXPECT_THAT(session.records().copies, ElementsAre(Field(&host::CopyCall::isWhole, true)));
        session.faults().fail(Callback::copy, 63);
        EXPECT_EQ(FrameOf(instance, {input}).renderError, 63);
        if (settings.kind != HostKind::premiere) continue;
        session.clearRecords();
        session.faults().fail(Callback::fill, 64);
        EXPECT_EQ(FrameOf(instance, {input}).renderError, 64);
        EXPECT_THAT(session.records().copies, IsEmpty());
    }
}

TEST_F(Render, WithoutALiveBlockTheInputIsCopiedWithoutScriptOrLock) {
    for (const HostSettings& settings : kHosts)
        for (bool isFlat : {false, true}) {
            HostSession& session =
                start(kFilling + std::string("function preRender() { QL_setOutputExtent(50, 50); }"), settings, kFill);
            HostInstance& other = session.apply();
            EXPECT_EQ(FrameOf(other, {session.newWorld(5, 3, 8)}).error(), 0);
            HostInstance& instance = session.newInstance();
            if (isFlat) instance.sequenceData = session.handles().makeWith(Bytes(8192));
            const auto input = Picture(session);
            const StolenLock thief;
            const FrameResult frame = FrameOf(instance, {input});
            EXPECT_EQ(frame.error(), 0);
            const bool shrinks = settings.routeInUse() == Route::classic && settings.kind == HostKind::afterEffects;
            EXPECT_EQ(frame.width, shrinks ? 4 : 5);
            EXPECT_EQ(frame.height, shrinks ? 2 : 3);
            EXPECT_TRUE(std::ranges::equal(frame.output->row(1), input->row(1).first(frame.output->row(1).size())));
            session.faults().fail(Callback::copy, 65);
            EXPECT_EQ(FrameOf(instance, {input}).renderError, 65);
        }
    EXPECT_EQ(eval("drawn"), "1");
}

// The order of what the host sees.
TEST_F(Render, AsksDepthsThenClearsThenSweepsThenTransfers) {
    using enum Callback;
    const std::vector<Callback> kOrders[] = {
        {checkoutPixels, checkoutOutput, worldFormat, worldFormat, checkoutParam, checkinParam, pixelDataFloat,
         pixelData16, pixelData8, pixelDataFloat, pixelData16, pixelData8},
        {worldFormat, worldFormat, checkoutParam, checkinParam, pixelDataFloat, pixelData16, pixelData8, pixelDataFloat,
         pixelData16, pixelData8},
        {premiereFormat, premiereFormat, fill, checkoutParam, checkinParam},
    };
    for (std::size_t i = 0; i < std::size(kHosts); ++i) {
        HostSession& session = start("function setup() { QL_initParam('p', 1, 'P'); } function draw() {}", kHosts[i]);
        HostInstance& instance = session.apply();
        EXPECT_EQ(FrameOf(instance, {session.newWorld(5, 3, 8)}).error(), 0);
        std::vector<Callback> order;
        for (const host::TraceLine& line : session.records().trace) {
            const bool isRender = line.selector == PF_Cmd_RENDER || line.selector == PF_Cmd_SMART_RENDER;
            if (isRender && line.callback != acquireSuite && line.callback != releaseSuite)
                order.push_back(line.callback);
        }
        EXPECT_EQ(order, kOrders[i]);
    }
}

// The script's picture is as deep as the input; the output is written in its own depth and no further than both reach.
TEST_F(Render, UnlikeDepthsReadAndWriteNothingTheyMayNot) {
    for (const HostSettings& settings : kHosts)
        for (int inDepth : {8, 16, 32})
            for (int outDepth : {8, 16, 32}) {
                HostSession& session = start(CopyScript(true), settings, kCopyFiles);
                HostInstance& instance = session.apply();
                const FrameResult frame =
                    FrameOf(instance, {.input = Picture(session, inDepth), .outputDepth = outDepth});
                EXPECT_EQ(frame.error(), 0);
                // The bottom row is the frame's first, and as far as it reaches it is there.
                EXPECT_THAT(frame.output->row(frame.height - 1).first(4), testing::Not(Each(World::kUnwrittenByte)))
                    << inDepth << " to " << outDepth << " bits, route " << static_cast<int>(settings.route);
            }
}

TEST_F(Render, WithoutAnyInputNothingIsWritten) {
    HostSession& session = start(kFilling, {}, kFill);
    HostInstance& instance = session.apply();
    auto output = session.newWorld(4, 4, 8);
    EXPECT_EQ(session.send({.cmd = PF_Cmd_RENDER, .instance = &instance, .output = output}).error, 0);
    EXPECT_THAT(output->tightBytes(), Each(World::kUnwrittenByte));
    EXPECT_EQ(eval("drawn"), "0");
}

}  // namespace
}  // namespace quillon::test
