#pragma once

#include <chrono>
#include <cstddef>

namespace quillon::cli {

// A line on standard error that fills up, with steps a second and the time left, when that is a terminal and there is
// more than one step; else nothing. The line is gone when the object is.
class ProgressBar {
public:
    explicit ProgressBar(std::size_t stepCount);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void advance();  // by one step
    // Removes the line, so that something else can be printed; show() and advance() bring it back.
    void clear();
    void show() const;

private:
    std::size_t steps;
    std::size_t done = 0;
    bool isShown;
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

}  // namespace quillon::cli
