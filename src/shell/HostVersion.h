#pragma once

#include "hostapi/HostApi.h"

namespace quillon {

// Which host is calling.

inline bool IsPremiere(const PF_InData& in) {
    return in.appl_id == kPremiereId;
}

// Major and minor number are each compared by itself: 14.0 is not "from 13.9 on". This is intended.
inline bool IsAfterEffectsFrom13_9(const PF_InData& in) {
    return !IsPremiere(in) && in.version.major >= 13 && in.version.minor >= 9;
}

inline bool IsAfterEffectsBefore13_2(const PF_InData& in) {
    return !IsPremiere(in) && in.version.major == 13 && in.version.minor < 2;
}

}  // namespace quillon
