#pragma once

#include "cli/worker/WorkerChannel.h"

// Between CheckEffect and its workers, one for each scene. The request: "check", the scene's number in Scenes();
// "level"; "milliseconds" that each part of the script may take; the effect's path in the bytes. The answers, as things
// come up: "step", what is tried next; "pass", the finding if the pass that begins never ends, or none once it has
// ended; "findings" with their "situation"; "note", a line that the script says; "frame" with its "digest"; at the end
// "done". "faults" with "status" end it too: what is no fault of the effect.

namespace quillon::cli {

// Answers one request.
void RunCheckWorker(WorkerChannel& channel, const WorkerMessage& request);

}  // namespace quillon::cli
