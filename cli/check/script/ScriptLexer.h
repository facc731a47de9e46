#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "cli/check/script/NewerForms.h"

namespace quillon::cli {

// A token of a script. Comments and blanks are no tokens.
struct ScriptToken {
    // `broken`: nothing that the language knows starts here.
    enum class Kind { end, word, number, text, mark, templateText, broken };

    Kind kind = Kind::end;
    std::string_view source = {};  // as written; of a text with its quotes
    std::string_view name = {};    // of a word: with its escapes decoded
    std::size_t begin = 0;         // bytes from the start of the text
    bool followsLineEnd = false;   // a line ends somewhere between the token before and this one

    std::size_t end() const { return begin + source.size(); }
    bool isMark(std::string_view mark) const { return kind == Kind::mark && source == mark; }
    // A word with an escape in it is never a keyword.
    bool isWord(std::string_view word) const { return kind == Kind::word && source == word; }
};

// Cuts a script into tokens as the script heap does. Where it is ambiguous, a slash divides; the parser knows better
// and asks for a regular expression. The text must outlive the lexer and its tokens. A copy goes its own way, for
// looking ahead.
class ScriptLexer {
public:
    // `names` keeps the names that escapes spell; it must outlive the tokens.
    ScriptLexer(std::string_view script, std::deque<std::string>& names) : text(script), decoded(&names) {}

    ScriptToken next();
    // The regular expression that starts at this token, a slash; the next token comes after it.
    ScriptToken regularExpressionAt(const ScriptToken& slash);
    // The part of a template string from `begin` to and with the next "${" or "`".
    ScriptToken templateTextAt(std::size_t begin);

    // What was found in numbers and regular expressions since the last call.
    std::vector<NewerForm> takeForms();

private:
    char at(std::size_t index) const { return index < text.size() ? text[index] : '\0'; }
    bool skipBlanks();
    ScriptToken token(ScriptToken::Kind kind, std::size_t end);
    ScriptToken word();
    ScriptToken number();
    ScriptToken quoted();
    void note(NewerForm::What what, std::size_t place) { forms.push_back({what, static_cast<std::uint32_t>(place)}); }

    std::string_view text;
    std::deque<std::string>* decoded;
    std::vector<NewerForm> forms;
    std::size_t position = 0;
    bool followsLineEnd = true;  // also at the start, for a comment's "-->"
};

}  // namespace quillon::cli
