#pragma once

#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "cli/diagnostics/Diagnostic.h"
#include "cli/effect/EffectSource.h"

namespace quillon {
class NativeCall;
}

namespace quillon::cli {

// A place in fx.js, from 1; 0 where it is not known.
struct Place {
    int line = 0;
    int column = 0;
};

// What has been found while a script ran: each rule once a line of fx.js.
class Findings {
public:
    explicit Findings(const EffectSource& source);

    // Of the line that makes the call; the column is that of the function's name where it is once in the line.
    Place placeOf(const NativeCall& call) const;
    // Of a line of the prepared source.
    Place placeOf(int preparedLine) const { return {authorLine(preparedLine)}; }

    // Findings by one rule in one line are kept when their `key` differs.
    void add(std::string_view rule, const Place& place, std::string text, std::string remedy = {},
             const std::string& key = {});
    // The text after the function's name.
    void add(std::string_view rule, const NativeCall& call, const std::string& text, std::string remedy = {},
             const std::string& key = {});
    // At the line that defines draw().
    void addAtDraw(std::string_view rule, std::string text, std::string remedy = {});

    // " in line 12" of a line of the prepared source; empty when the author has not written that line.
    std::string wordsOfLine(int preparedLine) const;

    // Those since the last call.
    Diagnostics take();

private:
    int authorLine(int preparedLine) const;
    int columnOf(int authorLine, std::string_view native) const;

    std::string path;  // of fx.js
    std::vector<std::string> lines;
    std::set<std::tuple<std::string, int, std::string>> seen;  // rule, line, key
    Diagnostics found;
};

// The line of the prepared source that makes the call; 0 when not known.
int LineOf(const NativeCall& call);

}  // namespace quillon::cli
