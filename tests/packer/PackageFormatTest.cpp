// The worked example of docs/package-format.md, read from that page, on its way into a module and back.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "package/BlobReader.h"
#include "package/FileAccess.h"
#include "packer/Archive.h"
#include "packer/EffectFolder.h"
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

}  // namespace
}  // namespace quillon::test
