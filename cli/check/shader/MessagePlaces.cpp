#include "cli/check/shader/MessagePlaces.h"

#include <algorithm>
#include <map>

#include "cli/diagnostics/TextScanner.h"

namespace quillon::cli {

namespace {

// Names that the message puts in quotes; of "f(int)" the part before the bracket.
std::vector<std::string_view> QuotedNames(std::string_view message) {
    std::vector<std::string_view> names;
    while (true) {
        const std::size_t open = message.find_first_of("`'\"");
        if (open == std::string_view::npos) return names;
        message.remove_prefix(open + 1);
        const std::size_t close = message.find_first_of("'\"");
        if (close == std::string_view::npos) return names;
        std::string_view name = message.substr(0, close);
        message.remove_prefix(close + 1);
        name = name.substr(0, name.find('('));
        name = name.substr(name.find_last_of(' ') + 1);
        if (!name.empty() && std::ranges::all_of(name, IsWordCharacter)) names.push_back(name);
    }
}

// The one token among these that the message names; null where it names none or several.
const SourceToken* NamedToken(const std::vector<const SourceToken*>& tokens, std::string_view message) {
    for (const std::string_view name : QuotedNames(message)) {
        const auto isNamed = [&](const SourceToken* token) { return token->given == name || token->text == name; };
        const auto found = std::ranges::find_if(tokens, isNamed);
        if (found != tokens.end() && std::ranges::count_if(tokens, isNamed) == 1) return *found;
    }
    return nullptr;
}

// Puts the author's words in place of those that the engine has put there.
std::string InAuthorsWords(std::string text, const std::map<std::string, std::string>& words) {
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i;
        while (end < text.size() && IsWordCharacter(text[end])) ++end;
        if (end == i) {
            result += text[i++];
            continue;
        }
        const std::string word = text.substr(i, end - i);
        const auto found = words.find(word);
        result += found != words.end() ? found->second : word;
        i = end;
    }
    return result;
}

bool SayTheSame(const std::vector<ShaderMessage>& a, const std::vector<ShaderMessage>& b) {
    return std::ranges::equal(a, b, [](const ShaderMessage& one, const ShaderMessage& other) {
        return one.severity == other.severity && one.text == other.text;
    });
}

class Placing {
public:
    Placing(const ShaderSource& shaderSource, const SpreadText& spreadText) : source(shaderSource), spread(spreadText) {
        for (const SourceToken& token : source.tokens())
            if (token.isRenamed() && token.given.starts_with("repl_")) words[token.given] = token.text;
        // Those in lines that are not the author's.
        words.insert({{"repl_main", "main"},
                      {"repl_texture2D", "texture2D"},
                      {"repl_texture2DLod", "texture2DLod"},
                      {"repl_textureCube", "textureCube"}});
    }

    PlacedMessage place(const ShaderMessage& message, const ShaderMessage* spreadOut) {
        PlacedMessage placed{.severity = message.severity, .text = InAuthorsWords(message.text, words)};
        if (spreadOut) {
            std::vector<const SourceToken*> tokens;
            for (const std::size_t index : spread.tokensAt(spreadOut->line)) tokens.push_back(&source.tokens()[index]);
            if (tokens.empty()) return placed;
            const SourceToken* const named = tokens.size() > 1 ? NamedToken(tokens, message.text) : nullptr;
            placed.place = source.placeOf(named ? *named : *tokens.front());
        } else if (!source.namesLines()) {
            const int line = message.line - static_cast<int>(source.addedLines);
            if (message.line == 0 || line < 1 || line > source.lineCount()) return placed;
            placed.place.line = line;
            if (const SourceToken* const named = NamedToken(tokensOf(line), message.text))
                placed.place = source.placeOf(*named);
        }
        return placed;
    }

private:
    std::vector<const SourceToken*> tokensOf(int line) const {
        std::vector<const SourceToken*> tokens;
        for (const SourceToken& token : source.tokens())
            if (source.lineOf(token.position) == line) tokens.push_back(&token);
        return tokens;
    }

    const ShaderSource& source;
    const SpreadText& spread;
    std::map<std::string, std::string> words;
};

}  // namespace

std::vector<PlacedMessage> PlaceMessages(const ShaderSource& source, std::string_view log, const SpreadText& spread,
                                         std::string_view spreadLog, int preambleLines) {
    const std::vector<ShaderMessage> messages = ReadShaderLog(log, preambleLines);
    const std::vector<ShaderMessage> spreadOut = ReadShaderLog(spreadLog, preambleLines);
    const bool isSame = SayTheSame(messages, spreadOut);
    Placing placing(source, spread);
    std::vector<PlacedMessage> placed;
    for (std::size_t i = 0; i < messages.size(); ++i)
        placed.push_back(placing.place(messages[i], isSame ? &spreadOut[i] : nullptr));
    return placed;
}

}  // namespace quillon::cli
