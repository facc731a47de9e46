#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillon::cli {

using Words = std::vector<std::string>;

// The macros that a line of a shader sees.
class Macros {
public:
    Macros();

    void define(const std::string& name, bool isFunction, Words body);
    void undefine(const std::string& name);
    // From now on nothing is known of it.
    void doubt(const std::string& name);

    // Nothing where only the driver knows.
    std::optional<bool> isDefined(const std::string& name) const;
    // The value of an #if's condition; nothing where it is not known, or is no expression.
    std::optional<long> valueOf(const Words& condition) const;

private:
    struct Macro {
        bool isFunction = false;
        Words body{};
    };

    // The words with macros replaced; what is not known becomes "?". False when there are too many words.
    bool expand(const Words& words, Words& result, std::set<std::string>& open) const;

    std::map<std::string, Macro> macros;
    std::set<std::string> doubted;
};

}  // namespace quillon::cli
