#pragma once

#include <httplib.h>

#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "ToolTest.h"
#include "cli/system/ChildProcess.h"

namespace quillon::test {

// What the preview answered with for a frame.
struct PreviewFrame {
    nlohmann::json text;
    std::string pixels;
};

// `quillon preview` over the effect "fx", asked by plain requests as its page asks. The effect multiplies the picture,
// two pixels of opaque colors, by its control "amount".
class PreviewTest : public ToolTest {
protected:
    PreviewTest();

    static std::string Script(const std::string& inDraw = "");
    void start(const std::string& more = "");

    // A page's wish with this text for "amount", as JSON.
    static nlohmann::json ViewOf(const std::string& amount);
    PreviewFrame frame(const std::string& amount);
    // The first state from now on that satisfies `isRight`, which is null after a while.
    nlohmann::json waitForState(const std::function<bool(const nlohmann::json&)>& isRight);

    std::unique_ptr<httplib::Client> newClient() const;

    std::unique_ptr<cli::ChildProcess> preview;
    std::string host, root;  // "127.0.0.1:PORT", "/TOKEN/"
};

}  // namespace quillon::test
