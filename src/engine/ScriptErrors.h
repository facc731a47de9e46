#pragma once

#include <string>

namespace quillon {

// Called with the words of every script error that the script does not catch, from within the engine call that runs the
// script. Null, the default, drops them. It must not throw.
using ScriptErrorListener = void (*)(const std::string& words);
void ListenToScriptErrors(ScriptErrorListener listener);

}  // namespace quillon
