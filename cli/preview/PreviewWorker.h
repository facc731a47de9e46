#pragma once

#include "cli/worker/WorkerChannel.h"

namespace quillon::cli {

// Answers the first request, which has a "preview", and all that follow, until the channel ends.
void RunPreviewWorker(WorkerChannel& channel, const WorkerMessage& first);

}  // namespace quillon::cli
