#include <cstring>
#include <type_traits>

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
    const std::pair<std::uint32_t, const char*> kTexts[] = {
        {0, "A test"}, {1, "Test"}, {2, "TestId"}, {3, ""}, {0xFFFFFFFF, ""}};
    for (const auto& [which, text] : kTexts) EXPECT_EQ(identity(which), text) << which;
    EXPECT_EQ(engine.effectFlags(), 33554464u);
    EXPECT_EQ(engine.effectFlags2(), 5120u);
    EXPECT_EQ(version(), 0xC0000081u);
}

TEST_F(Identity, IsReadAtAStartWhileARestartReadsOnlyTheProgram) {
    start("var who = 'first'; function setup() {}");
    const Files other{{"fx.js", "var who = 'second'; function setup() {}"}, {"config.xml", "<FXNAME>Other</FXNAME>"}};
    const TestEffect effect(other);
    BlobReader::Load(effect.module());
    EXPECT_TRUE(engine.restartScript());
    EXPECT_EQ(eval("who"), "\"second\"");
    EXPECT_EQ(identity(1), "Test");
    start("var who = 'third'; function setup() {}", {other[1]});
    EXPECT_EQ(eval("who"), "\"third\"");
    EXPECT_EQ(identity(1), "Other");
    addInstance();
    EXPECT_EQ(frame(2, 2, 8).size(), 16u);
}

static_assert(!std::has_virtual_destructor_v<IPlugin>, "it would move the slots");

// A pointer to a virtual member holds the offset of its slot in bytes, plus one.
template <class Member>
std::size_t SlotOf(Member member) {
    std::size_t words[2];
    static_assert(sizeof member == sizeof words);
    std::memcpy(words, &member, sizeof words);
    return (words[0] - 1) / sizeof(void*);
}

TEST(Plugin, HasItsThirtyThreeOperationsInTheirSlots) {
    const std::size_t slots[] = {
        SlotOf(&IPlugin::init),           SlotOf(&IPlugin::restartScript),    SlotOf(&IPlugin::shutdown),
        SlotOf(&IPlugin::createSequence), SlotOf(&IPlugin::destroySequence),  SlotOf(&IPlugin::selectSequence),
        SlotOf(&IPlugin::reservedHook6),  SlotOf(&IPlugin::preRender),        SlotOf(&IPlugin::draw),
        SlotOf(&IPlugin::reservedHook9),  SlotOf(&IPlugin::updateUIFlags),    SlotOf(&IPlugin::parameterCount),
        SlotOf(&IPlugin::parameterInfo),  SlotOf(&IPlugin::parameterValue),   SlotOf(&IPlugin::setParameterValue),
        SlotOf(&IPlugin::setLayerPixels), SlotOf(&IPlugin::mapResult),        SlotOf(&IPlugin::unmapResult),
        SlotOf(&IPlugin::packedVersion),  SlotOf(&IPlugin::effectFlags),      SlotOf(&IPlugin::effectFlags2),
        SlotOf(&IPlugin::reservedHook21), SlotOf(&IPlugin::identityString),   SlotOf(&IPlugin::reservedHook23),
        SlotOf(&IPlugin::shaderErrors),   SlotOf(&IPlugin::isReady),          SlotOf(&IPlugin::lockGL),
        SlotOf(&IPlugin::unlockGL),       SlotOf(&IPlugin::reservedHook28),   SlotOf(&IPlugin::reservedHook29),
        SlotOf(&IPlugin::runOverlay),     SlotOf(&IPlugin::setContextExtent), SlotOf(&IPlugin::setInputOrigin),
    };
    ASSERT_EQ(std::size(slots), 33u);
    for (std::size_t i = 0; i < std::size(slots); ++i) EXPECT_EQ(slots[i], i);
}

}  // namespace
}  // namespace quillon::test
