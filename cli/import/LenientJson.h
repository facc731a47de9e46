#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace quillon::cli {

// Blanks out what people put into JSON and parsers refuse: comments, commas before a closing bracket, tabs and line
// ends inside of texts. Every byte keeps its place.
std::string StrictJson(std::string_view text);

// A number, a truth value as 0 or 1, or a text that is a number; `otherwise` for anything else.
double NumberOf(const nlohmann::json& object, const char* key, double otherwise);
bool IsTrue(const nlohmann::json& object, const char* key);
// A text, or a number as text; empty for anything else.
std::string TextOf(const nlohmann::json& object, const char* key);

}  // namespace quillon::cli
