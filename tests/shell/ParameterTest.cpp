// Values from the host to the script, names and states from the script to the host.

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

class Parameters : public ShellTest {
protected:
    static PF_Err frame(HostInstance& instance) {
        return instance.session.renderFrame(instance, {instance.session.newWorld(4, 3, 8)}).error();
    }
};

constexpr const char* kScaled = "add(1, 8); add(1, 16); add(1, 24); add(1, 32); add(5, 32); add(5, 24); add(12, 56);";

TEST_F(Parameters, ScaleByTheRendersSizeAndAspect) {
    const struct {
        PF_RationalScale x, y, aspect;
        float byWidth, byHeight, byBoth, pointX, pointY;  // of 100 and of (100, 100)
    } kCases[] = {
        {{1, 2}, {1, 2}, {1, 1}, 50, 50, 25, 200, 200},
        {{1, 4}, {1, 2}, {2, 1}, 25, 50, 12.5f, 800, 200},
        {{1, 2}, {1, 1}, {1, 2}, 50, 100, 50, 100, 100},
    };
    for (const auto& row : kCases) {
        HostSettings settings;
        settings.downsampleX = row.x;
        settings.downsampleY = row.y;
        settings.layerPixelAspect = row.aspect;
        HostSession& session = start(ScriptOf(kScaled), settings);
        HostInstance& instance = session.apply();
        for (PF_ParamIndex index : {1, 2, 3, 4}) instance.setFloat(index, 100);
        for (PF_ParamIndex index : {5, 6}) instance.setPoint(index, 100, 100);
        instance.setAngle(7, 100);
        EXPECT_EQ(frame(instance), 0);
        std::ostringstream wanted;
        wanted << '[' << row.byWidth << ',' << row.byHeight << ',' << row.byBoth << ",100,[" << row.pointX << ','
               << row.pointY << "],[100,100],100]";
        EXPECT_EQ(eval("seen"), wanted.str());
    }
}

TEST_F(Parameters, EachKindArrivesInItsOwnForm) {
    HostSession& session = start(ScriptOf("[2, 3, 8, 9, 12].forEach(function (k) { add(k); });"));
    HostInstance& instance = session.apply();
    instance.setPoint3D(1, 1.5, -2, 3e9);
    instance.setColor(2, {.alpha = 0.125f, .red = 0.25f, .green = -0.5f, .blue = 2.0f});
    instance.param(3).u.bd.value = -7;
    instance.setPopup(4, 70000);
    instance.param(5).u.ad.value = -98304;
    EXPECT_EQ(frame(instance), 0);
    EXPECT_EQ(eval("seen"), "[[1.5,-2,3000000000],[0.25,-0.5,2,0.125],-7,70000,-1.5]");
}

TEST_F(Parameters, TexturePopupsChoiceIsNeverSeenAndGroupsHoldZeros) {
    HostSession& session = start(ScriptOf("add(6); add(7); add(10); add(11);"));
    HostInstance& instance = session.apply();
    instance.setPopup(1, 2);
    session.clearRecords();
    EXPECT_EQ(frame(instance), 0);
    EXPECT_EQ(eval("seen[0]"), "0");
    EXPECT_EQ(engine.parameterInfo(0)->intValue(), 2);
    EXPECT_EQ(session.records().paramCheckouts.size(), 2u + 4u) << "groups in the size phase, all four in the frame";
    for (std::uint32_t i : {1u, 2u, 3u}) EXPECT_THAT(engine.parameterInfo(i)->value, Each(std::byte{0})) << i;
}

TEST_F(Parameters, NoValuePassesBeforeTheFirstRefresh) {
    HostSession& session = start(ScriptOf("QL_setParamValue(add(1), 3);"));
    HostInstance& instance = session.newInstance();
    EXPECT_EQ(session.sequenceSetup(instance).error, 0);
    instance.setFloat(1, 8);
    EXPECT_EQ(frame(instance), 0);
    EXPECT_EQ(session.userChangedParam(instance, 1).error, 0);
    EXPECT_EQ(eval("seen"), "[3]");
    EXPECT_EQ(session.updateParamsUI(instance).error, 0);
    EXPECT_EQ(frame(instance), 0);
    EXPECT_EQ(eval("seen"), "[8]");
    instance.setFloat(1, 9);
    EXPECT_EQ(session.userChangedParam(instance, 1).error, 0);
    EXPECT_EQ(engine.parameterInfo(0)->floatAt(0), 9.0f);
}

