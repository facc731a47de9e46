#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <vector>

#include "parameter/ControlKinds.h"

namespace quillon {

// How the script's order of controls relates to the host's: one for the process, as the list is the same for all
// instances. Host index 0 is the effect's own input; 0 means "none" below.
struct ParameterMaps {
    std::map<std::uint32_t, std::uint32_t> hostIndexOfParam;  // by declaration index; written at the registration
    std::map<std::uint32_t, std::uint32_t> paramOfHostIndex;  // filled by refreshParamUI, and no value passes before
    // Host index of the first control of each kind.
    std::array<std::uint32_t, std::size(kControlKinds)> firstIndexOfKind{};
    std::vector<std::uint32_t> customUiIndices;  // host indices with a color wheel; nothing adds to it

    static ParameterMaps& instance() {
        static ParameterMaps maps;
        return maps;
    }
};

}  // namespace quillon
