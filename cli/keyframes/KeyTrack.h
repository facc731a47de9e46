#pragma once

#include <cstdint>
#include <map>

#include "cli/effect/ControlValues.h"

namespace quillon::cli {

// How a control goes from a key to the next one: in a straight line, not at all, or starting and ending slowly.
enum class Interpolation { linear, hold, smooth };

// The values of one control over time. Numbers, angles, positions and colors move; switches and popups keep a key's
// value up to the next key. Before the first key and after the last one the nearest key holds.
class KeyTrack {
public:
    // False when there is a key at this frame.
    bool add(std::int32_t frame, const ControlValue& value, Interpolation interpolation);

    // There is at least one key.
    ControlValue at(double frame) const;

private:
    struct Key {
        ControlValue value;
        Interpolation interpolation;  // up to the next key
    };
    std::map<std::int32_t, Key> keys;
};

}  // namespace quillon::cli
