#include "imagelib/HostRange.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>
#include <vector>

namespace quillon {
namespace {

struct HostRangeCase {
    const char* name;
    std::uint16_t host;
    std::uint16_t widened;
    std::uint16_t back;
};

class HostRange : public ::testing::TestWithParam<HostRangeCase> {};

TEST_P(HostRange, SurvivesUploadAndReadback) {
    EXPECT_EQ(WidenHostChannel(GetParam().host), GetParam().widened);
    EXPECT_EQ(FoldToHostChannel(GetParam().widened), GetParam().back);
}

INSTANTIATE_TEST_SUITE_P(Values, HostRange,
                         ::testing::Values(HostRangeCase{"zero", 0, 0, 0}, HostRangeCase{"one", 1, 2, 1},
                                           HostRangeCase{"half_is_exact", 16384, 32768, 16384},
                                           HostRangeCase{"one_value_is_lost", 16385, 32768, 16384},
                                           HostRangeCase{"the_next_is_kept", 16386, 32770, 16386},
                                           HostRangeCase{"full_scale_comes_back", 32768, 65534, 32768},
                                           HostRangeCase{"beyond_full_scale_wraps", 32769, 0, 0}),
                         [](const auto& row) { return row.param.name; });

TEST(HostRangeTable, OnlyOneHostValueIsLost) {
    for (int value = 0; value <= 32768; ++value) {
        const int back = FoldToHostChannel(WidenHostChannel(static_cast<std::uint16_t>(value)));
        ASSERT_EQ(back, value == 16385 ? 16384 : value);
    }
    EXPECT_EQ(FoldToHostChannel(65535), 32768);
}

using RowFunction = void (*)(const std::byte*, std::byte*, std::size_t);
using ChannelRule = std::uint16_t (*)(std::uint16_t);

// The row with its first channel `offset` bytes into the memory, for every value and then for every short length.
void ExpectRowsEqualRule(RowFunction convert, ChannelRule rule, std::size_t offset) {
    std::vector<std::uint16_t> values(65536);
    std::iota(values.begin(), values.end(), std::uint16_t{0});
    constexpr std::byte kUntouched{0xA5};
    const auto check = [&](std::size_t first, std::size_t channels, bool inPlace) {
        std::vector<std::byte> source(offset + channels * 2 + 1);
        std::memcpy(source.data() + offset, values.data() + first, channels * 2);
        std::vector<std::byte> separate(offset + channels * 2 + 1, kUntouched);
        std::byte* destination = inPlace ? source.data() + offset : separate.data() + offset;
        convert(source.data() + offset, destination, channels);
        for (std::size_t i = 0; i < channels; ++i) {
            std::uint16_t result;
            std::memcpy(&result, destination + i * 2, 2);
            ASSERT_EQ(result, rule(values[first + i])) << "channel " << i << " of " << channels;
        }
        EXPECT_EQ(separate.back(), kUntouched);
    };
    check(0, values.size(), /*inPlace=*/false);
    check(0, values.size(), /*inPlace=*/true);
    for (std::size_t channels = 0; channels <= 40; ++channels) check(16370, channels, /*inPlace=*/false);
}

TEST(HostRangeRows, EqualThePlainRuleAtAnyAlignment) {
    for (std::size_t offset : {0, 1, 2, 7, 8}) {
        SCOPED_TRACE(offset);
        ExpectRowsEqualRule(WidenHostRow, WidenHostChannel, offset);
        ExpectRowsEqualRule(FoldToHostRow, FoldToHostChannel, offset);
    }
}

}  // namespace
}  // namespace quillon
