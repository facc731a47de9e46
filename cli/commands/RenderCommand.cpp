#include "cli/commands/Commands.h"
#include "cli/commands/RenderWorkers.h"
#include "cli/commands/Renderer.h"
#include "cli/diagnostics/PrintLine.h"

namespace quillon::cli {

int RunRender(const RenderOptions& options) {
    if (options.jobs > 1) return RenderInWorkers(options);
    Renderer renderer(options);
    PrintDiagnostics(renderer.warnings());
    const RenderPlan& plan = renderer.frames();
    const std::unique_ptr<FrameOutput> output = MakeFrameOutput(plan.outputOptions());
    Progress progress(options.progress, plan.frames.size());
    std::size_t done = 0;
    plan.announce(done);
    renderer.run({.encode = [&](std::int32_t frame, const Picture& picture) { return output->encode(frame, picture); },
                  .report =
                      [&](std::int32_t frame, const FrameTimes& times, EncodedFrame encoded) {
                          const std::string path = output->add(frame, std::move(encoded));
                          progress.print(path);
                          progress.count(frame, path, times);
                          plan.announce(++done);
                      }});
    progress.print(output->finish());
    return 0;
}

}  // namespace quillon::cli
