#include <gmock/gmock.h>

#include <cmath>
#include <list>

#include "gpu/RenderTarget.h"
#include "gpu/Shader.h"
#include "support/GLTest.h"

namespace quillon::test {
namespace {

class Controls final : public ParametersHolder {
public:
    void declare(const std::string& name, std::uint32_t kind) {
        Parameter& control = declared.emplace_back();
        control.uniformName = name;
        control.kind = kind;
    }
    std::uint32_t Count() override { return static_cast<std::uint32_t>(declared.size()); }
    Parameter& At(std::uint32_t index) override { return *std::next(declared.begin(), index); }

private:
    std::list<Parameter> declared;
};

class UniformTest : public GLTest {
protected:
    void build(const std::string& source) {
        shader.initFromName("s", source, L"", controls);
        ASSERT_EQ(shader.errorText, "");
    }
    Parameter& uniform(const std::string& name) { return shader.parameterByName(name); }
    // The color that the shader gives, R, G, B, A.
    std::vector<float> color() {
        target.initTarget(1, 1, 32);
        target.bindTarget({});
        if (shader.bind()) shader.render(false);
        const auto argb = ReadBack<float>(target);
        return {argb[1], argb[2], argb[3], argb[0]};
    }
    using Color = std::vector<float>;
    Controls controls;
    Shader shader;
    RenderTarget target;
};

TEST_F(UniformTest, TakesItsKindFromTheFirstControlOfItsName) {
    controls.declare("turn", ANGLE);
    controls.declare("turn", POINT2D);
    controls.declare("wide", POINT2D);
    controls.declare("many[0]", FLOAT);
    controls.declare("Case", BOOL);
    build(
        "uniform float turn, many[2], Case1; uniform vec4 wide;\n"
        "void main() { gl_FragColor = vec4(turn, many[1], Case1, 1.0) + wide; }");
    EXPECT_EQ(uniform("turn").kind, ANGLE);
    EXPECT_EQ(uniform("wide").kind, POINT2D);
    EXPECT_EQ(uniform("many[0]").kind, FLOAT) << "even what could not be fed by its own type";
    EXPECT_EQ(uniform("Case1").kind, FLOAT);
    uniform("turn").setFloatAt(0, 45);
    for (int i = 0; i < 4; ++i) uniform("wide").setFloatAt(i, 100);
    EXPECT_EQ(color(), (Color{45, 0, 0, 1})) << "a vec4 does not take what is sent for two floats";
    EXPECT_EQ(glGetError(), GLenum{GL_INVALID_OPERATION});
}

TEST_F(UniformTest, SendsEveryKindAtEveryDraw) {
    build(
        "uniform float f, one[1]; uniform vec2 v2; uniform vec3 v3; uniform vec4 v4; uniform bool b; uniform int i;\n"
        "void main() { gl_FragColor = b ? vec4(f, v2.y, v3.z, v4.w) : vec4(float(i), v2.x, v3.x, one[0]); }");
    const auto set = [&](const char* name, std::initializer_list<float> values) {
        int i = 0;
        for (const float value : values) uniform(name).setFloatAt(i++, value);
    };
    set("f", {1.5f});
    set("one[0]", {-2});
    set("v2", {3, 4});
    set("v3", {5, 6, 7});
    set("v4", {8, 9, 10, 11});
    uniform("i").setIntValue(-12);
    EXPECT_EQ(color(), (Color{-12, 3, 5, -2}));
    uniform("b").setIntValue(1);
    EXPECT_EQ(color(), (Color{1.5f, 4, 7, 11}));
    ASSERT_TRUE(shader.bind());
    glUniform1f(shader.uniformLocation("f"), 99);
    EXPECT_EQ(color()[0], 1.5f) << "`changed` or not, the record's value is what counts";
}

TEST_F(UniformTest, WritesNothingToUnfedKinds) {
    controls.declare("picture", TEXTURE);
    controls.declare("way", PATH);
    controls.declare("group", GROUP_START);
    build(
        "uniform float picture, way, group, list[2];\n"
        "void main() { gl_FragColor = vec4(way + picture, group, list[0], list[1]); }");
    ASSERT_TRUE(shader.bind());
    const std::pair<const char*, float> kKept[] = {
        {"picture", 5}, {"way", 2}, {"group", 3}, {"list[0]", 4}, {"list[1]", 5}};
    for (const auto& [name, value] : kKept) glUniform1f(shader.uniformLocation(name), value);
    EXPECT_EQ(color(), (Color{7, 3, 4, 5})) << "GL still has what was written past the records";
}

TEST_F(UniformTest, HandsOutUnitsByIndexWithTheExtentsOfTheirTextures) {
    build(
        "uniform vec4 Texture0Params, s_Texture0Params, Texture1Params, s_Texture1Params, texture0Params;\n"
        "uniform sampler2D a; uniform sampler2D b; uniform int which;\n"
        "void main() { gl_FragColor = texture2D(a, vec2(0.5)) + texture2D(b, vec2(0.5)) + texture0Params;\n"
        "  if (which == 0) gl_FragColor = Texture0Params; if (which == 1) gl_FragColor = s_Texture0Params;\n"
        "  if (which == 2) gl_FragColor = Texture1Params; if (which == 3) gl_FragColor = s_Texture1Params;\n"
        "  if (which == 4) gl_FragColor = texture0Params; }");
    const bool aFirst = shader.parameterIndex("a") < shader.parameterIndex("b");
    const char* const first = aFirst ? "a" : "b";
    const char* const second = aFirst ? "b" : "a";
    Texture small, large;
    small.initTexture(4, 2, 8, true);
    large.initTexture(16, 8, 32, true);
    uniform(first).setWordValue(small.textureName.get());
    uniform(second).setWordValue(large.textureName.get());
    const Color ofSmall = {4, 2, 0.25f, 0.5f}, ofLarge = {16, 8, 0.0625f, 0.125f};
    const Color expected[] = {ofSmall, ofSmall, ofLarge, ofLarge, {0, 0, 0, 0}};
    for (int which = 0; which < 5; ++which) {
        uniform("which").setIntValue(which);
        EXPECT_EQ(color(), expected[which]) << which;
        EXPECT_EQ(Integer(GL_ACTIVE_TEXTURE), GL_TEXTURE1);
        EXPECT_EQ(Integer(GL_TEXTURE_BINDING_2D), static_cast<GLint>(large.textureName.get())) << "both stay bound";
        GLint unit = -1;
        glGetUniformiv(shader.program.get(), shader.uniformLocation(second), &unit);
        EXPECT_EQ(unit, 1);
        glActiveTexture(GL_TEXTURE0);
        EXPECT_EQ(Integer(GL_TEXTURE_BINDING_2D), static_cast<GLint>(small.textureName.get()));
    }
}

TEST_F(UniformTest, GivesInfinitiesForTheExtentsOfNoTexture) {
    build(
        "uniform vec4 Texture0Params; uniform sampler2D a;\n"
        "void main() { gl_FragColor = Texture0Params + texture2D(a, vec2(0.5)); }");
    const Color extents = color();
    EXPECT_EQ(extents[0], 0.0f);
    EXPECT_EQ(extents[1], 0.0f);
    EXPECT_TRUE(std::isinf(extents[2]) && std::isinf(extents[3]));
}

}  // namespace
}  // namespace quillon::test
