#include "support/EngineTest.h"

namespace quillon::test {
namespace {

// The whole API in the order in which its names come to exist.
const char* const kApi =
    R"(["QL_initParam","QL_getParamValue","QL_setParamValue","QL_setParamMinMax","QL_setParamChoices",)"
    R"("QL_setParamPrecision","QL_setParamEnabled","QL_setParamFlags","QL_getParamFlags","QL_initRenderTarget",)"
    R"("QL_blitRenderTarget","QL_getSurfaceDim","QL_getSequenceRT","QL_getSequenceTexture","QL_initShader",)"
    R"("QL_setShaderParam","QL_getShaderParamType","QL_renderShader","QL_setShaderParamVal","QL_getShaderError",)"
    R"("QL_initTexture","QL_setTextureParam","QL_initSurface","QL_textureToSurface","QL_surfaceToTexture",)"
    R"("QL_surfaceQuantize","QL_surfaceCopyTo","QL_getTime","QL_release","QL_setOutputExtent",)"
    R"("QL_getContextExtent","QL_getInputOrigin"])";

class ScriptGlobals : public EngineTest {
protected:
    void SetUp() override { start("function setup() {} function draw() {}"); }
};

TEST_F(ScriptGlobals, AreTheApiInBindingOrderAndOrdinaryProperties) {
    EXPECT_EQ(eval("Object.keys(this).filter(function (n) { return /^QL_/.test(n) && typeof this[n] == 'function'; },"
                   " this)"),
              kApi);
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

TEST_F(ScriptGlobals, HoldTheTablesOfNamesWithTheirOwnNumbers) {
    expectValues({
        {"[QL_Type.FLOAT, QL_Type.ANGLE, QL_ParamFlags.RemoveScale]", "[1,12,32]"},
        {"[QL_GL.CLAMP, QL_GL.REPEAT]", "[10244,10245]"},  // not GL's own 0x2900 and 0x2901
        {"(QL_GL.REPEAT = 3, QL_GL.REPEAT)", "3"},
    });
}

}  // namespace
}  // namespace quillon::test
