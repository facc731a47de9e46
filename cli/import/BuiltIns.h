#pragma once

#include <span>
#include <string>

namespace quillon::cli {

enum class ShaderFormat { isf, pasted };

// What a shader file expects the host to fill in, and what the script hands over for it.
struct BuiltIn {
    const char* name;
    const char* type;   // of the uniform
    const char* value;  // JavaScript, within a function of one pass: width, height, index and the object frame
    bool needsFrames;   // counts frames: the script must know how fast they follow
};

// In a file of another format the same names are its author's.
std::span<const BuiltIn> BuiltIns(ShaderFormat format);

// Null when no built-in of the format has that name.
const BuiltIn* FindBuiltIn(const std::string& name, ShaderFormat format);

}  // namespace quillon::cli
