#pragma once

#include <gmock/gmock.h>

#include <deque>
#include <vector>

#include "host/ClassicFrame.h"
#include "host/HostSession.h"
#include "host/SmartFrame.h"
#include "shell/ParameterMaps.h"
#include "shell/SequenceData.h"
#include "support/EngineTest.h"
#include "support/Pixels.h"

extern "C" PF_Err EntryPointFunc(PF_Cmd, PF_InData*, PF_OutData*, PF_ParamDef*[], PF_LayerDef*, void*);

// The host's types live outside of any namespace, and so does what compares and shows them.
inline bool operator==(const PF_LRect& a, const PF_LRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

inline std::ostream& operator<<(std::ostream& to, const PF_LRect& r) {
    return to << '{' << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << '}';
}

namespace quillon::test {

using host::Callback;
using host::FrameRequest;
using host::FrameResult;
using host::HostInstance;
using host::HostKind;
using host::HostSession;
using host::HostSettings;
using host::Route;
using host::World;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

// A script without a shader, for what needs no picture.
inline const char* const kNoControls = "function setup() {} function draw() {}";

// With CopyScript(true): draws the input as it is, the right way up.
inline const Files kCopyFiles{{"copy.frag", kCopyFragment}};

// The shell linked into this program, driven by a host. After each test the host must have nothing to complain of, and
// entry gate and GL lock must be free.
class ShellTest : public EngineTest {
protected:
    ShellTest();
    void TearDown() override;

    // Packs an effect and loads it; nothing is sent yet. A further one takes the engine over at its GLOBAL_SETUP.
    HostSession& load(const std::string& script, const HostSettings& settings = {}, const Files& files = {});
    // The same, after GLOBAL_SETUP and PARAMS_SETUP.
    HostSession& start(const std::string& script, const HostSettings& settings = {}, const Files& files = {});

    static SequenceData& Block(const HostInstance& instance) { return *LiveBlockOf(instance.sequenceData); }
    static std::shared_ptr<World> WorldOf(const HostSession& session, A_long width, A_long height, const Bytes& tight);
    // A small picture without symmetries.
    static std::shared_ptr<World> Picture(const HostSession& session, int depth = 8, A_long width = 5,
                                          A_long height = 3);

    ParameterMaps& maps = ParameterMaps::instance();

private:
    std::deque<TestEffect> packed;
    std::deque<HostSession> sessions;
};

// Whether a selector sent by another thread comes back within this time; if not now, it does before the returned
// object ends.
bool PassesGate(PF_Cmd cmd, int milliseconds);

// Keeps the GL lock on another thread for the life of a scope.
class StolenLock {
public:
    StolenLock();
    ~StolenLock();
    StolenLock(const StolenLock&) = delete;
    StolenLock& operator=(const StolenLock&) = delete;

private:
    struct Thief;
    std::unique_ptr<Thief> thief;
};

inline HostSettings AfterEffects(int major = 13, int minor = 9, Route route = Route::smart) {
    HostSettings settings;
    settings.versionMajor = static_cast<A_short>(major);
    settings.versionMinor = static_cast<A_short>(minor);
    settings.route = route;
    return settings;
}

inline HostSettings Premiere(int major = 13, int minor = 9) {
    HostSettings settings = AfterEffects(major, minor, Route::classic);
    settings.kind = HostKind::premiere;
    return settings;
}

// All that renders: two routes and a second host.
inline const HostSettings kHosts[] = {AfterEffects(), AfterEffects(13, 9, Route::classic), Premiere()};

// An effect that fills the output, as the host's A, R, G, B, with 0.25, 0.5, 0.75, 1.
inline const Files kFill{{"fill.frag", "void main() { gl_FragColor = vec4(0.5, 0.75, 1.0, 0.25); }\n"}};
inline const char* const kFilling =
    "var fill, drawn = 0, found; function setup() { fill = QL_initShader('fill'); }"
    "function draw() { ++drawn; found = [QL_getTime(), QL_getInputOrigin(), QL_getSurfaceDim(QL_getSequenceRT()),"
    " QL_getSurfaceDim(QL_getSequenceTexture()), QL_getContextExtent()];"
    " QL_renderShader(fill, QL_getSequenceRT(), true); }";

// An effect whose script keeps its controls' ids in `p` and, after each frame, their values in `seen`; add(kind, flags)
// declares one.
inline std::string ScriptOf(const std::string& setup, const std::string& update = {}, const std::string& draw = {}) {
    return "var p = [], seen; function add(kind, flags) { var id = QL_initParam('p' + p.length, kind, 'P');"
           " QL_setParamFlags(id, flags || 0); p.push(id); return id; }"
           "function setup() {" +
           setup + "} function updateUIFlags() {" + update + "} function draw() {" + draw +
           " seen = p.map(QL_getParamValue); }";
}

}  // namespace quillon::test
