#pragma once

#include <map>
#include <string>
#include <utility>

#include "cli/check/watch/CallCheck.h"

namespace quillon {
class Shader;
}

namespace quillon::cli {

// What a pass reads and writes: samplers that nobody has set or whose texture has gone, targets that are read while
// they are drawn into, and frames that no pass reaches.
class PassChecks : public CallCheck {
public:
    using CallCheck::CallCheck;
    void entryBegins() override;
    void entryEnds(bool hasFailed) override;
    void before(const NativeCall& call) override;
    void after(const NativeCall& call) override;

private:
    void noteSampler(const NativeCall& call);
    void checkSamplers(const NativeCall& call, std::uint32_t shaderId) const;

    // What a sampler was last set to: an entity, and which making of it; 0 for one of the engine's.
    struct Source {
        std::uint32_t id = 0;
        std::uint64_t serial = 0;
    };
    std::map<std::pair<std::uint32_t, std::string>, Source> sources;  // by shader's id and uniform
    int passes = 0;                                                   // of the frame
    bool hasOutput = false;
};

}  // namespace quillon::cli
