#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cli/check/script/ScriptTree.h"

namespace quillon::cli {

using ScopeIndex = std::uint32_t;
using VariableIndex = std::uint32_t;

// A name that the script declares, or a global that it assigns to.
struct ScriptVariable {
    std::string_view name;
    NodeIndex declaredAt = 0;               // a binding; 0 for a global that assignments make
    std::vector<NodeIndex> functions = {};  // those that are declared under the name or assigned to it
    std::vector<NodeIndex> values = {};     // all that is assigned to it
};

// Which declaration each name of a script means. The tree must outlive it.
class ScriptScopes {
public:
    explicit ScriptScopes(const ScriptTree& tree);

    static constexpr VariableIndex kNone = ~VariableIndex{0};

    const std::vector<ScriptVariable>& variables() const { return known; }
    // What a name or the place that declares it means; kNone for what the script does not declare.
    VariableIndex variableOf(NodeIndex node) const { return meaning[node]; }
    // A variable of the program itself, which the host and every function see; kNone when there is none.
    VariableIndex global(std::string_view name) const;
    // Names that can be seen at a node: those of the innermost scope first, of each in the order of the alphabet.
    std::vector<std::string> namesAt(NodeIndex node) const;

    // What is around a node: a with statement, a try with a catch, strict mode, a function.
    bool isInWith(NodeIndex node) const { return (places[node].flags & kWith) != 0; }
    bool isInAttempt(NodeIndex node) const { return (places[node].flags & kAttempt) != 0; }  // its fault is caught
    bool isStrict(NodeIndex node) const { return (places[node].flags & kStrict) != 0; }
    bool isInFunction(NodeIndex node) const { return (places[node].flags & kFunction) != 0; }

private:
    enum Flag : std::uint8_t { kWith = 1, kAttempt = 2, kStrict = 4, kFunction = 8 };
    struct Place {
        ScopeIndex scope = 0;
        ScopeIndex functionScope = 0;  // where var declares
        std::uint8_t flags = 0;
    };
    struct Scope {
        ScopeIndex parent = 0;
        std::unordered_map<std::string_view, VariableIndex> names = {};
    };

    void placeNodes();
    void declare(NodeIndex binding);
    void addGlobals();
    void resolve();
    void addValues();
    VariableIndex find(ScopeIndex scope, std::string_view name) const;
    VariableIndex declareIn(ScopeIndex scope, std::string_view name, NodeIndex place);

    const ScriptTree& tree;
    std::vector<Scope> scopes = {Scope()};
    std::vector<Place> places;
    std::vector<ScriptVariable> known;
    std::vector<VariableIndex> meaning;
};

}  // namespace quillon::cli
