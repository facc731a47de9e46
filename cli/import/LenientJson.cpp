#include "cli/import/LenientJson.h"

#include <cstdlib>

#include "cli/import/SourceText.h"

namespace quillon::cli {

namespace {

// A bracket or number needs its own line to nest: files nest less than ten deep.
constexpr int kDeepestLevel = 64;

void BlankOut(std::string& text, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end && i < text.size(); ++i) {
        if (text[i] != '\n') text[i] = ' ';
    }
}

}  // namespace

std::string StrictJson(std::string_view source) {
    std::string text(source);
    std::size_t lastComma = std::string::npos;  // with nothing but blanks after it
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            for (++i; i < text.size() && text[i] != '"'; ++i) {
                if (text[i] == '\\')
                    ++i;
                else if (static_cast<unsigned char>(text[i]) < ' ')
                    text[i] = ' ';
            }
            lastComma = std::string::npos;
        } else if (c == '/' && i + 1 < text.size() && (text[i + 1] == '/' || text[i + 1] == '*')) {
            std::size_t end = text.find(text[i + 1] == '/' ? "\n" : "*/", i + 2);
            end = end == std::string::npos ? text.size() : end + (text[i + 1] == '/' ? 0 : 2);
            BlankOut(text, i, end);
            i = end - 1;
        } else if (c == ',') {
            lastComma = i;
        } else if (c == '}' || c == ']') {
            if (lastComma != std::string::npos) text[lastComma] = ' ';
            lastComma = std::string::npos;
            --depth;
        } else if (c == '{' || c == '[') {
            if (++depth > kDeepestLevel) return "nested too deep";
            lastComma = std::string::npos;
        } else if (c != ' ' && c != '\t' && c != '\n') {
            lastComma = std::string::npos;
        }
    }
    return text;
}

double NumberOf(const nlohmann::json& object, const char* key, double otherwise) {
    const auto found = object.find(key);
    if (found == object.end()) return otherwise;
    if (found->is_number()) return found->get<double>();
    if (found->is_boolean()) return found->get<bool>() ? 1 : 0;
    if (!found->is_string()) return otherwise;
    const std::string text = found->get<std::string>();
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    return end == text.c_str() ? otherwise : value;
}

bool IsTrue(const nlohmann::json& object, const char* key) {
    return NumberOf(object, key, TextOf(object, key) == "true" ? 1 : 0) != 0;
}

std::string TextOf(const nlohmann::json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end()) return "";
    if (found->is_string()) return found->get<std::string>();
    return found->is_number() ? NumberText(found->get<double>()) : "";
}

}  // namespace quillon::cli
