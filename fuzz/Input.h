#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string_view>

#include "platform/TemporaryPath.h"

// Defined by each target, called by libFuzzer or by Replay.cpp. Always 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace quillon::fuzz {

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// What must hold for every input; ends the process where it does not.
inline void Require(bool holds, const char* claim) {
    if (holds) return;
    std::fprintf(stderr, "not so: %s\n", claim);
    std::abort();
}

// A file with the input, for readers that want a path.
inline std::filesystem::path WriteInput(const std::filesystem::path& path, std::string_view text) {
    std::FILE* stream = std::fopen(path.c_str(), "wb");
    Require(stream && std::fwrite(text.data(), 1, text.size(), stream) == text.size() && std::fclose(stream) == 0,
            "the temporary folder takes a file");
    return path;
}

}  // namespace quillon::fuzz
