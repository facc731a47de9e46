// What a preview's server is asked, and what its worker and it say to each other.
//
// Planted once: any byte in the port of a Host header.

#include <algorithm>
#include <cstring>

#include "Input.h"
#include "cli/preview/PreviewMessages.h"
#include "cli/preview/RequestChecks.h"
#include "cli/worker/WorkerMessage.h"

using namespace quillon::cli;
using Json = nlohmann::json;

namespace {

// The sizes come from this machine's own program; larger ones would only take memory.
constexpr std::uint64_t kMostBytes = 1 << 16;

void CheckMessage(std::span<const std::byte> input) {
    std::uint64_t sizes[2] = {};
    if (input.size() >= sizeof sizes) std::memcpy(sizes, input.data(), sizeof sizes);
    if (std::ranges::any_of(sizes, [](std::uint64_t size) { return size > kMostBytes && size <= 1ull << 33; })) return;
    const auto message = ReadMessage([&](std::span<std::byte> bytes) {
        const std::size_t count = std::min(bytes.size(), input.size());
        std::copy_n(input.begin(), count, bytes.begin());
        input = input.subspan(count);
        return count;
    });
    if (!message) return;
    std::vector<std::byte> written;
    WriteMessage(
        [&](std::span<const std::byte> bytes) {
            written.insert(written.end(), bytes.begin(), bytes.end());
            return true;
        },
        *message);
    std::span<const std::byte> rest = written;
    const auto again = ReadMessage([&](std::span<std::byte> bytes) {
        std::copy_n(rest.begin(), bytes.size(), bytes.begin());
        rest = rest.subspan(bytes.size());
        return bytes.size();
    });
    quillon::fuzz::Require(again && again->text == message->text && again->bytes == message->bytes,
                           "a message is read as it was written");
}

void CheckView(std::string_view text) {
    const auto view = ReadView(text);
    if (!view) return;
    // As the worker takes them, which relies on the check.
    const auto frame = view->at("frame").get<std::int32_t>();
    const auto depth = view->at("depth").get<std::uint32_t>();
    const auto rate = view->at("fps").get<double>();
    quillon::fuzz::Require(frame >= 0 && (depth == 8 || depth == 16 || depth == 32) && rate > 0,
                           "numbers are in range");
    for (const auto& [name, value] : view->at("values").items())
        quillon::fuzz::Require(value.at("text").is_string() && value.at("kind").is_string(), "values are texts");
    quillon::fuzz::Require(ReadView(view->dump(-1, ' ', false, Json::error_handler_t::replace)) == view,
                           "a checked request passes the check");
}

void CheckHeaders(std::string_view text) {
    const std::string_view host = text.substr(0, text.find('\n'));
    const std::string_view origin = text.substr(std::min(host.size() + 1, text.size()));
    if (!IsOwnHost(host)) return;
    quillon::fuzz::Require(host.find_first_of("/@ \r") == std::string_view::npos && host.size() <= 15,
                           "an own host is a name and a port");
    quillon::fuzz::Require(!IsOwnOrigin(origin, host) || origin.size() == host.size() + 7, "an own origin is one");
    quillon::fuzz::Require(AreEqual(host, origin) == (host == origin), "equal texts are equal");
}

// Faults with the author's line, of an effect whose script is the input itself.
void CheckFaults(const Json& json, std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    const EffectSource source{"effect", {{"fx.js", {bytes.begin(), bytes.end()}}}};
    Diagnostics faults = FaultsOfPage(json);
    quillon::fuzz::Require(JsonOf(DiagnosticsOf(JsonOf(faults))) == JsonOf(faults), "faults are read as written");
    for (Diagnostic& fault : faults)
        if (fault.path == "fx.js") fault.path = source.pathOf("fx.js");
    const Json answer = FailedAnswer(faults, 1, &source);
    for (const Json& fault : answer.at("faults"))
        if (fault.contains("source"))
            quillon::fuzz::Require(text.find(fault.at("source").get<std::string>()) != std::string_view::npos,
                                   "the author's line is in the script");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = quillon::fuzz::TextOf(data, size);
    CheckView(text);
    CheckHeaders(text);
    CheckMessage(std::as_bytes(std::span(text)));
    const Json json = Json::parse(text, nullptr, false);
    try {
        if (json.is_object()) JsonOf(SetupOf(json));
        if (json.is_array()) CheckFaults(json, text);
    } catch (const std::exception&) {
    }
    return 0;
}
