#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <random>

namespace quillon::test {

// The seed of a random test: another one each time, or that of GTEST_RANDOM_SEED, from 1 to 99999. It is printed at
// once, since a crash leaves no other trace.
inline unsigned Seed() {
    const auto given = static_cast<unsigned>(GTEST_FLAG_GET(random_seed));
    const unsigned seed = given != 0 ? given : std::random_device{}() % 99999 + 1;
    std::fprintf(stderr, "again with GTEST_RANDOM_SEED=%u\n", seed);
    return seed;
}

}  // namespace quillon::test
