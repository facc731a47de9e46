#include "cli/commands/Commands.h"

#include <utility>

#include "cli/diagnostics/PrintLine.h"
#include "cli/effect/ConfigChecks.h"
#include "cli/effect/EffectDescription.h"
#include "cli/effect/Leftovers.h"
#include "cli/effect/LoadedEffect.h"
#include "cli/pictures/Chart.h"

namespace quillon::cli {

namespace {

// Large enough for what an effect divides its picture into.
constexpr PictureExtent kExtent = {256, 144};

}  // namespace

int RunCheck(const CheckOptions& options) {
    EffectSource source = ReadCheckedSource(options.effect);
    PrintDiagnostics(CheckIdentity(source));
    PrintDiagnostics(CheckLeftovers(source));
    DescribeEffect(source);  // throws what hosts would not take

    host::HostSettings settings;
    settings.compWidth = static_cast<A_long>(kExtent.width);
    settings.compHeight = static_cast<A_long>(kExtent.height);
    LoadedEffect effect(std::move(source), settings);
    const Picture chart = DrawChart(kExtent.width, kExtent.height);
    for (const std::uint32_t bitDepth : {8u, 16u, 32u}) {
        FrameInput input;
        input.picture = WorldOf(chart, bitDepth);
        input.fullExtent = kExtent;
        effect.render(input);
    }
    PrintResult(options.effect.string() + ": nothing wrong");
    return 0;
}

}  // namespace quillon::cli
