#include "entities/EntityFactory.h"

#include <gtest/gtest.h>

#include <list>
#include <random>
#include <set>

#include "parameter/ParametersHolder.h"

namespace quillon::test {
namespace {

struct Probe {
    int number = 0;
};
using ProbeFactory = EntityFactory<Probe, 0x9000000>;

TEST(EntityFactory, GivesTheLowestFreeNumberFirst) {
    ProbeFactory factory;
    std::set<std::uint32_t> living;
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
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

// A list of declarations to copy from.
class Source final : public ParametersHolder {
public:
    std::uint32_t Count() override { return static_cast<std::uint32_t>(declared.size()); }
    Parameter& At(std::uint32_t index) override { return *std::next(declared.begin(), index); }
    std::list<Parameter> declared;
};

class Holder final : public ParametersHolder {};

TEST(ParametersHolder, CopiesInOrderAndForgetsWhatItHad) {
    Source source;
    Holder holder;
    for (std::uint32_t i = 0; i < 100; ++i) {
        Parameter& parameter = source.declared.emplace_back();
        parameter.id = 0x1000001 + i;
        parameter.setFloatAt(0, static_cast<float>(i));
    }
    holder.CopyFrom(source);
    source.declared.front().setFloatAt(0, -1);
    ASSERT_EQ(holder.Count(), 100u);
    for (std::uint32_t i = 0; i < 100; ++i) {
        EXPECT_EQ(holder.At(i).floatAt(0), static_cast<float>(i));
        EXPECT_EQ(&holder.Find(0x1000001 + i), &holder.At(i));
    }
    source.declared.resize(2);
    source.declared.back().id = 0x1000001;
    holder.CopyFrom(source);
    EXPECT_EQ(holder.Count(), 2u);
    EXPECT_EQ(&holder.Find(0x1000001), &holder.At(1)) << "the later of two with one id";
    EXPECT_EQ(holder.Find(0x1000003).id, 0u);
}

}  // namespace
}  // namespace quillon::test
