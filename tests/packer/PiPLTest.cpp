#include "packer/PiPL.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/FileError.h"

namespace quillon::test {
namespace {

const EffectIdentity kIdentity = {"VortexPlotter", "TRVX", "QLVVortexPlotter", 0x00090600, 0x06008025, 0x00001400};

// Head, then vendor, key, id and length of each property, and its value.
const std::string_view kExpected[] = {
    {"\x01\0\0\0\0\0\x0C\0\0\0", 10},
    {"MIB8dnik\0\0\0\0\x04\0\0\0TKFe", 20},
    {"MIB8eman\0\0\0\0\x10\0\0\0\x0DVortexPlotter\0\0", 32},
    {"MIB8gtac\0\0\0\0\x08\0\0\0\x04TRVX\0\0\0", 24},
    {"MIB84668\0\0\0\0\x10\0\0\0EntryPointFunc\0\0", 32},
    {"MIB8RVPe\0\0\0\0\x04\0\0\0\x02\0\0\0", 20},
    {"MIB8RVSe\0\0\0\0\x04\0\0\0\x0D\0\x02\0", 20},
    {"MIB8REVe\0\0\0\0\x04\0\0\0\0\x06\x09\0", 20},
    {"MIB8FNIe\0\0\0\0\x02\0\0\0\0\0\0\0", 20},
    {"MIB8OLGe\0\0\0\0\x04\0\0\0\x25\x80\0\x06", 20},
    {"MIB82LGe\0\0\0\0\x04\0\0\0\0\x14\0\0", 20},
    {"MIB8ANMe\0\0\0\0\x14\0\0\0\x10QLVVortexPlotter\0\0\0", 36},
    {"MIB8LFea\0\0\0\0\x04\0\0\0\x08\0\0\0", 20},
};

std::string TextOf(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(PiPLTest, DescribesAnEffectByteForByte) {
    std::string expected;
    for (const std::string_view property : kExpected) expected += property;
    ASSERT_EQ(expected.size(), 294u);
    EXPECT_EQ(TextOf(MakePiPL(kIdentity)), expected);
}

TEST(PiPLTest, PadsTextsToWholeWordsWithTheirLengthByte) {
    const std::pair<std::size_t, char> kRows[] = {{3, 4}, {4, 8}, {31, 32}};
    for (const auto& [letters, length] : kRows) {
        EffectIdentity identity = kIdentity;
        identity.name.assign(letters, 'n');
        const std::string bytes = TextOf(MakePiPL(identity));
        EXPECT_EQ(bytes[30 + 12], length) << letters;
        EXPECT_EQ(bytes.substr(46, 1 + letters), static_cast<char>(letters) + identity.name);
        EXPECT_EQ(bytes.substr(46 + static_cast<std::size_t>(length), 8), "MIB8gtac") << letters;
    }
}

TEST(PiPLTest, RefusesTextsThatHostsDoNotTake) {
    const std::pair<std::string EffectIdentity::*, const char*> kTexts[] = {
        {&EffectIdentity::name, "FXNAME: "},
        {&EffectIdentity::category, "CATEGORY: "},
        {&EffectIdentity::matchName, "MATCH_NAME: "}};
    for (const auto& [text, key] : kTexts) {
        for (const std::string& value : {std::string(), std::string(32, 'n'), std::string("two\nlines")}) {
            EffectIdentity identity = kIdentity;
            identity.*text = value;
            try {
                MakePiPL(identity);
                ADD_FAILURE() << key << value << " was taken";
            } catch (const FileError& error) {
                EXPECT_THAT(error.what(), ::testing::StartsWith(key));
            }
        }
    }
}

}  // namespace
}  // namespace quillon::test
