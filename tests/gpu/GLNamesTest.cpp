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

TEST(GLNames, EndOnceWhenReplacedAndNotWhenMoved) {
    using List = std::vector<std::uint32_t>;
    deleted.clear();
    {
        Name first(5), second(std::move(first)), third(6);
        EXPECT_EQ(first.get(), 0u);
        Name& itself = second;
        second = std::move(itself);
        EXPECT_EQ(second.get(), 5u);
        EXPECT_EQ(deleted, List{});
        second = std::move(third);
        EXPECT_EQ(deleted, List{5});
        second.reset(7);
        second.reset(7);
        EXPECT_EQ(deleted, (List{5, 6})) << "a name does not replace itself";
    }
    EXPECT_EQ(deleted, (List{5, 6, 7}));
}

}  // namespace
}  // namespace quillon::test
