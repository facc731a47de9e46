#pragma once

#include <span>
#include <string>

namespace quillon::cli {

// What a shader file expects the host to fill in, and what the script hands over for it.
struct BuiltIn {
    const char* name;
    const char* type;   // of the uniform
    const char* value;  // JavaScript, within a function of one pass: width, height, index and the object frame
    bool needsFrames;   // counts frames: the script must know how fast they follow
};

// Those of all formats.
std::span<const BuiltIn> BuiltIns();

// Null when no built-in has that name.
const BuiltIn* FindBuiltIn(const std::string& name);

}  // namespace quillon::cli
