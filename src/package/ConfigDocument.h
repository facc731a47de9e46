#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace quillon {

// The parsed config.xml: who the effect is. The keys are elements at the top level of the file, without a root.
class ConfigDocument {
public:
    // Reads and parses the file. Throws rapidxml::parse_error when it is not XML; a package without the file gives a
    // document without keys.
    ConfigDocument();
    // The same of a text that is at hand.
    explicit ConfigDocument(std::string text);
    ~ConfigDocument();
    ConfigDocument(const ConfigDocument&) = delete;
    ConfigDocument& operator=(const ConfigDocument&) = delete;

    // The text of the first top-level element of this name, case counting; empty when there is none.
    std::string GetValue(const std::wstring& key) const;

    // The value as a decimal integer: white space, a sign, digits; the rest is ignored, no digits give 0, and a
    // number that does not fit is clamped.
    std::int32_t GetInteger(const std::wstring& key) const;

private:
    struct Tree;  // pinned: the parsed tree points into the text
    std::unique_ptr<Tree> tree;
};

}  // namespace quillon
