#pragma once

#include <span>
#include <string>
#include <vector>

namespace quillon::cli {

// What shells need to know of the tool's command line.

// What may follow an option, or be given by itself.
struct ValueShape {
    enum class Kind { none, text, file, choice };
    Kind kind = Kind::none;
    std::vector<std::string> choices = {};
};

struct OptionShape {
    std::vector<std::string> names;  // "-o", "--output"
    std::string about;               // one line
    ValueShape value;
};

struct CommandShape {
    std::string name;
    std::string about;  // one line
    std::vector<OptionShape> options;
    ValueShape argument;  // what is given without an option
};

// A script that teaches a shell to complete the command line of `quillon`. The names of the shells are kShells.
inline constexpr const char* kShells[] = {"bash", "zsh", "fish", "powershell"};
std::string WriteCompletion(const std::string& shell, std::span<const CommandShape> commands);

std::string WriteBashCompletion(std::span<const CommandShape> commands);
std::string WriteZshCompletion(std::span<const CommandShape> commands);
std::string WriteFishCompletion(std::span<const CommandShape> commands);
std::string WritePowerShellCompletion(std::span<const CommandShape> commands);

// A text in single quotes, in which each single quote is replaced by `quote`.
std::string SingleQuoted(const std::string& text, const char* quote);

}  // namespace quillon::cli
