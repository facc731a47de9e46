// SMART_PRE_RENDER and FRAME_SETUP: what the script is asked, and what the host gets.

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

// preRender asks for `w` by `h` where they are set, and notes all that it may know.
const char* const kAsking =
    "var w = 0, h = 0, asked = [], comp, dim, p;"
    "function setup() { p = QL_initParam('p', 1, 'P'); QL_initParam('l', 4, 'L'); QL_initParam('t', 6, 'T');"
    "  QL_initParam('g', 10, 'G'); }"
    "function preRender(a, b, x) { asked.push([a, b, x, QL_getParamValue(p)]); comp = QL_getContextExtent();"
    "  QL_setOutputExtent(w, h); dim = QL_getSurfaceDim(QL_initRenderTarget(2, 2, 8)); }"
    "function draw() {}";

class SizePhase : public ShellTest {
protected:
    void ask(int width, int height) { eval("(w = " + std::to_string(width) + ", h = " + std::to_string(height) + ")"); }
};

constexpr PF_LRect kNothing{};

TEST_F(SizePhase, SmartRouteGivesRectanglesByTheScriptsSize) {
    const struct {
        const char* name;
        A_long width, height;
        PF_Point origin;
        PF_LRect request, presetResult, presetMax;
        int askedWidth, askedHeight;
        PF_LRect result, max;
        int flag;
    } kCases[] = {
        {"kept inside", 10, 8, {}, {-1, -1, 11, 9}, kNothing, kNothing, 0, 0, {0, 0, 10, 8}, {0, 0, 10, 8}, 0},
        {"equal", 10, 8, {}, {0, 0, 10, 8}, kNothing, kNothing, 0, 0, {0, 0, 10, 8}, {0, 0, 10, 8}, 1},
        {"past left", 10, 8, {-2, 0}, {-1, -1, 11, 9}, kNothing, kNothing, 10, 8, {-2, 0, 8, 8}, {-2, 0, 8, 8}, 1},
        {"past top", 10, 8, {0, -2}, {-1, -1, 11, 9}, kNothing, kNothing, 0, 8, {0, -2, 10, 6}, {0, -2, 10, 6}, 1},
        {"at right", 10, 8, {}, {-1, -1, 10, 9}, kNothing, kNothing, 0, 0, {0, 0, 10, 8}, {0, 0, 10, 8}, 1},
        {"at bottom", 10, 8, {}, {-1, -1, 11, 8}, kNothing, kNothing, 0, 0, {0, 0, 10, 8}, {0, 0, 10, 8}, 1},
        {"union", 10, 8, {}, {-9, -9, 19, 19}, {2, 2, 3, 12}, {70, 9, 60, 90}, 0, 0, {0, 0, 10, 12}, {0, 0, 10, 8}, 0},
        {"odd", 11, 7, {3, -5}, {0, 0, 1, 1}, {5, 5, 9, 9}, {0, 0, 100, 1}, 4, 9, {6, -6, 10, 3}, {0, -6, 100, 3}, 1},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.name);
        HostSession& session = start(kAsking);
        HostInstance& instance = session.apply();
        ask(row.askedWidth, row.askedHeight);
        host::SmartFrame frame(instance,
                               {.input = session.newWorld(row.width, row.height, 8), .inputOrigin = row.origin});
        frame.input.output_request.rect = row.request;
        frame.input.output_request.channel_mask = 2;
        frame.answer.result_rect = row.presetResult;
        frame.answer.max_result_rect = row.presetMax;
        frame.answer.flags = 0x7F;
        frame.answer.solid = frame.answer.reserved = 3;
        EXPECT_EQ(frame.preRender().error, 0);
        session.clearViolations();  // a preset result may be outside of what the host allows
        EXPECT_EQ(frame.answer.result_rect, row.result);
        EXPECT_EQ(frame.answer.max_result_rect, row.max);
        EXPECT_EQ(frame.answer.flags, row.flag);
        EXPECT_THAT((std::vector{frame.answer.solid, frame.answer.reserved}), Each(3));
        EXPECT_EQ(eval("asked.map(function (a) { return a.slice(0, 3); })"),
                  "[[" + std::to_string(row.width) + "," + std::to_string(row.height) + ",1]]");

        const auto& checkouts = session.records().layerCheckouts;
        ASSERT_THAT(checkouts, SizeIs(2));
        const PF_LRect whole{row.origin.h, row.origin.v, row.origin.h + row.width, row.origin.v + row.height};
        EXPECT_EQ(checkouts[0].id, 0x123455);
        EXPECT_EQ(checkouts[1].id, 0x123456);
        EXPECT_EQ(checkouts[0].request.rect, kNothing);
        EXPECT_EQ(checkouts[1].request.rect, whole);
        for (const host::LayerCheckout& checkout : checkouts) {
            EXPECT_EQ(checkout.index, 0);
            EXPECT_EQ(checkout.request.channel_mask, PF_ChannelMask_ARGB);
            EXPECT_NE(checkout.request.preserve_rgb_of_zero_alpha, 0);
            EXPECT_EQ(checkout.timeScale, 30u);
        }
    }
}

