#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::cli {

// What a name of a size expression is in the script, nothing for a name that the file does not declare.
using SizeNames = std::function<std::optional<std::string>(const std::string& name)>;

struct SizeExpression {
    std::string script{};  // as JavaScript
    std::string fault{};   // why there is none: an unknown name or function, or what the text lacks
};

// "floor($WIDTH/4.0)" as JavaScript. Sums and products of numbers, names and the functions of the table in the source.
SizeExpression ReadSizeExpression(std::string_view text, const SizeNames& names);

}  // namespace quillon::cli
