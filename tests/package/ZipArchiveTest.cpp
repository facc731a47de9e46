#include "package/ZipArchive.h"

#include <gtest/gtest.h>

#include <functional>

#include "ZipBuilder.h"

namespace quillon::test {
namespace {

std::string Read(ZipArchive& archive, const std::string& name) {
    const auto bytes = archive.Read(name);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::unique_ptr<ZipArchive> Open(const std::string& bytes) {
    return ZipArchive::Open(std::as_bytes(std::span(bytes)));
}

ZipBuilder TwoFiles() {
    return {.entries = {Stored("a.txt", "stored"), Deflated("b.txt", "deflated")}};
}

TEST(ZipArchiveTest, OpensOnlyWhatIsWithinTheLimitsOfTheFormat) {
    const struct {
        const char* name;
        bool opens;
        std::function<void(ZipBuilder&)> change;
        const char* after = "";  // the archive
    } kCases[] = {
        {"both disks are 1", true, [](auto& zip) { zip.disk = zip.directoryDisk = 1; }},
        {"disks differ", false, [](auto& zip) { zip.directoryDisk = 1; }},
        {"more entries than the directory has", false, [](auto& zip) { zip.extraEntries = zip.extraEntriesHere = 1; }},
        {"directory too short for its entries", false, [](auto& zip) { zip.extraDirectoryBytes = -20; }},
        {"directory reaches outside", false, [](auto& zip) { zip.extraDirectoryBytes = 23; }},
        {"directory starts too early", false, [](auto& zip) { zip.extraDirectoryAt = -1; }},
        {"entry signature", false, [](auto& zip) { zip.entries[1].signature ^= 1; }},
        {"entry on another disk", false, [](auto& zip) { zip.disk = 1; }},
        {"size is elsewhere", false, [](auto& zip) { zip.entries[0].size = 0xFFFFFFFF; }},
        {"packed size is elsewhere", false, [](auto& zip) { zip.entries[1].packedSize = 0xFFFFFFFF; }},
        {"place is elsewhere", false, [](auto& zip) { zip.entries[0].localAt = 0xFFFFFFFF; }},
        {"64-bit locator", false, [](auto& zip) { zip.beforeEnd = "PK\x06\x07" + std::string(16, '\0'); }},
        {"end record one byte too far", false, [](auto& zip) { zip.comment.assign(0xFFFF, '#'); }, "!"},
        {"bytes after the comment", true, [](auto& zip) { zip.comment = "why not"; }, "noise"},
        {"signature without room for a record", true, [](auto& zip) { zip.comment = "PK\x05\x06 no record"; }},
    };
    for (const auto& [name, opens, change, after] : kCases) {
        ZipBuilder builder = TwoFiles();
        change(builder);
        const std::string bytes = builder.bytes() + after;
        const auto archive = Open(bytes);
        ASSERT_EQ(archive != nullptr, opens) << name;
        if (!archive) continue;
        EXPECT_EQ(Read(*archive, "a.txt") + Read(*archive, "b.txt"), "storeddeflated") << name;
    }
}

// The library leaves the content of such an entry unfilled.
TEST(ZipArchiveTest, ReadsADirectoryAsEmpty) {
    ZipEntry directory = Stored("directory", "some content");
    directory.attributes = 0x10;
    const std::string bytes = ZipBuilder{.entries = {directory, Stored("after", "2")}}.bytes();
    const auto archive = Open(bytes);
    ASSERT_TRUE(archive);
    EXPECT_EQ(Read(*archive, "directory"), "");
    EXPECT_EQ(Read(*archive, "after"), "2");
}

// Whatever is wrong, nothing is read outside of the data (the sanitizers watch) and no wrong content comes out.
void ExpectRightOrEmpty(const std::string& damaged, const ZipBuilder& truth) {
    const std::vector<char> exact(damaged.begin(), damaged.end());  // no byte after the end
    const auto archive = ZipArchive::Open(std::as_bytes(std::span(exact)));
    if (!archive) return;
    for (const ZipEntry& entry : truth.entries) {
        const std::string content = Read(*archive, entry.name);
        EXPECT_TRUE(content.empty() || CrcOf(content) == entry.crc);
    }
}

TEST(ZipArchiveTest, SurvivesBeingCutAnywhereAndAnyDamagedByte) {
    ZipBuilder builder = TwoFiles();
    builder.beforeEnd.assign(80, '.');  // room for what looks like 64-bit records
    builder.comment = "a comment";
    const std::string bytes = builder.bytes();
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        ExpectRightOrEmpty(bytes.substr(0, at), builder);
        ExpectRightOrEmpty(bytes.substr(at), builder);
        for (const int change : {0x01, 0x10, 0xFF}) {
            std::string damaged = bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ change);
            ExpectRightOrEmpty(damaged, builder);
        }
    }
}

}  // namespace
}  // namespace quillon::test
