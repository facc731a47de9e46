#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/TemporaryPath.h"
#include "support/BuiltFiles.h"

namespace quillon::test {

using Files = std::vector<std::pair<std::string, std::string>>;  // name, content

// The files as a package, scrambled.
std::vector<std::byte> ScrambledPackage(const Files& files);

// A copy of the template, which is the carrier unless another is given, with `scrambledPackage` inside, loaded. Found
// by its handle or by its file.
class TestModule {
public:
    explicit TestModule(std::span<const std::byte> scrambledPackage,
                        const std::filesystem::path& templateModule = CarrierModule());
    ~TestModule();
    TestModule(const TestModule&) = delete;
    TestModule& operator=(const TestModule&) = delete;

    void* module() const { return handle; }
    std::filesystem::path file() const { return folder.path() / "effect.module"; }

private:
    TemporaryFolder folder;
    void* handle = nullptr;
};

// An effect as a loaded module.
class TestEffect : public TestModule {
public:
    explicit TestEffect(const Files& files, const std::filesystem::path& templateModule = CarrierModule())
        : TestModule(ScrambledPackage(files), templateModule) {}
};

}  // namespace quillon::test
