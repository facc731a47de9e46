#include "../RunCommand.h"

#include <windows.h>

#include <cstdlib>

namespace quillon::test {

int runCommand(const std::filesystem::path& folder, const std::string& environment, const std::string& program,
               const std::string& arguments) {
    std::string command = "cd /d \"" + folder.string() + "\"";
    if (!environment.empty()) command += "&& set " + environment;
    command += "&& \"" + std::filesystem::path(program).make_preferred().string() + "\" " + arguments + " <nul";
    std::wstring wide(command.size(), L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(
        CP_UTF8, 0, command.data(), static_cast<int>(command.size()), wide.data(), static_cast<int>(wide.size()))));
    return _wsystem(wide.c_str());
}

}  // namespace quillon::test
