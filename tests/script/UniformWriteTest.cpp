#include <cmath>
#include <limits>

#include "entities/Context.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

class UniformWrite : public EngineTest {
protected:
    void SetUp() override {
        start(
            "var s, turn, flat, layer, target;\n"
            "function setup() {\n"
            "  turn = QL_initParam('turn', QL_Type.ANGLE, 'Turn'); layer = QL_initParam('pic', QL_Type.LAYER, 'P');\n"
            "  QL_initParam('ghost', QL_Type.TEXTURE, 'Ghost');\n"
            "  target = QL_initRenderTarget(2, 2, 8); s = QL_initShader('all');\n"
            "  flat = QL_initParam('f', QL_Type.COLOR, 'Of another kind'); QL_setParamValue(turn, 90);\n"
            "}\nfunction draw() {}\n",
            {{"all.frag",
              "uniform float f, turn;\nuniform vec2 v2;\nuniform vec3 v3;\nuniform vec4 v4;\nuniform bool b;\n"
              "uniform int i;\nuniform sampler2D pic, ghost;\nuniform mat4 m;\n"
              "void main() { gl_FragColor = texture2D(pic, v2) + texture2D(ghost, v2) + vec4(v3, f + turn);\n"
              "  gl_FragColor += m * v4 * float(i); if (b) discard; }"}});
        addInstance();
        ASSERT_EQ(shaderErrors(), "");
    }
    Parameter& uniform(const std::string& name) {
        return Context::Instance().FindShader(0x2000001).parameterByName(name);
    }
    std::string write(const std::string& name, const std::string& value) {
        return eval("QL_setShaderParamVal(s, '" + name + "', " + value + ")");
    }
};

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

TEST_F(UniformWrite, StoresFloats) {
    const struct {
        const char* uniform;
        const char* value;
        std::vector<float> stored;
    } kCases[] = {
        {"f", "1.5", {1.5f}},
        {"f", "0.1", {0.1f}},
        {"f", "0.1 + 1e-12", {0.1f}},  // the same once it is a float
        {"f", "undefined", {kNaN}},
        {"f", "0", {0.0f}},
        {"f", "-0", {0.0f}},
        {"turn", "30", {30.0f}},
        {"v3", "[1, 2, 3]", {1, 2, 3}},
        {"v3", "[1, 2, NaN]", {1, 2, kNaN}},
        {"v2", "[6, '8']", {6, 8}},
        {"v4", "[1, 2, 3, 5]", {1, 2, 3, 5}},
    };
    for (const auto& [name, value, stored] : kCases) {
        SCOPED_TRACE(std::string(name) + " = " + value);
        EXPECT_EQ(write(name, value), "true");
        for (std::size_t i = 0; i < stored.size(); ++i) {
            const float is = uniform(name).floatAt(static_cast<int>(i));
            if (std::isnan(stored[i]))
                EXPECT_TRUE(std::isnan(is));
            else
                EXPECT_EQ(is, stored[i]);
            EXPECT_FALSE(is == 0 && std::signbit(is)) << "a negative zero over a zero is no change";
        }
    }
}

TEST_F(UniformWrite, StoresIntegersCutTowardZero) {
    const struct {
        const char* value;
        std::int32_t stored;
    } kCases[] = {{"5.9", 5},
                  {"-5.9", -5},
                  {"NaN", std::numeric_limits<std::int32_t>::min()},
                  {"1e99", std::numeric_limits<std::int32_t>::min()}};
    for (const char* name : {"i", "b"})
        for (const auto& [value, stored] : kCases) {
            SCOPED_TRACE(std::string(name) + " = " + value);
            EXPECT_EQ(write(name, value), "true");
            EXPECT_EQ(uniform(name).intValue(), stored);
        }
}

TEST_F(UniformWrite, LeavesAllAsItWasForTheMarkAndForWhatDoesNotFit) {
    for (const auto& [name, value] :
         std::initializer_list<std::pair<const char*, const char*>>{{"f", "-12345678"},
                                                                    {"f", "-12345678.3"},
                                                                    {"i", "-12345678.9"},
                                                                    {"v3", "[1, 2]"},
                                                                    {"v3", "5"},
                                                                    {"v4", "[1, 2, 3, 4, 5]"},
                                                                    {"v2", "{0: 1, 1: 2, length: 2}"},
                                                                    {"m", "[1, 2, 3, 4]"},
                                                                    {"ghost", "target"}}) {
        uniform(name).setWordValue(0x42280000);
        EXPECT_EQ(write(name, value), "true");
        EXPECT_EQ(uniform(name).wordValue(), 0x42280000u) << name << " = " << value;
    }
    EXPECT_EQ(write("none", "1"), "true");
    EXPECT_EQ(eval("[QL_setShaderParamVal(0, 'f', 1), QL_setShaderParamVal(0x2000099, 'f', 1),"
                   " QL_setShaderParamVal(target, 'f', 1), QL_setShaderParamVal()]"),
              "[false,false,false,false]");
}

TEST_F(UniformWrite, FeedsASamplerFromAnythingWithATexture) {
    eval("(own = QL_initRenderTarget(3, 3, 8), QL_release(own), dead = own, 0)");
    Context& entities = Context::Instance();
    const std::uint32_t ofTarget = entities.FindRenderTarget(0x3000001).textureName.get();
    const std::uint32_t ofLayer = entities.FindTexture(0x4000001).textureName.get();
    ASSERT_TRUE(ofTarget != 0 && ofLayer != 0 && ofTarget != ofLayer);
    const std::initializer_list<std::pair<const char*, std::uint32_t>> kCases = {
        {"target", ofTarget}, {"dead", 0},        {"QL_getParamValue(layer)", ofLayer}, {"turn", 0}, {"layer", ofLayer},
        {"undefined", 0},     {"layer", ofLayer}, {"QL_initSurface(2, 2, 8)", 0}};
    for (const auto& [id, name] : kCases) {
        EXPECT_EQ(write("pic", id), "true");
        EXPECT_EQ(uniform("pic").wordValue(), name) << id;
    }
}

TEST_F(UniformWrite, CopiesAControlsValueOnlyToItsOwnKind) {
    expectValues({
        {"QL_setShaderParam(s, turn)", "true"},
        {"QL_setShaderParamVal(s, 'f', 4) && QL_setShaderParam(s, flat)", "true"},  // a COLOR to a float
        {"QL_setShaderParam(s, QL_initParam('nobody', 1, ''))", "true"},
        {"[QL_setShaderParam(s, s), QL_setShaderParam(turn, turn), QL_setShaderParam(s, 0x10000FF),"
         " QL_setShaderParam(0x2000099, turn), QL_setShaderParam(s, 67108865), QL_setShaderParam()]",
         "[false,false,false,false,false,false]"},
    });
    EXPECT_EQ(uniform("turn").floatAt(0), 90.0f);
    EXPECT_EQ(uniform("f").floatAt(0), 4.0f);
}

}  // namespace
}  // namespace quillon::test
