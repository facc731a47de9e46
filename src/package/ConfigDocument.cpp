#include "package/ConfigDocument.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <rapidxml/rapidxml.hpp>
#include <utility>

#include "package/FileAccess.h"
#include "package/XmlNesting.h"
#include "platform/WideText.h"

namespace quillon {

struct ConfigDocument::Tree {
    rapidxml::xml_document<char> document;
    std::string text;  // changed in place by the parser
};

ConfigDocument::ConfigDocument() : ConfigDocument(ReadFileText(L"config.xml")) {}

ConfigDocument::ConfigDocument(std::string text) : tree(std::make_unique<Tree>()) {
    tree->text = std::move(text);
    if (XmlNestsDeeperThan(tree->text, kDeepestXmlLevel)) throw rapidxml::parse_error("nested too deeply", nullptr);
    tree->document.parse<0>(tree->text.data());
}

ConfigDocument::~ConfigDocument() = default;

std::string ConfigDocument::GetValue(const std::wstring& key) const {
    const auto* element = tree->document.first_node(NarrowToBytes(key).c_str());
    return element ? std::string(element->value()) : std::string();
}

std::int32_t ConfigDocument::GetInteger(const std::wstring& key) const {
    using Limits = std::numeric_limits<std::int32_t>;
    const long long value = std::strtoll(GetValue(key).c_str(), nullptr, 10);
    return static_cast<std::int32_t>(std::clamp<long long>(value, Limits::min(), Limits::max()));
}

}  // namespace quillon
