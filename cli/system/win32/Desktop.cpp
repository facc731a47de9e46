#include "cli/system/Desktop.h"

#include <windows.h>
// After windows.h, whose types it needs.
#include <shellapi.h>

namespace quillon::cli {

bool HasBrowser() {
    return true;  // the system opens addresses itself
}

bool OpenInBrowser(const std::string& address) {
    const std::wstring wide(address.begin(), address.end());  // ASCII
    constexpr INT_PTR kLargestError = 32;
    const HINSTANCE outcome = ShellExecuteW(nullptr, L"open", wide.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(outcome) > kLargestError;
}

}  // namespace quillon::cli
