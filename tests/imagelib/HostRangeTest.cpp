#include "imagelib/HostRange.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>
#include <vector>

namespace quillon {
namespace {

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
