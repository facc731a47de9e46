#include "cli/effect/LinkedEngine.h"

#include <GL/glew.h>

#include <new>

#include "cli/effect/ScriptFaults.h"
#include "cli/effect/ScriptNotes.h"
#include "cli/effect/ShaderFaults.h"
#include "engine/AEQuillon2.h"
#include "engine/EngineLock.h"
#include "platform/MemoryShortage.h"
#include "script/TimeLimit.h"

extern "C" PF_Err EntryPointFunc(PF_Cmd, PF_InData*, PF_OutData*, PF_ParamDef*[], PF_LayerDef*, void*);

namespace quillon::cli::LinkedEngine {

namespace {

// The engine's GL lock for a scope; a fault where there is no OpenGL.
class RequiredLock : public EngineLock {
public:
    RequiredLock() : EngineLock(AEQuillon2::instance()) {
        if (!isHeld())
            throw Fault("", "no OpenGL: the system gives no context",
                        "install a graphics driver, or Mesa's software renderer (Debian: libgl1-mesa-dri "
                        "libegl-mesa0)");
    }
};

}  // namespace

host::EffectModule WithPackageOf(const host::EffectModule& module) {
    return host::EffectModule(EntryPointFunc, module.handle());
}

void Listen(const EffectSource& source) {
    CollectScriptErrors(source);
    OfferConsole(source);
}

Diagnostics TakeFaults(const EffectSource& source) {
    if (TakeMemoryShortage()) throw std::bad_alloc();
    Diagnostics faults = TakeScriptFaults(source);
    const Diagnostics shaderFaults = ExplainShaderFaults(source);
    faults.insert(faults.end(), shaderFaults.begin(), shaderFaults.end());
    return faults;
}

void LimitScripts(std::chrono::milliseconds limit) {
    TimeLimit::Set(limit);
}

std::vector<Parameter> Declarations() {
    IPlugin& engine = AEQuillon2::instance();
    std::vector<Parameter> declarations;
    for (std::uint32_t i = 0; i < engine.parameterCount(); ++i) declarations.push_back(*engine.parameterInfo(i));
    return declarations;
}

std::uint32_t Flags() {
    return AEQuillon2::instance().effectFlags();
}

std::uint32_t Flags2() {
    return AEQuillon2::instance().effectFlags2();
}

void RequireOpenGL() {
    const RequiredLock lock;
}

std::uint32_t LargestExtent() {
    const RequiredLock lock;
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return static_cast<std::uint32_t>(largest);
}

void DrawNothing() {
    const RequiredLock lock;
    if (GLEW_VERSION_3_0) glEnable(GL_RASTERIZER_DISCARD);
}

}  // namespace quillon::cli::LinkedEngine
