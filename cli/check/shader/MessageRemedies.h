#pragma once

#include <string>

#include "cli/check/shader/MessagePlaces.h"

namespace quillon::cli {

// What an author can do about a message of the driver; empty when nothing is known.
std::string RemedyOf(const PlacedMessage& message, const ShaderSource& source);

// Whether the message only says that a part of an expression is not usable, which another message explains.
bool IsFollowUp(const PlacedMessage& message);

}  // namespace quillon::cli
