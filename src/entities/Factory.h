#pragma once

#include <cstdint>

namespace quillon {

// Owner of all entities of one kind. An entity is named by an id, which scripts carry as a number: the top byte is the
// kind's tag, the rest an ordinal from 1. The lowest free ordinal is used first, so the id of an erased entity comes
// back with the next one of its kind.
class Factory {
public:
    Factory() = default;
    virtual ~Factory() = default;
    Factory(const Factory&) = delete;
    Factory& operator=(const Factory&) = delete;

    // A new, default-constructed entity.
    virtual std::uint32_t Allocate() { return 0; }
    // Ends the entity; an id that names none has no effect.
    virtual void Erase(std::uint32_t) {}
};

// The tag of an id: everything but its ordinal masked off.
inline constexpr std::uint32_t kTagMask = 0xFF000000;
constexpr std::uint32_t TagOf(std::uint32_t id) {
    return id & kTagMask;
}

}  // namespace quillon
