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

TEST_F(ContextTest, HasNoCurrentSequenceOnAFreedSlot) {
    entities.current = entities.NewSequence();
    entities.CurrentSequence().time = 5;
    entities.DeleteSequence(1);
    entities.DeleteSequence(1);
    EXPECT_FALSE(entities.CurrentSequence().exists());
    EXPECT_EQ(entities.CurrentSequence().time, 0.0);
    entities.current = 99;
    EXPECT_FALSE(entities.CurrentSequence().exists());
    const std::uint32_t id = declare("p", FLOAT, 4);
    EXPECT_EQ(entities.FindParameter(id).floatAt(0), 4.0f);
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

TEST_F(ContextTest, ListsDeclarationsInTheOrderOfTheirIds) {
    const std::uint32_t first = declare("first", FLOAT, 0);
    declare("second", POPUP, 0);
    ASSERT_EQ(entities.Count(), 2u);
    EXPECT_EQ(entities.At(1).uniformName, "second");
    EXPECT_EQ(entities.At(1).choices, "0|1|2|3|4|5|6|7|8|9");
    EXPECT_EQ(entities.At(1).choiceCount, 10u);
    EXPECT_EQ(entities.At(1).min[0], -100.0f);
    EXPECT_EQ(entities.At(1).max[0], 100.0f);
    for (const std::uint32_t none : {2u, 3u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(entities.At(none).id, 0u);
    entities.Release(first);
    declare("third", FLOAT, 0);
    EXPECT_EQ(entities.At(0).uniformName, "third") << "a number used again comes first again";
}

TEST_F(ContextTest, TakesARecordForDeadUntilItHasItsId) {
    const std::uint32_t id = entities.NewParameter("p", 77, "P");
    EXPECT_EQ(entities.FindParameter(id).id, 0u);
    EXPECT_EQ(entities.FindParameter(id).kind, 77u);
    entities.current = entities.NewSequence();
    entities.FindParameter(id).id = id;
    EXPECT_EQ(&entities.FindParameter(id), &entities.At(0)) << "a copy without an id hides nothing";
}

TEST_F(ContextTest, ClearsOnceAndAnswersAllTheSame) {
    entities.NewTexture(2, 2, 8);
    declare("p", FLOAT, 1);
    entities.current = entities.NewSequence();
    entities.Clear();
    entities.Clear();
    EXPECT_EQ(entities.current, 1u);
    EXPECT_EQ(entities.Count(), 0u);
    EXPECT_EQ(entities.At(0).id, 0u);
    EXPECT_FALSE(entities.CurrentSequence().exists());
    EXPECT_FALSE(entities.FindTexture(0x4000001).textureName);
    EXPECT_EQ(entities.NewTexture(2, 2, 8), 0u);
    entities.NewSequence();  // an instance from before there is a script
    EXPECT_EQ(entities.NewShader("s", "void main() {}"), 0u);
    EXPECT_EQ(entities.ShaderErrors(), "");
    entities.Setup();
    EXPECT_EQ(entities.current, 0u);
    EXPECT_EQ(entities.NewSequence(), 1u) << "slot 0 is the system's again, and the only one";
    EXPECT_EQ(entities.NewTexture(2, 2, 8), 0x4000001u);
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
