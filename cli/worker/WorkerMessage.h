#pragma once

#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <vector>

#include "cli/diagnostics/Diagnostic.h"

// A worker is a process of this program, started as `quillon worker`, that does for another one what may crash, hang or
// use its own core. Both sides exchange messages over the worker's standard input and output:
//
//   8 bytes   size of the text       little-endian
//   8 bytes   size of the bytes      little-endian
//   the text                         a JSON object, UTF-8
//   the bytes                        pixels or a file; mostly none
//
// Requests go to the worker, answers come back. What the objects hold is agreed on by those who use this. Here only two
// requests mean something: {"stop": true} asks for an end after the work in hand, and the end of the input ends the
// worker at once, also when its parent has died.

namespace quillon::cli {

// A request or an answer.
struct WorkerMessage {
    nlohmann::json text = {};
    std::vector<std::byte> bytes = {};
};

// Fills the bytes from a pipe and returns fewer only where it ends.
using ReadBytes = std::function<std::size_t(std::span<std::byte>)>;
// False when nobody reads any more.
using WriteBytes = std::function<bool(std::span<const std::byte>)>;

// Nothing where the pipe ends, and for what is no message, after which the pipe is of no use.
std::optional<WorkerMessage> ReadMessage(const ReadBytes& read);
bool WriteMessage(const WriteBytes& write, const WorkerMessage& message);

// Faults and warnings on their way through a message.
nlohmann::json JsonOf(const Diagnostics& diagnostics);
Diagnostics DiagnosticsOf(const nlohmann::json& json);

}  // namespace quillon::cli
