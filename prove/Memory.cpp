// Planted once: an allocation in a function of the engine that may not throw. The tool's row found one such fault
// itself: the end of a temporary folder needed memory.

#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "Effects.h"
#include "Ground.h"
#include "LiveGL.h"
#include "RefusedMemory.h"
#include "Tool.h"
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

// Numbers from 1 to `last`: all if there are no more than `most`, else evenly chosen ones, about as many.
std::vector<long> Places(long last, long most) {
    std::vector<long> places;
    const long step = std::max(1L, last / most);
    for (long n = 1; n <= last; n += step) places.push_back(n);
    return places;
}

// Half of what the effect in "fx" draws is from now on a picture of the package.
void AddDot(const Tool& tool) {
    tool.runWell("chart -o fx/dot.png --size 3x2");
    tool.write("fx/dotted.frag",
               "uniform sampler2D sInput0, sDot; void main() { gl_FragColor = 0.5 * (texture2D(sInput0, "
               "gl_TexCoord[0].st) + texture2D(sDot, gl_TexCoord[0].st)); }\n");
    tool.write("fx/fx.js", tool.read("fx/fx.js") +
                               "var dotted, dot, inner = setup, own = draw;\n"
                               "setup = function () { inner(); dotted = QL_initShader('dotted'); dot = "
                               "QL_initTexture('dot.png'); };\n"
                               "draw = function () { own(); var out = QL_getSequenceRT(); "
                               "QL_setShaderParamVal(dotted, 'sInput0', sizes[Object.keys(sizes)[0]][1]); "
                               "QL_setShaderParamVal(dotted, 'sDot', dot); QL_renderShader(dotted, out, true); };\n");
}

// A command of the tool whose result is always the same: what it prints, and a file "out" of any kind.
class RefusedCommand {
public:
    RefusedCommand(const Tool& ownTool, std::string commandLine)
        : tool(ownTool), arguments(std::move(commandLine)), before(tool.list()) {
        wanted = tool.runWell(arguments);
        wantedFile = takeFile();
        Require(wanted.size() + wantedFile.size() > 10, arguments + " hardly gives anything");
    }

    // With the allocation of this number refused, and with "+" for `further` all after it. Throws where it ends neither
    // with an error nor with the result. An error may also come when the whole file is there.
    bool endsWell(long nth, const char* further) const {
        const std::string what = arguments + ", allocation " + std::to_string(nth) + further;
        NowAt(what);
        const Tool::Run result =
            tool.run(arguments, "LD_PRELOAD='" QUILLON_REFUSED_MEMORY "' " + std::string(kRefusalVariable) + "=" +
                                    std::to_string(nth) + further);
        Require(result.status == 0 || result.status == 1,
                what + " ends the tool with " + std::to_string(result.status) + ": " + result.err);
        const std::string file = takeFile();
        if (result.status == 0)
            Require(result.out == wanted && file == wantedFile, what + " gives another result");
        else
            Require(!result.err.empty(), what + ": an error without a word");
        Require(file.empty() || file == wantedFile, what + " writes another file");
        Require(tool.list() == before, what + " leaves " + tool.list());
        return result.status == 0;
    }

private:
    std::string takeFile() const {
        std::string content;
        for (const char* name : {"out.argb", "out.so"}) {
            content += tool.read(name);
            std::filesystem::remove(tool.pathOf(name));
        }
        return content;
    }

    const Tool& tool;
    const std::string arguments;
    const std::string before;
    std::string wanted, wantedFile;
};

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

// Planted once: a fetch from the package that says nothing of refused memory.
std::string ToolMemory(bool isLong) {
    const Tool tool;
    tool.addEffectAndInput();
    AddDot(tool);
    int refused = 0, survived = 0;
    std::vector<std::string> commands = {"render fx -i in.argb --size 16x9 --depth 8 -o out.argb", "info fx --json"};
    if (isLong) commands.emplace_back("pack fx -o out.so");
    for (const std::string& command : commands) {
        const RefusedCommand trial(tool, command);
        long last = 1000;  // where not one allocation is left to refuse
        while (!trial.endsWell(last, "+")) last += 500;
        for (const char* further : {"", "+"})
            for (const long nth : Places(last, isLong ? 3000 : 75))
                (trial.endsWell(nth, further) ? survived : refused) += 1;
    }
    Require(refused > 100, "hardly anything is refused");
    return std::to_string(refused) + " runs end with an error, " + std::to_string(survived) + " with the result";
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
