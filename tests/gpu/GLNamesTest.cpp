#include "gpu/GLNames.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace quillon::test {
namespace {

std::vector<std::uint32_t> deleted;
void RecordDelete(std::uint32_t name) {
    deleted.push_back(name);
}
using Name = GLName<RecordDelete>;
static_assert(!std::is_copy_constructible_v<Name> && !std::is_copy_assignable_v<Name>);

class GLNames : public ::testing::Test {
protected:
    void SetUp() override { deleted.clear(); }
    using List = std::vector<std::uint32_t>;
};

TEST_F(GLNames, MoveWithoutEnding) {
    {
        Name first(5);
        Name second(std::move(first));
        EXPECT_EQ(first.get(), 0u);
        EXPECT_EQ(second.get(), 5u);
        Name& itself = second;
        second = std::move(itself);
        EXPECT_EQ(second.get(), 5u);
        EXPECT_TRUE(deleted.empty());
    }
    EXPECT_EQ(deleted, List{5});
}

TEST_F(GLNames, EndAtOnceWhenReplaced) {
    Name first(5), second(6);
    first = std::move(second);
    EXPECT_EQ(deleted, List{5});
    EXPECT_EQ(first.get(), 6u);
    first.reset(7);
    EXPECT_EQ(deleted, (List{5, 6}));
    first.reset(7);
    EXPECT_EQ(deleted, (List{5, 6})) << "a name does not replace itself";
    first.reset();
    first.reset();
    EXPECT_EQ(deleted, (List{5, 6, 7}));
}

}  // namespace
}  // namespace quillon::test
