#pragma once

#include "cli/commands/Commands.h"
#include "cli/worker/WorkerChannel.h"

namespace quillon::cli {

// `quillon render -j`: contiguous pieces of the frames go to a worker each, which writes its pictures itself. Outputs
// that take frames in order get them from here; for those the frames are dealt out to the workers in turn. Gives the
// exit status. Throws a ToolError with the first fault in the frames' order and with each worker that died.
int RenderInWorkers(const RenderOptions& options);

// The worker's side: renders the frames of this request and answers with each.
int RenderForParent(WorkerChannel& channel, const WorkerMessage& request, RenderOptions options);

}  // namespace quillon::cli
