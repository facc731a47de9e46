// Start, restart and end of the engine, and what config.xml answers.

#include "engine/AEQuillon2.h"

#include <iterator>
#include <limits>
#include <string>

#include "entities/Context.h"
#include "gpu/GLEntryPoints.h"
#include "gpu/GLLockScope.h"
#include "gpu/OpenGLContext.h"
#include "gpu/TextOverlay.h"
#include "package/BlobReader.h"
#include "package/ConfigDocument.h"
#include "package/EffectVersion.h"
#include "package/FileAccess.h"
#include "script/Scripting.h"
#include "script/SourcePreparation.h"

namespace quillon {

AEQuillon2::AEQuillon2() = default;
AEQuillon2::~AEQuillon2() = default;

AEQuillon2& AEQuillon2::instance() {
    static AEQuillon2 engine;
    return engine;
}

bool AEQuillon2::init(void* module, void*) {
    BlobReader::Load(module);
    config = std::make_unique<ConfigDocument>();
    if (!started) {
        // Stored before it is created: a lock on a context that could not be created fails.
        gl = std::make_unique<OpenGLContext>();
        if (gl->create() != 0) return false;
    }
    const GLLockScope lock(gl.get());
    LoadGLEntryPoints();
    restartScript();
    started = true;
    return true;
}

bool AEQuillon2::restartScript() {
    const std::string source = PrepareScriptSource(ReadFileText(L"fx.js"));
    // Without the lock the script runs all the same, with no context current.
    const GLLockScope lock(gl.get());
    Scripting& scripting = Scripting::instance();
    scripting.Close();
    scripting.Open();
    scripting.Eval(source.c_str());
    scriptReady = true;
    Context& context = Context::Instance();
    if (Sequence& sequence = context.CurrentSequence(); sequence.exists()) sequence.CopyFrom(context);
    return true;
}

void AEQuillon2::shutdown() {
    if (!started) return;
    const GLLockScope lock(gl.get());
    Scripting::instance().Close();
    ForgetTextOverlay();
    gl->destroy();
    started = false;
    scriptReady = false;
}

SequenceHandle* AEQuillon2::createSequence() {
    Context& context = Context::Instance();
    auto handle = std::make_unique<SequenceHandle>();
    handle->slot = context.NewSequence();
    handle->generation = context.generation;
    selected = handle.release();
    return selected;
}

void AEQuillon2::destroySequence(SequenceHandle* handle) {
    if (!handle) return;
    Context& context = Context::Instance();
    // A slot from before a restart of the script may belong to another instance now.
    if (handle->generation == context.generation) context.DeleteSequence(handle->slot);
    if (selected == handle) selected = nullptr;
    delete handle;
}

void AEQuillon2::selectSequence(SequenceHandle* handle) {
    selected = handle;
    enterSelected();
}

bool AEQuillon2::enterSelected() {
    if (!selected) return false;
    Context& context = Context::Instance();
    const bool isStale = selected->generation != context.generation;
    context.current = isStale ? std::numeric_limits<std::uint32_t>::max() : selected->slot;
    return context.CurrentSequence().exists();
}

std::uint32_t* AEQuillon2::packedVersion(std::uint32_t* out) {
    if (out) *out = config ? EffectVersion::FromConfig(*config).word : 0;
    return out;
}

std::uint32_t AEQuillon2::effectFlags() {
    return config ? static_cast<std::uint32_t>(config->GetInteger(L"FLAGS")) : 0;
}

std::uint32_t AEQuillon2::effectFlags2() {
    return config ? static_cast<std::uint32_t>(config->GetInteger(L"FLAGS2")) : 0;
}

std::string& AEQuillon2::identityString(std::string& out, std::uint32_t which) {
    constexpr const wchar_t* kKeys[] = {L"ABOUT", L"FXNAME", L"AGEP_ID"};
    out = config && which < std::size(kKeys) ? config->GetValue(kKeys[which]) : std::string();
    return out;
}

bool AEQuillon2::isReady() {
    return true;
}
bool AEQuillon2::lockGL() {
    return GLLockScope::Enter(gl.get());
}
void AEQuillon2::unlockGL() {
    GLLockScope::Leave(gl.get());
}

// These keep their places in the order of operations and do nothing.
bool AEQuillon2::reservedHook6(bool) {
    return true;
}
void AEQuillon2::reservedHook9() {}
std::uint32_t AEQuillon2::reservedHook21() {
    return 0;
}
std::uint64_t AEQuillon2::reservedHook23() {
    return 0;
}
std::uint64_t AEQuillon2::reservedHook28() {
    return 0;
}
void AEQuillon2::reservedHook29() {}
void AEQuillon2::runOverlay(void*) {}

}  // namespace quillon
