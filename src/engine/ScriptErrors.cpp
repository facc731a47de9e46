#include "engine/ScriptErrors.h"

#include "script/Scripting.h"

namespace quillon {

namespace {

ScriptErrorListener current = nullptr;

}  // namespace

void ListenToScriptErrors(ScriptErrorListener listener) {
    current = listener;
    Scripting::SetErrorObserver(listener ? [](const ScriptError& error) { current(error.message); }
                                         : Scripting::ErrorObserver{});
}

}  // namespace quillon
