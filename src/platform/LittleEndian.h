#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillon {

// Unsigned numbers, lowest byte first. Reading and storing past the end of the bytes is the caller's fault.

// The number whose lowest byte is bytes[at].
template <class Number>
Number LoadLittle(std::span<const std::byte> bytes, std::size_t at) {
    Number value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        value = static_cast<Number>(value | std::to_integer<Number>(bytes[at + i]) << (8 * i));
    return value;
}

// Writes the number over sizeof(Number) bytes from bytes[at] on.
template <class Number>
void StoreLittle(std::span<std::byte> bytes, std::size_t at, Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i) bytes[at + i] = static_cast<std::byte>(value >> (8 * i));
}

// Adds the number as sizeof(Number) bytes at the end.
template <class Number>
void AppendLittle(std::vector<std::byte>& bytes, Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i) bytes.push_back(static_cast<std::byte>(value >> (8 * i)));
}

}  // namespace quillon
