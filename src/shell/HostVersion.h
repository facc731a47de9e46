#pragma once

#include "hostapi/HostApi.h"

namespace quillon {

// Which host is calling.

// Premiere Pro; any other host counts as After Effects.
inline bool IsPremiere(const PF_InData& in) {
    return in.appl_id == kPremiereId;
}

// Both numbers must be reached: 14.0 is not "from 13.9 on". This is intended.
inline bool IsAfterEffectsFrom(const PF_InData& in, A_short major, A_short minor) {
    return !IsPremiere(in) && in.version.major >= major && in.version.minor >= minor;
}

// Only within the major version.
inline bool IsAfterEffectsBefore(const PF_InData& in, A_short major, A_short minor) {
    return !IsPremiere(in) && in.version.major == major && in.version.minor < minor;
}

}  // namespace quillon
