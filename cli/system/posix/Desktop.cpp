#include "cli/system/Desktop.h"

#include <cstdlib>
#include <system_error>
#include <thread>

#include "cli/system/ChildProcess.h"

namespace quillon::cli {

namespace {

constexpr const char* kOpener = "xdg-open";

bool HasDesktop() {
    return std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY");
}

}  // namespace

bool HasBrowser() {
    if (!HasDesktop()) return false;
    try {
        return ChildProcess(kOpener, {"--version"}, ChildProcess::Pipe::fromChild).wait() == 0;
    } catch (const std::system_error&) {
        return false;
    }
}

bool OpenInBrowser(const std::string& address) {
    if (!HasDesktop()) return false;
    try {
        // Some openers last as long as the browser does.
        auto opener = std::make_shared<ChildProcess>(kOpener, std::vector{address}, ChildProcess::Pipe::fromChild);
        std::thread([opener] { opener->wait(); }).detach();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

}  // namespace quillon::cli
