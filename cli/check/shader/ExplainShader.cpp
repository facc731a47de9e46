#include "cli/check/shader/ExplainShader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <tuple>

#include "cli/check/shader/CheckShaderText.h"
#include "cli/check/shader/MessagePlaces.h"
#include "cli/check/shader/MessageRemedies.h"
#include "cli/check/shader/ShaderChecks.h"
#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"
#include "gpu/Shader.h"

namespace quillon::cli {

namespace {

using enum Diagnostic::Severity;

// Faults of a text's form, after which a driver reads on in another way than its author. A driver that takes the text
// proves them wrong.
constexpr std::string_view kFormRules =
    "shader/unmatched-bracket shader/unclosed-comment shader/character shader/wrong-main shader/no-main "
    "shader/undefined-function";
// What only some drivers refuse.
constexpr std::string_view kPortabilityRules =
    "shader/not-in-dialect shader/reserved-name shader/number-suffix shader/extension-line shader/lod-read";

constexpr auto kWarning = ShaderMessage::Severity::warning;

// Nobody reads more.
constexpr std::size_t kMostMessages = 200;

// Parts of messages that refuse something of another version.
constexpr std::string_view kRefusals[] = {"syntax error", "GLSL 1.",     "reserved",
                                          "forbidden",    "unsupported", "#version"};

class Explanation {
public:
    Explanation(const std::string& textPath, const ShaderSource& shaderSource, const DriverVerdict& driverVerdict)
        : path(textPath), source(shaderSource), verdict(driverVerdict), findings(CheckShaderText(path, source)) {
        // A shader that does not compile may simply be unfinished.
        if (verdict.outcome != DriverVerdict::Outcome::usable)
            std::erase_if(findings, [](const Diagnostic& finding) { return finding.rule == "shader/no-result"; });
        for (const Diagnostic& finding : findings) {
            const TextPlace place{finding.line, finding.column};
            if (HoldsName(kPortabilityRules, finding.rule)) portable[place] = source.wordAt(place);
        }
    }

    Diagnostics explain() {
        if (verdict.outcome == DriverVerdict::Outcome::usable)
            std::erase_if(findings, [](const Diagnostic& finding) {
                return HoldsName(kFormRules, finding.rule) || finding.rule == "shader/varying";
            });
        const SpreadText spread(source);
        std::vector<PlacedMessage> messages =
            PlaceMessages(source, verdict.log, spread, verdict.spreadLog, Shader::kPreambleLines);
        // Beside errors they may be about what an error has left out.
        if (verdict.outcome != DriverVerdict::Outcome::usable)
            std::erase_if(messages, [](const PlacedMessage& message) { return message.severity == kWarning; });
        if (messages.size() > kMostMessages) messages.resize(kMostMessages);
        for (const PlacedMessage& message : messages) take(message, "shader/compile");
        for (const PlacedMessage& message : PlaceMessages(source, verdict.linkLog, spread, {}, Shader::kPreambleLines))
            take(message, "shader/link");
        const auto isCause = [](const Diagnostic& finding) {
            return finding.severity == error && finding.rule != "shader/main-not-wrapped";
        };
        if (verdict.outcome != DriverVerdict::Outcome::usable && std::ranges::none_of(findings, isCause)) {
            if (withoutPlace.empty()) {
                const bool isLink = verdict.outcome == DriverVerdict::Outcome::notLinked;
                findings.push_back(Found(isLink ? "shader/link" : "shader/compile", path, 0, 0,
                                         fmt::format("{} failed: the graphics driver gave no reason",
                                                     isLink ? "Program linking" : "Shader compilation")));
            }
            findings.insert(findings.end(), withoutPlace.begin(), withoutPlace.end());
        }
        std::ranges::stable_sort(findings, {},
                                 [](const Diagnostic& finding) { return std::tuple(finding.line, finding.column); });
        return std::move(findings);
    }

private:
    void take(const PlacedMessage& message, const char* rule) {
        const bool isWarning = message.severity == kWarning;
        // The driver says it of any variable that a function or a branch gives its value.
        if (isWarning && message.text.ends_with("used uninitialized")) return;
        if (isWarning) rule = "shader/warning";
        if (message.place.line == 0) {
            takeWithoutPlace(message, rule);
            return;
        }
        if (isWarning ? isFoundBefore(message) : isExplained(message)) return;
        std::string text = message.text.substr(0, message.text.find("; candidates are:"));
        if (const int named = source.namedLine(message.place.line))
            text += fmt::format(" (in line {} as #line counts)", named);
        Diagnostic finding = Found(rule, path, message.place.line, message.place.column, std::move(text),
                                   isWarning ? std::string() : RemedyOf(message, source));
        if (std::ranges::find(findings, finding) == findings.end()) findings.push_back(std::move(finding));
    }

