#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon {

// A float channel as a word, in the way of GL: 0 to 1 become 0 to 65535, to the nearest word and from the middle to the
// even one. What is outside is cut; NaN becomes 0.
std::uint16_t WordFromUnit(float value);

// The same for `channels` floats, whose words take the place of the first half of them. Any alignment.
void WordsFromUnits(std::byte* channelBytes, std::size_t channels);

}  // namespace quillon
