#include "cli/preview/PreviewServer.h"

#include <fmt/format.h>
#include <httplib.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/PictureFormat.h"
#include "cli/preview/PageFiles.h"
#include "cli/preview/RequestChecks.h"
#include "cli/system/Sockets.h"
#include "platform/LittleEndian.h"

namespace quillon::cli {

namespace {

using httplib::Request;
using httplib::Response;

constexpr std::size_t kMostThreads = 48, kMostStreams = 16;
constexpr std::size_t kLargestView = std::size_t{1} << 20, kLargestPicture = std::size_t{64} << 20;
// A browser that has left is noticed by a write that fails.
constexpr std::chrono::milliseconds kHeartbeat(2000);

// Nothing comes from another place, no other site learns the address, and none may show the page inside its own.
const httplib::Headers kHeaders = {
    {"Cache-Control", "no-store"},
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src 'self' blob: data:; "
     "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Referrer-Policy", "no-referrer"},
    {"X-Content-Type-Options", "nosniff"},
};

constexpr std::pair<std::string_view, const char*> kTypes[] = {
    {".html", "text/html; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".svg", "image/svg+xml"},
};

struct SavedFormat {
    const char* ending;
    const char* type;
    std::vector<std::byte> (*write)(const Picture& picture, const StorageOptions& options);
};

constexpr SavedFormat kSavedFormats[] = {
    {".png", "image/png", WritePng}, {".exr", "image/x-exr", WriteExr}, {".tif", "image/tiff", WriteTiff}};

// What goes in front of a frame's pixels.
std::string FrameHead(const nlohmann::json& text) {
    std::string words = text.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    words.append((16 - (4 + words.size()) % 16) % 16, ' ');
    std::vector<std::byte> size;
    AppendLittle<std::uint32_t>(size, static_cast<std::uint32_t>(words.size()));
    return std::string(reinterpret_cast<const char*>(size.data()), size.size()) + words;
}

void SendFrame(Response& response, std::shared_ptr<const EffectAnswer> frame) {
    auto head = std::make_shared<const std::string>(FrameHead(frame->message.text));
    const std::size_t size = head->size() + frame->pixels().size();
    response.set_content_provider(
        size, "application/octet-stream",
        [head, frame = std::move(frame)](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            const std::span<const std::byte> pixels = frame->pixels();
            const std::string_view all(reinterpret_cast<const char*>(pixels.data()), pixels.size());
            const std::string_view rest =
                offset < head->size() ? std::string_view(*head).substr(offset) : all.substr(offset - head->size());
            return sink.write(rest.data(), std::min(rest.size(), length));
        });
}

}  // namespace

struct PreviewServer::Implementation {
    Implementation(PreviewSession& previewSession, int wantedPort) : session(previewSession), token(NewToken()) {
        server.new_task_queue = [] { return new httplib::ThreadPool(kMostThreads); };
        server.set_socket_options([](auto socket) { RequireOwnAddress(static_cast<std::uintptr_t>(socket)); });
        server.set_tcp_nodelay(true);
        server.set_keep_alive_timeout(3);
        server.set_keep_alive_max_count(100000);
        server.set_payload_max_length(kLargestPicture);
        server.set_default_headers(kHeaders);
        server.set_pre_routing_handler([this](const Request& request, Response& response) {
            const int status = refusalOf(request);
            if (status == 0) return httplib::Server::HandlerResponse::Unhandled;
            response.status = status;
            return httplib::Server::HandlerResponse::Handled;
        });
        server.set_exception_handler(
            [](const Request&, Response& response, const std::exception_ptr&) { response.status = 500; });
        addRoutes();
        const int port = wantedPort == 0                                ? server.bind_to_any_port("127.0.0.1")
                         : server.bind_to_port("127.0.0.1", wantedPort) ? wantedPort
                                                                        : -1;
        if (port <= 0)
            throw Fault(wantedPort == 0 ? "" : fmt::format("--port {}", wantedPort), "the port is not to be had",
                        "take another one, or leave --port out");
        address = fmt::format("http://127.0.0.1:{}/{}/", port, token);
    }

