#include "frei0r/EngineInstance.h"

#include <exception>
#include <utility>
#include <vector>

#include "engine/AEQuillon2.h"
#include "engine/ScriptErrors.h"
#include "frei0r/OwnModule.h"
#include "frei0r/Report.h"
#include "platform/ModuleResource.h"

namespace quillon::frei0r {

namespace {

// Lives in a cell that is never freed: a host thread may still be inside when the process ends.
struct EngineState {
    int users = 0;
    bool isRunning = false;
    // Of instances that are gone, while others live: a new one takes over what an old one had. The engine keeps targets
    // and textures of a deleted sequence to the end of the script, which would be lost memory in a long session.
    std::vector<SequenceHandle*> idle;
    std::vector<Parameter> declared;  // what a new sequence holds
    std::string scriptErrors;
};

EngineState& State() {
    static auto* const kState = new EngineState;
    return *kState;
}

bool Start(const std::string& plugin) {
    void* const module = KeepOwnModuleLoaded();
    const auto package = ReadModuleResource(module);
    if (!module || !package || package->empty()) {  // an engine without a package would end the process
        Report(plugin, "its file carries no effect; make plug-ins with quillon pack");
        return false;
    }
    ListenToScriptErrors([](const std::string& words) {
        std::string& errors = State().scriptErrors;
        errors += (errors.empty() ? "" : "\n") + words;
    });
    try {
        const bool hasStarted = AEQuillon2::instance().init(module, nullptr);
        if (const std::string errors = TakeScriptErrors(); !errors.empty()) Report(plugin, "fx.js: " + errors);
        if (hasStarted) return true;
        Report(plugin, "no OpenGL on this machine; frames pass unchanged");
    } catch (const std::exception& error) {
        Report(plugin, std::string("the effect does not start; ") + error.what());
    }
    return false;
}

SequenceHandle* NewSequence() {
    IPlugin& engine = AEQuillon2::instance();
    EngineState& state = State();
    if (state.idle.empty()) {
        SequenceHandle* const handle = engine.createSequence();
        engine.selectSequence(handle);
        state.declared.clear();
        for (std::uint32_t i = 0; i < engine.parameterCount(); ++i) state.declared.push_back(*engine.parameterInfo(i));
        return handle;
    }
    SequenceHandle* const handle = state.idle.back();
    state.idle.pop_back();
    engine.selectSequence(handle);
    for (std::uint32_t i = 0; i < state.declared.size(); ++i) {
        Parameter& parameter = *engine.parameterInfo(i);
        if (parameter.id == state.declared[i].id) parameter = state.declared[i];
    }
    return handle;
}

void Stop() {
    EngineState& state = State();
    IPlugin& engine = AEQuillon2::instance();
    for (SequenceHandle* handle : std::exchange(state.idle, {})) engine.destroySequence(handle);
    engine.shutdown();
    state.isRunning = false;
}

}  // namespace

EngineInstance::EngineInstance(const std::string& plugin) {
    EngineState& state = State();
    if (state.users == 0) state.isRunning = Start(plugin);
    if (state.isRunning) handle = NewSequence();
    ++state.users;
}

EngineInstance::~EngineInstance() {
    EngineState& state = State();
    if (handle) state.idle.push_back(handle);
    if (--state.users == 0 && state.isRunning) Stop();
}

std::string TakeScriptErrors() {
    return std::exchange(State().scriptErrors, {});
}

}  // namespace quillon::frei0r
