#include "cli/effect/ShaderFaults.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>
#include <vector>

#include "cli/diagnostics/TextScanner.h"
#include "gpu/FragmentRewriting.h"
#include "gpu/Shader.h"

namespace quillon::cli {

namespace {

constexpr const char* kAbsent = "Shader file not found or shader is empty!";
constexpr std::array kHeadings = {"Shader compilation failed:", "Program linking failed:", kAbsent};

// One shader's errors.
struct Block {
    std::string shader;
    std::string heading;           // one of kHeadings
    std::vector<std::string> log;  // lines, none empty
};

std::vector<Block> SplitBlocks(const std::string& errors) {
    constexpr std::string_view kTitle = "Shader \"";
    std::vector<std::string> lines;
    std::istringstream stream(errors);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);

    std::vector<Block> blocks;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool isTitle = lines[i].starts_with(kTitle) && lines[i].ends_with('"') && i + 1 < lines.size() &&
                             std::find(kHeadings.begin(), kHeadings.end(), lines[i + 1]) != kHeadings.end();
        if (isTitle) {
            const std::string name = lines[i].substr(kTitle.size(), lines[i].size() - kTitle.size() - 1);
            blocks.push_back({name, lines[++i], {}});
        } else if (!blocks.empty() && lines[i].find_first_not_of(" \t\r") != std::string::npos) {
            blocks.back().log.push_back(lines[i]);
        }
    }
    return blocks;
}

// A line of a compiler's log.
struct LogLine {
    int string = -1;        // number of the source string; -1 when the line names no place
    int line = 0;           // in that string
    bool isSevere = false;  // says that it is an error or a warning; else it goes on with the line above
    Diagnostic::Severity severity = Diagnostic::Severity::error;
    std::string text;
};

// "error: TEXT", "WARNING: TEXT", "error C1503: TEXT". Text that is indented is a detail of the line above.
void TakeSeverity(LogLine& line) {
    std::string_view rest = line.text;
    const bool isWarning = TakeText(rest, "warning") || TakeText(rest, "WARNING");
    if (!isWarning && !TakeText(rest, "error") && !TakeText(rest, "ERROR")) return;
    if (TakeText(rest, " ")) {
        while (!rest.empty() && IsWordCharacter(rest.front())) rest.remove_prefix(1);
    }
    if (!TakeText(rest, ":")) return;
    TakeText(rest, " ");
    line.isSevere = !rest.starts_with(' ');
    if (isWarning) line.severity = Diagnostic::Severity::warning;
    TakeBlanks(rest);
    line.text = std::string(rest);
}

// "0:12(5): TEXT", "0:12: TEXT", "0(12) : TEXT": string, line and perhaps a column.
void TakePlace(LogLine& line) {
    std::string_view rest = line.text;
    const auto string = TakeNumber(rest);
    const bool isInBrackets = TakeText(rest, "(");
    if (!string || (!isInBrackets && !TakeText(rest, ":"))) return;
    const auto number = TakeNumber(rest);
    if (!number || (isInBrackets && !TakeText(rest, ")"))) return;
    if (TakeText(rest, "(") && (!TakeNumber(rest) || !TakeText(rest, ")"))) return;
    TakeBlanks(rest);
    if (!TakeText(rest, ":")) return;
    TakeText(rest, " ");
    line.string = *string;
    line.line = *number;
    line.text = std::string(rest);
}

// The severity stands in front of the place or behind it.
LogLine ReadLogLine(const std::string& text) {
    LogLine line;
    line.text = text;
    TakeSeverity(line);
    TakePlace(line);
    if (!line.isSevere) TakeSeverity(line);
    return line;
}

// The author's line of a place in what the compiler saw; 0 when the place is not the author's.
int AuthorLine(const LogLine& logged, const std::string& source) {
    int line = logged.line - static_cast<int>(RewriteFragment(source).addedLines);
    // A driver that joins the two strings into one counts the preamble as well.
    if (logged.string == 0) line -= Shader::kPreambleLines;
    return line > 0 && line <= CountLines(source) ? line : 0;
}

void ExplainBlock(const Block& block, const EffectSource& source, Diagnostics& diagnostics) {
    const std::string fileName = block.shader.substr(block.shader.find_last_of("\\/:") + 1) + ".frag";
    const bool isFile = source.find(fileName) != nullptr;
    Diagnostic place{.path = source.pathOf(fileName), .kind = Diagnostic::Kind::shader};
    if (block.heading == kAbsent) {
        place.text = isFile ? "the file is empty"
                            : fmt::format("no such file; QL_initShader(\"{}\") needs it, or a text", block.shader);
        diagnostics.push_back(place);
        return;
    }
    if (!isFile) place.path = source.pathOf("fx.js");
    const std::string prefix = isFile ? "" : fmt::format("shader \"{}\": ", block.shader);
    const std::string text = source.textOf(fileName);
    const std::size_t first = diagnostics.size();
    for (const std::string& line : block.log) {
        const LogLine logged = ReadLogLine(line);
        if (!logged.isSevere && diagnostics.size() > first) {
            diagnostics.back().text += "\n" + logged.text;
            continue;
        }
        Diagnostic& diagnostic = diagnostics.emplace_back(place);
        diagnostic.line = isFile && logged.string >= 0 ? AuthorLine(logged, text) : 0;
        diagnostic.severity = logged.severity;
        diagnostic.text = prefix + logged.text;
    }
    if (diagnostics.size() == first) {
        place.text = prefix + block.heading + " the graphics driver gave no reason";
        diagnostics.push_back(place);
    }
}

}  // namespace

Diagnostics ExplainShaderErrors(const std::string& errors, const EffectSource& source) {
    Diagnostics diagnostics;
    for (const Block& block : SplitBlocks(errors)) ExplainBlock(block, source, diagnostics);
    return diagnostics;
}

}  // namespace quillon::cli
