#include "package/FileAccess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/TestEffect.h"

namespace quillon::test {
namespace {

using std::string_literals::operator""s;

// Disk mode, in a fresh current folder.
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
        std::string content, text;
    } cases[] = {
        {"", ""},
        {"\rone\r\r\ntwo\r", "\rone\r\ntwo\r"},
        {"ab\r\0\n"s, "ab\r"},
        {"ab\032cd\r\n", "ab"},  // an end-of-file mark
    };
    for (const auto& [content, text] : cases) {
        std::ofstream("file.txt", std::ios::binary) << content;
        EXPECT_EQ(ReadFileText(L"file.txt"), text) << ::testing::PrintToString(content);
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
    // Beyond 31 bits.
    std::ofstream("large.bin").close();
    std::filesystem::resize_file("large.bin", std::uintmax_t{1} << 31);  // a hole, it takes no room
    EXPECT_THROW(ReadFileBytes(L"large.bin"), std::length_error);
    EXPECT_THROW(ReadFileText(L"large.bin"), std::length_error);
}

}  // namespace
}  // namespace quillon::test
