#include <gmock/gmock.h>

#include <random>

#include "entities/Context.h"
#include "support/EngineTest.h"
#include "support/Pixels.h"
#include "support/Seed.h"

namespace quillon::test {
namespace {

// make() gives one entity of each kind, and drop() ends them. hooked() is an object in place of a value, and calls
// the function first. mask() makes the call with each argument in turn hooked, and gives 't' where the hook's error
// came through and '.' where the call returned.
const char* const kScript =
    "var e, source = 'uniform float f; uniform vec4 v; void main() { gl_FragColor = v * f; }';\n"
    "function make() { e = {f: QL_initParam('f', 1, 'F'), c: QL_initParam('c', 3, 'C'), p: QL_initParam('p', 2, 'P'),\n"
    "  po: QL_initParam('po', 9, 'Po'), l: QL_initParam('l', 4, 'L'), s: QL_initShader('s', source),\n"
    "  a: QL_initRenderTarget(2, 2, 8), b: QL_initRenderTarget(2, 2, 8), t: QL_initTexture('none'),\n"
    "  u: QL_initSurface(2, 2, 8)}; }\n"
    "function drop() { for (var name in e) QL_release(e[name]); }\n"
    "function hooked(value, hook) { function get() { hook(); return value; }\n"
    "  return {valueOf: get, toString: get}; }\n"
    "function mask(call, list, hook) { make(); var text = '', count = list().length;\n"
    "  for (var i = 0; i < count; ++i) { drop(); make(); var args = list(); args[i] = hooked(args[i], hook);\n"
    "    try { call.apply(null, args); text += '.'; } catch (x) { text += x === 'hook' ? 't' : String(x); } }\n"
    "  drop(); return text; }\n"
    "function setup() {}\nfunction draw() {}\n";

// A call that succeeds. The mask says which arguments are coerced by running script code: 't'; '.' are not.
struct Call {
    const char* name;
    const char* arguments;
    const char* mask;
};
constexpr Call kCalls[] = {
    {"QL_initParam", "'n', 1, 'label'", "ttt"},
    {"QL_getParamValue", "e.f", "t"},
    {"QL_setParamValue", "e.f, 1", "tt"},
    {"QL_setParamValue", "e.po, 1", "tt"},
    {"QL_setParamValue", "e.l, 1", "tt"},
    {"QL_setParamValue", "e.c, [1]", "t."},
    {"QL_setParamMinMax", "e.f, 0, 1", "ttt"},
    {"QL_setParamChoices", "e.po, 'a|b'", "tt"},
    {"QL_setParamPrecision", "e.f, 1", "tt"},
    {"QL_setParamEnabled", "e.f, 1", "tt"},
    {"QL_setParamFlags", "e.f, 1", "tt"},
    {"QL_getParamFlags", "e.f", "t"},
    {"QL_initRenderTarget", "2, 2, 8", "ttt"},
    {"QL_blitRenderTarget", "e.a, e.b, false, false", "tt.."},
    {"QL_getSurfaceDim", "e.a", "t"},
    {"QL_initShader", "'s', source", "tt"},
    {"QL_setShaderParam", "e.s, e.f", "tt"},
    {"QL_getShaderParamType", "e.s, 'f'", "tt"},
    {"QL_renderShader", "e.s, e.a, false, 1", "tt.."},
    {"QL_setShaderParamVal", "e.s, 'f', 1", "ttt"},
    {"QL_setShaderParamVal", "e.s, 'v', 1", "tt."},
    {"QL_getShaderError", "e.s", "t"},
    {"QL_initTexture", "'none', 'x'", "tt"},
    {"QL_setTextureParam", "e.a, 10241, 9728", "ttt"},
    {"QL_initSurface", "2, 2, 8", "ttt"},
    {"QL_textureToSurface", "e.a", "t"},
    {"QL_surfaceToTexture", "e.u", "t"},
    {"QL_surfaceQuantize", "0", "t"},
    {"QL_surfaceCopyTo", "e.u, e.a, false", "tt."},
    {"QL_release", "0", "t"},
    {"QL_setOutputExtent", "1, 1", "tt"},
};

class Coercion : public EngineTest {
protected:
    void SetUp() override {
        start(kScript);
        addInstance();
    }
    std::string mask(const Call& call, const char* hook) {
        return eval(std::string("mask(") + call.name + ", function () { return [" + call.arguments +
                    "]; }, function () { " + hook + " })");
    }
};

// Run under the address sanitizer, which reports anything that a jump past C++ code leaves.
TEST_F(Coercion, RunsOrIgnoresEachArgumentOfEachFunction) {
    for (const Call& call : kCalls) {
        EXPECT_EQ(mask(call, "throw 'hook';"), "\"" + std::string(call.mask) + "\"")
            << call.name << "(" << call.arguments << ")";
    }
}

TEST_F(Coercion, MayEndWhatTheCallWasAbout) {
    for (const Call& call : kCalls) {
        const std::string dots(std::string(call.mask).size(), '.');
        EXPECT_EQ(mask(call, "drop();"), "\"" + dots + "\"") << call.name << "(" << call.arguments << ")";
    }
    for (const char* call :
         {"QL_setParamValue(e.p, [1, bomb, 3])", "QL_setParamValue(e.c, [1, bomb, 3, 4])",
          "QL_setShaderParamVal(e.s, 'v', [1, bomb, 3, 4])", "QL_renderShader(e.s, e.a, false, [0, bomb, 1, 1])",
          "QL_renderShader(e.s, e.a, false, [bomb])"})
        EXPECT_THAT(eval("(make(), bomb = hooked(1, drop), " + std::string(call) + ")"),
                    ::testing::AnyOf("true", "false"))
            << call;
    // The null objects took no writes meanwhile.
    Context& entities = Context::Instance();
    const Parameter& none = entities.FindParameter(0);
    EXPECT_EQ(none.id | none.wordValue() | none.flags | none.texture, 0u);
    EXPECT_EQ(none.choices, "");
    EXPECT_FALSE(entities.FindShader(0).isBuilt() || entities.FindRenderTarget(0).isUsable());
    EXPECT_FALSE(entities.FindTexture(0).textureName || entities.FindSurface(0).width != 0);
}

// Calls of the table in any order, with strange arguments and with some that end or make entities, or call again, while
// they are coerced. It must only go on; the address sanitizer watches.
const char* const kRandomScript =
    "var state = 1, calls = [], count = 0;\n"
    "function random(n) { state = (state * 1103515245 + 12345) % 2147483648; return Math.floor(state / 65536) % n; }\n"
    "var strange = [undefined, null, NaN, -1, 0, 2.5, 64, 'v', {}, [1, 2], [NaN, 1e30, -1e30, 1], 0x1000000, "
    "0x40000FF];\n"
    "function churn() { [make, drop, call][random(3)](); }\n"
    "function call() { ++count; var row = calls[random(calls.length)], args = row[1](), at = random(2 * args.length);\n"
    "  if (at < args.length) args[at] = random(2) ? hooked(args[at], churn) : strange[random(strange.length)];\n"
    "  if (random(20) === 0) Duktape.fin({}, drop);\n"
    "  try { this[row[0]].apply(null, args); } catch (error) {} }\n"
    "function run(n) { make(); for (var i = 0; i < n; ++i) call(); drop(); }\n"
    "function preRender() { run(20); }\nfunction updateUIFlags() { run(20); }\nfunction draw() { run(60); }\n";

TEST_F(EngineTest, SurvivesRandomCalls) {
    start(std::string(kScript) + kRandomScript);
    std::mt19937 random(Seed());
    for (int round = 0; round < 3; ++round) {
        for (const Call& call : kCalls)
            if (call.name != std::string_view("QL_release"))  // which ends the process for most strange numbers
                eval("calls.push(['" + std::string(call.name) + "', function () { return [" + call.arguments +
                     "]; }])");
        eval("state = " + std::to_string(random() % 0x7FFFFFFF));
        SequenceHandle* const pair[] = {addInstance(), addInstance()};
        for (int i = 0; i < 12; ++i) {
            engine.selectSequence(pair[random() % 2]);
            ASSERT_TRUE(engine.lockGL());
            std::uint32_t width = 0, height = 0;
            engine.preRender(4, 4, &width, &height);
            const std::uint32_t bits = 8u << random() % 3;
            const Bytes picture = DistinctPicture(3, 2, bits);
            engine.setLayerPixels(random() % 15, picture.data(), 3, 2, bits, std::uint64_t{3} * bits / 2);
            engine.updateUIFlags();
            engine.unlockGL();
            frame(3, 2, bits, picture, i);
            eval("run(150)");  // a shader that failed may have stopped draw()
        }
        EXPECT_EQ(eval("count > 1000"), "true");
        EXPECT_TRUE(engine.restartScript());
    }
    engine.shutdown();
}

}  // namespace
}  // namespace quillon::test
