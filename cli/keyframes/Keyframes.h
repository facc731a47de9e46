#pragma once

#include <filesystem>
#include <map>
#include <string_view>
#include <vector>

#include "cli/effect/ControlValues.h"
#include "cli/effect/Controls.h"
#include "cli/keyframes/KeyTrack.h"

namespace quillon::cli {

// The keys of all controls, from the command line and from tables. Each function throws WrongCommandLine for what is
// no key, for an unknown control, for a wrong value and for a second key at one frame; those that read a file throw a
// Fault, with file and place.
class Keyframes {
public:
    // The controls live longer.
    explicit Keyframes(const std::vector<Control>& effectControls) : controls(effectControls) {}

    // NAME@FRAME=VALUE, with ~hold, ~linear or ~smooth at the end or without.
    void addOption(std::string_view text);
    // A table, by the file's ending: .csv or .json.
    void addFile(const std::filesystem::path& path);

    const std::map<const Control*, KeyTrack>& tracks() const { return trackOf; }

private:
    void add(const Control& control, std::int32_t frame, std::string_view valueText);
    void addCsv(std::string_view text);
    void addJson(std::string_view text);

    const std::vector<Control>& controls;
    std::map<const Control*, KeyTrack> trackOf;
};

}  // namespace quillon::cli
