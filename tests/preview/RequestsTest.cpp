#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "PreviewTest.h"

// Requests that are not the page's.

namespace quillon::test {

namespace {

using Requests = PreviewTest;

struct RefusedCase {
    const char* name;
    std::string path;  // after the token
    httplib::Headers headers;
    int status;
    bool hasToken = true;
    const char* body = nullptr;  // of a POST; null: GET
};

const RefusedCase kCases[] = {
    {"no_token", "", {}, 403, false},
    {"wrong_token", "00000000000000000000000000000000/", {}, 403, false},
    {"frame_without_token", "frame", {}, 403, false, "{}"},
    {"host_of_another_site", "", {{"Host", "preview.example"}}, 403},
    {"host_that_begins_like_ours", "", {{"Host", "127.0.0.1.example"}}, 403},
    {"host_with_a_forwarded_port", "", {{"Host", "localhost:9000"}}, 200},
    {"origin_of_another_site", "events", {{"Origin", "http://preview.example"}}, 403},
    {"origin_of_another_port", "frame", {{"Origin", "http://127.0.0.1:1"}}, 403, true, "{}"},
    {"no_such_file", "../../etc/passwd", {}, 404},
    {"body_that_is_no_json", "frame", {}, 400, true, "{\"frame\": "},
    {"view_out_of_range",
     "frame",
     {},
     400,
     true,
     R"({"frame":0,"depth":9,"fps":25,"values":{},"show":"","host":0,"downsample":1})"},
    {"body_that_is_too_large", "frame", {{"Content-Length", "1048577"}}, 413, true, "x"},
    {"body_without_a_size", "frame", {{"Transfer-Encoding", "chunked"}}, 411, true, "0\r\n\r\n"},
    {"page", "", {}, 200},
};

}  // namespace

TEST_F(Requests, FromStrangersAreRefused) {
    start();
    for (const RefusedCase& each : kCases) {
        const std::string path = (each.hasToken ? root : "/") + each.path;
        const auto client = newClient();
        const auto answer = each.body ? client->Post(path, each.headers, each.body, "application/json")
                                      : client->Get(path, each.headers);
        ASSERT_TRUE(answer) << each.name;
        EXPECT_EQ(answer->status, each.status) << each.name;
        EXPECT_TRUE(each.status != 403 || answer->body.empty()) << each.name;
    }
}

TEST_F(Requests, OfManyAtOnceAreAnsweredBesideOneThatNeverFinishes) {
    start();
    ASSERT_TRUE(waitForState([](const auto& state) { return !state["description"].is_null(); }).is_object());
    std::mutex mutex;
    std::condition_variable hasChanged;
    bool isOver = false;
    std::thread slow([&] {
        newClient()->Post(
            root + "frame", 1000,
            [&](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                if (offset == 0) return sink.write("{", 1);
                std::unique_lock lock(mutex);
                hasChanged.wait(lock, [&] { return isOver; });
                return false;
            },
            "application/json");
    });
    std::vector<std::thread> others;
    std::atomic<int> answered = 0;
    for (int i = 0; i < 64; ++i) others.emplace_back([&] { answered += frame("0.5").pixels.size() == 8; });
    for (std::thread& other : others) other.join();
    EXPECT_EQ(answered, 64);
    {
        const std::lock_guard lock(mutex);
        isOver = true;
    }
    hasChanged.notify_all();
    slow.join();
}

}  // namespace quillon::test