TEST_F(Parameters, HostsValueReturnsEveryFrameUnlessTheControlIsHidden) {
    HostSession& session = start(ScriptOf("add(1); add(1);", "",
                                          "seen = p.map(QL_getParamValue);"
                                          "var first = seen; QL_setParamValue(p[0], 7);") +
                                 "var before; var inner = draw; draw = function () { before = p.map(QL_getParamValue);"
                                 " inner(); };");
    HostInstance& instance = session.apply();
    for (PF_ParamIndex index : {1, 2}) instance.setFloat(index, 3);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(frame(instance), 0);
        EXPECT_EQ(eval("[before, seen]"), "[[3,3],[7,3]]");
    }
    EXPECT_EQ(instance.param(1).u.fs_d.value, 3.0);
    eval("QL_setParamFlags(p[1], 1)");
    for (PF_ParamIndex index : {1, 2}) instance.setFloat(index, 5);
    session.clearRecords();
    EXPECT_EQ(session.updateParamsUI(instance).error, 0);
    EXPECT_EQ(frame(instance), 0);
    EXPECT_EQ(eval("before"), "[5,3]");
    EXPECT_THAT(session.records().paramUIUpdates, SizeIs(1));
    EXPECT_THAT(session.records().paramCheckouts, Each(Field(&host::ParamCheckout::index, 1)));
}

TEST_F(Parameters, AfterAFailingCheckoutAllAreCheckedInAndOldValuesRender) {
    HostSession& session = start(ScriptOf("add(1); add(1); add(1);"));
    HostInstance& instance = session.apply();
    for (PF_ParamIndex index : {1, 2, 3}) instance.setFloat(index, 2);
    EXPECT_EQ(frame(instance), 0);
    for (PF_ParamIndex index : {1, 2, 3}) instance.setFloat(index, 4);
    session.faults().failKey(Callback::checkoutParam, 2);
    session.clearRecords();
    EXPECT_EQ(frame(instance), 0);
    EXPECT_EQ(eval("seen"), "[4,2,2]");
    EXPECT_EQ(session.records().count(Callback::checkoutParam), 4) << "two a phase";
    EXPECT_EQ(session.records().count(Callback::checkinParam), 6);
}

// A layer is uploaded in the depth of the getter that answered, and keeps its pixels when the host has none.
TEST_F(Parameters, LayersKeepTheirLastPixels) {
    const char* const kLayer =
        "var l, copy, dim; function setup() { l = QL_initParam('l', 4, 'L'); copy = QL_initShader('copy'); }"
        "function draw() { dim = QL_getSurfaceDim(QL_getParamValue(l)); [10240, 10241].forEach(function (n) {"
        " QL_setTextureParam(l, n, 9728); }); QL_setShaderParamVal(copy, 'sInput0', l);"
        " QL_renderShader(copy, QL_getSequenceRT(), true); }";
    for (Route route : {Route::smart, Route::classic})
        for (int depth : {8, 16, 32}) {
            HostSession& session = start(kLayer, AfterEffects(13, 9, route), kCopyFiles);
            HostInstance& instance = session.apply();
            // The classic route's output is one smaller than its input: the layer is as large as the output.
            const A_long more = route == Route::classic;
            const FrameRequest request{session.newWorld(5 + more, 3 + more, depth)};
            const auto layer = Picture(session, depth);
            instance.setLayer(1, layer);
            EXPECT_EQ(session.renderFrame(instance, request).output->tightBytes(), layer->tightBytes());
            EXPECT_EQ(eval("dim"), "[5,3," + std::to_string(depth) + "]");
            HostInstance& other = session.apply();
            EXPECT_EQ(session.renderFrame(other, request).output->tightBytes(), layer->tightBytes());
            {
                const StolenLock thief;  // the layer is left out, and the frame has no lock either
                instance.setLayer(1, session.newWorld(2, 2, depth));
                EXPECT_EQ(session.renderFrame(instance, request).renderError, 512);
            }
            session.faults().refuseSuite("PF Pixel Data Suite");
            EXPECT_EQ(session.renderFrame(instance, request).renderError, 13);
        }
}

}  // namespace
}  // namespace quillon::test
