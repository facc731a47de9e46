#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quillon {

// Bytes of each text: what the host's fields hold without the closing zero.
inline constexpr std::size_t kLongestIdentityText = 31;

// What a host knows of an effect before it loads the code.
struct EffectIdentity {
    std::string name;            // in the host's menu
    std::string category;        // the submenu
    std::string matchName;       // by which projects find the effect again
    std::uint32_t version = 0;   // as EffectVersion::hostWord gives it
    std::uint32_t outFlags = 0;  // all that the effect answers at global setup under After Effects
    std::uint32_t outFlags2 = 0;
};

// The description as the bytes of the resource that Windows hosts look for. Throws FileError, whose place is the key of
// config.xml at fault, for a text that is empty, longer than the host's 31 bytes, or holds control characters.
std::vector<std::byte> MakePiPL(const EffectIdentity& identity);

}  // namespace quillon
