#pragma once

#include "hostapi/HostApi.h"

namespace quillon {

// Which host is calling.

inline bool isPremiere(const PF_InData& in) {
    return in.appl_id == kPremiereId;
}

// Major and minor number are each compared by itself: 14.0 is not "from 13.9 on". It is meant so.
inline bool isAfterEffectsFrom13_9(const PF_InData& in) {
    return !isPremiere(in) && in.version.major >= 13 && in.version.minor >= 9;
}

inline bool isAfterEffectsBefore13_2(const PF_InData& in) {
    return !isPremiere(in) && in.version.major == 13 && in.version.minor < 2;
}

}  // namespace quillon
