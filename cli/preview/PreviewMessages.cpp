#include "cli/preview/PreviewMessages.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string_view>

#include "cli/diagnostics/ToolError.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::json;

constexpr std::string_view kKinds[] = {"package", "config", "script", "shader", "render", "tool"};

// The library also makes a whole number of one with a fraction, and has no answer for one that is too large.
template <class Number>
Number WholeNumber(const Json& json) {
    if (!json.is_number_integer()) throw std::out_of_range("a number that is not whole");
    return json.get<Number>();
}

// The author's line of a file of the effect; empty where there is none.
std::string LineOf(const std::string& text, int line) {
    std::size_t start = 0;
    for (int i = 1; i < line; ++i) {
        start = text.find('\n', start);
        if (start == std::string::npos) return "";
        ++start;
    }
    std::string found = text.substr(start, text.find('\n', start) - start);
    if (found.ends_with('\r')) found.pop_back();
    return found;
}

void AddSource(Json& fault, const Diagnostic& diagnostic, const EffectSource& source) {
    for (const PackageFile& file : source.files) {
        if (source.pathOf(file.name) != diagnostic.path) continue;
        fault["file"] = file.name;
        if (diagnostic.line > 0) fault["source"] = LineOf(source.textOf(file.name), diagnostic.line);
        return;
    }
}

}  // namespace

Json JsonOf(const PreviewSetup& setup) {
    return {{"effect", setup.effect.string()},
            {"input", setup.input.string()},
            {"layers", setup.layers},
            {"values", setup.values},
            {"isLenient", setup.isLenient},
            {"range", {setup.range.first, setup.range.last, setup.range.step}},
            {"hasRange", setup.hasRange},
            {"fps", setup.framesPerSecond},
            {"depth", setup.depth},
            {"host", static_cast<int>(setup.host)},
            {"downsample", setup.downsample}};
}

PreviewSetup SetupOf(const Json& json) {
    const Json& range = json.at("range");
    return {.effect = PathFromUtf8(json.at("effect").get<std::string>()),
            .input = PathFromUtf8(json.at("input").get<std::string>()),
            .layers = json.at("layers"),
            .values = json.at("values"),
            .isLenient = json.at("isLenient"),
            .range = {WholeNumber<int>(range.at(0)), WholeNumber<int>(range.at(1)), WholeNumber<int>(range.at(2))},
            .hasRange = json.at("hasRange"),
            .framesPerSecond = json.at("fps"),
            .depth = WholeNumber<std::uint32_t>(json.at("depth")),
            .host = static_cast<host::HostKind>(WholeNumber<int>(json.at("host"))),
            .downsample = WholeNumber<std::uint32_t>(json.at("downsample"))};
}

Json FaultsForPage(const Diagnostics& faults, const EffectSource* source) {
    Json list = Json::array();
    for (const Diagnostic& diagnostic : faults) {
        Json fault = {{"text", diagnostic.text},
                      {"remedy", diagnostic.remedy},
                      {"severity", diagnostic.severity == Diagnostic::Severity::error ? "error" : "warning"},
                      {"kind", kKinds[static_cast<int>(diagnostic.kind)]},
                      {"rule", diagnostic.rule},
                      {"path", diagnostic.path},
                      {"line", diagnostic.line},
                      {"column", diagnostic.column}};
        if (source) AddSource(fault, diagnostic, *source);
        list.push_back(std::move(fault));
    }
    return list;
}

Diagnostics FaultsOfPage(const Json& faults) {
    Diagnostics diagnostics;
    for (const Json& fault : faults) {
        const auto* const kind = std::ranges::find(kKinds, fault.at("kind").get<std::string_view>());
        if (kind == std::end(kKinds)) throw std::out_of_range("a fault of an unknown kind");
        diagnostics.push_back(
            {.path = fault.at("path"),
             .line = WholeNumber<int>(fault.at("line")),
             .column = WholeNumber<int>(fault.at("column")),
             .severity = fault.at("severity") == "error" ? Diagnostic::Severity::error : Diagnostic::Severity::warning,
             .text = fault.at("text"),
             .remedy = fault.at("remedy"),
             .kind = static_cast<Diagnostic::Kind>(kind - std::begin(kKinds)),
             .rule = fault.at("rule")});
    }
    return diagnostics;
}

Json FailedAnswer(const Diagnostics& faults, int status, const EffectSource* source) {
    return {{"faults", FaultsForPage(faults, source)}, {"status", status}};
}

Json FailedAnswer(const std::exception& failure, const EffectSource* source) {
    if (const auto* error = dynamic_cast<const ToolError*>(&failure))
        return FailedAnswer(error->faults, error->exitStatus, source);
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
    const std::string text = isMemory ? "out of memory" : failure.what();
    return FailedAnswer({{.text = text, .kind = Diagnostic::Kind::tool}}, kFault, source);
}

}  // namespace quillon::cli
