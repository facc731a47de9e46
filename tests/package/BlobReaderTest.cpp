#include "package/BlobReader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "ZipBuilder.h"
#include "host/ModuleLoading.h"
#include "package/FileAccess.h"
#include "packer/Archive.h"
#include "support/BuiltFiles.h"
#include "support/EndOfProcess.h"
#include "support/TestEffect.h"

namespace quillon::test {
namespace {

using std::string_literals::operator""s;

// Starts in disk mode, as a process does.
class BlobReaderTest : public ::testing::Test {
protected:
    BlobReaderTest() {
        FileBytesHook = nullptr;
        FileTextHook = nullptr;
    }

    static void Load(const std::string& archive) {
        BlobReader::Load(TestModule(Scramble(std::as_bytes(std::span(archive)))).module());
    }
};

// The longest comment leaves no room for one more byte: the padding is not part of the archive.
TEST_F(BlobReaderTest, TakesPackagesOfAnyLength) {
    for (const std::size_t commentBytes : {0, 1, 2, 3, 0xFFFF}) {
        Load(ZipBuilder{.entries = {Stored("fx.js", "text")}, .comment = std::string(commentBytes, '#')}.bytes());
        EXPECT_EQ(ReadFileText(L"fx.js"), "text") << commentBytes;
    }
}

TEST_F(BlobReaderTest, FindsFilesWithoutFoldersAndWithoutRegardToCase) {
    const std::pair<std::wstring, const char*> kRequests[] = {
        {L"a\\b\\fx.js", "script"},
        {L"a/b//fx.js", "script"},
        {L"c:fx.js", "script"},
        {L"shaders\\FX.JS", "script"},
        {L"fx.js\0/other"s, "script"},
        {L"\xE9.png", "image"},
        {L"\x4E00.png", ""},
        {L"shaders/a.frag", ""},
        {L"a/", ""},
        {L"dir/", ""},
    };
    Load(ZipBuilder{.entries = {Stored("fx.js", "script"), Stored("shaders/a.frag", "hidden"), Stored("", "unnamed"),
                                Stored("dir/", "directory"), Stored("\xE9.png", "image")}}
             .bytes());
    for (std::size_t i = 0; i < std::size(kRequests); ++i)
        EXPECT_EQ(ReadFileText(kRequests[i].first), kRequests[i].second) << "row " << i;
}

TEST_F(BlobReaderTest, CutsTextButNotBytesAtAZero) {
    Load(ZipBuilder{.entries = {Stored("a", "ab\0cd\r\n"s), Stored("b", "\0"s), Stored("none", "")}}.bytes());
    EXPECT_EQ(ReadFileText(L"a"), "ab");
    EXPECT_EQ(ReadFileBytes(L"a").size(), 7u);
    EXPECT_EQ(ReadFileText(L"b"), "");
    EXPECT_EQ(ReadFileBytes(L"b").size(), 1u);
}

TEST_F(BlobReaderTest, ReadsTheDiskOnlyUntilAPackageIsOpen) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "here.txt";
    std::ofstream(path) << "disk";
    Load("neither an archive nor empty");
    EXPECT_EQ(FileBytesHook, nullptr);
    EXPECT_EQ(ReadFileText(path.wstring()), "disk");
    EXPECT_TRUE(BlobReader::instance().ReadFile(L"fx.js").empty());
    Load(ZipBuilder{.entries = {Stored("fx.js", "script")}}.bytes());
    EXPECT_EQ(ReadFileText(path.wstring()), "");
    EXPECT_TRUE(ReadFileBytes(path.wstring()).empty());
}

TEST_F(BlobReaderTest, EndsTheProcessWithoutAPackage) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    std::string reason;
    void* const absent = host::LoadModule(CarrierModule(), reason);
    const TestModule empty(std::span<const std::byte>{});
    EXPECT_EXIT(BlobReader::Load(absent), EndedOnPurpose, "");
    EXPECT_EXIT(BlobReader::Load(empty.module()), EndedOnPurpose, "");
}

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
