#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "cli/check/watch/CallCheck.h"

namespace quillon::cli {

// Whether the frame comes out upside down. An upload has the picture's top row first, and a host reads an output from
// its bottom row: an odd number of passes between them flips. Flips are followed from pass to pass, and since a shader
// may turn the picture by itself, the pixels have the last word: only a frame that is like its input upside down is
// reported.
class FlipChecks : public CallCheck {
public:
    using CallCheck::CallCheck;
    void entryBegins() override;
    void entryEnds(bool hasFailed) override;
    void after(const NativeCall& call) override;

private:
    // Whether a texture has its top row first; nothing where passes with different answers meet.
    std::optional<bool> orderOf(std::uint32_t glTexture) const;
    std::optional<bool> orderOfSamplers(std::uint32_t shaderId) const;
    void notePass(const NativeCall& call, std::optional<bool> source, bool flips);

    std::map<std::uint32_t, bool> orders;  // of targets that passes have drawn, by GL name: the top row first
    Place lastPass;                        // into the output
};

}  // namespace quillon::cli
