#include "cli/system/SharedMemory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <system_error>

#include "platform/TemporaryPath.h"

namespace quillon::test {

namespace {

using cli::SharedMemory;

TEST(SharedMemory, IsTheSameByItsNameWhileItIsKept) {
    auto made = std::make_unique<SharedMemory>(100000);
    EXPECT_EQ(made->bytes()[99999], std::byte{0});
    const SharedMemory found(made->name(), 100000);
    made->bytes()[99999] = std::byte{7};
    EXPECT_EQ(found.bytes()[99999], std::byte{7});
    EXPECT_THROW(SharedMemory(made->name(), 1000000), std::system_error) << "more than there is";

    std::set<std::string> names = {made->name()};
    made.reset();
    EXPECT_EQ(found.bytes()[99999], std::byte{7}) << "of a maker that has ended";
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(names.insert(SharedMemory(10).name()).second) << "a name twice";
}

TEST(SharedMemory, ThatIsNotThereIsAnError) {
    EXPECT_THROW(SharedMemory("/proc/self/fd/9999", 10), std::system_error);
    EXPECT_THROW(SharedMemory("", 10), std::system_error);
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "file";
    std::ofstream(file) << "longer than ten letters";
    EXPECT_THROW(SharedMemory(file.string(), 10), std::system_error) << "it could shrink";
}

}  // namespace

}  // namespace quillon::test
