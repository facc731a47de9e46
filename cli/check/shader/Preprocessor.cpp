#include "cli/check/shader/Preprocessor.h"

#include <optional>
#include <string_view>

#include "cli/check/shader/Conditions.h"

namespace quillon::cli {

namespace {

using Presence = SourceToken::Presence;

Presence PresenceOf(std::optional<bool> answer) {
    return !answer ? Presence::unknown : *answer ? Presence::kept : Presence::left;
}

Presence Within(Presence outer, Presence inner) {
    if (outer == Presence::left || inner == Presence::left) return Presence::left;
    return outer == Presence::kept ? inner : Presence::unknown;
}

// An #if with its branches.
struct Choice {
    Presence outer = Presence::kept;  // of the text around it
    Presence branch = Presence::kept;
    std::optional<bool> isSettled = false;  // by the branch at hand or one before
};

class Preprocessor {
public:
    explicit Preprocessor(std::vector<SourceToken>& textTokens) : tokens(textTokens) {}

    bool run() {
        for (std::size_t i = 0; i < tokens.size();) {
            if (!tokens[i].startsDirective) {
                tokens[i++].presence = here();
                continue;
            }
            Words line;
            const std::size_t begin = i;
            for (; i < tokens.size() && tokens[i].isDirective && (i == begin || !tokens[i].startsDirective); ++i)
                line.push_back(tokens[i].text);
            const Presence before = here();
            take(line, begin);
            for (std::size_t k = begin; k < i; ++k) tokens[k].presence = before;
        }
        return isCertain;
    }

private:
    Presence here() const {
        return choices.empty() ? Presence::kept : Within(choices.back().outer, choices.back().branch);
    }

    // `line` begins with "#"; `begin` is the place of that token.
    void take(const Words& line, std::size_t begin) {
        const std::string_view word = line.size() > 1 ? std::string_view(line[1]) : std::string_view();
        if (word == "if" || word == "ifdef" || word == "ifndef") {
            choices.push_back({.outer = here()});
            branch(answerTo(line));
        } else if ((word == "elif" || word == "else") && !choices.empty()) {
            branch(word == "else" ? true : answerTo(line));
        } else if (word == "endif" && !choices.empty()) {
            choices.pop_back();
        } else if (word == "define" && line.size() > 2) {
            define(line, begin);
        } else if (word == "undef" && line.size() > 2 && here() != Presence::left) {
            if (here() == Presence::kept)
                macros.undefine(line[2]);
            else
                macros.doubt(line[2]);
        }
    }

    // The next branch, which is taken where `answer` is true and no branch before it was.
    void branch(std::optional<bool> answer) {
        Choice& choice = choices.back();
        if (choice.isSettled == true) {
            choice.branch = Presence::left;
            return;
        }
        const bool mayBeLate = !choice.isSettled.has_value();
        choice.branch = mayBeLate && answer == true ? Presence::unknown : PresenceOf(answer);
        if (choice.branch == Presence::unknown && choice.outer != Presence::left) isCertain = false;
        if (answer == true)
            choice.isSettled = true;
        else if (!answer)
            choice.isSettled = std::nullopt;
    }

    std::optional<bool> answerTo(const Words& line) const {
        if (line[1] == "ifdef" || line[1] == "ifndef") {
            if (line.size() < 3) return std::nullopt;
            const std::optional<bool> isDefined = macros.isDefined(line[2]);
            if (!isDefined) return std::nullopt;
            return *isDefined == (line[1] == "ifdef");
        }
        const std::optional<long> value = macros.valueOf(Words(line.begin() + 2, line.end()));
        return value ? std::optional(*value != 0) : std::nullopt;
    }

    void define(const Words& line, std::size_t begin) {
        if (here() == Presence::left) return;
        const SourceToken& name = tokens[begin + 2];
        // A bracket right after the name makes it a function.
        const bool isFunction =
            line.size() > 3 && line[3] == "(" && tokens[begin + 3].position == name.position + name.text.size();
        std::size_t body = 3;
        if (isFunction)
            while (body < line.size() && line[body - 1] != ")") ++body;
        Words words(line.begin() + static_cast<std::ptrdiff_t>(body), line.end());
        if (!IsBalanced(words)) isCertain = false;
        if (here() == Presence::kept)
            macros.define(line[2], isFunction, std::move(words));
        else
            macros.doubt(line[2]);
    }

    static bool IsBalanced(const Words& words) {
        std::string open;
        for (const std::string& word : words) {
            if (word == "(" || word == "[" || word == "{") open += word;
            if (word != ")" && word != "]" && word != "}") continue;
            const char partner = word == ")" ? '(' : word == "]" ? '[' : '{';
            if (open.empty() || open.back() != partner) return false;
            open.pop_back();
        }
        return open.empty();
    }

    std::vector<SourceToken>& tokens;
    std::vector<Choice> choices;
    Macros macros;
    bool isCertain = true;
};

}  // namespace

bool Preprocess(std::vector<SourceToken>& tokens) {
    return Preprocessor(tokens).run();
}

}  // namespace quillon::cli
