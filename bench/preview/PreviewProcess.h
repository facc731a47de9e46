#pragma once

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

namespace quillon::bench {

// `quillon preview` over an effect and a picture, asked as its page asks. Throws std::runtime_error when it does not
// answer.
class PreviewProcess {
public:
    PreviewProcess(const std::filesystem::path& effect, const std::filesystem::path& input);
    ~PreviewProcess();

    // A frame at 8 bits with default values: the milliseconds from the request to the last byte of its pixels.
    double render();
    // What was said about the last frame.
    const nlohmann::json& lastFrame() const;
    // Waits until frames are those of another state of the effect than the last one.
    void waitForReload();

    // Of the server and its worker together.
    struct Use {
        long kilobytes = 0;  // of memory that is theirs only
        long files = 0;      // that are open
    };
    Use use() const;

private:
    struct Connection;
    std::unique_ptr<Connection> connection;
};

}  // namespace quillon::bench
