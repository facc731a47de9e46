#include "entities/Context.h"

#include <cmath>

#include "package/BlobReader.h"
#include "support/GLTest.h"
#include "support/TestEffect.h"

namespace quillon::test {
namespace {

class ContextTest : public GLTest {
protected:
    void SetUp() override {
        GLTest::SetUp();
        entities.Setup();
    }
    void TearDown() override {
        entities.Clear();
        GLTest::TearDown();
    }
    // What QL_initParam does: a record lives from its id on.
    std::uint32_t declare(const std::string& name, std::uint32_t kind, float value) {
        const std::uint32_t id = entities.NewParameter(name, kind, "Label of " + name);
        entities.FindParameter(id).id = id;
        entities.FindParameter(id).setFloatAt(0, value);
        return id;
    }
    Context& entities = Context::Instance();
};

TEST_F(ContextTest, KeepsSlotZeroForTheSystemAndReusesTheLowestFreeOne) {
    EXPECT_EQ(entities.current, 0u);
    EXPECT_TRUE(entities.CurrentSequence().exists());
    EXPECT_EQ(entities.NewSequence(), 1u);
    EXPECT_EQ(entities.NewSequence(), 2u);
    EXPECT_EQ(entities.NewSequence(), 3u);
    entities.DeleteSequence(2);
    entities.DeleteSequence(1);
    EXPECT_EQ(entities.NewSequence(), 1u);
    EXPECT_EQ(entities.NewSequence(), 2u);
    EXPECT_EQ(entities.NewSequence(), 4u);
    for (const std::uint32_t none : {5u, 6u, 0xFFFFFFFFu}) entities.DeleteSequence(none);
    EXPECT_EQ(entities.NewSequence(), 5u);
    entities.DeleteSequence(0);
    EXPECT_FALSE(entities.CurrentSequence().exists());
    EXPECT_EQ(entities.NewSequence(), 0u) << "only its own Sequence keeps slot 0";
}

TEST_F(ContextTest, GivesANewSequenceTheValuesOfThatMoment) {
    const std::uint32_t id = declare("p", FLOAT, 1);
    EXPECT_EQ(entities.CurrentSequence().Count(), 0u) << "nothing was declared when slot 0 came to be";
    entities.NewSequence();
    entities.FindParameter(id).setFloatAt(0, 2);
    entities.NewSequence();
    for (const std::uint32_t slot : {1u, 2u}) {
        entities.current = slot;
        EXPECT_EQ(entities.FindParameter(id).floatAt(0), static_cast<float>(slot));
        EXPECT_EQ(&entities.FindParameter(id), &entities.CurrentSequence().At(0));
    }
    entities.FindParameter(id).setFloatAt(0, 9);
    entities.current = 0;
    EXPECT_EQ(entities.FindParameter(id).floatAt(0), 2.0f);
}

TEST_F(ContextTest, GivesTheErrorsOfAllShadersInTheirOrder) {
    const TestEffect effect(Files{{"good.frag", "void main() { gl_FragColor = vec4(1.0); }"}});
    BlobReader::Load(effect.module());
    EXPECT_EQ(entities.ShaderErrors(), "");
    const std::uint32_t first = entities.NewShader("gone", "");
    entities.NewShader("good", "");
    EXPECT_EQ(entities.ShaderErrors(), "Shader \"gone\"\nShader file not found or shader is empty!\n");
    const std::uint32_t third = entities.NewShader("na\xC3\xAFve", "");
    EXPECT_EQ(entities.ShaderErrors(),
              "Shader \"gone\"\nShader file not found or shader is empty!\n"
              "Shader \"na\xC3\xAFve\"\nShader file not found or shader is empty!\n");
    entities.Release(first);
    EXPECT_EQ(entities.FindShader(third).path, L"\\na\u00C3\u00AFve.frag");
    EXPECT_EQ(entities.NewShader("again", ""), first);
    EXPECT_EQ(entities.ShaderErrors().find("Shader \"again\""), 0u);
    entities.Release(first);
    entities.Release(third);
    EXPECT_EQ(entities.ShaderErrors(), "");
}

TEST_F(ContextTest, StoresAPixelAspectWithinItsBounds) {
    EXPECT_EQ(entities.scale, 1.0f);
    for (const auto& [given, stored] :
         {std::pair{0.01f, 0.01f}, {4.0f, 4.0f}, {0.0099999f, 1.0f}, {4.0000005f, 1.0f}, {NAN, 1.0f}}) {
        entities.SetExtent(640, 360, given);
        EXPECT_EQ(entities.scale, stored) << given;
    }
}

}  // namespace
}  // namespace quillon::test
