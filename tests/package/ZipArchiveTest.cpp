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

struct OpenCase {
    const char* name;
    bool opens;
    std::function<void(ZipBuilder&)> change;
    std::string behind = {};  // behind the archive
};

class OpeningAnArchive : public ::testing::TestWithParam<OpenCase> {};

TEST_P(OpeningAnArchive, HoldsToTheLimitsOfTheFormat) {
    ZipBuilder builder = TwoFiles();
    GetParam().change(builder);
    const std::string bytes = builder.bytes() + GetParam().behind;
    const auto archive = Open(bytes);
    ASSERT_EQ(archive != nullptr, GetParam().opens);
    if (!archive) return;
    EXPECT_EQ(Read(*archive, "a.txt"), "stored");
    EXPECT_EQ(Read(*archive, "b.txt"), "deflated");
}

const OpenCase kOpenCases[] = {
    {"both_disks_are_1", true, [](auto& zip) { zip.disk = zip.directoryDisk = 1; }},
    {"disks_differ", false, [](auto& zip) { zip.directoryDisk = 1; }},
    {"more_entries_than_the_directory_holds", false, [](auto& zip) { zip.extraEntries = zip.extraEntriesHere = 1; }},
    {"directory_too_short_for_its_entries", false, [](auto& zip) { zip.extraDirectoryBytes = -20; }},
    {"directory_reaches_outside", false, [](auto& zip) { zip.extraDirectoryBytes = 23; }},
    {"directory_starts_beside", false, [](auto& zip) { zip.extraDirectoryAt = -1; }},
    {"entry_signature", false, [](auto& zip) { zip.entries[1].signature ^= 1; }},
    {"entry_on_another_disk", false, [](auto& zip) { zip.disk = 1; }},
    {"size_is_elsewhere", false, [](auto& zip) { zip.entries[0].size = 0xFFFFFFFF; }},
    {"packed_size_is_elsewhere", false, [](auto& zip) { zip.entries[1].packedSize = 0xFFFFFFFF; }},
    {"place_is_elsewhere", false, [](auto& zip) { zip.entries[0].localAt = 0xFFFFFFFF; }},
    {"content_reaches_outside", false, [](auto& zip) { zip.entries[1].packedSize = 4000; }},
    {"64_bit_locator", false, [](auto& zip) { zip.beforeEnd = "PK\x06\x07" + std::string(16, '\0'); }},
    {"end_record_one_byte_too_far", false, [](auto& zip) { zip.comment.assign(0xFFFF, '#'); }, "!"},
    {"bytes_behind_the_comment", true, [](auto& zip) { zip.comment = "why not"; }, "noise"},
    {"signature_without_room_for_a_record", true, [](auto& zip) { zip.comment = "PK\x05\x06 no record"; }},
};
INSTANTIATE_TEST_SUITE_P(Cases, OpeningAnArchive, ::testing::ValuesIn(kOpenCases),
                         [](const auto& row) { return std::string(row.param.name); });

struct EntryCase {
    const char* name;
    std::function<void(ZipEntry&)> damage;
};

class DamagedEntry : public ::testing::TestWithParam<EntryCase> {};

TEST_P(DamagedEntry, ReadsAsEmptyBesideReadableOnes) {
    for (const bool deflated : {false, true}) {
        ZipEntry bad = deflated ? Deflated("bad", "some content") : Stored("bad", "some content");
        GetParam().damage(bad);
        const std::string bytes = ZipBuilder{.entries = {Stored("before", "1"), bad, Stored("behind", "2")}}.bytes();
        const auto archive = Open(bytes);
        ASSERT_TRUE(archive);
        EXPECT_EQ(Read(*archive, "bad"), "");
        EXPECT_EQ(Read(*archive, "before") + Read(*archive, "behind"), "12");
    }
}

const EntryCase kEntryCases[] = {
    {"encrypted", [](auto& entry) { entry.flags = 0x01; }},
    {"unknown_method", [](auto& entry) { entry.method = 12; }},
    {"checksum", [](auto& entry) { entry.crc ^= 0x100; }},
    {"local_signature", [](auto& entry) { entry.localSignature = 0x02014B50; }},
    {"marked_as_a_directory", [](auto& entry) { entry.attributes = 0x10; }},
};
INSTANTIATE_TEST_SUITE_P(Cases, DamagedEntry, ::testing::ValuesIn(kEntryCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ZipArchiveTest, MatchesWholeNamesAndFoldsAsciiOnly) {
    const std::string bytes = ZipBuilder{
        .entries = {
            Stored("Main.JS", "1"), Stored("Main.JSX", "2"), Stored("\xC4.png", "3"), Stored("shaders/a.frag", "4"),
            Stored("[x", "5")}}.bytes();
    const auto archive = Open(bytes);
    ASSERT_TRUE(archive);
    EXPECT_EQ(Read(*archive, "mAIN.js"), "1");
    EXPECT_EQ(Read(*archive, "main.jsx"), "2");
    EXPECT_EQ(Read(*archive, "main.j"), "");
    EXPECT_EQ(Read(*archive, "\xC4.PNG"), "3");
    EXPECT_EQ(Read(*archive, "\xE4.png"), "");
    EXPECT_EQ(Read(*archive, "a.frag"), "");
    EXPECT_EQ(Read(*archive, "{x"), "");
}

// Whatever is wrong, nothing is read outside of the data (the sanitizers watch) and no wrong content comes out.
void ExpectRightOrEmpty(const std::string& damaged, const ZipBuilder& truth) {
    const std::vector<char> exact(damaged.begin(), damaged.end());  // no byte behind the end
    const auto archive = ZipArchive::Open(std::as_bytes(std::span(exact)));
    if (!archive) return;
    for (const ZipEntry& entry : truth.entries) {
        const std::string content = Read(*archive, entry.name);
        EXPECT_TRUE(content.empty() || CrcOf(content) == entry.crc);
    }
}

TEST(ZipArchiveTest, SurvivesBeingCutAnywhere) {
    ZipBuilder builder = TwoFiles();
    builder.comment = "a comment";
    const std::string bytes = builder.bytes();
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        ExpectRightOrEmpty(bytes.substr(0, length), builder);
        ExpectRightOrEmpty(bytes.substr(bytes.size() - length), builder);
    }
}

TEST(ZipArchiveTest, SurvivesAnyDamagedByte) {
    ZipBuilder builder = TwoFiles();
    builder.beforeEnd.assign(80, '.');  // room for what looks like 64-bit records
    const std::string bytes = builder.bytes();
    for (std::size_t at = 0; at < bytes.size(); ++at)
        for (const int change : {0x01, 0x10, 0xFF}) {
            std::string damaged = bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ change);
            ExpectRightOrEmpty(damaged, builder);
        }
}

}  // namespace
}  // namespace quillon::test
