#include "cli/system/Desktop.h"

#include <cstdlib>
#include <system_error>
#include <thread>

#include "cli/system/ChildProcess.h"

namespace quillon::cli {

bool OpenInBrowser(const std::string& address) {
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) return false;
    try {
        // Some openers last as long as the browser does.
        auto opener = std::make_shared<ChildProcess>("xdg-open", std::vector{address}, ChildProcess::Pipe::fromChild);
        std::thread([opener] { opener->wait(); }).detach();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

}  // namespace quillon::cli