TEST_F(SizePhase, FailingProbeIsKeptAndOnlyTheSecondCheckoutFallsAway) {
    HostSession& session = start(kAsking);
    HostInstance& instance = session.apply();
    ask(6, 4);
    const auto input = session.newWorld(10, 8, 8);
    const struct {
        int id, checkouts;
        const char* asked;
        PF_LRect result;
    } kCases[] = {{0x123455, 1, "[0,0]", {-3, -2, 3, 2}}, {0x123456, 2, "[10,8]", {2, 2, 8, 6}}};
    for (const auto& row : kCases) {
        session.clearRecords();
        session.faults().clear();
        session.faults().failKey(Callback::checkoutLayer, row.id, 91);
        const FrameResult frame = session.renderFrame(instance, {input});
        EXPECT_EQ(frame.sizeError, 91);
        EXPECT_EQ(frame.resultRect, row.result);
        EXPECT_EQ(frame.renderFlags, 1);
        EXPECT_THAT(session.records().layerCheckouts, SizeIs(row.checkouts));
        EXPECT_EQ(eval("asked.pop().slice(0, 2)"), row.asked);
    }
}

struct ClassicRow {
    const char* name;
    A_long width, height;  // of the layer
    PF_RationalScale x, y, aspect;
    int askedWidth, askedHeight;
    A_long outWidth, outHeight;  // the preset is the layer's size
    PF_Point origin;
    std::vector<int> frameData{};  // none: not under Premiere
};

TEST_F(SizePhase, ClassicRouteScalesInWholeNumbersAndGivesPremiereTheFrameData) {
    const ClassicRow kCases[] = {
        {"kept", 100, 80, {1, 1}, {1, 1}, {1, 1}, 0, 0, 99, 79, {-1, -1}},
        {"wider", 100, 80, {1, 1}, {1, 1}, {1, 1}, 200, 100, 198, 99, {49, 9}},
        {"halved", 101, 101, {1, 2}, {1, 2}, {3, 1}, 0, 0, 50, 50, {-25, -25}},
        {"aspect 2", 100, 80, {1, 1}, {1, 1}, {2, 1}, 200, 0, 397, 79, {148, -1}},
        {"aspect 1/2", 100, 80, {1, 1}, {1, 1}, {1, 2}, 0, 81, 49, 80, {-26, 0}},
        {"comes out even", 100, 80, {1, 1}, {1, 1}, {1, 1}, 102, 81, 100, 80, {0, 0}},
        {"Premiere, kept", 100, 80, {1, 1}, {1, 1}, {3, 1}, 0, 0, 100, 80, {0, 0}, {99, 79}},
        {"Premiere, wider", 100, 80, {1, 1}, {1, 1}, {1, 1}, 200, 100, 198, 99, {50, 10}, {198, 99}},
        {"smaller", 100, 80, {1, 1}, {1, 1}, {1, 1}, 50, 40, 100, 80, {0, 0}, {48, 39}},
        {"halved, aspect 2", 100, 80, {1, 2}, {1, 2}, {2, 1}, 160, 0, 159, 40, {30, 0}, {159, 40}},
    };
    for (const ClassicRow& row : kCases) {
        SCOPED_TRACE(row.name);
        const bool isPremiere = !row.frameData.empty();
        HostSettings settings = isPremiere ? Premiere() : AfterEffects(13, 9, Route::classic);
        settings.downsampleX = row.x;
        settings.downsampleY = row.y;
        settings.layerPixelAspect = row.aspect;
        HostSession& session = start(kAsking, settings);
        HostInstance& instance = session.apply();
        ask(row.askedWidth, row.askedHeight);
        host::ClassicFrame frame(
            instance,
            {.input = session.newWorld(row.width, row.height, 8), .layerWidth = row.width, .layerHeight = row.height});
        EXPECT_EQ(frame.setup().error, 0);
        EXPECT_EQ(frame.width, row.outWidth);
        EXPECT_EQ(frame.height, row.outHeight);
        EXPECT_EQ(frame.origin.h, row.origin.h);
        EXPECT_EQ(frame.origin.v, row.origin.v);
        const PF_Handle data = frame.frameData;
        ASSERT_EQ(data != nullptr, isPremiere);
        if (data) {
            EXPECT_EQ(ChannelsOf<int>(session.handles().bytes(data)), row.frameData);
        }
        EXPECT_EQ(frame.setdown().error, 0);
        EXPECT_FALSE(data && session.handles().isAlive(data));
    }
}

