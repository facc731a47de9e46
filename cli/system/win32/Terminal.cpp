#include "cli/system/Terminal.h"

#include <windows.h>

namespace quillon::cli {

std::size_t TerminalColumns() {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info)) return 0;
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

}  // namespace quillon::cli
