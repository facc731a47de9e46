#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/HostSession.h"
#include "support/Pixels.h"
#include "support/TestEffect.h"

namespace quillon::prove {

// Tints the input by the control `v`, host index 1, and spreads it across and down through two targets that it makes.
test::Files ThreePasses();

// The module with an effect inside, loaded as a host loads it.
class LoadedEffect : public test::TestEffect {
public:
    explicit LoadedEffect(const test::Files& files) : TestEffect(files, test::TemplateModule()) {}
    host::EffectModule effect() const { return host::EffectModule(file()); }
};

// A host that keeps no records, for long runs.
host::HostSettings Unrecorded(host::Route route = host::Route::smart,
                              host::HostKind kind = host::HostKind::afterEffects);

// Tight rows of values that a host can send, in an order that repeats nowhere.
test::Bytes Noise(A_long width, A_long height, int depth, std::uint32_t seed);

std::shared_ptr<host::World> WorldOf(const host::HostSession& session, A_long width, A_long height, int depth,
                                     std::uint32_t seed);

// One frame by this route: the output's pixels. Throws when the effect answers with an error, or when the host has
// something to complain of.
test::Bytes RenderedBytes(host::HostInstance& instance, const host::FrameRequest& request, host::Route route);

}  // namespace quillon::prove
