// What is refused to the module. Planted once: an allocation in a function of the engine that may not throw.

#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "Effects.h"
#include "Ground.h"
#include "LiveGL.h"
#include "RefusedMemory.h"
#include "host/ClassicFrame.h"
#include "host/SmartFrame.h"

namespace quillon::prove {

namespace {

// Every kind of entity, and every way of its pixels. A script that quantizes a surface without pixels ends the process,
// as the contract says: where GL may give none, no script should do that.
test::Files AllKinds(const std::string& quantize) {
    test::Files files = ThreePasses();
    files.back().second +=
        "var texture, surface, inner = setup, own = draw;\n"
        "setup = function () { inner(); QL_initParam('c', 5, 'C'); texture = QL_initTexture('none.png');\n"
        "  var bad = QL_initShader('bad', 'nonsense'); QL_getShaderError(bad); QL_release(bad); };\n"
        "draw = function () { own(); var back = QL_textureToSurface(QL_getSequenceRT()); " +
        quantize +
        " QL_release(QL_surfaceToTexture(back)); QL_release(back); };\n"
        "function updateUIFlags() { QL_setParamEnabled(v, true); }\n";
    return files;
}

// What a host does with an effect, whatever it answers. It applies none that does not start.
void Round(host::HostSession& session, int depth = 8) {
    if (session.globalSetup().error != 0 || session.paramsSetup().error != 0) return;
    host::HostInstance& instance = session.newInstance();
    session.sequenceSetup(instance);
    session.updateParamsUI(instance);
    const host::FrameRequest request{WorldOf(session, 8, 5, depth, 2)};
    host::SmartFrame(instance, request).walk();
    host::ClassicFrame(instance, request).walk();
    session.sequenceFlatten(instance);
    session.userChangedParam(instance, 1);
    session.sequenceSetdown(instance);
}

// A round in which all must go well: its picture.
test::Bytes GoodRound(host::HostSession& session) {
    session.clearViolations();
    session.start();
    host::HostInstance& instance = session.apply();
    test::Bytes pixels = RenderedBytes(instance, {WorldOf(session, 8, 5, 8, 2)}, host::Route::smart);
    session.remove(instance);
    return pixels;
}

const void* CodeOf(const host::EffectModule& module) {
    return reinterpret_cast<const void*>(module.entry());
}

// In a separate process, which has no GL yet.
void InChild(const std::function<void()>& body, const std::string& what) {
    NowAt(what);
    const pid_t child = fork();
    if (child == 0) {
        int status = 0;
        try {
            body();
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "%s\n", failure.what());
            status = 1;
        }
        std::_Exit(status);
    }
    int status = 0;
    waitpid(child, &status, 0);
    Require(WIFEXITED(status), "a crash at " + what);
    Require(WEXITSTATUS(status) == 0, "no good frame after " + what);
}

}  // namespace

std::string Memory(bool isLong) {
    const LoadedEffect loaded(AllKinds("QL_surfaceQuantize(back, false, 4, 1, 4, false);"));
    const host::EffectModule effect = loaded.effect();
    int refusals = 0;
    // The start of a process: the module's own, and that of the driver.
    for (const Refused which : {Refused::onlyThatOne, Refused::allFromThere})
        for (const long nth : Places(400, isLong ? 400 : 12)) {
            InChild(
                [&] {
                    host::HostSession session(effect, Unrecorded());
                    RefuseMemory(CodeOf(effect), nth, which);
                    Round(session);
                    EndRefusal();
                    GoodRound(session);
                },
                "allocation " + std::to_string(nth) + " of a process");
            ++refusals;
        }

    host::HostSession session(effect, Unrecorded());
    const test::Bytes wanted = GoodRound(session);
    RefuseMemory(CodeOf(effect), 0, Refused::onlyThatOne);
    Round(session);
    const long allocations = EndRefusal();
    Require(allocations > 100, "hardly any allocation is counted");
    for (const Refused which : {Refused::onlyThatOne, Refused::allFromThere})
        for (const long nth : Places(allocations, isLong || which == Refused::onlyThatOne ? allocations : 200)) {
            NowAt("allocation " + std::to_string(nth) + " of a round");
            RefuseMemory(CodeOf(effect), nth, which);
            Round(session);
            EndRefusal();
            Require(GoodRound(session) == wanted, "another picture after allocation " + std::to_string(nth));
            ++refusals;
        }
    return std::to_string(refusals) + " refusals, " + std::to_string(allocations) + " places in a round";
}

// Planted once: a mapped buffer that is read without a look at its address.
std::string RefusedGL(bool) {
    const LoadedEffect loaded(AllKinds(""));
    const host::EffectModule effect = loaded.effect();
    // A process whose start finds no surface or context does not look for one again.
    const auto isForGood = [](GLRefusal kind) { return kind == GLRefusal::surface || kind == GLRefusal::context; };
    constexpr std::pair<GLRefusal, const char*> kRefusals[] = {
        {GLRefusal::surface, "surface"},         {GLRefusal::context, "context"},
        {GLRefusal::current, "current context"}, {GLRefusal::framebuffer, "framebuffer"},
        {GLRefusal::floatTextures, "floats"},    {GLRefusal::anyTexture, "texture"},
        {GLRefusal::shader, "shader"},           {GLRefusal::map, "map"},
    };
    int refusals = 0;
    for (const auto& [kind, name] : kRefusals)
        for (const bool fromTheStart : {true, false})
            for (const int depth : {8, 32}) {
                const std::string what = std::string("no ") + name + (fromTheStart ? " from the start" : " any more");
                InChild(
                    [&, kind = kind] {
                        host::HostSession session(effect, Unrecorded());
                        const test::Bytes wanted = fromTheStart ? test::Bytes() : GoodRound(session);
                        RefuseGL(kind);
                        Round(session, depth);
                        Round(session, depth);
                        const bool isAsked = fromTheStart || (kind != GLRefusal::surface && kind != GLRefusal::context);
                        Require(RefusedCalls() > 0 || !isAsked || kind == GLRefusal::floatTextures, what);
                        RefuseGL(GLRefusal::none);
                        if (fromTheStart && isForGood(kind)) return;
                        const test::Bytes found = GoodRound(session);
                        Require(fromTheStart || found == wanted, what);
                    },
                    what);
                ++refusals;
            }
    InChild(
        [&] {
            setenv("LIBGL_DRIVERS_PATH", "none", 1);
            host::HostSession session(effect, Unrecorded());
            Round(session, 8);
            Require(session.globalSetup().error != 0, "without a driver the start does not fail");
        },
        "no driver");
    return std::to_string(refusals + 1) + " refusals of " + std::to_string(std::size(kRefusals) + 1) + " kinds";
}

}  // namespace quillon::prove
