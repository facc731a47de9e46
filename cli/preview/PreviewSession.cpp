#include "cli/preview/PreviewSession.h"

#include <algorithm>
#include <utility>

#include "cli/diagnostics/ToolError.h"
#include "cli/system/ModuleKind.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::json;

// The part of a view that the worker is asked for.
WorkerMessage FrameRequest(Json view) {
    view.erase("host");
    view.erase("downsample");
    return {std::move(view)};
}

// What a browser shows fluently. Larger inputs are shown at a part of their size, until the page asks for all of it.
constexpr std::uint64_t kMostPixels = std::uint64_t{3840} * 2160;

std::uint32_t FirstDownsample(std::uint32_t wanted, const Json& input) {
    if (wanted != 1) return wanted;
    const std::uint64_t pixels = input["width"].get<std::uint64_t>() * input["height"].get<std::uint64_t>();
    for (const std::uint32_t n : {1, 2, 3, 4})
        if (pixels / (n * n) <= kMostPixels) return n;
    return 8;
}

bool Fits(const PreviewSetup& setup, const Json& view) {
    return view.at("host") == static_cast<int>(setup.host) && view.at("downsample") == setup.downsample;
}

}  // namespace

PreviewSession::PreviewSession(PreviewSetup previewSetup, EffectProcess::Duration longestAnswer)
    : limit(longestAnswer), setup(std::move(previewSetup)) {}

PreviewSession::Started PreviewSession::start(const PreviewSetup& wanted,
                                              const EffectProcess::IsOutdated& isOutdated) const try {
    Started started{std::make_shared<EffectProcess>(limit), {}};
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(limit).count();
    started.answer =
        started.process->ask({{{"preview", JsonOf(wanted)}, {"milliseconds", milliseconds}}}, isOutdated).message.text;
    if (started.answer.contains("faults")) return started;
    std::map<std::string, Upload> sent;
    {
        const std::lock_guard lock(mutex);
        sent = uploads;
    }
    for (const auto& [name, upload] : sent) started.process->ask({{{"layer", name}}, upload.file}, isOutdated);
    return started;
} catch (const std::exception& failure) {
    return {nullptr, FailedAnswer(failure, nullptr)};
}

std::shared_ptr<EffectProcess> PreviewSession::install(const Started& started, const PreviewSetup& wanted) {
    if (process) process->abandon();
    const bool hasFailed = started.answer.contains("faults");
    auto old = std::exchange(process, hasFailed ? nullptr : started.process);
    faults = hasFailed ? started.answer["faults"] : Json::array();
    lastStatus = hasFailed ? started.answer["status"].get<int>() : 0;
    if (!hasFailed) {
        description = started.answer;
        setup = wanted;
        // From here on the view has them.
        setup.values.clear();
        setup.isLenient = true;
        const Json& input = description["input"];
        if (view.is_null())
            view = {{"frame", input["first"]},
                    {"depth", setup.depth != 0 ? Json(setup.depth) : input["depth"]},
                    {"fps", input["fps"]},
                    {"values", description["values"]},
                    {"show", ""},
                    {"host", static_cast<int>(setup.host)},
                    {"downsample", FirstDownsample(setup.downsample, input)}};
    }
    ++generation;
    hasChanged.notify_all();
    return old;
}

void PreviewSession::reload(const EffectProcess::IsOutdated& isOutdated) {
    PreviewSetup wanted;
    Json wantedView;
    {
        const std::lock_guard lock(mutex);
        wanted = setup;
        wantedView = view;
    }
    const Started started = start(wanted, isOutdated);
    if (!started.answer.contains("faults") && !wantedView.is_null() && Fits(wanted, wantedView))
        started.process->prepare(FrameRequest(wantedView), isOutdated);
    if (isOutdated()) return;
    std::shared_ptr<EffectProcess> old;  // ends without the lock
    const std::lock_guard lock(mutex);
    old = install(started, wanted);
    if (lastStatus != kWrongCommandLine) PrintDiagnostics(FaultsOfPage(faults));
}

void PreviewSession::throwIfWrongCommandLine() const {
    const std::lock_guard lock(mutex);
    if (lastStatus == kWrongCommandLine) throw ToolError(kWrongCommandLine, FaultsOfPage(faults));
}

