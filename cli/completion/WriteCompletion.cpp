#include <utility>

#include "cli/completion/CommandShape.h"

namespace quillon::cli {

std::string SingleQuoted(const std::string& text, const char* quote) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string(quote) : std::string(1, c);
    return quoted + "'";
}

std::string WriteCompletion(const std::string& shell, std::span<const CommandShape> commands) {
    using Write = std::string (*)(std::span<const CommandShape>);
    constexpr Write kWriters[] = {WriteBashCompletion, WriteZshCompletion, WriteFishCompletion,
                                  WritePowerShellCompletion};
    static_assert(std::size(kWriters) == std::size(kShells));
    for (std::size_t i = 0; i < std::size(kShells); ++i)
        if (shell == kShells[i]) return kWriters[i](commands);
    return {};
}

}  // namespace quillon::cli
