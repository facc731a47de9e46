#pragma once

#include <filesystem>
#include <string>

#include "platform/TemporaryPath.h"

namespace quillon::prove {

// The tool in a folder of a row's own.
class Tool {
public:
    struct Run {
        int status;  // -1 when a signal ended it
        std::string out;
        std::string err;
    };
    // `arguments` is a part of a shell's command line; `environment` goes in front of the tool's name, and may be any
    // command that runs another.
    Run run(const std::string& arguments, const std::string& environment = "") const;
    // The same, and throws unless it ends with 0. Gives what it has printed.
    std::string runWell(const std::string& arguments, const std::string& environment = "") const;

    // The folder "fx" with ThreePasses() in it, and "in.argb", a noisy picture that --size 16x9 --depth 8 reads.
    void addEffectAndInput() const;

    std::filesystem::path pathOf(const std::string& name) const { return folder.path() / name; }
    void write(const std::string& name, const std::string& content) const;
    // Empty when there is no such file.
    std::string read(const std::string& name) const;
    // What the folder and those in it hold, sorted, with a blank after each.
    std::string list() const;

private:
    TemporaryFolder folder;
    TemporaryFolder printed;
};

}  // namespace quillon::prove
