#include "cli/check/run/CheckWorker.h"
#include "cli/commands/CommandLine.h"
#include "cli/commands/Commands.h"
#include "cli/commands/RenderWorkers.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/preview/PreviewWorker.h"
#include "cli/worker/WorkerChannel.h"

namespace quillon::cli {

int RunWorker() {
    WorkerChannel& channel = WorkerChannel::Open();
    const auto request = channel.receive();
    if (!request) return 0;
    if (request->text.contains("check")) {
        RunCheckWorker(channel, *request);
        return 0;
    }
    if (request->text.contains("preview")) {
        RunPreviewWorker(channel, *request);
        return 0;
    }
    try {
        return RunCommandLine(request->text.at("arguments"), [&](const RenderOptions& options) {
            return RenderForParent(channel, *request, options);
        });
    } catch (const ToolError& error) {
        channel.answer({{{"faults", JsonOf(error.faults)}, {"status", error.exitStatus}}});
        return 0;
    }
}

}  // namespace quillon::cli
