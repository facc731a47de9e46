#include "platform/ModuleResource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "host/ModuleLoading.h"
#include "platform/TemporaryPath.h"
#include "support/BuiltFiles.h"

namespace quillon::test {
namespace {

// A module of the test's own making, loaded: the carrier's image with these bytes behind it.
class LoadedModule {
public:
    explicit LoadedModule(const std::string& bytesBehindImage) {
        const std::filesystem::path path = folder.path() / "module.so";
        std::filesystem::copy_file(CarrierModule(), path);
        std::ofstream(path, std::ios::binary | std::ios::app) << bytesBehindImage;
        std::string reason;
        module = host::LoadModule(path, reason);
        if (!module) throw std::runtime_error(reason);
    }
    ~LoadedModule() { host::UnloadModule(module); }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    void* handle() const { return module; }

private:
    TemporaryFolder folder;
    void* module = nullptr;
};

// What makes a package of the bytes in front of it.
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

TEST(ModuleResourceTest, TellsAbsentEmptyAndPresentApart) {
    const auto imageBytes = static_cast<std::uint32_t>(std::filesystem::file_size(CarrierModule()));
    const struct {
        const char* name;
        std::string behindImage;
        std::optional<std::string> resource;
    } cases[] = {
        {"a package without a trailer", "package", std::nullopt},
        {"no bytes", Trailer(0), ""},
        {"some bytes", "package" + Trailer(7), "package"},
        {"one byte more than the file has", "package" + Trailer(imageBytes + 8), std::nullopt},
        {"far more than the file has", "package" + Trailer(0xFFFFFFFF), std::nullopt},
        {"a byte behind the trailer", "package" + Trailer(7) + "!", std::nullopt},
    };
    for (const auto& [name, behindImage, resource] : cases) {
        SCOPED_TRACE(name);
        const LoadedModule module(behindImage);
        EXPECT_EQ(ResourceOf(module.handle()), resource);
    }
}

TEST(ModuleResourceTest, LooksIntoTheProgramItselfWithoutAHandle) {
    EXPECT_EQ(ResourceOf(nullptr), std::nullopt);
}

}  // namespace
}  // namespace quillon::test
