#include "cli/diagnostics/ProgressBar.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

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
    fmt::print(stderr, "\r[{:<{}}] {}/{}", std::string(done * kWidth / steps, '#'), kWidth, done, steps);
}

}  // namespace quillon::cli