    // The status of a request that is not answered; 0 for others. Nothing of its body has been read yet.
    int refusalOf(const Request& request) const {
        const std::string host = request.get_header_value("Host");
        const bool isOurs = request.path.starts_with('/') && request.path.size() > token.size() + 1 &&
                            request.path[token.size() + 1] == '/' &&
                            AreEqual(std::string_view(request.path).substr(1, token.size()), token) &&
                            IsOwnHost(host) &&
                            (!request.has_header("Origin") || IsOwnOrigin(request.get_header_value("Origin"), host));
        if (!isOurs || request.get_header_value_count("Host") != 1) return 403;
        if (request.method == "GET") return 0;
        if (request.method != "POST") return 405;
        const std::string length = request.get_header_value("Content-Length");
        if (length.empty() || length.size() > 12 || length.find_first_not_of("0123456789") != std::string::npos ||
            request.has_header("Transfer-Encoding"))
            return 411;
        const std::size_t most = request.path.ends_with("/layer") ? kLargestPicture : kLargestView;
        return std::stoull(length) > most ? 413 : 0;
    }

    void addRoutes() {
        const std::string root = "/" + token + "/";
        for (const PageFile& file : PageFiles()) {
            const auto* type =
                std::ranges::find_if(kTypes, [&](const auto& row) { return file.name.ends_with(row.first); });
            const auto send = [file, type = type->second](const Request&, Response& response) {
                response.set_content(file.content.data(), file.content.size(), type);
            };
            server.Get(root + std::string(file.name), send);
            if (file.name == "index.html") server.Get(root, send);
        }
        server.Get(root + "events", [this](const Request&, Response& response) { sendEvents(response); });
        server.Post(root + "frame", [this](const Request& request, Response& response) {
            const auto view = ReadView(request.body);
            if (!view) {
                response.status = 400;
                return;
            }
            SendFrame(response, session.frame(*view));
        });
        server.Post(root + "layer", [this](const Request& request, Response& response) {
            const auto* const bytes = reinterpret_cast<const std::byte*>(request.body.data());
            const nlohmann::json answer =
                session.setLayer(request.get_param_value("name"), request.get_param_value("title"),
                                 {bytes, bytes + request.body.size()});
            response.set_content(answer.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
                                 "application/json");
        });
        server.Post(root + "restart", [this](const Request&, Response& response) {
            session.restart();
            response.status = 204;
        });
        for (const SavedFormat& format : kSavedFormats)
            server.Get(root + "picture" + format.ending,
                       [this, &format](const Request&, Response& response) { savePicture(format, response); });
    }

    void sendEvents(Response& response) {
        if (streams.fetch_add(1) >= kMostStreams) {
            --streams;
            response.status = 503;
            return;
        }
        const auto release = [this](bool) { --streams; };
        response.set_chunked_content_provider(
            "text/event-stream",
            [this, known = std::uint64_t{0}, isFirst = true](std::size_t, httplib::DataSink& sink) mutable {
                const PreviewSession::State state =
                    isFirst ? session.state() : session.waitForChange(known, kHeartbeat);
                isFirst = false;
                known = state.generation;
                const std::string words = state.text.empty() ? ":\n\n" : "data: " + state.text + "\n\n";
                return sink.write(words.data(), words.size());
            },
            release);
    }

    void savePicture(const SavedFormat& format, Response& response) const {
        const auto frame = session.lastFrame();
        if (!frame) {
            response.status = 404;
            return;
        }
        const nlohmann::json& text = frame->message.text;
        const std::span<const std::byte> pixels = frame->pixels();
        const Picture picture{text.at("width"),
                              text.at("height"),
                              HostFormat(text.at("depth")),
                              ChannelOrder::argb,
                              {pixels.begin(), pixels.end()}};
        const std::vector<std::byte> file = format.write(picture, {});
        response.set_content(reinterpret_cast<const char*>(file.data()), file.size(), format.type);
    }

    PreviewSession& session;
    const std::string token;
    std::string address;
    std::atomic<std::size_t> streams = 0;
    httplib::Server server;
};

PreviewServer::PreviewServer(PreviewSession& previewSession, int port)
    : implementation(std::make_unique<Implementation>(previewSession, port)) {}

PreviewServer::~PreviewServer() = default;

const std::string& PreviewServer::address() const {
    return implementation->address;
}

void PreviewServer::run() {
    implementation->server.listen_after_bind();
}

}  // namespace quillon::cli
