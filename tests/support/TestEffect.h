#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace quillon::test {

using Files = std::vector<std::pair<std::string, std::string>>;  // name, content

// A folder of its own for one test, removed at the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return folder; }

private:
    std::filesystem::path folder;
};

// An effect as a loaded module: the files packed behind a copy of the template, which is the carrier unless another
// is given. Found by its handle or by its file.
class TestEffect {
public:
    explicit TestEffect(const Files& files, const std::filesystem::path& templateModule = QUILLON_CARRIER);
    ~TestEffect();
    TestEffect(const TestEffect&) = delete;
    TestEffect& operator=(const TestEffect&) = delete;

    void* module() const { return handle; }
    std::filesystem::path file() const { return folder.path() / "effect.so"; }

private:
    TemporaryFolder folder;
    void* handle = nullptr;
};

}  // namespace quillon::test
