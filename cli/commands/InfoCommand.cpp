#include <fmt/format.h>

#include <utility>

#include "cli/commands/Commands.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/effect/ControlTexts.h"
#include "cli/effect/EffectFacts.h"
#include "cli/effect/LoadedEffect.h"
#include "cli/pictures/Chart.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr PictureExtent kRehearsedExtent = {256, 144};

// What a frame at 8 bits leaves in the engine. A module that this system cannot load, or no effect host can, runs by
// its files, as a folder does.
Json DescribeRun(EffectSource source) {
    const std::string script = source.textOf("fx.js");
    source.isModule = false;
    host::HostSettings settings;
    settings.compWidth = static_cast<A_long>(kRehearsedExtent.width);
    settings.compHeight = static_cast<A_long>(kRehearsedExtent.height);
    LoadedEffect effect(std::move(source), settings);
    FrameInput input;
    input.picture = WorldOf(DrawChart(kRehearsedExtent.width, kRehearsedExtent.height), 8);
    input.fullExtent = kRehearsedExtent;
    effect.render(input);
    Json controls = Json::array();
    for (std::size_t i = 0; i < effect.controls().size(); ++i)
        controls.push_back(DescribeControl(effect.controls()[i], effect.parameters()[i]));
    Json facts = {{"controls", controls}};
    facts.update(DescribeEngine(script));
    return facts;
}

std::string InfoText(const Json& value) {
    return value.is_string() ? value.get<std::string>() : value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// "name: first, second: third" of an object's fields.
std::string LineOf(const Json& object) {
    std::string line;
    for (const auto& [key, value] : object.items()) {
        if (value.is_structured()) continue;
        line += fmt::format("{}{} {}", line.empty() ? "" : ", ", key, InfoText(value));
    }
    return line;
}

// The fields that distinguish controls; `quillon params` prints the others as text.
Json ShortControls(const Json& controls) {
    Json list = Json::array();
    for (const Json& control : controls)
        list.push_back({{"uniform", control["uniform"]}, {"kind", control["kind"]}, {"label", control["label"]}});
    return list;
}

// One line for each fact; lists are indented below their name.
void PrintFacts(const Json& facts, const std::string& indent) {
    for (const auto& [key, value] : facts.items()) {
        if (!value.is_structured()) {
            PrintResult(fmt::format("{}{}: {}", indent, key, InfoText(value)));
            continue;
        }
        if (value.is_array()) {
            PrintResult(fmt::format("{}{}: {}", indent, key, value.size()));
            for (const Json& entry : value) {
                PrintResult(indent + "  " + LineOf(entry));
                for (const auto& [part, list] : entry.items()) {
                    if (!list.is_array() || list.empty() || !list[0].is_object()) continue;
                    for (const Json& row : list) PrintResult(indent + "    " + LineOf(row));
                }
            }
            continue;
        }
        PrintResult(fmt::format("{}{}:", indent, key));
        PrintFacts(value, indent + "  ");
    }
}

void PrintRewritten(const EffectSource& source, const std::string& file) {
    if (!source.find(file)) {
        std::string names;
        for (const PackageFile& other : source.files) {
            if (other.name.ends_with(".frag")) names += (names.empty() ? "" : ", ") + other.name;
        }
        throw WrongCommandLine("--rewritten " + file, "the effect has no such file",
                               names.empty() ? "it has no .frag file" : "it has " + names);
    }
    std::string text = RewrittenShader(source.textOf(file));
    if (text.ends_with('\n')) text.pop_back();
    PrintResult(text);
}

}  // namespace

int RunInfo(const InfoOptions& options) {
    const EffectSource source = ReadCheckedSource(options.effect);
    if (!options.rewritten.empty()) {
        PrintRewritten(source, options.rewritten);
        return 0;
    }
    Json facts = DescribeFiles(source);
    int status = 0;
    try {
        facts.update(DescribeRun(source));
    } catch (const ToolError& error) {  // what the files say holds all the same
        PrintDiagnostics(error.faults);
        status = error.exitStatus;
    }
    if (options.isJson) {
        PrintResult(facts.dump(2, ' ', false, Json::error_handler_t::replace));
        return status;
    }
    if (facts.contains("controls")) facts["controls"] = ShortControls(facts["controls"]);
    PrintFacts(facts, "");
    return status;
}

}  // namespace quillon::cli
