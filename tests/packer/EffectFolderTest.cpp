#include "packer/EffectFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include "packer/FileError.h"
#include "platform/Utf8Path.h"
#include "support/TestEffect.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

void Write(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

TEST(EffectFolderTest, GivesItsFilesSortedWithoutTheHiddenOnes) {
    const TemporaryFolder folder;
    for (const char* name : {"fx.js", "b.frag", "Z.png", ".hidden", "a.frag", "\xC3\xA9.png"})
        Write(folder.path() / PathFromUtf8(name), std::string("of ") + name + '\0');
    fs::create_directory(folder.path() / ".git");
    Write(folder.path() / "empty", "");

    std::vector<std::string> names;
    for (const auto& [name, bytes] : ReadEffectFolder(folder.path())) {
        names.push_back(name);
        EXPECT_EQ(bytes.size(), name == "empty" ? 0 : name.size() + 4);
    }
    EXPECT_THAT(names, ::testing::ElementsAre("Z.png", "a.frag", "b.frag", "empty", "fx.js", "\xC3\xA9.png"));
}

struct RefusedCase {
    const char* name;
    std::function<void(const fs::path&)> spoil;
    const char* culprit;  // named by the message
};

class RefusedFolder : public ::testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedFolder, IsRefusedByName) {
    const TemporaryFolder parent;
    const fs::path folder = parent.path() / "effect";
    fs::create_directory(folder);
    Write(folder / "fx.js", "function setup() {}");
    GetParam().spoil(folder);
    try {
        ReadEffectFolder(folder);
        ADD_FAILURE() << "was taken";
    } catch (const FileError& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr(folder.generic_string()));
        EXPECT_THAT(error.what(), ::testing::HasSubstr(GetParam().culprit));
    }
}

const RefusedCase kRefusedCases[] = {
    {"absent", [](auto& folder) { fs::remove_all(folder); }, "no such folder"},
#if !defined(_WIN32)  // whose folders hold none of these
    {"dangling_link", [](auto& folder) { fs::create_symlink("nowhere", folder / "image.png"); }, "image.png"},
    {"no_file", [](auto& folder) { fs::create_symlink("/dev/null", folder / "null.png"); }, "null.png"},
#endif
};
INSTANTIATE_TEST_SUITE_P(Cases, RefusedFolder, ::testing::ValuesIn(kRefusedCases),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace quillon::test
