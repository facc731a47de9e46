#include "cli/diagnostics/ProgressBar.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace quillon::cli {

ProgressBar::ProgressBar(std::size_t stepCount)
    : steps(stepCount), isShown(stepCount > 1 && isatty(STDERR_FILENO) != 0) {
    show();
}

ProgressBar::~ProgressBar() {
    clear();
}

void ProgressBar::advance() {
    ++done;
    show();
}

void ProgressBar::clear() {
    if (isShown) std::fputs("\r\x1b[K", stderr);
}

void ProgressBar::show() const {
    if (!isShown) return;
    constexpr std::size_t kWidth = 40;
    std::string rate;
    if (done != 0) {
        const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
        const double each = spent.count() / static_cast<double>(done);
        const auto left = static_cast<int>(each * static_cast<double>(steps - done) + 0.5);
        rate = fmt::format("  {:.1f} frames/s, {}:{:02} left", 1 / each, left / 60, left % 60);
    }
    // The rest of a longer line goes.
    fmt::print(stderr, "\r[{:<{}}] {}/{}{}\x1b[K", std::string(done * kWidth / steps, '#'), kWidth, done, steps, rate);
}

}  // namespace quillon::cli
