#pragma once

#include <array>
#include <string>
#include <string_view>

namespace quillon::cli {

// What an argument of a script function is.
enum class Role {
    none,      // there is no such argument
    anything,  // looked at by the checks of its function, or not at all
    number,
    text,
    control,  // the id of a control, as those below
    shader,
    target,
    surface,
    picture,     // a target or a texture
    anyPicture,  // a target, a texture, or a control that has one
    entity,      // something that can be released
};

struct Argument {
    const char* name = nullptr;
    Role role = Role::none;
};

// The arguments of one script function, as docs/script-api.md calls them.
struct Signature {
    std::string_view native;
    std::array<Argument, 6> arguments = {};

    // "QL_renderShader(shader, target, flip, viewport)".
    std::string asText() const;
};

// Of any native.
const Signature& SignatureOf(std::string_view native);

}  // namespace quillon::cli
