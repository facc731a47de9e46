#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/import/Import.h"

namespace quillon::cli {

// How a channel asks its picture to be read.
struct ChannelReading {
    bool isTiled = false;    // repeats beyond its borders
    bool isNearest = false;  // the nearest pixel, not filtered

    bool operator==(const ChannelReading&) const = default;
};

// One pass of a pasted effect: a text with mainImage.
struct PastedPass {
    std::string name;  // "image", or "a" to "d" for a buffer
    std::string text{};
    std::string file{};  // as messages name it
    // What a channel reads, where that is said: "picture", "layer", "self", "a" to "d", "keyboard", "music", "none",
    // the path of a picture after "file:", or a kind that is not known.
    std::map<int, std::string> channels{};
    std::map<int, ChannelReading> readings{};
};

struct PastedSources {
    std::vector<PastedPass> passes;  // buffers in their order, the image last
    std::string common;
    std::string commonFile;
    std::string about;
    std::string credit;
    std::vector<std::string> faults;    // why there is no effect
    std::vector<std::string> warnings;  // what is left out
};

// Whether a text is a saved project: JSON that holds passes.
bool IsProject(const std::string& text);

// The passes that a request names, from a project or from files. Throws ToolError for a file that cannot be read, and
// for a channel option that makes no sense.
PastedSources ReadPastedSources(const ImportRequest& request, const std::string& text);

}  // namespace quillon::cli
