#include <algorithm>
#include <string>

#include "cli/check/script/GlobalObject.h"
#include "cli/check/script/ScriptRules.h"

namespace quillon::cli {

// The two functions that have no default. A script that mentions the name elsewhere may make the function in a way that
// its text does not show.
void FindMissingEntryPoints(const ScriptFacts& script, ScriptFindings& findings) {
    const auto given = NamesGivenToGlobalObject(script);
    if (!given) return;
    for (const std::string name : {"setup", "draw"}) {
        const bool isNamed = std::ranges::any_of(script.tree.nodes, [&](const ScriptNode& node) {
            return node.text == name ||
                   (node.text.size() == name.size() + 2 && node.text.substr(1, name.size()) == name);
        });
        if (isNamed || given->contains(name)) continue;
        findings.push_back(
            {"script/no-entry-point", ScriptFinding::kNoPlace, "no " + name + "(); every effect needs one"});
    }
}

}  // namespace quillon::cli