PreviewSession::State PreviewSession::stateNow() const {
    Json titles = Json::object();
    for (const auto& [name, upload] : uploads) titles[name] = upload.title;
    Json text = {{"generation", generation},
                 {"effect", setup.effect.string()},
                 {"name", setup.effect.filename().string()},
                 {"input", setup.input.string()},
                 {"layers", setup.layers},
                 {"system", kOwnModuleKind.system},
                 {"host", static_cast<int>(setup.host)},
                 {"downsample", setup.downsample},
                 {"description", description},
                 {"faults", faults},
                 {"view", view},
                 {"uploads", titles}};
    return {generation, text.dump(-1, ' ', false, Json::error_handler_t::replace)};
}

PreviewSession::State PreviewSession::state() const {
    const std::lock_guard lock(mutex);
    return stateNow();
}

PreviewSession::State PreviewSession::waitForChange(std::uint64_t known, std::chrono::milliseconds longest) const {
    std::unique_lock lock(mutex);
    hasChanged.wait_for(lock, longest, [&] { return generation != known; });
    return generation != known ? stateNow() : State{generation, ""};
}

// The worker for a view: the one at hand or, when that has ended or plays another host, a new one. Null when the
// effect does not load.
std::shared_ptr<EffectProcess> PreviewSession::processFor(const Json& wantedView) {
    for (;;) {
        std::shared_ptr<EffectProcess> found;
        PreviewSetup wanted;
        {
            const std::lock_guard lock(mutex);
            found = process;
            wanted = setup;
        }
        if (!found || (Fits(wanted, wantedView) && found->isAlive())) return found;
        wanted.host = static_cast<host::HostKind>(wantedView.at("host").get<int>());
        wanted.downsample = wantedView.at("downsample");
        const Started started = start(wanted, {});
        const std::lock_guard lock(mutex);
        // A reload that came in between has newer files. What ran before is `found`, which ends without the lock.
        if (process == found) install(started, wanted);
    }
}

std::shared_ptr<const EffectAnswer> PreviewSession::frame(const Json& wantedView) {
    const std::lock_guard turnLock(turn);
    const WorkerMessage request = FrameRequest(wantedView);
    {
        const std::lock_guard lock(mutex);
        if (!wantedView.value("input", false)) view = wantedView;
    }
    for (;;) {
        const auto asked = processFor(wantedView);
        if (!asked) {
            const std::lock_guard lock(mutex);
            const Diagnostics isLoading = {
                {.text = "the effect has not been loaded yet", .kind = Diagnostic::Kind::tool}};
            const Json text = generation == 0 ? FailedAnswer(isLoading, kFault, nullptr)
                                              : Json{{"faults", faults}, {"status", lastStatus}};
            return std::make_shared<EffectAnswer>(EffectAnswer{{text}});
        }
        auto answer = std::make_shared<EffectAnswer>(asked->ask(request));
        const std::lock_guard lock(mutex);
        if (answer->hasFailed()) {
            if (process != asked) continue;  // of an effect that is no more
        } else if (!wantedView.value("input", false)) {
            last = answer;
        }
        answer->message.text["generation"] = generation;
        return answer;
    }
}

std::shared_ptr<const EffectAnswer> PreviewSession::lastFrame() const {
    const std::lock_guard lock(mutex);
    return last;
}

void PreviewSession::restart() {
    const std::lock_guard lock(mutex);
    if (process) process->abandon();
}

Json PreviewSession::setLayer(const std::string& name, const std::string& title, std::vector<std::byte> file) {
    std::shared_ptr<EffectProcess> asked;
    {
        const std::lock_guard lock(mutex);
        asked = process;
    }
    const EffectAnswer answer = asked ? asked->ask({{{"layer", name}}, file}) : EffectAnswer{{Json::object()}};
    if (answer.hasFailed()) return answer.message.text;
    const std::lock_guard lock(mutex);
    uploads[name] = {title, std::move(file)};
    ++generation;
    hasChanged.notify_all();
    return answer.message.text;
}

}  // namespace quillon::cli
