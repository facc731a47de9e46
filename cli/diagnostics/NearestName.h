#pragma once

#include <span>
#include <string>
#include <string_view>

namespace quillon::cli {

// The known name that was probably meant by a name that is not among them: it takes few letters that are added,
// removed, replaced or exchanged with their neighbor, at most one in three of the name's; capitals count as small
// letters. The first of equally near ones; empty when none is near.
std::string NearestName(std::string_view name, std::span<const std::string> known);

// "did you mean NAME?" with the nearest name, for a remedy; empty when none is near.
std::string DidYouMean(std::string_view name, std::span<const std::string> known);

}  // namespace quillon::cli
