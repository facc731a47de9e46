#pragma once

#include <string>

namespace quillon::cli {

// Shows an address in the user's browser, without waiting for it. False when there is no desktop.
bool OpenInBrowser(const std::string& address);

}  // namespace quillon::cli
