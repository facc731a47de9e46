// Selectors in any order, through EntryPointFunc, from a host that keeps a ledger of what it gives and gets back. Bytes
// are a list of deeds; each takes the bytes after it as its numbers.
//
// Planted once: a block that SEQUENCE_SETDOWN does not dispose of.

#include <algorithm>
#include <stdexcept>
#include <string>

#include "GivenPackage.h"
#include "Input.h"
#include "host/ClassicFrame.h"
#include "host/HostEvent.h"
#include "host/HostSession.h"
#include "host/SmartFrame.h"
#include "parameter/Parameter.h"
#include "shell/ParameterMaps.h"

extern "C" PF_Err EntryPointFunc(PF_Cmd, PF_InData*, PF_OutData*, PF_ParamDef*[], PF_LayerDef*, void*);

using namespace quillon;
using host::HostInstance;
using host::HostSession;

namespace {

// A control of each kind, sizes that follow a control, and names and states that do. Two kinds have no control in the
// host, where the reading of values ends: they come last. Events go to what is from the first color to the first point.
constexpr const char* kScript = R"(
var p = [], copy;
function setup() {
    [1, 3, 2, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0, 13].forEach(function (kind) {
        p[kind] = QL_initParam('p' + kind, kind, 'Control ' + kind);
    });
    QL_setParamChoices(p[9], 'one|two|three');
    QL_setParamValue(p[9], 1);
    QL_setParamFlags(p[5], QL_ParamFlags.RemoveScale);
    copy = QL_initShader('copy');
}
function preRender(w, h) { var grow = QL_getParamValue(p[9]); if (grow > 1) QL_setOutputExtent(w * grow, h + grow); }
function updateUIFlags() { QL_setParamEnabled(p[1], QL_getParamValue(p[8]) ? 1 : 0); }
function draw() {
    QL_setShaderParamVal(copy, 't', QL_getSequenceTexture());
    QL_setShaderParam(copy, p[4]);
    QL_renderShader(copy, QL_getSequenceRT(), true);
}
)";

// Numbers for the deeds, and 0 when the input is used up.
class Numbers {
public:
    Numbers(const std::uint8_t* data, std::size_t size) : rest(data, size) {}
    bool atEnd() const { return rest.empty(); }
    int below(int bound) {
        if (rest.empty()) return 0;
        const int number = rest.front() % bound;
        rest = rest.subspan(1);
        return number;
    }

private:
    std::span<const std::uint8_t> rest;
};

constexpr int kControls = 16;  // with the input, and the host's button for options

// A session and the instances that its host knows of, in whatever state a deed has left them.
struct Play {
    HostSession session;
    Numbers& numbers;
    std::vector<HostInstance*> instances{};
    std::vector<std::vector<std::byte>> saved{};
    bool isFaulty = false;  // the host has failed somewhere: what is lost there counts for nothing

    HostInstance& any() {
        if (instances.empty()) instances.push_back(&session.newInstance());
        return *instances[static_cast<std::size_t>(numbers.below(static_cast<int>(instances.size())))];
    }
    PF_ParamIndex anyControl() { return numbers.below(kControls); }
    // What the effect knows of its controls lasts as long as the process: also where adding one fails, the host has a
    // place for each.
    void setUpControls() {
        session.paramsSetup();
        while (session.parameters().size() < kControls) session.addParameter({});
    }
    std::shared_ptr<host::World> picture() {
        const int width = numbers.below(40), height = numbers.below(24), depth = 8 << numbers.below(3);
        return width == 0 ? nullptr : session.newWorld(width, height, depth);
    }
};

void SetValue(Play& play) {
    HostInstance& instance = play.any();
    const PF_ParamIndex index = play.anyControl();
    const int value = play.numbers.below(256) - 100;
    if (!instance.hasParam(index)) return;
    switch (instance.param(index).param_type) {
        case PF_Param_FLOAT_SLIDER:
            return instance.setFloat(index, value / 8.0);
        case PF_Param_ANGLE:
            return instance.setAngle(index, value);
        case PF_Param_CHECKBOX:
            return instance.setCheckbox(index, value > 0);
        case PF_Param_POPUP:
            return instance.setPopup(index, value % 8);
        case PF_Param_POINT:
            return instance.setPoint(index, value, value / 2.0);
        case PF_Param_POINT_3D:
            return instance.setPoint3D(index, value, 1, 2);
        case PF_Param_COLOR:
            return instance.setColor(index, {1, static_cast<float>(value) / 100, 0, 0.5f});
        case PF_Param_LAYER:
            return instance.setLayer(index, play.picture());
        default:
            return;
    }
}

