#include "package/BlobReader.h"

#include <gtest/gtest.h>

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

class PackageLength : public BlobReaderTest, public ::testing::WithParamInterface<int> {};

TEST_P(PackageLength, NeedNotBeAMultipleOfFour) {
    ZipBuilder builder{.entries = {Stored("fx.js", "text")}, .comment = std::string(GetParam(), '#')};
    Load(builder.bytes());
    EXPECT_EQ(ReadFileText(L"fx.js"), "text");
}
// The longest comment leaves no room for a byte more: the padding is not part of the archive.
INSTANTIATE_TEST_SUITE_P(CommentBytes, PackageLength, ::testing::Values(0, 1, 2, 3, 0xFFFF));

struct NameCase {
    const char* name;
    std::wstring request;
    std::string content;
};

class RequestedName : public BlobReaderTest, public ::testing::WithParamInterface<NameCase> {};

TEST_P(RequestedName, LosesItsFoldersAndItsCase) {
    Load(ZipBuilder{.entries = {Stored("fx.js", "script"), Stored("shaders/a.frag", "hidden"), Stored("", "unnamed"),
                                Stored("dir/", "directory"), Stored("\xE9.png", "image")}}
             .bytes());
    EXPECT_EQ(ReadFileText(GetParam().request), GetParam().content);
}

const NameCase kNameCases[] = {
    {"backslashes", L"a\\b\\fx.js", "script"},     {"drive", L"c:fx.js", "script"},
    {"upper_case", L"shaders\\FX.JS", "script"},   {"ends_at_a_zero", L"fx.js\0/other"s, "script"},
    {"byte_above_127", L"\xE9.png", "image"},      {"no_byte_at_all", L"\x4E00.png", ""},
    {"stored_in_a_folder", L"shaders/a.frag", ""}, {"separator_at_the_end", L"a/", ""},
    {"slashes", L"a/b//fx.js", "script"},          {"a_stored_directory", L"dir/", ""},
};
INSTANTIATE_TEST_SUITE_P(Cases, RequestedName, ::testing::ValuesIn(kNameCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(BlobReaderTest, CutsTextButNotBytesAtAZero) {
    Load(ZipBuilder{.entries = {Stored("a", "ab\0cd\r\n"s), Stored("b", "\0"s), Stored("none", "")}}.bytes());
    EXPECT_EQ(ReadFileText(L"a"), "ab");
    EXPECT_EQ(ReadFileBytes(L"a").size(), 7u);
    EXPECT_EQ(ReadFileText(L"b"), "");
    EXPECT_EQ(ReadFileBytes(L"b").size(), 1u);
}

TEST_F(BlobReaderTest, LeavesTheDiskAloneOnceAPackageIsOpen) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "here.txt";
    std::ofstream(path) << "disk";
    Load(ZipBuilder{.entries = {Stored("fx.js", "script")}}.bytes());
    EXPECT_EQ(ReadFileText(path.wstring()), "");
    EXPECT_TRUE(ReadFileBytes(path.wstring()).empty());
}

TEST_F(BlobReaderTest, StaysInDiskModeWithAResourceThatIsNoArchive) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "here.txt";
    std::ofstream(path) << "disk";
    Load("neither an archive nor empty");
    EXPECT_EQ(FileBytesHook, nullptr);
    EXPECT_EQ(FileTextHook, nullptr);
    EXPECT_EQ(ReadFileText(path.wstring()), "disk");
    EXPECT_EQ(ReadFileText(L"no/such/file"), "popa");
    EXPECT_TRUE(ReadFileBytes(L"no/such/file").empty());
    EXPECT_TRUE(BlobReader::instance().ReadFile(L"fx.js").empty());
}

TEST_F(BlobReaderTest, EndsTheProcessWithoutAPackage) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    std::string reason;
    void* const absent = host::LoadModule(CarrierModule(), reason);
    const TestModule empty(std::span<const std::byte>{});
    EXPECT_EXIT(BlobReader::Load(absent), EndedOnPurpose, "");
    EXPECT_EXIT(BlobReader::Load(empty.module()), EndedOnPurpose, "");
}

}  // namespace
}  // namespace quillon::test
