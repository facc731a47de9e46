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
template <class Input, class Output>
struct FrameSteps {
    // On any thread, for several frames at once; they start in the frames' order.
    std::function<Input(std::int32_t frame)> read;
    // On the calling thread, in order.
    std::function<std::shared_ptr<host::World>(std::int32_t frame, const Input& input)> render;
    // As read. What it returns goes to `report`, for outputs that take frames in order.
    std::function<Output(std::int32_t frame, const host::World& picture)> write;
    // On the calling thread, in order, after the frame is written.
    std::function<void(std::int32_t frame, const FrameTimes& times, Output output)> report;
    // On the calling thread, before each frame but the first: whether no further one is wanted.
    std::function<bool()> isStopped = [] { return false; };
};

// How many frames may be read ahead, and how many may wait to be written: one for each thread, fewer where they
// would take more than half a GiB each way in all processes together, and at least one.
std::size_t FramesInFlight(std::uint64_t frameBytes, unsigned threads, unsigned processes);

// The fault with the frame's number, for the first frame that fails.
[[noreturn]] void RethrowForFrame(ToolError& error, std::int32_t frame);

inline double MillisecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// All frames in order, see FrameSteps. The first frame that fails ends it: the frames before it are written and
// reported, those after it are not, and its fault is thrown, with the frame's number in a sequence.
template <class Input, class Output>
class FramePipeline {
public:
    FramePipeline(FrameSteps<Input, Output> frameSteps, unsigned threads, std::size_t mostInFlight, bool isOfSequence)
        : steps(std::move(frameSteps)), most(mostInFlight), namesFrame(isOfSequence), pool(threads) {}

    void run(const std::vector<std::int32_t>& frames) {
        std::size_t nextRead = 0;
        for (const std::int32_t frame : frames) {
            if (frame != frames.front() && steps.isStopped()) break;
            for (; nextRead < frames.size() && reads.size() < most; ++nextRead) startRead(frames[nextRead]);
            try {
                render(frame);
            } catch (ToolError& error) {
                while (!writes.empty()) finishWrite();
                if (namesFrame) RethrowForFrame(error, frame);
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
        Output output;
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
            steps.report(write.frame, write.times, std::move(written.output));
        } catch (ToolError& error) {
            if (namesFrame) RethrowForFrame(error, write.frame);
            throw;
        }
    }

    const FrameSteps<Input, Output> steps;
    const std::size_t most;
    const bool namesFrame;
    std::deque<std::future<Read>> reads;
    std::deque<Write> writes;
    ThreadPool pool;  // last: its jobs use the others
};

}  // namespace quillon::cli
