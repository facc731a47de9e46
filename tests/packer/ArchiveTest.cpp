#include "packer/Archive.h"

#include <gtest/gtest.h>

#include <cstring>

#include "package/ZipArchive.h"
#include "packer/FileError.h"

namespace quillon::test {
namespace {

PackageFile File(const std::string& name, const std::string& content) {
    PackageFile file{name, std::vector<std::byte>(content.size())};
    std::copy(content.begin(), content.end(), reinterpret_cast<char*>(file.bytes.data()));
    return file;
}

TEST(ArchiveTest, CarriesFilesOfAnyContent) {
    std::string noise;
    for (std::uint32_t i = 0, state = 1; i < 100000; ++i, state = state * 1664525 + 1013904223)
        noise.push_back(static_cast<char>(state >> 24));
    const std::vector<PackageFile> files = {File("empty", ""), File("short", "abc"),
                                            File("flat", std::string(70000, 'x')), File("noise", noise),
                                            File("\xC3\xA9 ?*.png", "odd name")};
    const auto bytes = WriteArchive(files);
    EXPECT_LT(bytes.size(), 102000u);
    const auto archive = ZipArchive::Open(bytes);
    ASSERT_TRUE(archive);
    for (const auto& [name, content] : files) EXPECT_EQ(archive->Read(name), content) << name;
}

TEST(ArchiveTest, RefusesNamesThatCannotBeFetched) {
    for (const std::string& name : {std::string(), std::string("a/b"), std::string("/a"), std::string("a\\b"),
                                    std::string("c:a"), std::string("a\0b", 3), std::string(65536, 'a')})
        EXPECT_THROW(WriteArchive({File(name, "x")}), FileError);
    EXPECT_THROW(WriteArchive({File("Fx.js", "1"), File("b", "2"), File("fX.JS", "3")}), FileError);
}

TEST(ArchiveTest, HoldsAsManyFilesAsTheFormatCounts) {
    std::vector<PackageFile> files;
    for (int i = 0; i < 65535; ++i) files.push_back(File(std::to_string(i), ""));
    files.back() = File("65534", "last");
    const auto bytes = WriteArchive(files);
    const auto archive = ZipArchive::Open(bytes);
    ASSERT_TRUE(archive);
    EXPECT_EQ(archive->Read("65534"), files.back().bytes);
    files.push_back(File("one more", ""));
    EXPECT_THROW(WriteArchive(files), FileError);
}

}  // namespace
}  // namespace quillon::test