    // They are about lines that the author has not written, so they count only where nothing else explains the fault.
    void takeWithoutPlace(const PlacedMessage& message, const char* rule) {
        if (message.severity == kWarning) return;
        for (Diagnostic& finding : findings)
            if (finding.rule == "shader/lod-read" && message.text.find("texture2DLod") != std::string::npos)
                Raise(finding);
        if (!IsFollowUp(message))
            withoutPlace.push_back(Found(rule, path, 0, 0, message.text, RemedyOf(message, source)));
    }

    // A warning at the place of something that the text's check has found.
    bool isFoundBefore(const PlacedMessage& message) const {
        return std::ranges::any_of(findings, [&](const Diagnostic& finding) {
            return finding.line == message.place.line && finding.column == message.place.column;
        });
    }

    bool isExplained(const PlacedMessage& message) {
        const TextPlace place = message.place;
        const TextPlace end = source.placeOf(source.statementEnd(source.positionOf(place)));
        const bool isFollowUp = IsFollowUp(message);
        const bool isSyntaxError = message.text.find("syntax error") != std::string::npos;
        Diagnostic* nearest = nullptr;
        const auto distance = [&](const Diagnostic& finding) { return std::abs(finding.column - place.column); };
        for (Diagnostic& finding : findings) {
            if (finding.line == 0) continue;
            const bool isInLine = finding.line == place.line;
            if (finding.severity == error) {
                const TextPlace found{finding.line, finding.column};
                if (isFollowUp && (isInLine || (found >= place && found < end))) return true;
                if (isSyntaxError && found <= place && HoldsName(kFormRules, finding.rule)) return true;
                if (isInLine && !HoldsName(kDriverRules, finding.rule) && !HoldsName(kPortabilityRules, finding.rule))
                    return true;
            } else if (isInLine && isAbout(message, finding)) {
                if (isSyntaxError && finding.column > place.column) continue;
                if (!nearest || distance(finding) < distance(*nearest)) nearest = &finding;
            }
        }
        if (nearest) Raise(*nearest);
        return nearest;
    }

    // Whether the driver refuses what the finding warns of.
    bool isAbout(const PlacedMessage& message, const Diagnostic& finding) const {
        const auto found = portable.find({finding.line, finding.column});
        if (found == portable.end()) return false;
        const std::string_view word = found->second;
        const auto isPart = [&](std::string_view part) { return message.text.find(part) != std::string::npos; };
        return std::ranges::any_of(kRefusals, isPart) || (!word.empty() && HoldsWord(message.text, word));
    }

    static void Raise(Diagnostic& finding) {
        constexpr std::string_view kSome = "some drivers";
        finding.severity = error;
        if (!finding.text.starts_with(kSome)) return;
        std::string rest = finding.text.substr(kSome.size());
        for (const auto& [many, one] :
             {std::pair(" have", " has"), std::pair(" refuse", " refuses"), std::pair(" do not", " does not")})
            if (rest.starts_with(many)) rest = one + rest.substr(std::string_view(many).size());
        finding.text = "this graphics driver" + rest;
    }

    static constexpr std::string_view kDriverRules = "shader/compile shader/link";

    const std::string& path;
    const ShaderSource& source;
    const DriverVerdict& verdict;
    Diagnostics findings;
    Diagnostics withoutPlace;
    std::map<TextPlace, std::string_view> portable;  // the words at the places of what only some drivers refuse
};

}  // namespace

Diagnostics ExplainShader(const std::string& path, const ShaderSource& source, const DriverVerdict& verdict) {
    return Explanation(path, source, verdict).explain();
}

}  // namespace quillon::cli
