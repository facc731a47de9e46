#pragma once

#include <set>
#include <string>
#include <vector>

#include "cli/glsl/GlslTokens.h"

namespace quillon::cli {

// A variable that is handed from the vertex stage to the fragments, or out of these.
struct Varying {
    std::string type;
    std::string name;
    std::string array{};  // "[3]", or empty; where the text gives the size a name, that name's number
    bool isOut = false;

    // Of an array; 0 where its size is no number, and at most 64, more than any driver hands over.
    int length() const;
};

// Names of the functions that the text defines or declares.
std::set<std::string> FunctionsOf(const GlslTokens& tokens);

// Names of the variables and constants that the text declares outside of functions.
std::set<std::string> GlobalsOf(const GlslTokens& tokens);

// Takes the global declarations that begin with varying, in, out or attribute out of the text, and gives what they
// declare, without the fragment's own place, which the effect's shader defines.
std::vector<Varying> TakeVaryings(GlslTokens& tokens);

// Takes global uniform declarations out of the text, and gives what they declare.
std::vector<Varying> TakeUniforms(GlslTokens& tokens);

// Puts another name in place of this word, everywhere but in comments and after a point. Marks what it changes as read
// under the new name.
void Rename(GlslTokens& tokens, const std::string& word, const std::string& name);

// The engine takes the first word "main" that a bracket follows for the program's function, in comments too: this
// puts it in quotes there.
void QuoteMainInComments(GlslTokens& tokens);

// The comments in front of the first code, with the lines that they are on: a license, as a rule. They are cut from
// the tokens.
GlslTokens TakeLeadingComments(GlslTokens& tokens);

}  // namespace quillon::cli
