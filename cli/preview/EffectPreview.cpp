#include "cli/preview/EffectPreview.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <tuple>
#include <utility>

#include "cli/check/run/Silencing.h"
#include "cli/check/script/CheckScript.h"
#include "cli/effect/ConfigChecks.h"
#include "cli/effect/ControlTexts.h"
#include "cli/effect/Leftovers.h"
#include "cli/effect/ShaderFaults.h"
#include "cli/movie/Movie.h"
#include "cli/pictures/Chart.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// NAME=VALUE; the value may hold further equals signs.
std::pair<std::string, std::string> SplitAssignment(const char* option, const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw WrongCommandLine(std::string(option) + " " + text, "write it as NAME=VALUE");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

Json TextOf(const host::World& world) {
    return {{"width", world.width()},
            {"height", world.height()},
            {"depth", world.bitDepth()},
            {"origin", {world.origin.h, world.origin.v}}};
}

host::HostSettings SettingsOf(const PreviewSetup& setup, PictureExtent extent) {
    host::HostSettings settings;
    settings.kind = setup.host;
    settings.compWidth = static_cast<A_long>(extent.width);
    settings.compHeight = static_cast<A_long>(extent.height);
    settings.downsampleX = settings.downsampleY = {1, setup.downsample};
    settings.keepsRecords = false;
    return settings;
}

}  // namespace

EffectPreview::EffectPreview(const PreviewSetup& previewSetup, const EffectSource& effectSource)
    : source(effectSource), setup(previewSetup), watch(source) {
    openInput();
    EffectSource folder = source;
    folder.isModule = false;
    effect.emplace(std::move(folder), SettingsOf(setup, input->extentOf(setup.range.first)));
    addLayers();
    checkTexts();
}

// What `quillon check` says without playing a scene.
void EffectPreview::checkTexts() {
    for (const Diagnostics& found :
         {CheckIdentity(source), CheckLeftovers(source),
          CheckScriptText(source.pathOf("fx.js"), source.textOf("fx.js")), CompileShaderFiles(source)})
        warnings.insert(warnings.end(), found.begin(), found.end());
}

// With what the script has done so far.
const Json& EffectPreview::warningsNow() {
    const Diagnostics found = watch.take();
    warnings.insert(warnings.end(), found.begin(), found.end());
    if (shownWarnings.is_null() || !found.empty()) shownWarnings = FaultsForPage(Silence(source, warnings), &source);
    return shownWarnings;
}

void EffectPreview::openInput() {
    if (setup.input.empty()) {
        // As `quillon chart -o chart.png` writes it.
        input = std::make_unique<FramePictures>(
            Convert(DrawChart(kChartWidth, kChartHeight), SampleFormat::byte, ChannelOrder::argb));
        if (setup.framesPerSecond != 0) framesPerSecond = setup.framesPerSecond;
        return;
    }
    std::optional<MovieInfo> movie;
    if (IsMovieInput(setup.input)) movie = ProbeMovie(setup.input);
    framesPerSecond = setup.framesPerSecond != 0 ? setup.framesPerSecond : movie ? movie->framesPerSecond : 25;
    if (movie && !setup.hasRange && movie->frames > 0)
        setup.range = {
            0, static_cast<std::int32_t>(std::lround(movie->frames / movie->framesPerSecond * framesPerSecond)) - 1, 1};
    input = std::make_unique<FramePictures>(setup.input, framesPerSecond, movie);
}

void EffectPreview::addLayers() {
    for (const std::string& text : setup.layers) {
        const auto [name, file] = SplitAssignment("--layer", text);
        const auto hasName = [&name = name](const Control& control) {
            return control.declared.uniformName == name || control.declared.label == name;
        };
        if (setup.isLenient && std::ranges::none_of(effect->controls(), hasName)) continue;
        const Control& control = FindControl(effect->controls(), name);
        if (control.declared.kind != LAYER) throw WrongCommandLine(name, "is not a layer", "set it with --set");
        const std::filesystem::path path = PathFromUtf8(file);
        FramePictures pictures(path, framesPerSecond,
                               IsMovieInput(path) ? std::optional(ProbeMovie(path)) : std::nullopt);
        pictures.extentOf(setup.range.first);  // so that a wrong file is seen now
        layers.emplace(&control, std::move(pictures));
    }
}

