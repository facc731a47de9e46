#include "packer/EffectFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include "packer/FileError.h"
#include "packer/WholeFile.h"
#include "platform/Utf8Path.h"
#include "support/TestEffect.h"

#if !defined(_WIN32)
#include <sys/stat.h>
#endif

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

void Write(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

TEST(EffectFolderTest, GivesItsFilesSortedWithoutHiddenOnesAndThoseOfEditors) {
    const TemporaryFolder folder;
    for (const char* name :
         {"fx.js", "b.frag", "Z.png", ".hidden", "quillon.d.ts", "jsconfig.json", "a.frag", "\xC3\xA9.png"})
        Write(folder.path() / PathFromUtf8(name), std::string("of ") + name + '\0');
    fs::create_directory(folder.path() / ".git");
    Write(folder.path() / "empty", "");

    std::vector<std::string> names;
    for (const auto& [name, bytes] : ReadEffectFiles(ListEffectFolder(folder.path()))) {
        names.push_back(name);
        EXPECT_EQ(bytes.size(), name == "empty" ? 0 : name.size() + 4);
    }
    EXPECT_THAT(names, ::testing::ElementsAre("Z.png", "a.frag", "b.frag", "empty", "fx.js", "\xC3\xA9.png"));
}

TEST(EffectFolderTest, IsRefusedByItsListingWithTheCulpritsName) {
    const struct {
        const char* name;
        std::function<void(const fs::path& folder)> spoil;
        const char* words;
    } kRows[] = {
        {"absent", [](auto& folder) { fs::remove_all(folder); }, "effect: no such folder"},
        {"a folder", [](auto& folder) { fs::create_directory(folder / "sub"); }, "effect/sub: a folder"},
        {"4 GiB in all",  // sparse: nothing reads them
         [](auto& folder) {
             for (const char* name : {"a", "b"}) {
                 Write(folder / name, "");
                 fs::resize_file(folder / name, 0x80000000);
             }
         },
         "effect: its files have 4294967316 bytes"},
#if !defined(_WIN32)  // whose folders hold none of these
        {"a link to nothing", [](auto& folder) { fs::create_symlink("nowhere", folder / "a.png"); },
         "effect/a.png: a link that leads out"},
        {"a link to a file elsewhere",
         [](auto& folder) {
             Write(folder / "../effect2", "beside, with a name that begins alike");
             fs::create_symlink("../effect2", folder / "a.png");
         },
         "effect/a.png: a link that leads out"},
        {"a pipe", [](auto& folder) { mkfifo((folder / "pipe").c_str(), 0600); }, "effect/pipe: a device or a pipe"},
#endif
    };
    for (const auto& [name, spoil, words] : kRows) {
        const TemporaryFolder parent;
        const fs::path folder = parent.path() / "effect";
        fs::create_directory(folder);
        Write(folder / "fx.js", "function setup() {} ");
        spoil(folder);
        try {
            ListEffectFolder(folder);
            ADD_FAILURE() << name << " was taken";
        } catch (const FileError& error) {
            EXPECT_THAT(error.what(), ::testing::HasSubstr(words)) << name;
        }
    }
}

#if !defined(_WIN32)
TEST(EffectFolderTest, TakesLinksToItsOwnFiles) {
    const TemporaryFolder parent;
    fs::create_directory(parent.path() / "effect");
    fs::create_directory_symlink("effect", parent.path() / "link");
    Write(parent.path() / "effect/a.frag", "a");
    fs::create_symlink("a.frag", parent.path() / "effect/b.frag");
    const auto files = ReadEffectFiles(ListEffectFolder(parent.path() / "link"));
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].bytes, files[1].bytes);
}

TEST(WholeFileTest, ReadsPipesToTheirEndAndEndlessDevicesToTheBound) {
    const TemporaryFolder folder;
    const std::string command = "head -c 200000 /dev/zero > '" + (folder.path() / "pipe").string() + "' &";
    mkfifo((folder.path() / "pipe").c_str(), 0600);
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(ReadWholeFile(folder.path() / "pipe").size(), 200000u);
    EXPECT_THROW(ReadWholeFile("/dev/zero", 1 << 20), FileError);
}
#endif

}  // namespace
}  // namespace quillon::test
