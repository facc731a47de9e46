#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "cli/diagnostics/Diagnostic.h"
#include "cli/effect/EffectSource.h"

namespace quillon::cli {

inline constexpr int kMostCheckLevel = 5;

// What to check, and how hard.
struct CheckSettings {
    std::filesystem::path effect;
    int level = 3;  // 1 to kMostCheckLevel, each with all that the lower ones find
    // That setup(), preRender(), draw() and updateUIFlags() may take, each.
    std::chrono::milliseconds timeLimit = std::chrono::seconds(10);
};

// What was found in an effect.
struct CheckedEffect {
    EffectSource source;   // as the findings count its lines
    Diagnostics findings;  // in the order of their places, each once

    bool hasErrors() const;
};

// What comes up while a check runs.
struct CheckListener {
    std::function<void(const std::string& step)> step;  // what is tried next, in words
    std::function<void(const std::string& note)> note;  // what the script says, see ScriptNotes.h
};

// Looks for all that a machine can find wrong with an effect. The effect runs in processes beside this one, so that
// nothing that it does reaches the caller: one that crashes or does not end in time is a finding. Warnings that the
// author has silenced are left out. Throws ToolError where there is no effect at all, or no OpenGL to check it with.
CheckedEffect CheckEffect(const CheckSettings& settings, const CheckListener& listener);

}  // namespace quillon::cli
