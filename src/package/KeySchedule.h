#pragma once

#include <cstdint>

namespace quillon {

// The running key that scrambles a package, word by word: 32 bits, little-endian, in ascending order. Each stored word
// is the plain word XOR the key; the plain word, on either side, then makes the next key.
struct KeySchedule {
    std::uint32_t key = 0x7E3A91C5;

    // To the key of the word after this one.
    void advance(std::uint32_t plainWord) { key = (key + plainWord) * plainWord; }
};

}  // namespace quillon
