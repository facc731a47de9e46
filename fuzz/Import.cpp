// Shader files of other forms, as `new --from` reads them: one input holds all files of an import.
//
// Planted once: quotes that are not escaped in texts of the script.

#include "cli/import/Import.h"

#include <algorithm>
#include <string>

#include "Input.h"
#include "cli/check/script/CheckScript.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/effect/SourceChecks.h"

using namespace quillon;
using namespace quillon::cli;

namespace {

// Lines of this start begin another file of the import, or an option: "//// b", "//// expose GAIN".
constexpr std::string_view kPart = "\n//// ";

bool TakeWord(std::string_view& text, std::string_view word) {
    if (!text.starts_with(word)) return false;
    text.remove_prefix(word.size());
    return true;
}

std::filesystem::path WritePart(const char* name, std::string_view text) {
    static const TemporaryFolder kFolder;
    return fuzz::WriteInput(kFolder.path() / name, text);
}

ImportRequest RequestOf(std::string_view input) {
    ImportRequest request{"the effect", {}};
    std::error_code ignored;
    std::size_t end = std::min(input.find(kPart), input.size());
    request.from = WritePart("shader.fs", input.substr(0, end));
    std::filesystem::remove(request.from.parent_path() / "shader.vs", ignored);
    while (end < input.size()) {
        input.remove_prefix(end + kPart.size());
        end = std::min(input.find(kPart), input.size());
        std::string_view part = input.substr(0, end);
        if (TakeWord(part, "expose ")) request.exposed.emplace_back(part);
        if (TakeWord(part, "channel ")) request.channels.emplace_back(part);
        if (TakeWord(part, "vertex\n")) WritePart("shader.vs", part);
        if (TakeWord(part, "common\n")) request.common = WritePart("common.glsl", part);
        for (const char* name : {"a", "b", "c", "d"})
            if (TakeWord(part, std::string(name) + "\n")) request.buffers[name] = WritePart(name, part);
    }
    return request;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ImportRequest request = RequestOf(fuzz::TextOf(data, size));
    ImportedEffect effect;
    try {
        effect = ImportShader(request);
    } catch (const ToolError&) {
        return 0;  // a picture that it names is missing
    }
    const bool isRefused = std::ranges::any_of(
        effect.findings, [](const Diagnostic& finding) { return finding.severity == Diagnostic::Severity::error; });
    fuzz::Require(isRefused == effect.files.empty(), "a refusal has a reason, and the other way round");
    for (const ImportedFile& file : effect.files) {
        if (file.name == "config.xml") fuzz::Require(CheckConfig("", file.content).empty(), "config.xml parses");
        if (file.name == "fx.js") fuzz::Require(!WhereScriptBreaks(file.content), "fx.js is a script");
    }
    for (int line = 0; line < 4; ++line) InAuthorsFile({.path = "/theEffect.frag", .line = line}, effect.plan);
    return 0;
}
