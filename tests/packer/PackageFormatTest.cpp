// Packages: the worked example of docs/package-format.md, read from that page, and the limits of the format.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "package/BlobReader.h"
#include "package/FileAccess.h"
#include "package/ZipArchive.h"
#include "packer/Archive.h"
#include "packer/EffectFolder.h"
#include "packer/FileError.h"
#include "packer/ModuleWriter.h"
#include "support/BuiltFiles.h"
#include "support/TestEffect.h"

namespace quillon::test {
namespace {

using Bytes = std::vector<std::byte>;

// The dumps of the page by the name after their fence.
std::map<std::string, Bytes> DumpsOfThePage() {
    std::ifstream page(SourceFolder() / "docs" / "package-format.md");
    std::map<std::string, Bytes> dumps;
    std::string line, name;
    while (std::getline(page, line)) {
        if (line.starts_with("```")) {
            name = line.substr(3);
        } else if (!name.empty()) {
            std::istringstream numbers(line.substr(4));
            for (unsigned byte; numbers >> std::hex >> byte;) dumps[name].push_back(static_cast<std::byte>(byte));
        }
    }
    return dumps;
}

Bytes EndOf(const std::filesystem::path& path, std::size_t count) {
    std::ifstream file(path, std::ios::binary);
    file.seekg(-static_cast<std::streamoff>(count), std::ios::end);
    Bytes bytes(count);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count));
    return bytes;
}

TEST(PackageFormatTest, IsWrittenAndReadAsThePageShows) {
    auto dumps = DumpsOfThePage();
    ASSERT_EQ(dumps["archive"].size(), 127u);
    const TemporaryFolder folder;
    const auto effect = folder.path() / "tiny", image = folder.path() / "image.so", module = folder.path() / "tiny.so";
    std::filesystem::create_directory(effect);
    std::ofstream(effect / "fx.js", std::ios::binary) << "0;\n";

    EXPECT_EQ(WriteArchive(ReadEffectFiles(ListEffectFolder(effect))), dumps["archive"]);
    EXPECT_EQ(Scramble(dumps["archive"]), dumps["scrambled"]);
    EXPECT_EQ(Unscramble(dumps["scrambled"]), dumps["archive"]);
    std::ofstream(image, std::ios::binary) << "\x7F"
                                              "ELF and more";
    WriteModule(module, image, dumps["scrambled"]);
    Bytes end = dumps["scrambled"];
    end.insert(end.end(), dumps["trailer"].begin(), dumps["trailer"].end());
    EXPECT_EQ(EndOf(module, end.size()), end);

    BlobReader::Load(TestModule(dumps["scrambled"]).module());
    EXPECT_EQ(ReadFileText(L"fx.js"), "0;\n");
}

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
