#include <gmock/gmock.h>

#include "entities/Context.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

// make() gives one entity of each kind, and drop() ends them. hooked() is an object that stands for a value, and calls
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

// A call that succeeds. The mask tells which arguments are coerced by running script code: 't'; '.' are not.
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

// Run under the address sanitizer, which tells of anything that a jump past C++ code leaves behind.
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
    // What stands for a missing entity took no writes meanwhile.
    const Parameter& none = Context::Instance().FindParameter(0);
    EXPECT_EQ(none.id, 0u);
    EXPECT_EQ(none.wordValue(), 0u);
    EXPECT_EQ(none.flags, 0u);
    EXPECT_EQ(none.choices, "");
    EXPECT_EQ(none.texture, 0u);
    EXPECT_FALSE(Context::Instance().FindShader(0).isBuilt());
    EXPECT_FALSE(Context::Instance().FindRenderTarget(0).isUsable());
    EXPECT_FALSE(Context::Instance().FindTexture(0).textureName);
    EXPECT_EQ(Context::Instance().FindSurface(0).width, 0u);
}

}  // namespace
}  // namespace quillon::test
