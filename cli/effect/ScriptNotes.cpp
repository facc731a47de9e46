#include "cli/effect/ScriptNotes.h"

#include <duktape.h>
#include <fmt/format.h>

#include <string_view>
#include <utility>

#include "cli/diagnostics/PrintLine.h"
#include "cli/effect/ScriptFaults.h"
#include "script/CallingLines.h"
#include "script/Natives.h"
#include "script/ScriptObserver.h"
#include "script/Scripting.h"

namespace quillon::cli {

namespace {

const EffectSource* speaking = nullptr;  // whose scripts run
NoteListener noteListener;

// The heap writes a character beyond 16 bits as two halves of three bytes each. This is where such a pair is in the
// text.
bool IsSplitCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    return text.size() >= 6 && byte(0) == 0xED && (byte(1) & 0xF0) == 0xA0 && byte(3) == 0xED &&
           (byte(4) & 0xF0) == 0xB0;
}

void AppendJoined(std::string& line, std::string_view halves) {
    const auto bits = [&](std::size_t i, unsigned mask) { return static_cast<unsigned char>(halves[i]) & mask; };
    const unsigned code = 0x10000 + (bits(1, 0x0F) << 16 | bits(2, 0x3F) << 10 | bits(4, 0x0F) << 6 | bits(5, 0x3F));
    for (const unsigned byte :
         {0xF0 | code >> 18, 0x80 | (code >> 12 & 0x3F), 0x80 | (code >> 6 & 0x3F), 0x80 | (code & 0x3F)})
        line += static_cast<char>(byte);
}

// Control characters are blanks: a script must not break the line or steer a terminal.
std::string LineOfText(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const std::size_t length = IsSplitCharacter(text) ? 6 : 1;
        if (length == 6)
            AppendJoined(line, text);
        else
            line += static_cast<unsigned char>(text[0]) < ' ' || text[0] == 0x7F ? ' ' : text[0];
        text.remove_prefix(length);
    }
    return line;
}

duk_ret_t EncodeTop(duk_context* ctx, void*) {
    duk_json_encode(ctx, -1);
    return 1;
}

// Pushes the argument as text.
void PushText(duk_context* ctx, duk_idx_t index) {
    duk_dup(ctx, index);
    if (duk_is_object(ctx, index) && !duk_is_function(ctx, index) && !duk_is_error(ctx, index)) {
        const bool isEncoded = duk_safe_call(ctx, EncodeTop, nullptr, 1, 1) == DUK_EXEC_SUCCESS;
        if (isEncoded && duk_is_string(ctx, -1)) return;
        duk_pop(ctx);
        duk_dup(ctx, index);  // it refers to itself, for example
    }
    duk_safe_to_string(ctx, -1);
}

duk_ret_t Say(duk_context* ctx) {
    const duk_idx_t count = duk_get_top(ctx);
    duk_require_stack(ctx, count + 8);
    duk_push_string(ctx, " ");
    for (duk_idx_t i = 0; i < count; ++i) PushText(ctx, i);
    duk_join(ctx, count);
    duk_size_t length = 0;
    const char* const text = duk_get_lstring(ctx, -1, &length);
    const int line = CallingLine(ctx);
    const ScriptNote note = {speaking->pathOf("fx.js"), AuthorLine(line, *speaking), LineOfText({text, length})};
    if (noteListener)
        noteListener(note);
    else
        PrintWordsOverBar(FormatNote(note));
    return 0;
}

class Console final : public ScriptObserver {
public:
    void heapOpened(duk_hthread* ctx) override {
        duk_push_c_function(ctx, Guarded<Say>, DUK_VARARGS);
        duk_push_object(ctx);
        for (const char* name : {"log", "info", "warn", "error", "debug"}) {
            duk_dup(ctx, -2);
            duk_put_prop_string(ctx, -2, name);
        }
        duk_put_global_string(ctx, "console");
        duk_put_global_string(ctx, "print");
    }
};

}  // namespace

std::string FormatNote(const ScriptNote& note) {
    const std::string place = note.line > 0 ? fmt::format(":{}", note.line) : "";
    return fmt::format("{}{}: note: {}", note.path, place, note.text);
}

void OfferConsole(const EffectSource& source) {
    static Console console;
    if (!speaking) Scripting::AddObserver(console);
    speaking = &source;
}

void SetNoteListener(NoteListener listener) {
    noteListener = std::move(listener);
}

}  // namespace quillon::cli
