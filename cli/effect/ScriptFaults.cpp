#include "cli/effect/ScriptFaults.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/check/script/CheckScript.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"
#include "platform/FailFast.h"
#include "platform/MemoryShortage.h"
#include "platform/TemporaryPath.h"
#include "script/Scripting.h"
#include "script/SourcePreparation.h"
#include "script/TimeLimit.h"

namespace quillon::cli {

namespace {

struct EntryPoint {
    std::string_view call;  // how the evaluated text begins
    const char* name;
    const char* absent;  // what to say when there is no such function
};

// The last row is the program itself, which ends with the call of setup().
constexpr EntryPoint kEntryPoints[] = {
    {"preRender(", "preRender",
     "no preRender(), and no default, because the file mentions its name; define it, or remove the mention"},
    {"draw(", "draw", "no draw(); every effect needs one"},
    {"updateUIFlags(", "updateUIFlags",
     "no updateUIFlags(), and no default, because the file mentions its name; define it, or remove the mention"},
    {"", "setup", "no setup(); every effect needs one"},
};

const EntryPoint& FindEntryPoint(std::string_view evaluated) {
    for (const EntryPoint& entry : kEntryPoints) {
        if (evaluated.substr(0, entry.call.size()) == entry.call) return entry;
    }
    return *(std::end(kEntryPoints) - 1);
}

// The heap knows the language of 2009; anything newer is a syntax error there.
bool UsesNewerLanguage(std::string_view line) {
    for (const char* word : {"let", "class", "async", "import", "export"}) {
        if (HoldsWord(line, word)) return true;
    }
    return line.find("=>") != std::string_view::npos || line.find('`') != std::string_view::npos;
}

std::string LineOf(const std::string& text, int line) {
    std::istringstream stream(text);
    std::string content;
    for (int i = 0; i < line; ++i) std::getline(stream, content);
    return content;
}

// A syntax error ends with " (line 12)" or " (line 12, end of input)", where the prelude counts too.
void TakeLineOutOfText(std::string& message, int& line) {
    constexpr std::string_view kStart = " (line ";
    const std::size_t at = message.rfind(kStart);
    if (at == std::string::npos) return;
    std::string_view rest = std::string_view(message).substr(at + kStart.size());
    const auto number = TakeNumber(rest);
    const bool isAtEnd = TakeText(rest, ", end of input");
    if (!number || rest != ")") return;
    line = *number;
    message.resize(at);
    if (isAtEnd) message += " at the end of the file";
}

// ", in blur()" of a line that belongs to another function than the entry point.
std::string WordsOfFunction(const std::string& script, int line, const EntryPoint& entry) {
    const ScriptFunction* innermost = nullptr;
    const std::vector<ScriptFunction> functions = FunctionsOfScript(script);
    for (const ScriptFunction& function : functions) {
        const bool isAround = function.firstLine <= line && line <= function.lastLine;
        if (isAround && (!innermost || function.firstLine >= innermost->firstLine)) innermost = &function;
    }
    const bool isNamed = innermost && !innermost->name.empty() && innermost->name != entry.name;
    return isNamed ? fmt::format(", in {}()", innermost->name) : "";
}

// What the script's text shows to be wrong in the line of an exception: it says more, and the same as `quillon check`.
std::optional<Diagnostic> TextFindingAt(const EffectSource& source, int line) {
    constexpr std::string_view kCauses[] = {"script/undeclared-name", "script/unknown-member"};
    for (Diagnostic& found : CheckScriptText(source.pathOf("fx.js"), source.textOf("fx.js")))
        if (line > 0 && found.line == line && std::ranges::find(kCauses, found.rule) != std::end(kCauses))
            return std::move(found);
    return {};
}

// The heap gives a line only. Where our own reading ends in the same one, or the heap has none, it gives the token.
Diagnostic ExplainSyntaxError(const EffectSource& source, int line, std::string message) {
    const std::string script = source.textOf("fx.js");
    const bool isNewer = line > 0 && UsesNewerLanguage(LineOf(script, line));
    int column = 0;
    const auto broken = WhereScriptBreaks(script);
    if (broken && !broken->token.empty() && (line == 0 || broken->line == line)) {
        line = broken->line;
        column = broken->column;
        message += fmt::format(" at `{}`", broken->token);
    }
    return Found("script/syntax", source.pathOf("fx.js"), line, column, message,
                 isNewer ? "the script language is ECMAScript 5: var and function, no let, =>, class or `text`" : "");
}

std::vector<ScriptError>& Collected() {
    static std::vector<ScriptError> errors;
    return errors;
}

// Whose scripts run.
const EffectSource* running = nullptr;

LastFaultListener lastFaultListener;

// Nothing can return from here: the engine's state is what its contract leaves undefined.
void EndWithFault(const char* reason) {
    const ScriptError error =
        Scripting::instance().atCurrentLine(fmt::format("{}, which ends a host's process", reason));
    const Diagnostic fault = Found("script/ends-host", running->pathOf("fx.js"), AuthorLine(error.line, *running), 0,
                                   fmt::format("{}: {}", FindEntryPoint(error.evaluated).name, error.message));
    if (lastFaultListener)
        lastFaultListener(fault);
    else
        PrintWordsOverBar(FormatDiagnostic(fault));
    RemoveTemporaries();
    std::_Exit(kFault);
}

}  // namespace

int AuthorLine(int preparedLine, const EffectSource& source) {
    const int line = preparedLine - static_cast<int>(PreludeLineCount());
    return line > 0 && line <= CountLines(source.textOf("fx.js")) ? line : 0;
}

Diagnostic ExplainScriptError(const ScriptError& error, const EffectSource& source) {
    const EntryPoint& entry = FindEntryPoint(error.evaluated);
    const std::string path = source.pathOf("fx.js");
    int line = AuthorLine(error.line, source);
    const std::string function = WordsOfFunction(source.textOf("fx.js"), line, entry);
    if (error.isTimeout) {
        const std::chrono::duration<double> limit = TimeLimit::Get();
        return Found("script/never-returns", path, line, 0,
                     fmt::format("{}: still running after {} s{}", entry.name, limit.count(), function));
    }
    if (error.message == fmt::format("ReferenceError: identifier '{}' undefined", entry.name))
        return Found("script/no-entry-point", path, 0, 0, entry.absent);

    std::string message = error.message;
    if (!message.starts_with("SyntaxError")) {
        if (std::optional<Diagnostic> cause = TextFindingAt(source, line)) return *cause;
        return Found("script/exception", path, line, 0, fmt::format("{}: {}{}", entry.name, message, function));
    }
    line = error.line;
    TakeLineOutOfText(message, line);
    return ExplainSyntaxError(source, AuthorLine(line, source), message);
}

void ListenToLastFault(LastFaultListener listener) {
    lastFaultListener = listener;
}

void CollectScriptErrors(const EffectSource& source) {
    running = &source;
    SetFailFastObserver(EndWithFault);
    Scripting::SetErrorObserver([](const ScriptError& error) {
        try {
            Collected().push_back(error);
        } catch (const std::bad_alloc&) {
            NoteMemoryShortage();  // the error is lost, and an observer must not throw
        }
    });
}

Diagnostics TakeScriptFaults(const EffectSource& source) {
    Diagnostics diagnostics;
    for (const ScriptError& error : std::exchange(Collected(), {})) {
        diagnostics.push_back(ExplainScriptError(error, source));
    }
    return diagnostics;
}

}  // namespace quillon::cli
