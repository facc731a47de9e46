#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "cli/diagnostics/ProgressBar.h"
#include "cli/sequence/FramePipeline.h"

namespace quillon::cli {

enum class ProgressForm { bar, json, none };

// How far a sequence is, on standard error: a bar with frames a second and the time left, when that is a terminal, or
// a line with a JSON object for each frame: "frame", "path", "milliseconds" since the last line, and the
// frame's own "read", "render" and "write", which overlap with those of other frames.
class Progress {
public:
    Progress(ProgressForm progressForm, std::size_t frames);

    // One more frame is done, whichever it is.
    void count(std::int32_t frame, const std::string& path, const FrameTimes& times);
    // Removes the bar, which print() and count() bring back.
    void clear() { bar.clear(); }
    // Prints the path as a result unless it is empty.
    void print(const std::string& path);

private:
    ProgressForm form;
    ProgressBar bar;
    std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();
};

}  // namespace quillon::cli
