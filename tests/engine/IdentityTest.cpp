#include "package/BlobReader.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

class Identity : public EngineTest {
protected:
    std::string identity(std::uint32_t which) {
        std::string text = "from before";
        std::string& returned = engine.identityString(text, which);
        EXPECT_EQ(&returned, &text);
        return text;
    }
    std::uint32_t version() {
        std::uint32_t word = 99;
        EXPECT_EQ(engine.packedVersion(&word), &word);
        return word;
    }
};

TEST_F(Identity, IsWhatTheConfigSays) {
    start("function setup() {}");
    EXPECT_EQ(identity(0), "A test");
    EXPECT_EQ(identity(1), "Test");
    EXPECT_EQ(identity(2), "TestId");
    EXPECT_EQ(identity(3), "");
    EXPECT_EQ(identity(7), "");
    EXPECT_EQ(identity(0xFFFFFFFF), "");
    EXPECT_EQ(engine.effectFlags(), 33554464u);
    EXPECT_EQ(engine.effectFlags2(), 5120u);
    EXPECT_EQ(version(), 0xC0000081u);
}

TEST_F(Identity, IsReadOnceWhileARestartReadsTheProgramAnew) {
    start("var who = 'first'; function setup() {}");
    const TestEffect other(
        Files{{"fx.js", "var who = 'second'; function setup() {}"}, {"config.xml", "<FXNAME>Other</FXNAME>"}});
    BlobReader::Load(other.module());
    EXPECT_TRUE(engine.restartScript());
    EXPECT_EQ(eval("who"), "\"second\"");
    EXPECT_EQ(identity(1), "Test");
}

TEST_F(Identity, ChangesWithASecondStart) {
    start("var who = 'first'; function setup() {}");
    ASSERT_TRUE(engine.lockGL());
    engine.unlockGL();
    start("var who = 'second'; function setup() {}", {{"config.xml", "<FXNAME>Other</FXNAME>"}});
    EXPECT_EQ(eval("who"), "\"second\"");
    EXPECT_EQ(identity(1), "Other");
    addInstance();
    EXPECT_EQ(frame(2, 2, 8).size(), 16u);
}

}  // namespace
}  // namespace quillon::test
