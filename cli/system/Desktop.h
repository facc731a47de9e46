#pragma once

#include <string>

namespace quillon::cli {

// Whether there is a desktop with a program that shows addresses.
bool HasBrowser();

// Shows an address in the user's browser, without waiting for it. False when there is no desktop.
bool OpenInBrowser(const std::string& address);

}  // namespace quillon::cli