void Frame(Play& play) {
    HostInstance& instance = play.any();
    host::FrameRequest request{.input = play.picture()};
    request.outputDepth = play.numbers.below(4) == 1 ? 32 : 0;
    const int forms = play.numbers.below(8);
    if (forms & 1) request.rect = PF_LRect{-1, 2, 1 + play.numbers.below(50), play.numbers.below(50)};
    if (forms & 2) request.inputOrigin = {3, -2};
    if (forms & 4) request.presetWidth = request.presetHeight = play.numbers.below(64);
    const host::FrameResult frame = play.session.renderFrame(instance, request);
    if (frame.output) fuzz::Require(frame.output->areGuardsIntact(), "no byte outside of the picture is written");
}

void Event(Play& play) {
    const int type = play.numbers.below(13) - 1;
    host::HostEvent event(type, play.anyControl());
    event.extra.effect_win.area = play.numbers.below(4);
    event.extra.effect_win.current_frame = {0, 0, play.numbers.below(100), play.numbers.below(100)};
    event.extra.u.do_click.screen_point = {play.numbers.below(100), play.numbers.below(100)};
    play.session.event(play.any(), event.extra);
}

void Spoil(Play& play) {
    play.isFaulty = true;
    const auto callback = static_cast<host::Callback>(play.numbers.below(host::kCallbackCount));
    play.session.faults().failNth(callback, 1 + play.numbers.below(4));
}

// One that no other deed sends, or that no host knows. Where a block begins or ends the session has to hear of it: else
// it would go on with a handle that the effect has rightly disposed of.
PF_Cmd OtherSelector(Play& play) {
    const PF_Cmd cmd = play.numbers.below(30) - 2;
    return cmd >= PF_Cmd_GLOBAL_SETUP && cmd <= PF_Cmd_SEQUENCE_SETDOWN ? PF_Cmd_ABOUT : cmd;
}

constexpr void (*kDeeds[])(Play&) = {
    [](Play& play) { play.session.about(); },
    [](Play& play) { play.session.globalSetup(); },
    [](Play& play) { play.session.globalSetdown(); },
    [](Play& play) { play.setUpControls(); },
    [](Play& play) { play.instances.push_back(&play.session.apply()); },
    [](Play& play) { play.session.sequenceSetup(play.any()); },
    [](Play& play) { play.session.sequenceResetup(play.any()); },
    [](Play& play) { play.session.sequenceFlatten(play.any()); },
    [](Play& play) { play.session.sequenceSetdown(play.any()); },
    [](Play& play) { play.saved.push_back(play.session.save(play.any())); },
    [](Play& play) {
        if (!play.saved.empty()) play.instances.push_back(&play.session.load(play.saved.back()));
    },
    [](Play& play) { play.instances.push_back(&play.session.duplicate(play.any())); },
    [](Play& play) {
        HostInstance& gone = play.any();
        play.session.remove(gone);
        std::erase(play.instances, &gone);
    },
    [](Play& play) { play.session.userChangedParam(play.any(), play.anyControl()); },
    [](Play& play) { play.session.updateParamsUI(play.any()); },
    [](Play& play) { play.session.send({.cmd = OtherSelector(play)}); },
    [](Play& play) { play.session.send({.cmd = OtherSelector(play), .instance = &play.any()}); },
    SetValue,
    Frame,
    Frame,
    Event,
    Spoil,
    [](Play& play) { play.session.faults().clear(); },
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::GiveFiles({{"fx.js", kScript},
                     {"config.xml", "<FXNAME>Fuzz</FXNAME><FLAGS>33554464</FLAGS><FLAGS2>5120</FLAGS2>"},
                     {"copy.frag",
                      "uniform sampler2D t; uniform sampler2D p4;\n"
                      "void main() { gl_FragColor = texture2D(t, gl_TexCoord[0].st); }"}});
    Numbers numbers(data, size);
    host::HostSettings settings;
    settings.kind = numbers.below(3) == 1 ? host::HostKind::premiere : host::HostKind::afterEffects;
    settings.route = numbers.below(2) == 1 ? host::Route::classic : host::Route::smart;
    settings.versionMinor = static_cast<A_short>(numbers.below(30));
    settings.downsampleX = settings.downsampleY = {1, static_cast<A_u_long>(1 + numbers.below(3))};
    settings.keepsRecords = false;
    Play play{HostSession(host::EffectModule(EntryPointFunc), settings), numbers};
    play.session.globalSetup();
    play.setUpControls();
    auto& maps = ParameterMaps::instance();
    maps.customUiIndices.clear();
    if (settings.versionMinor % 2 == 1) maps.customUiIndices = {maps.firstIndexOfKind[COLOR]};  // has a wheel
    for (int deeds = 0; deeds < 64 && !numbers.atEnd(); ++deeds) {
        try {
            kDeeds[numbers.below(static_cast<int>(std::size(kDeeds)))](play);
        } catch (const std::runtime_error&) {
            // A walk of the host ends where the effect answers with an error.
        }
    }
    play.session.faults().clear();
    for (HostInstance* instance : play.instances) play.session.sequenceSetdown(*instance);
    const std::vector<std::string> violations = play.session.violations();
    if (!play.isFaulty) fuzz::Require(violations.empty(), violations.empty() ? "" : violations.front().c_str());
    return 0;
}
