#include "cli/effect/ConfigChecks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <rapidxml/rapidxml.hpp>
#include <string_view>
#include <vector>

#include "cli/diagnostics/NearestName.h"
#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"
#include "package/ConfigDocument.h"
#include "package/EffectFlags.h"
#include "platform/WideText.h"

namespace quillon::cli {

namespace {

using Node = rapidxml::xml_node<char>;

struct Key {
    const char* name;
    bool isNumber;
    std::int32_t mostKept;  // the largest version part that hosts can see, all bits set; 0: not a version part
    bool isOptional = false;
};

constexpr Key kKeys[] = {{"MAJOR_VERSION", true, 63},
                         {"MINOR_VERSION", true, 15},
                         {"BUILD_VERSION", true, 511},
                         {"STAGE_VERSION", true, 3},
                         {"FLAGS", true, 0},
                         {"FLAGS2", true, 0},
                         {"ABOUT", false, 0},
                         {"FXNAME", false, 0},
                         {"AGEP_ID", false, 0},
                         {"CATEGORY", false, 0, true},
                         {"MATCH_NAME", false, 0, true},
                         {"GENERATOR", true, 0, true}};

bool IsDecimal(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) text.remove_prefix(1);
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

class Checker {
public:
    explicit Checker(const EffectSource& source)
        : path(source.pathOf("config.xml")), content(source.textOf("config.xml")), config(content) {
        text = content;
        document.parse<0>(text.data());
    }

    Diagnostics check() {
        std::string missing;
        const Node* const root = findRoot();
        for (const Key& key : kKeys) {
            const Node* node = document.first_node(key.name);
            if (!node) {
                if (!key.isOptional) missing += (missing.empty() ? "" : ", ") + std::string(key.name);
                continue;
            }
            if (const Node* again = node->next_sibling(key.name))
                add("config/doubled-key", again, fmt::format("{} is here again", key.name));
            if (key.isNumber) checkNumber(key, *node);
        }
        if (root) {
            add("config/inside-root", root,
                fmt::format("the keys are inside <{}>, where they are not found", NameOf(*root)));
        } else {
            checkNames();
            if (!missing.empty()) add("config/missing-key", nullptr, fmt::format("no {}", missing));
        }
        return std::move(warnings);
    }

    PlaceOfKey find(const std::string& key) const {
        const Node* const node = document.first_node(key.c_str());
        if (!node) return {};
        return {LineAt(content, placeOf(*node)), ColumnAt(content, placeOf(*node))};
    }

private:
    static std::string NameOf(const Node& node) { return {node.name(), node.name_size()}; }

    // The parser changes the text in place, but names stay where they were read.
    std::size_t placeOf(const Node& node) const { return static_cast<std::size_t>(node.name() - text.data()); }

    void add(const char* rule, const Node* node, const std::string& words, std::string remedy = {}) {
        warnings.push_back(Found(rule, path, node ? LineAt(content, placeOf(*node)) : 0,
                                 node ? ColumnAt(content, placeOf(*node)) : 0, words, std::move(remedy)));
    }

    void checkNames() {
        const std::vector<std::string> known = [] {
            std::vector<std::string> names;
            for (const Key& key : kKeys) names.emplace_back(key.name);
            return names;
        }();
        for (const Node* node = document.first_node(); node; node = node->next_sibling()) {
            const std::string name = NameOf(*node);
            if (node->type() != rapidxml::node_element || std::ranges::count(known, name) != 0) continue;
            add("config/unknown-key", node, fmt::format("nothing reads {}", name), DidYouMean(name, known));
        }
    }

    // An element around the keys.
    const Node* findRoot() {
        for (const Node* node = document.first_node(); node; node = node->next_sibling()) {
            const auto holds = [node](const Key& key) { return node->first_node(key.name) != nullptr; };
            if (node->name_size() != 0 && std::ranges::any_of(kKeys, holds)) return node;
        }
        return nullptr;
    }

    void checkNumber(const Key& key, const Node& node) {
        const std::string value(node.value(), node.value_size());
        const std::int32_t number = config.GetInteger(WidenBytes(key.name));
        if (!IsDecimal(value)) {
            add("config/not-number", &node,
                fmt::format("{}: \"{}\" is not a decimal number; it is read as {}", key.name, value, number));
        } else if (std::strtoll(value.c_str(), nullptr, 10) != number) {
            add("config/out-of-range", &node,
                fmt::format("{}: \"{}\" does not fit into 32 bits; it is read as {}", key.name, value, number));
        }
        const auto word = static_cast<std::uint32_t>(number);
        const std::string_view name = key.name;
        if (key.mostKept != 0 && (number < 0 || number > key.mostKept)) {
            add("config/out-of-range", &node,
                fmt::format("{}: hosts see 0 to {}, and {} as {}", name, key.mostKept, number, number & key.mostKept));
        }
        const bool isOdd = (name == "FLAGS" && (word | kFixedOutFlags) != (kEngineOutFlags | kFixedOutFlags)) ||
                           (name == "FLAGS2" && word != kEngineOutFlags2);
        if (isOdd) {
            add("config/flags", &node,
                fmt::format("{}: hosts go by {}, but the engine can do what {} says", name, number,
                            name == "FLAGS" ? kEngineOutFlags : kEngineOutFlags2));
        }
    }

    std::string path;
    std::string content;
    ConfigDocument config;  // the values, as the engine reads them
    std::string text;       // the tree, which knows places, points into it
    rapidxml::xml_document<char> document;
    Diagnostics warnings;
};

}  // namespace

Diagnostics CheckIdentity(const EffectSource& source) {
    return Checker(source).check();
}

PlaceOfKey FindKey(const EffectSource& source, const std::string& key) {
    return Checker(source).find(key);
}

}  // namespace quillon::cli
