#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "engine/IPlugin.h"

namespace quillon::test {
namespace {

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
