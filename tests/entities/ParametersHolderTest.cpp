#include "parameter/ParametersHolder.h"

#include <gtest/gtest.h>

#include <list>

#include "entities/Context.h"

namespace quillon::test {
namespace {

// A list of declarations to copy from.
class Source final : public ParametersHolder {
public:
    Parameter& add(std::uint32_t id, float value) {
        Parameter& parameter = declared.emplace_back();
        parameter.id = id;
        parameter.setFloatAt(0, value);
        return parameter;
    }
    std::uint32_t Count() override { return static_cast<std::uint32_t>(declared.size()); }
    Parameter& At(std::uint32_t index) override { return *std::next(declared.begin(), index); }

    std::list<Parameter> declared;
};

class Holder final : public ParametersHolder {};

TEST(ParametersHolder, CopiesInOrderAndForgetsWhatItHad) {
    Source source;
    Holder holder;
    EXPECT_EQ(holder.Count(), 0u);
    for (std::uint32_t i = 0; i < 100; ++i) source.add(0x1000001 + i, static_cast<float>(i));
    holder.CopyFrom(source);
    source.declared.front().setFloatAt(0, -1);
    ASSERT_EQ(holder.Count(), 100u);
    for (std::uint32_t i = 0; i < 100; ++i) {
        EXPECT_EQ(holder.At(i).floatAt(0), static_cast<float>(i));
        EXPECT_EQ(&holder.Find(0x1000001 + i), &holder.At(i));
    }
    source.declared.resize(2);
    holder.CopyFrom(source);
    EXPECT_EQ(holder.Count(), 2u);
    EXPECT_EQ(holder.At(0).floatAt(0), -1.0f);
    EXPECT_EQ(holder.Find(0x1000003).id, 0u);
}

TEST(ParametersHolder, FindsTheLaterOfTwoWithOneId) {
    Source source;
    source.add(0x1000001, 1);
    source.add(0x1000002, 2);
    source.add(0x1000001, 3);
    Holder holder;
    holder.CopyFrom(source);
    EXPECT_EQ(&holder.Find(0x1000001), &holder.At(2));
}

}  // namespace
}  // namespace quillon::test
