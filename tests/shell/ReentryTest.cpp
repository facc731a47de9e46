// A host enters the effect again from its callbacks, for other instances and for the same one.

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

// The picture shows value, color and layer. By the width of the input, `seen` and `made` hold what else the script
// finds; Premiere Pro's input loses a column. The outer call's input is 9 wide and no other comes near.
const Files kMixFiles{{"mix.frag",
                       "uniform sampler2D picture, layer; uniform float v; uniform vec4 c;\n"
                       "void main() { vec2 at = gl_TexCoord[0].st;"
                       " gl_FragColor = 0.25 * (texture2D(picture, at) + texture2D(layer, at) + c) + v / 64.0; }\n"}};
const char* const kMix =
    "var s, v, c, l, seen = {}, made = {}; function setup() { s = QL_initShader('mix'); v = QL_initParam('v', 1, 'V');"
    " c = QL_initParam('c', 3, 'C'); l = QL_initParam('l', 4, 'L'); QL_initParam('w', 1, 'W'); }"
    "function preRender(w, h) { made[w] = QL_getSurfaceDim(QL_initRenderTarget(2, 2, 8));"
    " QL_setOutputExtent(w + 1 + QL_getParamValue(v), h + 1); }"
    "function updateUIFlags() { QL_setParamEnabled(v, QL_getParamValue(v) > 3); }"
    "function draw() { seen[QL_getSurfaceDim(QL_getSequenceTexture())[0]] = [QL_getTime(), QL_getInputOrigin(), "
    "QL_getContextExtent(), QL_getParamValue(v),"
    " QL_getSurfaceDim(QL_getSequenceRT()), QL_getSurfaceDim(QL_getParamValue(l))];"
    " QL_setShaderParamVal(s, 'picture', QL_getSequenceTexture()); QL_setShaderParam(s, l);"
    " QL_setShaderParamVal(s, 'layer', l); QL_setShaderParam(s, v); QL_setShaderParam(s, c);"
    " QL_renderShader(s, QL_getSequenceRT(), true); }";

class Reentry : public ShellTest, public ::testing::WithParamInterface<HostSettings> {
protected:
    void SetUp() override {
        session = &start(kMix, GetParam(), kMixFiles);
        outer = &made(2, {0.5f, 1.0f, 0.25f, 0.0f}, 4);
        inner = &made(6, {1.0f, 0.0f, 0.5f, 1.0f}, 7);
        bare = &session->newInstance();
        session->sequenceSetup(*bare);
        session->hooks().valueAt = [](HostInstance&, PF_ParamIndex index, A_long time, A_u_long, PF_ParamDef& def) {
            if (index == 1) def.u.fs_d.value += time;
        };
    }

    HostInstance& made(double value, const PF_PixelFloat& color, A_long layerWidth) {
        HostInstance& instance = session->apply();
        instance.setFloat(1, value);
        instance.setColor(2, color);
        instance.setLayer(3, Picture(*session, 8, layerWidth, 3));
        return instance;
    }

    // All that the host and the script find for the outer instance.
    std::string outerWork() {
        const FrameResult frame = session->renderFrame(*outer, {Picture(*session, 8, 9, 4)});
        std::ostringstream found;
        found << frame.error() << ' ' << frame.width << ' ' << frame.height << ' ' << frame.resultRect
              << eval("seen[9] || seen[8]") << eval("made[9]");
        if (frame.output)
            for (const std::byte byte : frame.output->tightBytes()) found << ' ' << std::to_integer<int>(byte);
        found << session->updateParamsUI(*outer).error << outer->param(1).ui_flags;
        found << session->userChangedParam(*outer, 3).error << session->userChangedParam(*outer, 1).error;
        return found.str();
    }

    void enterAgain() {
        session->renderFrame(*inner, {Picture(*session, 8, 6, 2)});
        const FrameRequest request{Picture(*session, 8, 3, 3)};
        session->send({.cmd = PF_Cmd_RENDER,
                       .instance = bare,
                       .hasParams = true,
                       .frame = &request,
                       .output = session->newWorld(3, 3, 8)});
        const A_long time = std::exchange(outer->currentTime, 3);
        session->renderFrame(*outer, {Picture(*session, 8, 4, 4)});
        outer->currentTime = time;
        session->updateParamsUI(*inner);
        session->updateParamsUI(*bare);  // whose composition nobody has asked for
        session->userChangedParam(*inner, 3);
        session->sequenceFlatten(*inner);
    }

    HostSession* session = nullptr;
    HostInstance *outer = nullptr, *inner = nullptr, *bare = nullptr;
};

TEST_P(Reentry, LeavesTheOuterCallItsInstanceFromEveryCallback) {
    outerWork();
    const std::string wanted = outerWork();
    int visited = 0;
    for (int i = 0; i < host::kCallbackCount; ++i) {
        const auto callback = static_cast<Callback>(i);
        bool isInside = false;
        int entries = 0;
        session->hooks().at = {{callback, [&](auto&) {
                                    if (std::exchange(isInside, true)) return;
                                    if (++entries <= 12) enterAgain();
                                    isInside = false;
                                }}};
        EXPECT_EQ(outerWork(), wanted) << host::InfoOf(callback).name;
        session->hooks().at.clear();
        visited += entries > 0;
    }
    EXPECT_GE(visited, 10);
}

// The outer call goes on without an instance: the host has freed the block.
TEST_P(Reentry, MayEndTheInstanceOfTheOuterCall) {
    for (Callback callback : {Callback::checkoutParam, Callback::checkinParam, Callback::updateParamUI,
                              Callback::itemDimensions, Callback::fill, Callback::pixelDataFloat}) {
        outer = &made(2, {}, 4);
        session->updateParamsUI(*outer);
        const FrameRequest request{Picture(*session, 8, 5, 4)};
        for (const bool isPanel : {false, true}) {
            session->hooks().at = {{callback, [&](auto&) {
                                        if (outer->sequenceData) session->sequenceSetdown(*outer);
                                    }}};
            if (isPanel)
                EXPECT_EQ(session->updateParamsUI(*outer).error, 0);
            else
                EXPECT_EQ(session->renderFrame(*outer, request).error(), 0);
            session->hooks().at.clear();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, Reentry,
                         ::testing::Values(AfterEffects(), AfterEffects(13, 9, Route::classic), AfterEffects(13, 1),
                                           Premiere()));

}  // namespace
}  // namespace quillon::test
