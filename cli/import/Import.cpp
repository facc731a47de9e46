#include "cli/import/Import.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/glsl/GlslTokens.h"
#include "cli/import/ConfigWriter.h"
#include "cli/import/IsfHeader.h"
#include "cli/import/IsfShader.h"
#include "cli/import/PastedFragment.h"
#include "cli/import/ScriptWriter.h"
#include "cli/import/SourceText.h"
#include "cli/import/Sources.h"

namespace quillon::cli {

std::string ShaderName(const std::string& effect) {
    std::string name;
    bool isWordStart = false;
    for (const char c : effect) {
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        const bool isDigit = c >= '0' && c <= '9';
        if (!isLetter && !isDigit) {
            isWordStart = true;
            continue;
        }
        if (name.empty() && isDigit) name = "shader";
        const bool isCapital = c >= 'A' && c <= 'Z';
        if (name.empty() && isCapital)
            name += static_cast<char>(c + 32);
        else
            name += isWordStart && isLetter && !isCapital && !name.empty() ? static_cast<char>(c - 32) : c;
        isWordStart = false;
    }
    return name.empty() || name == "clear" ? "shader" : name;
}

namespace {

void ImportIsf(const ImportRequest& request, const std::string& text, ImportedEffect& effect) {
    ImportFindings findings(request.from.generic_string());
    IsfFile file = ReadIsf(text, request.from.parent_path(), request.name, findings);
    std::filesystem::path vertexPath = request.from;
    vertexPath.replace_extension(".vs");
    ImportFindings vertexFindings(vertexPath.generic_string());
    IsfVertexFile vertex{.findings = &vertexFindings};
    std::error_code ignored;
    if (std::filesystem::is_regular_file(vertexPath, ignored)) vertex.text = ReadShaderSource(vertexPath);
    if (!file.plan.passes.empty()) {
        PlannedShader shader = WriteIsfShader(file, vertex, ShaderName(request.name), findings, effect.corners);
        shader.origin = request.from.generic_string();
        file.plan.shaders.push_back(std::move(shader));
    }
    effect.findings = findings.all();
    effect.findings.insert(effect.findings.end(), vertexFindings.all().begin(), vertexFindings.all().end());
    effect.plan = std::move(file.plan);
}

void WriteFiles(ImportedEffect& effect) {
    effect.files.push_back({"fx.js", WriteScript(effect.plan)});
    for (const PlannedShader& shader : effect.plan.shaders)
        effect.files.push_back({shader.name + ".frag", shader.text});
    for (const PlannedImage& image : effect.plan.images) {
        if (image.source == PlannedImage::Source::file)
            effect.files.push_back({image.fileName, ReadSourceBytes(image.path)});
    }
    effect.files.push_back({"config.xml", WriteConfig(effect.plan)});
}

void WarnOfDates(ImportedEffect& effect, const ImportRequest& request) {
    if (!effect.plan.uses("DATE") && !effect.plan.uses("iDate")) return;
    effect.findings.push_back({.path = request.from.generic_string(),
                               .severity = Diagnostic::Severity::warning,
                               .text =
                                   "the date is 1 January 2000, and the time of day that of the composition: a frame "
                                   "looks the same whenever it is rendered",
                               .kind = Diagnostic::Kind::shader});
}

}  // namespace

ImportedEffect ImportShader(const ImportRequest& request) {
    ImportedEffect effect;
    const std::string text = ReadShaderSource(request.from);
    if (!HasIsfHeader(text) && IsPasted(text))
        ImportPasted(request, text, effect);
    else
        ImportIsf(request, text, effect);
    const auto isError = [](const Diagnostic& finding) { return finding.severity == Diagnostic::Severity::error; };
    WarnOfDates(effect, request);
    if (std::ranges::none_of(effect.findings, isError)) WriteFiles(effect);
    return effect;
}

Diagnostic InAuthorsFile(const Diagnostic& fault, const EffectPlan& plan) {
    for (const PlannedShader& shader : plan.shaders) {
        if (!fault.path.ends_with("/" + shader.name + ".frag")) continue;
        Diagnostic moved = fault;
        const auto place = static_cast<std::size_t>(std::max(fault.line, 1) - 1);
        const int line = place < shader.originLines.size() ? shader.originLines[place] : 0;
        moved.path = line < 0 ? shader.common : shader.origin;
        moved.line = std::abs(line);
        moved.column = 0;
        return moved;
    }
    return fault;
}

}  // namespace quillon::cli
