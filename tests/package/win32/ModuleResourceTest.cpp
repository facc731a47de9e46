#include "platform/ModuleResource.h"

#include <gtest/gtest.h>

#include <string>

#include "host/ModuleLoading.h"
#include "support/BuiltFiles.h"
#include "support/TestEffect.h"

namespace quillon::test {
namespace {

TEST(ModuleResourceTest, DistinguishesAbsentEmptyAndPresent) {
    std::string reason;
    void* const carrier = host::LoadModule(CarrierModule(), reason);
    ASSERT_TRUE(carrier) << reason;
    EXPECT_FALSE(ReadModuleResource(carrier));
    host::UnloadModule(carrier);

    for (const std::size_t size : {0, 1, 7, 8, 4096, 1 << 20}) {
        const std::vector<std::byte> package(size, std::byte{0x5A});
        EXPECT_EQ(ReadModuleResource(TestModule(package).module()), package) << size;
    }
}

TEST(ModuleResourceTest, LooksIntoTheProgramItselfWithoutAHandle) {
    EXPECT_FALSE(ReadModuleResource(nullptr));
}

}  // namespace
}  // namespace quillon::test
