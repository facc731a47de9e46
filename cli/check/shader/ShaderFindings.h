#pragma once

#include <string>
#include <string_view>

#include "cli/check/shader/ShaderSource.h"
#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// What is found in one text, in the order in which it is found.
class ShaderFindings {
public:
    // Both outlive the object.
    ShaderFindings(const std::string& textPath, const ShaderSource& textSource) : path(textPath), source(textSource) {}

    // By a row of the table of rules. An empty remedy is replaced by the rule's.
    void add(std::string_view rule, const SourceToken& token, std::string text, std::string remedy = {});
    void addAt(std::string_view rule, std::size_t position, std::string text, std::string remedy = {});
    // Of the text as a whole.
    void addWithoutPlace(std::string_view rule, std::string text, std::string remedy = {});

    Diagnostics found;

private:
    const std::string& path;
    const ShaderSource& source;
};

}  // namespace quillon::cli
