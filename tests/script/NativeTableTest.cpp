#include <duktape.h>

#include "script/Natives.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

struct Entry {
    const char* name;
    duk_idx_t arity;
};

// The whole API in the order in which its names come to exist.
constexpr Entry kApi[] = {
    {"QL_initParam", DUK_VARARGS},
    {"QL_getParamValue", 1},
    {"QL_setParamValue", 2},
    {"QL_setParamMinMax", 3},
    {"QL_setParamChoices", 2},
    {"QL_setParamPrecision", 2},
    {"QL_setParamEnabled", 2},
    {"QL_setParamFlags", 2},
    {"QL_getParamFlags", 1},
    {"QL_initRenderTarget", 3},
    {"QL_blitRenderTarget", 4},
    {"QL_getSurfaceDim", 1},
    {"QL_getSequenceRT", 0},
    {"QL_getSequenceTexture", 0},
    {"QL_initShader", DUK_VARARGS},
    {"QL_setShaderParam", 2},
    {"QL_getShaderParamType", 2},
    {"QL_renderShader", 4},
    {"QL_setShaderParamVal", 3},
    {"QL_getShaderError", 1},
    {"QL_initTexture", DUK_VARARGS},
    {"QL_setTextureParam", 3},
    {"QL_initSurface", DUK_VARARGS},
    {"QL_textureToSurface", 1},
    {"QL_surfaceToTexture", 1},
    {"QL_surfaceQuantize", 6},
    {"QL_surfaceCopyTo", 3},
    {"QL_getTime", 0},
    {"QL_release", 1},
    {"QL_setOutputExtent", 2},
    {"QL_getContextExtent", 0},
    {"QL_getInputOrigin", 0},
};
static_assert(std::size(kApi) == 32);

TEST(NativeTables, HoldTheWholeApiInItsOrder) {
    std::vector<Native> bound;
    for (const auto table : {ParameterNatives(), RenderTargetNatives(), ShaderNatives(), TextureNatives(),
                             SurfaceNatives(), HostNatives()})
        bound.insert(bound.end(), table.begin(), table.end());
    ASSERT_EQ(bound.size(), std::size(kApi));
    for (std::size_t i = 0; i < bound.size(); ++i) {
        EXPECT_STREQ(bound[i].name, kApi[i].name);
        EXPECT_EQ(bound[i].arity, kApi[i].arity) << kApi[i].name;
    }
}

class ScriptGlobals : public EngineTest {
protected:
    void SetUp() override { start("function setup() {} function draw() {}"); }
};

TEST_F(ScriptGlobals, AreTheApiInBindingOrderAndOrdinaryProperties) {
    std::string names;
    for (const Entry& entry : kApi) names += (names.empty() ? "\"" : ",\"") + std::string(entry.name) + "\"";
    EXPECT_EQ(eval("Object.keys(this).filter(function (n) { return /^QL_/.test(n) && typeof this[n] == 'function'; },"
                   " this)"),
              "[" + names + "]");
    expectValues({
        {"Object.keys(this).filter(function (n) { return /^QL_/.test(n); }).every(function (n) {"
         " var p = Object.getOwnPropertyDescriptor(this, n); return p.writable && p.enumerable; }, this)",
         "true"},
        {"delete this.QL_initTexture && typeof QL_initTexture", "\"undefined\""},
    });
}

TEST_F(ScriptGlobals, OfferNoOtherWayOut) {
    for (const char* name : {"print", "alert", "console", "require", "module", "load", "readFile", "process"})
        EXPECT_EQ(eval("typeof " + std::string(name)), "\"undefined\"") << name;
}

TEST_F(ScriptGlobals, MayBeOverwrittenWithoutHarmToTheHost) {
    expectValues({{"QL_getTime = 5", "5"}, {"QL_getTime + 1", "6"}, {"typeof QL_getContextExtent()", "\"object\""}});
    addInstance();
    EXPECT_EQ(frame(2, 2, 8).size(), 16u);
}

TEST_F(ScriptGlobals, HoldTheTablesOfNamesWithTheirOwnNumbers) {
    expectValues({
        {"[QL_Type.FLOAT, QL_Type.ANGLE, QL_ParamFlags.RemoveScale]", "[1,12,32]"},
        {"[QL_GL.CLAMP, QL_GL.REPEAT]", "[10244,10245]"},  // not GL's own 0x2900 and 0x2901
        {"(QL_GL.REPEAT = 3, QL_GL.REPEAT)", "3"},
    });
}

}  // namespace
}  // namespace quillon::test
