#include "cli/check/shader/ShaderLog.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace quillon::cli {

namespace {

// What a line of a log says.
struct LogLine {
    ShaderMessage message;     // with the line number as the driver counts it
    bool hasPlace = false;     // names a source string and a line
    int sourceString = 0;      // 0 the preamble, 1 the rewritten text
    bool hasSeverity = false;  // else the line goes on with the one above
};

bool Skip(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(expected.size());
    return true;
}

void SkipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
}

std::optional<int> SkipNumber(std::string_view& text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || number < 0) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

// "error: TEXT", "WARNING: TEXT", "error C1503: TEXT", "preprocessor error: TEXT". Text that is indented is a detail of
// the line above.
void TakeSeverity(LogLine& line) {
    std::string_view rest = line.message.text;
    Skip(rest, "preprocessor ");
    const bool isWarning = Skip(rest, "warning") || Skip(rest, "WARNING");
    if (!isWarning && !Skip(rest, "error") && !Skip(rest, "ERROR")) return;
    if (Skip(rest, " ")) {
        while (!rest.empty() && (std::isalnum(static_cast<unsigned char>(rest.front())) || rest.front() == '_'))
            rest.remove_prefix(1);
    }
    if (!Skip(rest, ":")) return;
    Skip(rest, " ");
    line.hasSeverity = !rest.starts_with(' ');
    if (isWarning) line.message.severity = ShaderMessage::Severity::warning;
    SkipBlanks(rest);
    Skip(rest, "Error: ");  // once more, in messages of a preprocessor
    line.message.text = std::string(rest);
}

// "0:12(5): TEXT", "0:12: TEXT", "0(12) : TEXT": string, line and perhaps a column.
void TakePlace(LogLine& line) {
    std::string_view rest = line.message.text;
    const auto sourceString = SkipNumber(rest);
    const bool isInBrackets = Skip(rest, "(");
    if (!sourceString || (!isInBrackets && !Skip(rest, ":"))) return;
    const auto number = SkipNumber(rest);
    if (!number || (isInBrackets && !Skip(rest, ")"))) return;
    if (Skip(rest, "(") && (!SkipNumber(rest) || !Skip(rest, ")"))) return;
    SkipBlanks(rest);
    if (!Skip(rest, ":")) return;
    Skip(rest, " ");
    line.hasPlace = true;
    line.sourceString = *sourceString;
    line.message.line = *number;
    line.message.text = std::string(rest);
}

// Drivers write the severity before the place or after it.
LogLine ReadLogLine(std::string_view text) {
    LogLine line;
    line.message.text = std::string(text);
    TakeSeverity(line);
    TakePlace(line);
    if (!line.hasSeverity) TakeSeverity(line);
    return line;
}

}  // namespace

std::vector<ShaderMessage> ReadShaderLog(std::string_view log, int preambleLines) {
    std::vector<ShaderMessage> messages;
    while (!log.empty()) {
        const std::string_view text = log.substr(0, log.find('\n'));
        log.remove_prefix(std::min(text.size() + 1, log.size()));
        if (text.find_first_not_of(" \t\r") == std::string_view::npos) continue;
        const LogLine logged = ReadLogLine(text);
        if (!logged.hasSeverity && !messages.empty()) {
            messages.back().text += "\n" + logged.message.text;
            continue;
        }
        ShaderMessage& message = messages.emplace_back(logged.message);
        // A driver that joins the two strings into one counts the preamble as well.
        if (logged.sourceString == 0) message.line -= preambleLines;
        if (!logged.hasPlace || message.line < 1) message.line = 0;
    }
    return messages;
}

}  // namespace quillon::cli
