#include <fmt/format.h>

#include <algorithm>

#include "cli/commands/Commands.h"
#include "cli/commands/Version.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/doctor/Doctor.h"

namespace quillon::cli {

int RunDoctor() {
    constexpr const char* kStates[] = {"ok", "missing", "broken"};
    const std::vector<MachinePart> parts = ExamineMachine();
    std::size_t width = 0;
    for (const MachinePart& part : parts) width = std::max(width, part.name.size());
    PrintResult(VersionText());
    PrintResult("");
    for (const MachinePart& part : parts) {
        PrintResult(fmt::format("{:<7}  {:<{}}  {}", kStates[static_cast<std::size_t>(part.state)], part.name, width,
                                part.text));
        if (!part.remedy.empty()) PrintResult(fmt::format("{:>{}}{}", "", width + 11, part.remedy));
    }
    const bool isBroken = std::ranges::count(parts, MachinePart::State::broken, &MachinePart::state) != 0;
    return isBroken ? 1 : 0;
}

}  // namespace quillon::cli
