#pragma once

#include <optional>
#include <string>

#include "cli/check/run/Trial.h"

namespace quillon::cli {

// What the pixels of one frame say, for the words of a finding; empty texts for nothing.

// Of channels that are NaN or infinite: "red is NaN at 3, 4, and 12 further pixels are like it".
std::string WordsOfBadNumbers(const host::World& frame);
// Of alpha outside 0 to 1, by more than rounding explains.
std::string WordsOfBadAlpha(const host::World& frame);
// Of a frame of more than one pixel that has one color everywhere.
std::string WordsOfOneColor(const host::World& frame);

// Whether no channel of two frames at one depth differs by more than filtering explains.
bool AreNearlyEqual(const host::World& frame, const host::World& other);

// Of two frames that show one picture at two depths: the place where they differ most, when that is more than rounding
// and noise of single pixels explain. Colors count by their alpha, within 0 to 1.
std::string WordsOfDifference(const host::World& frame, const host::World& other);

}  // namespace quillon::cli
