#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>

#include "BareFrame.h"

namespace quillon::bench {

// An identity effect's frames through EntryPointFunc of the packed module, on the smart route of After Effects.
class ModuleFrame {
public:
    // Throws std::runtime_error when the module cannot be loaded or started.
    explicit ModuleFrame(const std::filesystem::path& module);
    ~ModuleFrame();

    // Renders one frame and gives the milliseconds that were spent inside the entry point, over both phases. What the
    // host does between the calls, making worlds and keeping its ledger, does not count.
    double render(const FrameSize& size, const std::byte* input, std::byte* output);

private:
    struct Session;
    std::unique_ptr<Session> session;
};

}  // namespace quillon::bench
