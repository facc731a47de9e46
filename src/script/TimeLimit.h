#pragma once

#include <chrono>
#include <optional>

struct duk_hthread;

// How long the script heap may evaluate a text. Duktape asks every few milliseconds as it runs, in programs that link
// the copy that does (ENDS_SCRIPTS, cmake/Dependencies.cmake); in others, as every module, there is no limit. A loop
// inside Duktape itself, as of a regular expression, is not ended.
namespace quillon::TimeLimit {

// For each evaluation from now on. Zero, the default, for none.
void Set(std::chrono::milliseconds limit);
std::chrono::milliseconds Get();

// The user data to make a heap with.
void* UserData();

// From here to Stop() the time counts. When it is over, every script of the heap raises an error that it cannot keep.
void Start(duk_hthread* ctx);
bool IsOver();
// When the time was over: the line of the prepared source that ran then, 0 when not known. Of a loop's start it may be
// the line before.
std::optional<int> Stop();

}  // namespace quillon::TimeLimit
