#include "cli/worker/WorkerMessage.h"

#include <cstdint>
#include <string>

#include "platform/LittleEndian.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::json;

// More than any picture has; a larger number is no message.
constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 33;

}  // namespace

std::optional<WorkerMessage> ReadMessage(const ReadBytes& read) {
    std::byte sizes[16];
    if (read(sizes) != sizeof(sizes)) return {};
    const auto textSize = LoadLittle<std::uint64_t>(sizes, 0), byteCount = LoadLittle<std::uint64_t>(sizes, 8);
    if (textSize > kMostBytes || byteCount > kMostBytes) return {};
    std::string text(textSize, '\0');
    if (read(std::as_writable_bytes(std::span(text))) != textSize) return {};
    WorkerMessage message{Json::parse(text, nullptr, /*allow_exceptions=*/false)};
    if (!message.text.is_object()) return {};
    message.bytes.resize(byteCount);
    if (read(message.bytes) != byteCount) return {};
    return message;
}

bool WriteMessage(const WriteBytes& write, const WorkerMessage& message) {
    // Names of files need not be UTF-8.
    const std::string text = message.text.dump(-1, ' ', false, Json::error_handler_t::replace);
    std::vector<std::byte> sizes;
    AppendLittle<std::uint64_t>(sizes, text.size());
    AppendLittle<std::uint64_t>(sizes, message.bytes.size());
    return write(sizes) && write(std::as_bytes(std::span(text))) && write(message.bytes);
}

Json JsonOf(const Diagnostics& diagnostics) {
    Json list = Json::array();
    for (const Diagnostic& diagnostic : diagnostics)
        list.push_back({diagnostic.path, diagnostic.line, diagnostic.column, static_cast<int>(diagnostic.severity),
                        diagnostic.text, diagnostic.remedy, static_cast<int>(diagnostic.kind), diagnostic.rule});
    return list;
}

Diagnostics DiagnosticsOf(const Json& json) {
    Diagnostics diagnostics;
    for (const Json& entry : json)
        diagnostics.push_back({.path = entry.at(0),
                               .line = entry.at(1),
                               .column = entry.at(2),
                               .severity = static_cast<Diagnostic::Severity>(entry.at(3).get<int>()),
                               .text = entry.at(4),
                               .remedy = entry.at(5),
                               .kind = static_cast<Diagnostic::Kind>(entry.at(6).get<int>()),
                               .rule = entry.at(7)});
    return diagnostics;
}

}  // namespace quillon::cli
