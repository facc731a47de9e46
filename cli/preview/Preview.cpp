#include "cli/preview/Preview.h"

#include <fmt/format.h>

#include <stop_token>
#include <system_error>
#include <thread>

#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/movie/Movie.h"
#include "cli/pictures/FrameRange.h"
#include "cli/pictures/PictureFormat.h"
#include "cli/preview/EffectWatch.h"
#include "cli/preview/PreviewServer.h"
#include "cli/preview/PreviewSession.h"
#include "cli/system/Desktop.h"

namespace quillon::cli {

namespace {

// What can be seen without the effect. An effect that is wrong is a matter for the page, but there must be one.
void CheckSetup(const PreviewSetup& setup) {
    std::error_code error;
    if (!std::filesystem::exists(setup.effect, error))
        throw Fault(setup.effect.string(), "no such effect", "name its folder, or a packed module");
    if (setup.input.empty()) return;
    if (IsRawPicture(setup.input))
        throw WrongCommandLine(setup.input.string(), "a raw buffer has no header", "convert it to .png or .exr");
    if (!IsMovieInput(setup.input) && FindFramePattern(setup.input) && !setup.hasRange)
        throw WrongCommandLine(setup.input.string(), "has a place for the frame number",
                               "say which frames with --frames");
    const std::filesystem::path first =
        IsMovieInput(setup.input) ? setup.input : PathOfFrame(setup.input, setup.range.first);
    if (!std::filesystem::exists(first, error)) throw Fault(first.string(), "no such file");
}

// Those whose changes are seen too. A sequence is not watched.
std::vector<std::filesystem::path> OtherFiles(const PreviewSetup& setup) {
    std::vector<std::filesystem::path> files;
    if (!setup.input.empty() && !FindFramePattern(setup.input)) files.push_back(setup.input);
    return files;
}

}  // namespace

int RunPreview(const PreviewOptions& options) {
    CheckSetup(options.setup);
    const auto limit =
        std::chrono::duration_cast<EffectProcess::Duration>(std::chrono::duration<double>(options.timeLimitSeconds));
    PreviewSession session(options.setup, limit);
    PreviewServer server(session, options.port);
    EffectWatch watch(options.setup.effect, OtherFiles(options.setup));
    // Only the effect knows whether these make sense.
    const bool isToBeChecked = !options.setup.values.empty() || !options.setup.layers.empty();
    if (isToBeChecked) {
        session.reload([&watch] { return watch.hasChanged(); });
        session.throwIfWrongCommandLine();
    }
    const std::jthread reloads([&, isLoaded = isToBeChecked](const std::stop_token& stop) mutable {
        const auto isOutdated = [&] { return stop.stop_requested() || watch.hasChanged(); };
        for (; !stop.stop_requested(); watch.wait(stop)) {
            if (!isLoaded) session.reload(isOutdated);
            isLoaded = false;
        }
    });
    PrintResult(server.address());
    if (options.opensBrowser) OpenInBrowser(server.address());
    server.run();
    throw Fault("", "the server has ended");
}

}  // namespace quillon::cli
