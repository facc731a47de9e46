#include "packer/ModuleWriter.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "packer/Archive.h"
#include "packer/FileError.h"
#include "packer/PackageReader.h"
#include "packer/WholeFile.h"
#include "support/TestEffect.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

class ModuleWriterTest : public ::testing::Test {
protected:
    static std::string ContentOf(const fs::path& path) {
        std::ostringstream content;
        content << std::ifstream(path, std::ios::binary).rdbuf();
        return content.str();
    }
    void put(const fs::path& path, const std::string& content) { std::ofstream(path, std::ios::binary) << content; }
    void write(const fs::path& target, const fs::path& templateModule, const std::string& package) {
        WriteModule(target, templateModule, std::as_bytes(std::span(package)));
    }
    long filesLeft() const { return std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()); }

    TemporaryFolder folder;
    const fs::path image = folder.path() / "template.so";
    const fs::path output = folder.path() / "output.so";
};

TEST_F(ModuleWriterTest, PutsThePackageAfterTheImageInPlaceOfAnOlderOne) {
    put(image, "image");
    const fs::perms ofNewFiles = fs::status(image).permissions();
    fs::permissions(image, fs::perms::owner_read);
    write(output, image, "package");
    EXPECT_EQ(ContentOf(output), std::string("imagepackage\x07\0\0\0QuillonBLOB1", 28));
    EXPECT_EQ(fs::status(output).permissions(), ofNewFiles);
    EXPECT_EQ(ContentOf(image), "image");
    write(output, output, "new");
    EXPECT_EQ(ContentOf(output), std::string("imagenew\x03\0\0\0QuillonBLOB1", 24));
    write(output, output, "");
    EXPECT_EQ(ContentOf(output), std::string("image\0\0\0\0QuillonBLOB1", 21));
    write(folder.path() / std::string(255, 'n'), image, "the longest name that the file system allows");
    EXPECT_EQ(filesLeft(), 3);
}

TEST_F(ModuleWriterTest, LeavesNothingWhenItFails) {
    EXPECT_THROW(write(output, image, "package"), FileError);          // no template
    EXPECT_THROW(write(output, folder.path(), "package"), FileError);  // a folder for one
    put(image, "image");
    EXPECT_THROW(write(folder.path() / "absent" / "output.so", image, "package"), FileError);
    fs::create_directories(output / "in the way");
    EXPECT_THROW(write(output, image, "package"), FileError);
    EXPECT_EQ(filesLeft(), 2);
}

struct DamageCase {
    const char* name;
    void (*damage)(std::vector<std::byte>& archive);
    const char* words;  // empty: it is read
};

const DamageCase kDamageCases[] = {
    {"none", [](auto&) {}, ""},
    {"empty package", [](auto& archive) { archive.clear(); }, "carries no package"},
    {"no archive", [](auto& archive) { archive.resize(archive.size() - 1); }, "its package is damaged"},
    {"a file's content", [](auto& archive) { archive[30 + 4] ^= std::byte{1}; }, "'a.js' in its package is damaged"},
};

TEST_F(ModuleWriterTest, WritesWhatCanBeReadBackOnBothSystems) {
    const std::string text = "some text, some text";
    const auto* const bytes = reinterpret_cast<const std::byte*>(text.data());
    const std::vector<PackageFile> files = {{"a.js", {bytes, bytes + text.size()}}, {"b", {}}};
    for (const bool isWindows : {false, true}) {
        if (isWindows)
            WriteWholeFile(image, ReadWholeFile(WindowsModule("plain")));
        else
            put(image, std::string(40, 'i'));
        EXPECT_THROW(ReadPackage(image), FileError);
        for (const DamageCase& row : kDamageCases) {
            std::vector<std::byte> archive = WriteArchive(files);
            row.damage(archive);
            WriteModule(output, image, Scramble(archive));
            try {
                const auto read = ReadPackage(output);
                EXPECT_STREQ(row.words, "") << row.name;
                ASSERT_EQ(read.size(), files.size());
                for (std::size_t i = 0; i < files.size(); ++i) {
                    EXPECT_EQ(read[i].name, files[i].name);
                    EXPECT_EQ(read[i].bytes, files[i].bytes);
                }
            } catch (const FileError& error) {
                EXPECT_NE(std::string(error.what()).find(*row.words ? row.words : "nothing"), std::string::npos)
                    << row.name << ": " << error.what();
            }
        }
    }
}

}  // namespace
}  // namespace quillon::test
