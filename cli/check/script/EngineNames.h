#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace quillon {
struct Native;
}

namespace quillon::cli {

// What a program finds in its global object before its first line runs: the language's own names, and the script
// API's. A script heap is asked for them once.
class EngineNames {
public:
    static const EngineNames& Instance();

    const std::set<std::string, std::less<>>& globals() const { return names; }
    // The tables of constants, such as QL_Type, each with its members.
    const std::map<std::string, std::set<std::string, std::less<>>, std::less<>>& tables() const { return constants; }
    // What every object has, such as hasOwnProperty.
    const std::set<std::string, std::less<>>& objectMembers() const { return inherited; }
    // The objects and functions among the globals, each with its members and those that it inherits.
    const std::map<std::string, std::set<std::string, std::less<>>, std::less<>>& objects() const { return roots; }
    // The members of all objects that the language has, those of texts, arrays and so on among them.
    const std::set<std::string, std::less<>>& members() const { return reachable; }
    // Null for a name that is no function of the API.
    const Native* findFunction(std::string_view name) const;

private:
    EngineNames();

    std::set<std::string, std::less<>> names, inherited, reachable;
    std::map<std::string, std::set<std::string, std::less<>>, std::less<>> constants, roots;
    std::map<std::string, const Native*, std::less<>> functions;
};

}  // namespace quillon::cli
