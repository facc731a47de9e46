#pragma once

#include <functional>
#include <string>

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// What a script says of itself, by console.log or print. A module has neither.
struct ScriptNote {
    std::string path;  // of fx.js, as the user names it
    int line = 0;      // where it is said, from 1; 0 when not known
    std::string text;  // UTF-8, one line
};

// "fx/fx.js:12: note: TEXT", without a line end.
std::string FormatNote(const ScriptNote& note);

// Script heaps that are made from now on have print and console, whose functions all do the same: the arguments as
// text, objects as JSON, with blanks between them, are a note. The source outlives those heaps.
void OfferConsole(const EffectSource& source);

// Where notes go from now on, within the call that runs the script; null, as at first, for standard error.
using NoteListener = std::function<void(const ScriptNote&)>;
void SetNoteListener(NoteListener listener);

}  // namespace quillon::cli
