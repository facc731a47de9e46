#include "PreviewProcess.h"

#include <httplib.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <vector>

#include "cli/system/ChildProcess.h"
#include "platform/LittleEndian.h"

namespace quillon::bench {

namespace {

namespace fs = std::filesystem;

std::vector<long> ChildrenOf(const std::string& process) {
    std::vector<long> found;
    std::error_code hasEnded;
    for (const auto& task : fs::directory_iterator("/proc/" + process + "/task", hasEnded)) {
        std::ifstream children(task.path() / "children");
        for (long child; children >> child;) found.push_back(child);
    }
    return found;
}

long KilobytesOf(long process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    long sum = 0, number = 0;
    for (std::string word; file >> word;)
        if ((word == "Private_Dirty:" || word == "Private_Clean:") && file >> number) sum += number;
    return sum;
}

}  // namespace

struct PreviewProcess::Connection {
    Connection(const fs::path& effect, const fs::path& input)
        : process(QUILLON_TOOL_FILE, {"preview", effect.string(), "-i", input.string(), "--no-browser"},
                  cli::ChildProcess::Pipe::fromChild) {
        std::string line;
        for (std::byte letter; process.read({&letter, 1}) == 1 && letter != std::byte{'\n'};)
            line += static_cast<char>(letter);
        const std::size_t slash = line.find('/', std::string("http://").size());
        if (slash == std::string::npos) throw std::runtime_error("the preview has not started");
        root = line.substr(slash);
        client = std::make_unique<httplib::Client>(line.substr(0, slash));
        client->set_keep_alive(true);
        client->set_tcp_nodelay(true);
    }

    cli::ChildProcess process;
    std::string root;
    std::unique_ptr<httplib::Client> client;
    std::string body;  // of the last frame
    nlohmann::json last;
};

PreviewProcess::PreviewProcess(const fs::path& effect, const fs::path& input)
    : connection(std::make_unique<Connection>(effect, input)) {
    while (render(), connection->last.contains("faults")) std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

PreviewProcess::~PreviewProcess() = default;

double PreviewProcess::render() {
    constexpr const char* kView = R"({"frame":0,"depth":8,"fps":25,"values":{},"show":"","host":0,"downsample":1})";
    std::string& body = connection->body;
    body.clear();
    httplib::Request request;
    request.method = "POST";
    request.path = connection->root + "frame";
    request.headers = {{"Content-Type", "application/json"}};
    request.body = kView;
    request.content_receiver = [&body](const char* bytes, std::size_t count, std::uint64_t, std::uint64_t) {
        body.append(bytes, count);
        return true;
    };
    const auto start = std::chrono::steady_clock::now();
    const auto answer = connection->client->send(request);
    const auto end = std::chrono::steady_clock::now();
    if (!answer || answer->status != 200) throw std::runtime_error("the preview does not answer");
    const auto size = LoadLittle<std::uint32_t>(std::as_bytes(std::span(body)).first<4>(), 0);
    connection->last = nlohmann::json::parse(body.substr(4, size));
    return std::chrono::duration<double, std::milli>(end - start).count();
}

const nlohmann::json& PreviewProcess::lastFrame() const {
    return connection->last;
}

void PreviewProcess::waitForReload() {
    const nlohmann::json before = connection->last["generation"];
    do {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        render();
    } while (connection->last["generation"] == before);
}

PreviewProcess::Use PreviewProcess::use() const {
    Use sum;
    for (const long server : ChildrenOf("self")) {
        std::vector<long> processes = ChildrenOf(std::to_string(server));
        processes.push_back(server);
        for (const long process : processes) {
            sum.kilobytes += KilobytesOf(process);
            std::error_code hasEnded;  // a worker that another one has replaced
            const fs::directory_iterator files("/proc/" + std::to_string(process) + "/fd", hasEnded);
            sum.files += std::distance(begin(files), end(files));
        }
    }
    return sum;
}

}  // namespace quillon::bench
