#include "cli/effect/ShownTarget.h"

#include <duktape.h>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/diagnostics/ToolError.h"
#include "engine/AEQuillon2.h"
#include "engine/EngineLock.h"
#include "entities/Context.h"
#include "imagelib/HostRange.h"
#include "script/Scripting.h"

namespace quillon::cli {

namespace {

// Numbers in global variables, and in what objects and arrays there hold, as a JSON text.
constexpr const char* kListNumbers =
    "(function (all) {\n"
    "  var found = {};\n"
    "  function note(name, value) { if (typeof value === 'number') found[name] = value; }\n"
    "  for (var name in all) {\n"
    "    var value = all[name];\n"
    "    note(name, value);\n"
    "    if (typeof value !== 'object' || value === null) continue;\n"
    "    for (var key in value) note(Array.isArray(value) ? name + '[' + key + ']' : name + '.' + key, value[key]);\n"
    "  }\n"
    "  return JSON.stringify(found);\n"
    "})(this)";

// By the number; of several variables the first one by name.
std::map<std::uint32_t, std::string> VariablesOfNumbers() {
    std::map<std::uint32_t, std::string> variables;
    duk_hthread* const heap = Scripting::instance().Context();
    if (!heap) return variables;
    const bool isEvaluated = duk_peval_string(heap, kListNumbers) == 0 && duk_is_string(heap, -1);
    const auto found = nlohmann::json::parse(isEvaluated ? duk_get_string(heap, -1) : "{}", nullptr, false);
    duk_pop(heap);
    for (const auto& [name, number] : found.items())
        if (number.is_number_unsigned() && number <= UINT32_MAX) variables.emplace(number.get<std::uint32_t>(), name);
    return variables;
}

std::uint32_t FindTarget(const std::string& name) {
    const std::vector<ListedTarget> targets = ListTargets();
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), index);
    if (error == std::errc() && end == name.data() + name.size() && index >= 1 && index <= targets.size())
        return targets[index - 1].id;
    std::string list;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        if (!name.empty() && targets[i].variable == name) return targets[i].id;
        list += fmt::format("\n  {}  {}", i + 1, targets[i].variable);
    }
    throw WrongCommandLine("--show " + name, "the effect has no such render target",
                           "those that exist after the frame, by number and variable:" + list);
}

}  // namespace

std::vector<ListedTarget> ListTargets() {
    return WithVariables(LiveTargets());
}

std::vector<ListedTarget> LiveTargets() {
    constexpr std::uint32_t kMostTargets = 4096;
    constexpr std::uint32_t kTag = RenderTarget::Factory::kTag;
    std::vector<ListedTarget> targets;
    for (std::uint32_t id = kTag + 1; id <= kTag + kMostTargets; ++id) {
        const RenderTarget& target = Context::Instance().FindRenderTarget(id);
        if (target.width != 0 && target.height != 0)
            targets.push_back({id, "", target.width, target.height, target.bitDepth});
    }
    return targets;
}

std::vector<ListedTarget> WithVariables(std::vector<ListedTarget> targets) {
    auto variables = VariablesOfNumbers();
    for (ListedTarget& target : targets) target.variable = std::move(variables[target.id]);
    return targets;
}

std::shared_ptr<host::World> ReadTarget(const std::string& name) {
    RenderTarget& target = Context::Instance().FindRenderTarget(FindTarget(name));
    const std::uint32_t depth = target.bitDepth == 15 ? 16 : target.bitDepth;
    auto world = std::make_shared<host::World>(static_cast<A_long>(target.width), static_cast<A_long>(target.height),
                                               static_cast<int>(depth));
    const EngineLock lock(AEQuillon2::instance());
    const auto* pixels =
        lock.isHeld() && target.isUsable() ? static_cast<const std::byte*>(target.mapPixels()) : nullptr;
    if (!pixels) throw Fault("--show " + name, "the graphics driver does not give its pixels", "render it smaller");
    for (A_long y = world->height(); y-- > 0;) {
        const std::span<std::byte> row = world->row(y);
        if (depth == 16)
            FoldToHostRow(pixels, row.data(), row.size() / 2);
        else
            std::memcpy(row.data(), pixels, row.size());
        pixels += row.size();
    }
    RenderTarget::unmapPixels();
    return world;
}

}  // namespace quillon::cli
