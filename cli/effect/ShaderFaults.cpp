#include "cli/effect/ShaderFaults.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "cli/check/shader/ExplainShader.h"
#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/effect/ShaderDriver.h"
#include "engine/AEQuillon2.h"
#include "engine/EngineLock.h"
#include "entities/Context.h"
#include "platform/WideText.h"

namespace quillon::cli {

namespace {

void Append(Diagnostics& all, Diagnostics more) {
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

Diagnostic EmptyFile(const std::string& path) {
    return Found("shader/missing-file", path, 0, 0, "the file is empty");
}

// Of a shader that the script made of a text, where the lines of files mean nothing.
void PlaceInScript(Diagnostics& findings, const std::string& shaderName, bool hasLines) {
    for (Diagnostic& finding : findings) {
        const std::string line = hasLines && finding.line > 0 ? fmt::format(", line {}", finding.line) : "";
        finding.text = fmt::format("shader \"{}\"{}: {}", shaderName, line, finding.text);
        finding.line = finding.column = 0;
    }
}

Diagnostics ExplainFault(const Shader& shader, const EffectSource& source) {
    const std::string name = NarrowToBytes(shader.name);
    const std::string fileName = name.substr(name.find_last_of("\\/:") + 1) + ".frag";
    const bool isFile = !shader.path.empty() && source.find(fileName);
    const std::string path = source.pathOf(shader.path.empty() ? "fx.js" : fileName);
    if (shader.source.empty()) {
        if (isFile) return {EmptyFile(path)};
        return {Found("shader/missing-file", path, 0, 0, "no such file",
                      fmt::format("QL_initShader(\"{}\") needs it, or a text", name))};
    }
    const ShaderSource text(shader.source);
    Diagnostics findings = ExplainShader(path, text, AskDriver(shader, text));
    std::erase_if(findings, [](const Diagnostic& each) { return each.severity != Diagnostic::Severity::error; });
    if (!isFile) PlaceInScript(findings, name, text.lineCount() > 1);
    return findings;
}

}  // namespace

Diagnostics ExplainShaderFaults(const EffectSource& source) {
    Diagnostics findings;
    const std::vector<const Shader*> faulty = Context::Instance().faultyShaders();
    if (faulty.empty()) return findings;
    const EngineLock lock(AEQuillon2::instance());
    for (const Shader* shader : faulty) Append(findings, ExplainFault(*shader, source));
    return findings;
}

Diagnostics CompileShaderFiles(const EffectSource& source) {
    Diagnostics findings;
    const EngineLock lock(AEQuillon2::instance());
    if (!lock.isHeld()) throw Fault("", "no OpenGL: the system gives no context", "install a graphics driver");
    for (const PackageFile& file : source.files) {
        if (!InLowerCase(file.name).ends_with(".frag")) continue;
        const std::string path = source.pathOf(file.name);
        const std::string text = source.textOf(file.name);
        if (text.empty()) {
            findings.push_back(EmptyFile(path));
            continue;
        }
        Shader shader;
        shader.createProgram();
        shader.compileSource(text);
        const ShaderSource shaderText(text);
        Append(findings, ExplainShader(path, shaderText, AskDriver(shader, shaderText)));
    }
    return findings;
}

}  // namespace quillon::cli
