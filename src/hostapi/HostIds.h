#pragma once

#include <cstdint>

namespace quillon {

// The hosts by PF_InData's appl_id: four-character codes, here with the first character in the highest byte.
inline constexpr std::int32_t kAfterEffectsId = 0x46585443;  // FXTC
inline constexpr std::int32_t kPremiereId = 0x50724D72;      // PrMr

}  // namespace quillon
