#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/effect/EffectSource.h"
#include "cli/pictures/FrameRange.h"
#include "host/HostSettings.h"

// What a preview's server and the worker that runs the effect say to each other, as texts of a WorkerMessage. Each
// request has one answer; one that fails has {"faults": [...], "status": N}, the exit status of a command that would
// fail like that. An answer may also have "notes", lines that the script has printed since the answer before.
//
//   {"preview": SETUP, "milliseconds": N}   first, and once: loads the effect and runs its setup(). No entry point of
//                                   the script may run longer than N.
//       controls                    as `quillon params --json` has them, in the host's order
//       input                       width, height, depth (of its file), first, last, fps
//       values                      those of SETUP, by name: {"kind": K, "text": T}
//       warnings                    faults that do not stop it
//   {"layer": NAME} and bytes       the picture file of a layer, from now on; without bytes "None".
//   {"frame": F, "depth": D, "fps": R, "values": {NAME: {"kind": K, "text": T}}, "show": TARGET, "input": false,
//    "memory": {"name": N, "size": S}}
//                                   a frame. A value is used when there is such a control of that kind; all other
//                                   controls have their defaults. TARGET: "" or a render target. "input": true asks for
//                                   the picture that goes into the effect. "memory" may be missing: the name of a
//                                   SharedMemory for the pixels.
//       width, height, depth        of the bytes: a host's buffer, rows tight, channels A, R, G, B
//       shared                      how many bytes are in the memory; missing when they come with the answer
//       origin                      [x, y] of the input's corner in it
//       times                       milliseconds: read, script, passes
//       warnings                    all so far, those of the frames too
//       states                      for each control [name, isEnabled], as the host's panel shows it now
//       targets                     the effect's render targets: name, width, height, depth
//
// A fault is an object for the page: text, remedy, severity, kind, rule, path, line, column; of a file of the effect
// also file and source, the author's line.

namespace quillon::cli {

// What an effect is previewed with. Each change of it needs another worker.
struct PreviewSetup {
    std::filesystem::path effect;
    std::filesystem::path input;      // empty: the tool's test picture
    std::vector<std::string> layers;  // NAME=FILE
    std::vector<std::string> values;  // NAME=VALUE
    bool isLenient = false;           // layers that the effect lacks are left out
    FrameRange range{0, 99, 1};
    bool hasRange = false;       // else a movie's own
    double framesPerSecond = 0;  // 0: a movie's own, else 25
    std::uint32_t depth = 0;     // to begin with; 0: the input's
    host::HostKind host = host::HostKind::afterEffects;
    std::uint32_t downsample = 1;
};

nlohmann::json JsonOf(const PreviewSetup& setup);
PreviewSetup SetupOf(const nlohmann::json& json);

// `source` may be null, when the effect could not be read.
nlohmann::json FaultsForPage(const Diagnostics& faults, const EffectSource* source);
Diagnostics FaultsOfPage(const nlohmann::json& faults);
// The text of an answer to a request that failed.
nlohmann::json FailedAnswer(const Diagnostics& faults, int status, const EffectSource* source);
// The same, of what a request has thrown.
nlohmann::json FailedAnswer(const std::exception& failure, const EffectSource* source);

}  // namespace quillon::cli