// By what the script finds of a target that it makes in there.
TEST_F(SizePhase, TakesTheGLLockUnlessTheHostIsTooOldOrTheLockIsBroken) {
    const struct {
        HostSettings settings;
        bool isLocked;
    } kCases[] = {
        {AfterEffects(12, 5), true},
        {AfterEffects(13, 0), false},
        {AfterEffects(13, 1), false},
        {AfterEffects(13, 2), true},
        {AfterEffects(13, 1, Route::classic), false},
        {Premiere(13, 0), true},
    };
    for (const auto& [settings, isLocked] : kCases) {
        SCOPED_TRACE(settings.versionMajor * 100 + settings.versionMinor);
        HostSession& session = start(kAsking, settings);
        HostInstance& instance = session.apply();
        const FrameRequest request{session.newWorld(10, 8, 8)};
        EXPECT_EQ(session.renderFrame(instance, request).error(), 0);
        EXPECT_EQ(eval("dim"), isLocked ? "[2,2,8]" : "false");
        const StolenLock thief;
        const bool isSmart = settings.routeInUse() == Route::smart;
        EXPECT_EQ(isSmart ? host::SmartFrame(instance, request).preRender().error
                          : host::ClassicFrame(instance, request).setup().error,
                  0);
    }
    EXPECT_EQ(eval("[dim, asked.length]"), "[false,2]");
}

TEST_F(SizePhase, AsksTheHostForTheComposition) {
    const struct {
        HostKind kind;
        const char* missing;
        PF_Err error;
        const char* comp;
    } kCases[] = {
        {HostKind::afterEffects, "AEGP PF Interface Suite", 516, "undefined"},
        {HostKind::afterEffects, "AEGP Item Suite", 516, "undefined"},
        {HostKind::premiere, "PF Utility Suite", 0, "[0,0,1]"},
    };
    for (const auto& row : kCases)
        for (Route route : {Route::smart, Route::classic}) {
            SCOPED_TRACE(row.missing);
            HostSettings settings = row.kind == HostKind::premiere ? Premiere() : AfterEffects(13, 9, route);
            settings.compWidth = 720;
            settings.compHeight = 576;
            settings.compPixelAspect = {3, 2};
            HostSession& session = start(kAsking, settings);
            HostInstance& instance = session.apply();
            session.faults().refuseSuite(row.missing);
            EXPECT_EQ(session.renderFrame(instance, {session.newWorld(4, 4, 8)}).sizeError, row.error);
            EXPECT_EQ(eval("comp"), row.comp);
            EXPECT_EQ(Block(instance).compWidth, 0u);
        }
}

TEST_F(SizePhase, SweepsValuesWithoutPicturesAndDropsTheirErrors) {
    for (Route route : {Route::smart, Route::classic}) {
        HostSession& session = start(kAsking, AfterEffects(13, 9, route));
        HostInstance& instance = session.apply();
        instance.setFloat(1, 7);
        session.clearRecords();
        session.hooks().before = [](PF_Cmd, PF_InData& in, PF_OutData&) { in.current_time = 12; };
        const FrameRequest request{session.newWorld(4, 4, 8)};
        const auto sizePhase = [&] {
            return route == Route::smart ? host::SmartFrame(instance, request).preRender().error
                                         : host::ClassicFrame(instance, request).setup().error;
        };
        EXPECT_EQ(sizePhase(), 0);
        std::vector<PF_ParamIndex> indices;
        for (const host::ParamCheckout& checkout : session.records().paramCheckouts) {
            indices.push_back(checkout.index);
            EXPECT_EQ(checkout.time, 12);
        }
        EXPECT_THAT(indices, ElementsAre(1, 4)) << "no LAYER, no TEXTURE";
        instance.setFloat(1, 9);
        session.faults().fail(Callback::checkoutParam);
        EXPECT_EQ(sizePhase(), 0);
        EXPECT_EQ(eval("asked.map(function (a) { return a[3]; })"), "[7,7]");
    }
}

}  // namespace
}  // namespace quillon::test
