#include "cli/system/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace quillon::cli {

std::size_t TerminalColumns() {
    constexpr std::size_t kUsual = 80;  // of one that does not say
    if (isatty(STDOUT_FILENO) == 0) return 0;
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : kUsual;
}

}  // namespace quillon::cli
