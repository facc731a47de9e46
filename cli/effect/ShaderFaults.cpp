#include "cli/effect/ShaderFaults.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "cli/diagnostics/TextScanner.h"
#include "entities/Context.h"
#include "gpu/Shader.h"
#include "platform/WideText.h"

namespace quillon::cli {

namespace {

// Some drivers do not have it in fragment shaders, and then report the engine's own wrapper of it, line by line.
constexpr std::string_view kAbsentLookup = "texture2DLod";

// The first line with the word; 0 without one.
int LineWith(std::string_view text, std::string_view word) {
    int line = 1;
    for (std::size_t start = 0; start < text.size(); ++line) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        if (HoldsWord(text.substr(start, end - start), word)) return line;
        start = end + 1;
    }
    return 0;
}

void ExplainFault(const Shader& shader, const EffectSource& source, Diagnostics& diagnostics) {
    const std::string name = NarrowToBytes(shader.name);
    const std::string fileName = name.substr(name.find_last_of("\\/:") + 1) + ".frag";
    const bool isFile = !shader.path.empty() && source.find(fileName);
    Diagnostic place{.path = source.pathOf(fileName), .kind = Diagnostic::Kind::shader};
    if (shader.fault.kind == ShaderFault::Kind::noSource) {
        place.text = isFile ? "the file is empty" : "no such file";
        if (!isFile) place.remedy = fmt::format("QL_initShader(\"{}\") needs it, or a text", name);
        diagnostics.push_back(place);
        return;
    }
    if (!isFile) place.path = source.pathOf("fx.js");
    const std::string prefix = isFile ? "" : fmt::format("shader \"{}\": ", name);
    const std::string text = isFile ? source.textOf(fileName) : shader.source;
    const bool lacksLookup = std::ranges::any_of(shader.fault.messages, [](const ShaderMessage& message) {
        return message.line == 0 && message.text.find(kAbsentLookup) != std::string::npos;
    });
    if (lacksLookup) {
        Diagnostic& diagnostic = diagnostics.emplace_back(place);
        diagnostic.line = isFile ? LineWith(text, kAbsentLookup) : 0;
        diagnostic.text = prefix + "this graphics driver has no texture2DLod in fragment shaders";
        diagnostic.remedy = "use texture2D";
    }
    for (const ShaderMessage& message : shader.fault.messages) {
        if (lacksLookup && message.line == 0) continue;
        Diagnostic& diagnostic = diagnostics.emplace_back(place);
        diagnostic.line = isFile ? message.line : 0;
        if (message.severity == ShaderMessage::Severity::warning) diagnostic.severity = Diagnostic::Severity::warning;
        diagnostic.text = prefix + message.text;
    }
    if (shader.fault.messages.empty()) {
        const char* const step =
            shader.fault.kind == ShaderFault::Kind::link ? "Program linking" : "Shader compilation";
        place.text = fmt::format("{}{} failed: the graphics driver gave no reason", prefix, step);
        diagnostics.push_back(place);
    }
}

}  // namespace

Diagnostics ExplainShaderFaults(const EffectSource& source) {
    Diagnostics diagnostics;
    for (const Shader* shader : Context::Instance().faultyShaders()) ExplainFault(*shader, source, diagnostics);
    return diagnostics;
}

}  // namespace quillon::cli