Json EffectPreview::describe() {
    Json list = Json::array();
    for (std::size_t i = 0; i < effect->controls().size(); ++i)
        list.push_back(Json(DescribeControl(effect->controls()[i], effect->parameters()[i])));
    Json given = Json::object();
    for (const std::string& assignment : setup.values) {
        const auto [name, text] = SplitAssignment("--set", assignment);
        const Parameter& declared = FindControl(effect->controls(), name).declared;
        ParseControlValue(declared, text);  // throws for an invalid text
        given[declared.uniformName] = {{"kind", ControlKindOf(declared.kind).name}, {"text", text}};
    }
    const PictureExtent extent = input->extentOf(setup.range.first);
    return {{"controls", list},
            {"input",
             {{"width", extent.width},
              {"height", extent.height},
              {"depth", input->bitDepthOf(setup.range.first)},
              {"first", setup.range.first},
              {"last", setup.range.last},
              {"fps", framesPerSecond}}},
            {"values", given},
            {"warnings", warningsNow()}};
}

void EffectPreview::setLayer(const std::string& name, std::span<const std::byte> file) {
    for (const Control& control : effect->controls()) {
        if (control.declared.uniformName != name || control.declared.kind != LAYER) continue;
        layers.erase(&control);
        if (file.empty())
            effect->reset(control);
        else
            layers.emplace(&control, FramePictures(DecodePicture(file)));
    }
}

// Controls that are not wanted have their defaults again.
void EffectPreview::applyValues(const Json& wanted) {
    for (const Control& control : effect->controls()) {
        const auto found = wanted.find(control.declared.uniformName);
        const bool isWanted = found != wanted.end() && found->at("kind") == ControlKindOf(control.declared.kind).name;
        if (!isWanted) {
            if (values.erase(&control) != 0) effect->reset(control);
            continue;
        }
        const std::string text = found->at("text");
        if (const auto set = values.find(&control); set != values.end() && set->second == text) continue;
        effect->set(control, [value = ParseControlValue(control.declared, text)](double) { return value; });
        values[&control] = text;
    }
}

FrameInput EffectPreview::inputOf(std::int32_t frame, std::uint32_t depth, double rate) {
    const HostPicture& picture = input->read(frame, depth, setup.downsample);
    FrameInput frameInput{
        .time = TimeOfFrame(frame, rate), .picture = picture.world, .fullExtent = picture.fullExtent, .layers = {}};
    for (auto& [control, pictures] : layers)
        frameInput.layers.emplace_back(control, pictures.read(frame, depth, setup.downsample).world);
    return frameInput;
}

PreviewFrame EffectPreview::render(const Json& request) {
    const std::uint32_t depth = request.at("depth");
    const std::string shown = request.at("show");
    const auto start = Clock::now();
    const FrameInput frame = inputOf(request.at("frame"), depth, request.at("fps"));
    const double readTime = MillisecondsSince(start);
    if (request.value("input", false)) return {TextOf(*frame.picture), frame.picture};
    applyValues(request.at("values"));
    clock.take();
    const auto renderStart = Clock::now();
    auto output = effect->render(frame);
    const double renderTime = MillisecondsSince(renderStart);
    if (!shown.empty()) output = ReadTarget(shown);
    PreviewFrame answer{TextOf(*output), output};
    const double scriptTime = std::min(clock.take(), renderTime);
    answer.text["times"] = {{"read", readTime}, {"script", scriptTime}, {"passes", renderTime - scriptTime}};
    answer.text["warnings"] = warningsNow();
    answer.text["states"] = states();
    Json& list = answer.text["targets"] = Json::array();
    for (const ListedTarget& target : targetsNow())
        list.push_back({{"name", target.variable},
                        {"width", target.width},
                        {"height", target.height},
                        {"depth", target.bitDepth}});
    return answer;
}

// With the names of a moment ago while no target comes or goes: to search the script for them costs half as much as
// all else around a small frame.
const std::vector<ListedTarget>& EffectPreview::targetsNow() {
    constexpr auto kLongestAge = std::chrono::milliseconds(250);
    std::vector<ListedTarget> live = LiveTargets();
    const bool areKnown = std::ranges::equal(live, targets, [](const ListedTarget& one, const ListedTarget& other) {
        return std::tie(one.id, one.width, one.height, one.bitDepth) ==
               std::tie(other.id, other.width, other.height, other.bitDepth);
    });
    if (areKnown && Clock::now() - targetsNamed < kLongestAge) return targets;
    targets = WithVariables(std::move(live));
    targetsNamed = Clock::now();
    return targets;
}

Json EffectPreview::states() const {
    Json list = Json::array();
    for (const Control& control : effect->controls()) {
        const PF_ParamDef& shown = effect->shown(control);
        list.push_back({std::string(shown.PF_DEF_NAME), (shown.ui_flags & PF_PUI_DISABLED) == 0});
    }
    return list;
}

}  // namespace quillon::cli
