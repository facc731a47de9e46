#pragma once

#include "cli/preview/PreviewMessages.h"

namespace quillon::cli {

// What to show, and how.
struct PreviewOptions {
    PreviewSetup setup;
    int port = 0;  // 0: any
    bool opensBrowser = true;
    double timeLimitSeconds = 10;  // for each answer of the effect
};

// `quillon preview`: prints the address of a page that shows the effect, and serves it until the process ends.
int RunPreview(const PreviewOptions& options);

}  // namespace quillon::cli
