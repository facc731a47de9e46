#include "platform/ModuleResource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "host/ModuleLoading.h"
#include "platform/TemporaryPath.h"
#include "support/BuiltFiles.h"

namespace quillon::test {
namespace {

// What makes a package of the bytes before it.
std::string Trailer(std::uint32_t packageBytes) {
    std::string trailer;
    for (int i = 0; i < 4; ++i) trailer.push_back(static_cast<char>(packageBytes >> (8 * i)));
    return trailer + "QuillonBLOB1";
}

std::optional<std::string> ResourceOf(void* module) {
    const auto bytes = ReadModuleResource(module);
    if (!bytes) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size());
}

TEST(ModuleResourceTest, IsAbsentEmptyOrPresent) {
    const auto imageBytes = static_cast<std::uint32_t>(std::filesystem::file_size(CarrierModule()));
    const struct {
        std::string afterImage;
        std::optional<std::string> resource;
    } kCases[] = {
        {"package", std::nullopt},
        {Trailer(0), ""},
        {"package" + Trailer(7), "package"},
        {"package" + Trailer(imageBytes + 8), std::nullopt},  // one byte more than the file has
        {"package" + Trailer(0xFFFFFFFF), std::nullopt},
        {"package" + Trailer(7) + "!", std::nullopt},
    };
    for (const auto& [afterImage, resource] : kCases) {
        const TemporaryFolder folder;
        const std::filesystem::path path = folder.path() / "module.so";
        std::filesystem::copy_file(CarrierModule(), path);
        std::ofstream(path, std::ios::binary | std::ios::app) << afterImage;
        std::string reason;
        void* const module = host::LoadModule(path, reason);
        ASSERT_TRUE(module) << reason;
        EXPECT_EQ(ResourceOf(module), resource) << ::testing::PrintToString(afterImage);
        host::UnloadModule(module);
    }
    EXPECT_EQ(ResourceOf(nullptr), std::nullopt) << "without a handle it is the program itself";
}

}  // namespace
}  // namespace quillon::test
