#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "cli/diagnostics/ToolError.h"
#include "cli/sequence/ThreadPool.h"
#include "host/World.h"

namespace quillon::cli {

// How long one frame took, in milliseconds. Frames overlap, so the sums of all frames are more than the whole takes.
struct FrameTimes {
    double read = 0;
    double render = 0;
    double write = 0;
};

// What is done with each frame. The next frames are read and the finished ones are written while one is rendered.
template <class Input>
struct FrameSteps {
    // On any thread, for several frames at once; they start in the frames' order.
    std::function<Input(std::int32_t frame)> read;
    // On the calling thread, in order.
    std::function<std::shared_ptr<host::World>(std::int32_t frame, const Input& input)> render;
    // As read. What it returns goes to `report`: bytes for outputs that take frames in order.
    std::function<std::vector<std::byte>(std::int32_t frame, const host::World& picture)> write;
    // On the calling thread, in order, after the frame is written.
    std::function<void(std::int32_t frame, const FrameTimes& times, std::vector<std::byte> bytes)> report;
};

// How many frames may be read ahead, and how many may wait to be written: one for each thread, as long as they take no
// more than half a GiB each way, and at least one.
std::size_t FramesInFlight(std::uint64_t frameBytes, unsigned threads);

// The fault with the frame's number, for the first frame that fails.
[[noreturn]] void RethrowForFrame(ToolError& error, std::int32_t frame);

inline double MillisecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// All frames in order, see FrameSteps. The first frame that fails ends it: the frames before it are written and
// reported, those after it are not, and its fault is thrown, with the frame's number when there are several.
template <class Input>
class FramePipeline {
public:
    FramePipeline(FrameSteps<Input> frameSteps, unsigned threads, std::size_t mostInFlight)
        : steps(std::move(frameSteps)), most(mostInFlight), pool(threads) {}

    void run(const std::vector<std::int32_t>& frames) {
        hasSeveral = frames.size() > 1;
        std::size_t nextRead = 0;
        for (const std::int32_t frame : frames) {
            for (; nextRead < frames.size() && reads.size() < most; ++nextRead) startRead(frames[nextRead]);
            try {
                render(frame);
            } catch (ToolError& error) {
                while (!writes.empty()) finishWrite();
                if (hasSeveral) RethrowForFrame(error, frame);
                throw;
            }
            while (writes.size() > most || (!writes.empty() && isWritten())) finishWrite();
        }
        while (!writes.empty()) finishWrite();
    }

private:
    using Clock = std::chrono::steady_clock;
    struct Read {
        Input input;
        double milliseconds;
    };
    struct Written {
        std::vector<std::byte> bytes;
        double milliseconds;
    };
    struct Write {
        std::int32_t frame;
        FrameTimes times;
        std::future<Written> written;
    };

    void startRead(std::int32_t frame) {
        reads.push_back(pool.run([this, frame] {
            const auto start = Clock::now();
            Input input = steps.read(frame);
            return Read{std::move(input), MillisecondsSince(start)};
        }));
    }

    void render(std::int32_t frame) {
        auto reading = std::move(reads.front());
        reads.pop_front();
        const Read read = reading.get();
        const auto start = Clock::now();
        auto picture = steps.render(frame, read.input);
        const FrameTimes times{.read = read.milliseconds, .render = MillisecondsSince(start)};
        writes.push_back({frame, times, pool.run([this, frame, picture = std::move(picture)]() mutable {
                              const auto begin = Clock::now();
                              Written written{steps.write(frame, *picture), 0};
                              picture.reset();
                              written.milliseconds = MillisecondsSince(begin);
                              return written;
                          })});
    }

    bool isWritten() const {
        return writes.front().written.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }

    void finishWrite() {
        Write write = std::move(writes.front());
        writes.pop_front();
        try {
            Written written = write.written.get();
            write.times.write = written.milliseconds;
            steps.report(write.frame, write.times, std::move(written.bytes));
        } catch (ToolError& error) {
            if (hasSeveral) RethrowForFrame(error, write.frame);
            throw;
        }
    }

    const FrameSteps<Input> steps;
    const std::size_t most;
    bool hasSeveral = false;
    std::deque<std::future<Read>> reads;
    std::deque<Write> writes;
    ThreadPool pool;  // last: its jobs use the others
};

}  // namespace quillon::cli
