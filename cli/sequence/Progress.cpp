#include "cli/sequence/Progress.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/diagnostics/PrintLine.h"

namespace quillon::cli {

Progress::Progress(ProgressForm progressForm, std::size_t frames)
    : form(progressForm), bar(form == ProgressForm::bar ? frames : 0) {}

void Progress::print(const std::string& path) {
    if (path.empty()) return;
    bar.clear();
    PrintResult(path);
    bar.show();
}

void Progress::count(std::int32_t frame, const std::string& path, const FrameTimes& times) {
    bar.advance();
    if (form != ProgressForm::json) return;
    const auto tenths = [](double milliseconds) { return std::round(milliseconds * 10) / 10; };
    const nlohmann::ordered_json line = {{"frame", frame},
                                         {"path", path},
                                         {"milliseconds", tenths(MillisecondsSince(last))},
                                         {"read", tenths(times.read)},
                                         {"render", tenths(times.render)},
                                         {"write", tenths(times.write)}};
    last = std::chrono::steady_clock::now();
    PrintWords(line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

}  // namespace quillon::cli
