// A config.xml, as the engine reads it and as the tool checks and lists it.
//
// Planted once: closing tags that end no level of the guard against deep nesting.

#include <algorithm>
#include <rapidxml/rapidxml.hpp>
#include <string>

#include "Input.h"
#include "cli/effect/ConfigChecks.h"
#include "cli/effect/EffectFacts.h"
#include "cli/effect/SourceChecks.h"
#include "package/ConfigDocument.h"
#include "package/EffectVersion.h"
#include "package/XmlNesting.h"

using namespace quillon;
using namespace quillon::cli;

namespace {

int DepthOf(const rapidxml::xml_node<char>& node) {
    int depth = 0;
    for (const auto* child = node.first_node(); child; child = child->next_sibling())
        if (child->type() == rapidxml::node_element) depth = std::max(depth, 1 + DepthOf(*child));
    return depth;
}

// What guards the parser's recursion sees the levels that the parser makes. An element that closes itself makes none.
void CompareNesting(std::string text) {
    rapidxml::xml_document<char> document;
    std::string parsed = text;
    document.parse<0>(parsed.data());
    const int depth = DepthOf(document);
    fuzz::Require(!XmlNestsDeeperThan(text, depth), "no level is invented");
    fuzz::Require(depth < 2 || XmlNestsDeeperThan(text, depth - 2), "no level is overlooked");
}

bool Parses(const std::string& text) {
    try {
        const ConfigDocument config(text);
        for (const wchar_t* key : {L"FXNAME", L"MATCHNAME", L"CATEGORY", L"FLAGS", L"\x4E00"}) {
            config.GetValue(key);
            config.GetInteger(key);
        }
        fuzz::Require(EffectVersion::FromConfig(config).stage() < 4, "a stage has two bits");
        EffectVersion::FromConfig(config).hostWord();
        return true;
    } catch (const rapidxml::parse_error&) {
        return false;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view whole = fuzz::TextOf(data, size);
    for (const Diagnostic& finding : CheckScriptEncoding("fx.js", whole))
        fuzz::Require(finding.line <= CountLines(whole), "a byte that is no text is in the file");
    const std::string text(whole.substr(0, whole.find('\0')));  // as files are read
    const bool parses = Parses(text);
    const bool isRefused = std::ranges::any_of(CheckConfig("config.xml", text), [](const Diagnostic& finding) {
        return finding.rule == "config/not-xml" || finding.rule == "config/not-utf8";
    });
    fuzz::Require(isRefused != parses, "the tool refuses what the engine does");
    if (!parses) return 0;
    CompareNesting(text);

    const auto bytes = std::as_bytes(std::span(text));
    const EffectSource source{"effect", {{"fx.js", {}}, {"config.xml", {bytes.begin(), bytes.end()}}}};
    for (const Diagnostic& finding : CheckIdentity(source))
        fuzz::Require(finding.line <= CountLines(text), "a finding is in the file");
    try {
        DescribeFiles(source);
    } catch (const ToolError&) {
    }
    return 0;
}
