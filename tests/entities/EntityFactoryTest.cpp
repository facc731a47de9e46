#include "entities/EntityFactory.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "support/Seed.h"

namespace quillon::test {
namespace {

struct Probe {
    int number = 0;
};
using ProbeFactory = EntityFactory<Probe, 0x9000000>;

TEST(EntityFactory, GivesTheLowestFreeNumberFirst) {
    ProbeFactory factory;
    std::set<std::uint32_t> living;
    std::mt19937 random(test::Seed());
    for (int step = 0; step < 2000; ++step) {
        if (random() % 5 < 3) {
            std::uint32_t lowest = 0x9000001;
            while (living.count(lowest)) ++lowest;
            ASSERT_EQ(factory.Allocate(), lowest) << "at step " << step;
            living.insert(lowest);
        } else {
            const std::uint32_t id = 0x9000001 + random() % 200;  // one that lives, or not
            factory.Erase(id);
            living.erase(id);
            ASSERT_EQ(factory.Find(id), nullptr);
        }
    }
    ASSERT_EQ(factory.All().size(), living.size());
    EXPECT_EQ(factory.All().begin()->first, *living.begin());
}

TEST(EntityFactory, KeepsAnEntityWhereItIsAndStartsEachOneAnew) {
    ProbeFactory factory;
    const std::uint32_t first = factory.Allocate();
    Probe* const place = factory.Find(first);
    place->number = 7;
    for (int i = 0; i < 1000; ++i) factory.Allocate();
    EXPECT_EQ(factory.Find(first), place);
    factory.Erase(first);
    factory.Erase(first);
    EXPECT_EQ(factory.Allocate(), first);
    EXPECT_EQ(factory.Find(first)->number, 0);
}

}  // namespace
}  // namespace quillon::test
