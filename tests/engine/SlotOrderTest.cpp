#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "engine/IPlugin.h"

namespace quillon::test {
namespace {

static_assert(!std::has_virtual_destructor_v<IPlugin>, "it would move the slots");

// A pointer to a virtual member holds the offset of its slot in bytes, plus one.
template <class Member>
std::size_t slotOf(Member member) {
    std::size_t words[2];
    static_assert(sizeof member == sizeof words);
    std::memcpy(words, &member, sizeof words);
    return (words[0] - 1) / sizeof(void*);
}

TEST(Plugin, HasItsThirtyThreeOperationsInTheirSlots) {
    const std::size_t slots[] = {
        slotOf(&IPlugin::init),           slotOf(&IPlugin::restartScript),    slotOf(&IPlugin::shutdown),
        slotOf(&IPlugin::createSequence), slotOf(&IPlugin::destroySequence),  slotOf(&IPlugin::selectSequence),
        slotOf(&IPlugin::reservedHook6),  slotOf(&IPlugin::preRender),        slotOf(&IPlugin::draw),
        slotOf(&IPlugin::reservedHook9),  slotOf(&IPlugin::updateUIFlags),    slotOf(&IPlugin::parameterCount),
        slotOf(&IPlugin::parameterInfo),  slotOf(&IPlugin::parameterValue),   slotOf(&IPlugin::setParameterValue),
        slotOf(&IPlugin::setLayerPixels), slotOf(&IPlugin::mapResult),        slotOf(&IPlugin::unmapResult),
        slotOf(&IPlugin::packedVersion),  slotOf(&IPlugin::effectFlags),      slotOf(&IPlugin::effectFlags2),
        slotOf(&IPlugin::reservedHook21), slotOf(&IPlugin::identityString),   slotOf(&IPlugin::reservedHook23),
        slotOf(&IPlugin::shaderErrors),   slotOf(&IPlugin::isReady),          slotOf(&IPlugin::lockGL),
        slotOf(&IPlugin::unlockGL),       slotOf(&IPlugin::reservedHook28),   slotOf(&IPlugin::reservedHook29),
        slotOf(&IPlugin::runOverlay),     slotOf(&IPlugin::setContextExtent), slotOf(&IPlugin::setInputOrigin),
    };
    ASSERT_EQ(std::size(slots), 33u);
    for (std::size_t i = 0; i < std::size(slots); ++i) EXPECT_EQ(slots[i], i);
}

}  // namespace
}  // namespace quillon::test
