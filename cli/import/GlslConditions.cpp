#include "cli/import/GlslConditions.h"

#include <cstdlib>
#include <optional>
#include <vector>

namespace quillon::cli {

namespace {

constexpr long kVersion = 110;

// One preprocessor line: its tokens that count, from "#" on.
struct Line {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::vector<std::string> words{};
};

void TakeOut(GlslTokens& tokens, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end && i < tokens.size(); ++i) {
        std::string lineEnds;
        for (const char c : tokens[i].text) {
            if (c == '\n') lineEnds += c;
        }
        tokens[i].text = lineEnds;
        tokens[i].kind = GlslToken::Kind::blank;
        tokens[i].isDirective = false;
    }
}

Line LineAt(const GlslTokens& tokens, std::size_t begin) {
    Line line{.begin = begin, .end = begin};
    while (line.end < tokens.size() && tokens[line.end].isDirective) {
        if (tokens[line.end].isSignificant()) line.words.push_back(tokens[line.end].source);
        ++line.end;
    }
    return line;
}

// Whether a condition is met, where that is known.
std::optional<bool> AnswerTo(const std::vector<std::string>& words) {
    if (words.size() == 3 && words[2] == "GL_ES") {
        if (words[1] == "ifdef") return false;
        if (words[1] == "ifndef") return true;
    }
    if (words.size() == 5 && words[2] == "__VERSION__") {
        const long number = std::strtol(words[4].c_str(), nullptr, 10);
        const std::string& mark = words[3];
        if (mark == "<") return kVersion < number;
        if (mark == "<=") return kVersion <= number;
        if (mark == ">") return kVersion > number;
        if (mark == ">=") return kVersion >= number;
        if (mark == "==") return kVersion == number;
        if (mark == "!=") return kVersion != number;
    }
    std::string joined;
    for (std::size_t i = 1; i < words.size(); ++i) joined += words[i];
    if (joined == "ifdefined(GL_ES)" || joined == "ifdefinedGL_ES" || joined == "if0") return false;
    if (joined == "if!defined(GL_ES)" || joined == "if!definedGL_ES" || joined == "if1") return true;
    return std::nullopt;
}

struct Condition {
    std::optional<bool> answer;  // of the branch at hand
    bool isKept = false;         // its lines stay, since no answer is known
};

}  // namespace

void SettleVersions(GlslTokens& tokens) {
    std::vector<Condition> open;
    const auto isLeftOut = [&] {
        for (const Condition& condition : open) {
            if (condition.answer == false) return true;
        }
        return false;
    };
    for (std::size_t i = 0; i < tokens.size();) {
        const bool isLineStart = tokens[i].isDirective && tokens[i].source == "#";
        if (!isLineStart) {
            if (isLeftOut()) TakeOut(tokens, i, i + 1);
            ++i;
            continue;
        }
        const Line line = LineAt(tokens, i);
        const std::string word = line.words.size() > 1 ? line.words[1] : "";
        bool goes = isLeftOut();
        if (word == "if" || word == "ifdef" || word == "ifndef") {
            const std::optional<bool> answer = AnswerTo(line.words);
            open.push_back({.answer = answer, .isKept = !answer && !goes});
            goes = goes || answer;
        } else if ((word == "else" || word == "elif" || word == "endif") && !open.empty()) {
            Condition& condition = open.back();
            const bool isKept = condition.isKept;
            if (word == "endif")
                open.pop_back();
            else if (condition.answer)
                condition.answer = word == "else" ? !*condition.answer : false;
            goes = !isKept;
        } else if (word == "version") {
            goes = true;
        }
        if (goes) TakeOut(tokens, line.begin, line.end);
        i = line.end;
    }
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].kind != GlslToken::Kind::word || tokens[i].isDirective) continue;
        const std::string& word = tokens[i].source;
        if (word == "precision") {
            std::size_t end = i;
            while (end < tokens.size() && tokens[end].source != ";") ++end;
            TakeOut(tokens, i, end + 1);
        } else if (word == "highp" || word == "mediump" || word == "lowp") {
            TakeOut(tokens, i, i + (i + 1 < tokens.size() && tokens[i + 1].source == " " ? 2 : 1));
        }
    }
}

}  // namespace quillon::cli
