#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillon {

// Unsigned numbers, lowest byte first. The caller sees to it that the bytes are there.

template <class Number>
Number LoadLittle(std::span<const std::byte> bytes, std::size_t at) {
    Number value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        value = static_cast<Number>(value | std::to_integer<Number>(bytes[at + i]) << (8 * i));
    return value;
}

template <class Number>
void StoreLittle(std::span<std::byte> bytes, std::size_t at, Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i) bytes[at + i] = static_cast<std::byte>(value >> (8 * i));
}

template <class Number>
void AppendLittle(std::vector<std::byte>& bytes, Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i) bytes.push_back(static_cast<std::byte>(value >> (8 * i)));
}

}  // namespace quillon
