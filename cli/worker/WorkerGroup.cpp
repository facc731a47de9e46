#include "cli/worker/WorkerGroup.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

#include "cli/diagnostics/ToolError.h"
#include "cli/system/ChildProcess.h"
#include "cli/system/System.h"

namespace quillon::cli {

namespace {

// Answers of one worker that wait to be taken: one is enough to keep it at work, and each may hold a frame.
constexpr std::size_t kMostWaiting = 2;

}  // namespace

// What has come from all workers, in the order of its arrival.
struct WorkerGroup::Mail {
    std::mutex mutex;
    std::condition_variable hasChanged;
    std::deque<Answer> answers;
    bool isClosing = false;
};

struct WorkerGroup::Worker {
    Worker(const std::string& program, std::size_t number, Mail& mailOfAll)
        : process(program, {"worker"}, ChildProcess::Pipe::both),
          listener([this, number, &mailOfAll] { listen(number, mailOfAll); }) {}
    ~Worker() {
        process.end();
        if (listener.joinable()) listener.join();
    }

    void listen(std::size_t number, Mail& mailOfAll) {
        for (bool isOpen = true; isOpen;) {
            Answer answer{number, ReadMessage([this](std::span<std::byte> bytes) { return process.read(bytes); })};
            isOpen = answer.message.has_value();
            std::unique_lock lock(mailOfAll.mutex);
            mailOfAll.hasChanged.wait(lock, [&] {
                const auto waiting = std::ranges::count(mailOfAll.answers, number, &Answer::worker);
                return mailOfAll.isClosing || !isOpen || static_cast<std::size_t>(waiting) < kMostWaiting;
            });
            mailOfAll.answers.push_back(std::move(answer));
            mailOfAll.hasChanged.notify_all();
        }
    }

    ChildProcess process;
    std::thread listener;
    bool hasEnded = false;  // and wait() has said so
};

WorkerGroup::WorkerGroup(std::size_t count, const std::filesystem::path& program) : mail(std::make_unique<Mail>()) {
    const std::string file = (program.empty() ? ProgramFile() : program).string();
    try {
        for (std::size_t i = 0; i < count; ++i) workers.push_back(std::make_unique<Worker>(file, i, *mail));
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::no_such_file_or_directory)
            throw Fault(file, "was removed or replaced while it runs", "run the command again");
        throw Fault("", "no further process can be started: " + error.code().message(),
                    "close other programs, or use fewer processes");
    }
}

WorkerGroup::~WorkerGroup() {
    {
        const std::lock_guard lock(mail->mutex);
        mail->isClosing = true;
    }
    mail->hasChanged.notify_all();
    for (const auto& worker : workers) worker->process.end();
    workers.clear();
}

bool WorkerGroup::send(std::size_t worker, const WorkerMessage& request) {
    ChildProcess& process = workers[worker]->process;
    if (WriteMessage([&](std::span<const std::byte> bytes) { return process.write(bytes); }, request)) return true;
    process.end();  // it may live, and wait for the rest of the request for ever
    return false;
}

std::optional<WorkerGroup::Answer> WorkerGroup::wait(std::optional<std::size_t> worker,
                                                     std::optional<Deadline> deadline) {
    const auto isWanted = [&](const Answer& answer) { return !worker || answer.worker == *worker; };
    const bool isAlive = worker ? !workers[*worker]->hasEnded
                                : std::ranges::any_of(workers, [](const auto& other) { return !other->hasEnded; });
    if (!isAlive) return {};
    std::unique_lock lock(mail->mutex);
    const auto hasCome = [&] { return std::ranges::any_of(mail->answers, isWanted); };
    if (deadline) {
        if (!mail->hasChanged.wait_until(lock, *deadline, hasCome)) return {};
    } else {
        mail->hasChanged.wait(lock, hasCome);
    }
    const auto found = std::ranges::find_if(mail->answers, isWanted);
    Answer answer = std::move(*found);
    mail->answers.erase(found);
    if (!answer.message) workers[answer.worker]->hasEnded = true;
    lock.unlock();
    mail->hasChanged.notify_all();
    return answer;
}

void WorkerGroup::kill(std::size_t worker) {
    workers[worker]->process.end();
}

WorkerGroup::End WorkerGroup::endOf(std::size_t worker) {
    workers[worker]->listener.join();
    const int status = workers[worker]->process.wait();
    return {status, workers[worker]->process.lastWords()};
}

}  // namespace quillon::cli
