#include "cli/preview/RequestChecks.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <random>

namespace quillon::cli {

namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostValues = 4096;
constexpr std::int64_t kMostFrames = 1000000000;

bool IsIn(const Json& number, std::int64_t least, std::int64_t most) {
    return number.is_number_integer() && number >= least && number <= most;
}

bool AreValues(const Json& values) {
    return values.is_object() && values.size() <= kMostValues && std::ranges::all_of(values, [](const Json& value) {
               return value.is_object() && value.size() == 2 && value.contains("kind") && value["kind"].is_string() &&
                      value.contains("text") && value["text"].is_string();
           });
}

struct Field {
    const char* name;
    bool (*isRight)(const Json& value);
};

constexpr Field kFields[] = {
    {"frame", [](const Json& value) { return IsIn(value, 0, kMostFrames); }},
    {"depth", [](const Json& value) { return IsIn(value, 8, 32) && std::has_single_bit(value.get<unsigned>()); }},
    {"fps", [](const Json& value) { return value.is_number() && value >= 0.001 && value <= 100000; }},
    {"values", AreValues},
    {"show", [](const Json& value) { return value.is_string(); }},
    {"host", [](const Json& value) { return IsIn(value, 0, 1); }},
    {"downsample", [](const Json& value) { return IsIn(value, 1, 64); }},
};

}  // namespace

std::string NewToken() {
    std::random_device source;
    std::string token;
    for (int i = 0; i < 4; ++i) token += fmt::format("{:08x}", source() & 0xFFFFFFFFu);
    return token;
}

bool AreEqual(std::string_view first, std::string_view second) {
    if (first.size() != second.size()) return false;
    unsigned difference = 0;
    for (std::size_t i = 0; i < first.size(); ++i) difference |= static_cast<unsigned>(first[i] ^ second[i]);
    return difference == 0;
}

bool IsOwnHost(std::string_view host) {
    for (const std::string_view name : {"127.0.0.1", "localhost", "[::1]"}) {
        if (!host.starts_with(name)) continue;
        const std::string_view port = host.substr(name.size());
        if (port.empty()) return true;
        return port.size() <= 6 && port.starts_with(':') &&
               std::ranges::all_of(port.substr(1), [](char c) { return c >= '0' && c <= '9'; });
    }
    return false;
}

bool IsOwnOrigin(std::string_view origin, std::string_view host) {
    constexpr std::string_view kScheme = "http://";
    return origin.starts_with(kScheme) && origin.substr(kScheme.size()) == host;
}

std::optional<Json> ReadView(std::string_view text) {
    const Json view = Json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (!view.is_object()) return {};
    Json checked = Json::object();
    for (const Field& field : kFields) {
        if (!view.contains(field.name) || !field.isRight(view[field.name])) return {};
        checked[field.name] = view[field.name];
    }
    if (view.value("input", Json(false)) == true) checked["input"] = true;
    return checked;
}

}  // namespace quillon::cli
