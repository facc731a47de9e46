#include "package/FileAccess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/TestEffect.h"

namespace quillon::test {
namespace {

using std::string_literals::operator""s;

// Disk mode, in a current folder of its own.
class FileAccessTest : public ::testing::Test {
protected:
    FileAccessTest() : before(std::filesystem::current_path()) {
        FileBytesHook = nullptr;
        FileTextHook = nullptr;
        std::filesystem::current_path(folder.path());
    }
    ~FileAccessTest() override { std::filesystem::current_path(before); }

private:
    TemporaryFolder folder;
    std::filesystem::path before;
};

TEST_F(FileAccessTest, ReadsFilesOfTheCurrentFolder) {
    const struct {
        const char* name;
        std::string content, text;
    } cases[] = {
        {"empty", "", ""},
        {"lone carriage returns", "\rone\r\r\ntwo\r", "\rone\r\ntwo\r"},
        {"a zero inside a line end", "ab\r\0\n"s, "ab\r"},
        {"an end-of-file mark",
         "ab\x1A"
         "cd\r\n",
         "ab"},
    };
    for (const auto& [name, content, text] : cases) {
        SCOPED_TRACE(name);
        std::ofstream("file.txt", std::ios::binary) << content;
        EXPECT_EQ(ReadFileText(L"file.txt"), text);
        const auto bytes = ReadFileBytes(L"file.txt");
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()), content);
    }
}

TEST_F(FileAccessTest, ReadsWhatCannotBeOpenedAsPopaOrNothing) {
    std::filesystem::create_directory("folder");
    for (const wchar_t* name : {L"absent.txt", L"folder", L"folder/absent.txt", L""}) {
        EXPECT_EQ(ReadFileText(name), "popa");
        EXPECT_TRUE(ReadFileBytes(name).empty());
    }
}

TEST_F(FileAccessTest, RefusesAFileBeyondThirtyOneBits) {
    std::ofstream("large.bin").close();
    std::filesystem::resize_file("large.bin", std::uintmax_t{1} << 31);  // a hole, it takes no room
    EXPECT_THROW(ReadFileBytes(L"large.bin"), std::length_error);
    EXPECT_THROW(ReadFileText(L"large.bin"), std::length_error);
}

}  // namespace
}  // namespace quillon::test
