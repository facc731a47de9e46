#include "script/CallingLines.h"

#include <duktape.h>

namespace quillon {

namespace {

struct Walk {
    std::span<int> lines;
    std::size_t count = 0;
};

duk_ret_t Write(duk_context* ctx, void* data) {
    Walk& walk = *static_cast<Walk*>(data);
    duk_require_stack(ctx, 8);
    for (duk_int_t level = -1; walk.count < walk.lines.size(); --level) {
        duk_inspect_callstack_entry(ctx, level);
        if (!duk_is_object(ctx, -1)) break;
        duk_get_prop_string(ctx, -1, "lineNumber");
        if (const int line = duk_get_int(ctx, -1); line > 0) walk.lines[walk.count++] = line;
        duk_pop_2(ctx);
    }
    return 0;
}

}  // namespace

std::size_t CallingLines(duk_hthread* ctx, std::span<int> lines) {
    Walk walk{lines};
    duk_safe_call(ctx, Write, &walk, 0, 1);
    duk_pop(ctx);
    return walk.count;
}

int CallingLine(duk_hthread* ctx) {
    int line = 0;
    CallingLines(ctx, {&line, 1});
    return line;
}

}  // namespace quillon
