#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/preview/EffectProcess.h"
#include "cli/preview/PreviewMessages.h"

namespace quillon::cli {

// A preview as its pages see it: the state that they show, and frames. It outlives every worker. Any thread.
class PreviewSession {
public:
    PreviewSession(PreviewSetup previewSetup, EffectProcess::Duration longestAnswer);

    // Loads the effect as its files are now, in a new worker that takes over once it has rendered. Gives up without a
    // trace when `isOutdated` says so, as the files have changed again. One call at a time. What keeps the effect from
    // loading is in the state, and printed.
    void reload(const EffectProcess::IsOutdated& isOutdated);

    // What pages show, a JSON object:
    //   generation         grows with each change
    //   effect, name, input, layers, system     what a command line names
    //   host, downsample   of the worker
    //   description        the answer to the setup; that of the last effect that loaded
    //   faults             why the effect does not load now; else empty
    //   view               what a page looked at last: frame, depth, fps, values, show
    //   uploads            titles of the layers' pictures that a page has sent
    struct State {
        std::uint64_t generation = 0;
        std::string text;
    };
    State state() const;
    // The same, once its generation is another one, or after this time.
    State waitForChange(std::uint64_t generation, std::chrono::milliseconds longest) const;

    // The frame that a page looks at: a request of PreviewMessages.h, with "host" and "downsample".
    std::shared_ptr<const EffectAnswer> frame(const nlohmann::json& view);
    // The last one that went well; null before.
    std::shared_ptr<const EffectAnswer> lastFrame() const;

    // The next frame is that of a new worker, for effects that keep something from frame to frame.
    void restart();

    // The picture file of a layer, from a page, with a title for it; empty for "None". The answer to a request.
    nlohmann::json setLayer(const std::string& name, const std::string& title, std::vector<std::byte> file);

    // Throws the faults of the last load if they are of the command line.
    void throwIfWrongCommandLine() const;

private:
    struct Upload {
        std::string title;
        std::vector<std::byte> file;
    };
    struct Started {
        std::shared_ptr<EffectProcess> process;
        nlohmann::json answer;
    };
    // Without a process, and with faults, when the system starts none.
    Started start(const PreviewSetup& wanted, const EffectProcess::IsOutdated& isOutdated) const;
    // With the mutex held. Gives what ran before, whose end may take a while.
    std::shared_ptr<EffectProcess> install(const Started& started, const PreviewSetup& wanted);
    State stateNow() const;
    std::shared_ptr<EffectProcess> processFor(const nlohmann::json& wantedView);

    const EffectProcess::Duration limit;
    std::mutex turn;  // of pages that want frames

    mutable std::mutex mutex;  // of what follows
    mutable std::condition_variable hasChanged;
    PreviewSetup setup;
    std::shared_ptr<EffectProcess> process;  // null while the effect does not load
    nlohmann::json description;
    nlohmann::json faults = nlohmann::json::array();
    int lastStatus = 0;
    nlohmann::json view;
    std::map<std::string, Upload> uploads;
    std::shared_ptr<const EffectAnswer> last;
    std::uint64_t generation = 0;
};

}  // namespace quillon::cli
