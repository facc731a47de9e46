#include "cli/check/shader/ShaderFindings.h"

#include <utility>

#include "cli/diagnostics/Rules.h"

namespace quillon::cli {

void ShaderFindings::add(std::string_view rule, const SourceToken& token, std::string text, std::string remedy) {
    addAt(rule, token.position, std::move(text), std::move(remedy));
}

void ShaderFindings::addAt(std::string_view rule, std::size_t position, std::string text, std::string remedy) {
    const TextPlace place = source.placeOf(position);
    found.push_back(Found(rule, path, place.line, place.column, std::move(text), std::move(remedy)));
}

void ShaderFindings::addWithoutPlace(std::string_view rule, std::string text, std::string remedy) {
    found.push_back(Found(rule, path, 0, 0, std::move(text), std::move(remedy)));
}

}  // namespace quillon::cli
