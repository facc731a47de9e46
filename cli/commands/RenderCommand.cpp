#include <fmt/format.h>

#include <algorithm>

#include "cli/commands/Commands.h"
#include "cli/commands/RenderWorkers.h"
#include "cli/commands/Renderer.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/pictures/ContactSheet.h"

namespace quillon::cli {

namespace {

void WriteSheet(const RenderOptions& options, const ContactSheet& sheet) {
    WritePicture(options.contactSheet, sheet.draw(), options.storage);
    PrintResult(options.contactSheet.string());
}

int RunSweep(const RenderOptions& options, Renderer& renderer) {
    ContactSheet sheet(renderer.sweepSize(), renderer.sweepColumns());
    Progress progress(options.progress, renderer.sweepSize());
    renderer.runSweep([&](std::size_t place, const Picture& picture, const std::string& label) {
        sheet.add(place, picture, label);
        progress.count(static_cast<std::int32_t>(place), "", {});
    });
    progress.clear();
    WriteSheet(options, sheet);
    return 0;
}

}  // namespace

int RunRender(const RenderOptions& options) {
    if (options.jobs > 1) return RenderInWorkers(options);
    Renderer renderer(options);
    PrintDiagnostics(renderer.warnings());
    if (!options.sweeps.empty()) return RunSweep(options, renderer);
    const RenderPlan& plan = renderer.frames();
    ContactSheet sheet(plan.frames.size(), 0);
    const std::unique_ptr<FrameOutput> output = MakeFrameOutput(plan.outputOptions());
    Progress progress(options.progress, plan.frames.size());
    std::size_t done = 0;
    plan.announce(done);
    renderer.run({.encode =
                      [&](std::int32_t frame, const Picture& picture) {
                          if (!options.contactSheet.empty())
                              sheet.add(
                                  static_cast<std::size_t>(std::ranges::find(plan.frames, frame) - plan.frames.begin()),
                                  picture, fmt::format("frame {}", frame));
                          return output->encode(frame, picture);
                      },
                  .report =
                      [&](std::int32_t frame, const FrameTimes& times, EncodedFrame encoded) {
                          const std::string path = output->add(frame, std::move(encoded));
                          progress.print(path);
                          progress.count(frame, path, times);
                          plan.announce(++done);
                      }});
    progress.print(output->finish());
    if (!options.contactSheet.empty()) {
        progress.clear();
        WriteSheet(options, sheet);
    }
    return 0;
}

}  // namespace quillon::cli
