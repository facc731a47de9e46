#include "Effects.h"

#include <bit>

#include "Ground.h"
#include "host/ClassicFrame.h"
#include "host/SmartFrame.h"
#include "support/EngineTest.h"

namespace quillon::prove {

test::Files ThreePasses() {
    return {{"config.xml", test::kConfig},
            {"tint.frag",
             "uniform sampler2D sInput0; uniform float v;\n"
             "void main() { gl_FragColor = texture2D(sInput0, gl_TexCoord[0].st) * (1.0 - v / 2.0); }\n"},
            {"spread.frag",
             "uniform sampler2D sInput0; uniform vec2 step;\n"
             "void main() { gl_FragColor = 0.5 * texture2D(sInput0, gl_TexCoord[0].st)\n"
             " + 0.25 * (texture2D(sInput0, gl_TexCoord[0].st + step) + texture2D(sInput0, gl_TexCoord[0].st - step)); "
             "}\n"},
            {"fx.js",
             "var v, tint, spread, sizes = {};\n"
             "function setup() { v = QL_initParam('v', 1, 'V'); tint = QL_initShader('tint');"
             " spread = QL_initShader('spread'); }\n"
             "function targets(w, h) { var key = w + 'x' + h; return sizes[key] || (sizes[key] ="
             " [QL_initRenderTarget(w, h, 32), QL_initRenderTarget(w, h, 32)]); }\n"
             "function draw() {\n"
             "  var out = QL_getSequenceRT(), size = QL_getSurfaceDim(out), own = targets(size[0], size[1]);\n"
             "  QL_setShaderParamVal(tint, 'sInput0', QL_getSequenceTexture());\n"
             "  QL_setShaderParam(tint, v);\n"
             "  QL_renderShader(tint, own[0], false);\n"
             "  QL_setShaderParamVal(spread, 'sInput0', own[0]);\n"
             "  QL_setShaderParamVal(spread, 'step', [1 / size[0], 0]);\n"
             "  QL_renderShader(spread, own[1], false);\n"
             "  QL_setShaderParamVal(spread, 'sInput0', own[1]);\n"
             "  QL_setShaderParamVal(spread, 'step', [0, 1 / size[1]]);\n"
             "  QL_renderShader(spread, out, true);\n"
             "}\n"}};
}

host::HostSettings Unrecorded(host::Route route, host::HostKind kind) {
    host::HostSettings settings;
    settings.keepsRecords = false;
    settings.route = route;
    settings.kind = kind;
    return settings;
}

test::Bytes Noise(A_long width, A_long height, int depth, std::uint32_t seed) {
    std::vector<std::uint32_t> words(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (std::uint32_t& word : words) word = (seed = seed * 1664525u + 1013904223u) >> 8;
    if (depth == 8) return test::BytesOf(std::vector<std::uint8_t>(words.begin(), words.end()));
    if (depth == 16) {
        for (std::uint32_t& word : words) word %= 32769;
        return test::BytesOf(std::vector<std::uint16_t>(words.begin(), words.end()));
    }
    std::vector<float> floats;
    floats.reserve(words.size());
    for (const std::uint32_t word : words)
        floats.push_back((static_cast<float>(word) - 4194304.0f) / 8388608.0f);  // -0.5 to 1.5
    return test::BytesOf(floats);
}

std::shared_ptr<host::World> WorldOf(const host::HostSession& session, A_long width, A_long height, int depth,
                                     std::uint32_t seed) {
    std::shared_ptr<host::World> world = session.newWorld(width, height, depth);
    world->write(Noise(width, height, depth, seed));
    return world;
}

test::Bytes RenderedBytes(host::HostInstance& instance, const host::FrameRequest& request, host::Route route) {
    const host::FrameResult frame = route == host::Route::smart ? host::SmartFrame(instance, request).walk()
                                                                : host::ClassicFrame(instance, request).walk();
    Require(frame.error() == 0, "a frame answers " + std::to_string(frame.error()));
    Require(frame.output != nullptr, std::string("a frame is left out: ") + (frame.leftOut ? frame.leftOut : ""));
    const std::vector<std::string> violations = instance.session.violations();
    Require(violations.empty(), violations.empty() ? "" : violations.front());
    return frame.output->tightBytes();
}

}  // namespace quillon::prove
