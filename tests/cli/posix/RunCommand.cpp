#include "../RunCommand.h"

#include <sys/wait.h>

#include <cstdlib>

namespace quillon::test {

int RunCommand(const std::filesystem::path& folder, const std::filesystem::path& printed,
               const std::string& environment, const std::string& program, const std::string& arguments) {
    const std::string command = "cd '" + folder.string() + "' && " + environment + " '" + program + "' " + arguments +
                                " </dev/null >'" + (printed / "out").string() + "' 2>'" + (printed / "err").string() +
                                "'";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace quillon::test
