#include "cli/check/run/Silencing.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/diagnostics/NearestName.h"
#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kWord = "quillon-ignore";

struct Silenced {
    std::string path;
    int line = 0;
    int column = 0;
    std::string rule;
};

bool IsRuleCharacter(char c) {
    return IsWordCharacter(c) || c == '/' || c == '-';
}

// Whether a comment begins in the line before this text, or goes on from a line above.
bool IsInComment(std::string_view before) {
    for (const std::string_view start : {"//", "/*", "<!--"})
        if (before.find(start) != std::string_view::npos) return true;
    return before.find_first_not_of(" \t*") == std::string_view::npos;
}

// The names after the word, with commas or blanks between them.
void AddNames(std::vector<Silenced>& all, const std::string& path, int line, std::string_view text, std::size_t begin) {
    const std::size_t size = text.size();
    bool hasNames = false;
    for (std::size_t at = begin; at < size;) {
        if (text[at] == ' ' || text[at] == ',' || text[at] == '\t') {
            ++at;
            continue;
        }
        std::size_t end = at;
        while (end < size && IsRuleCharacter(text[end])) ++end;
        const std::string_view name = text.substr(at, end - at);
        // Words of explanation may follow the names.
        const bool isName = name.find('/') != std::string_view::npos && !name.starts_with('/');
        if (!isName && (hasNames || name.empty())) return;
        hasNames = true;
        all.push_back({path, line, ColumnAt(text, at), std::string(name)});
        at = end;
    }
}

std::vector<Silenced> CommentsOf(const EffectSource& source) {
    std::vector<Silenced> all;
    for (const PackageFile& file : source.files) {
        const std::string name = InLowerCase(file.name);
        if (!name.ends_with(".js") && !name.ends_with(".frag") && !name.ends_with(".xml")) continue;
        const std::string content = source.textOf(file.name);
        std::string_view rest = content;
        for (int line = 1; !rest.empty(); ++line) {
            const std::string_view text = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(std::min(rest.size(), text.size() + 1));
            const std::size_t at = text.find(kWord);
            if (at != std::string_view::npos && IsInComment(text.substr(0, at)))
                AddNames(all, source.pathOf(file.name), line, text, at + kWord.size());
        }
    }
    return all;
}

}  // namespace

Diagnostics Silence(const EffectSource& source, Diagnostics findings) {
    const std::vector<Silenced> comments = CommentsOf(source);
    const std::string script = source.pathOf("fx.js");
    const auto isSilenced = [&](const Diagnostic& finding) {
        if (finding.severity == Diagnostic::Severity::error) return false;
        return std::ranges::any_of(comments, [&](const Silenced& comment) {
            if (comment.rule != finding.rule) return false;
            if (finding.line == 0) return comment.path == script;
            return comment.path == finding.path && (comment.line == finding.line || comment.line + 1 == finding.line);
        });
    };
    std::erase_if(findings, isSilenced);
    std::vector<std::string> names;
    for (const Rule& rule : Rules()) names.emplace_back(rule.name);
    for (const Silenced& comment : comments)
        if (!FindRule(comment.rule))
            findings.push_back(Found("package/unknown-rule", comment.path, comment.line, comment.column,
                                     fmt::format("no rule is named {}", comment.rule),
                                     DidYouMean(comment.rule, names)));
    return findings;
}

}  // namespace quillon::cli
