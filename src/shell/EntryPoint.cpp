// The module's one exported function: selectors come in one at a time, and no exception goes out.

#include <exception>
#include <iterator>
#include <mutex>

#include "platform/Export.h"
#include "platform/SystemMutex.h"
#include "shell/ActiveCall.h"
#include "shell/EventGate.h"
#include "shell/Selectors.h"

namespace quillon {

namespace {

struct SelectorCall {
    PF_InData* in;
    PF_OutData* out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    void* extra;
};

using Handler = PF_Err (*)(const SelectorCall&);

PF_Err Nothing(const SelectorCall&) {
    return PF_Err_NONE;
}

PF_Err Event(const SelectorCall& call) {
    if (!call.extra) return PF_Err_NONE;
    auto& extra = *static_cast<PF_EventExtra*>(call.extra);
    const EventVerdict verdict = JudgeEvent(extra);
    if (verdict == EventVerdict::ignored) return PF_Err_NONE;
    const PF_Err error = verdict == EventVerdict::wanted ? ColorWheelEvent(*call.in, *call.out, call.params, extra)
                                                         : PF_Err{PF_Err_NONE};
    extra.evt_out_flags = PF_EO_HANDLED_EVENT;
    return error;
}

constexpr Handler kHandlers[] = {
    /* ABOUT */ [](const SelectorCall& call) { return About(*call.in, *call.out); },
    /* GLOBAL_SETUP */ [](const SelectorCall& call) { return GlobalSetup(*call.in, *call.out); },
    /* UNUSED_0 */ Nothing,
    /* GLOBAL_SETDOWN: the engine outlives it */ Nothing,
    /* PARAMS_SETUP */ [](const SelectorCall& call) { return registerParameters(*call.in, *call.out); },
    /* SEQUENCE_SETUP */ [](const SelectorCall& call) { return SequenceSetup(*call.in, *call.out); },
    /* SEQUENCE_RESETUP */ [](const SelectorCall& call) { return SequenceResetup(*call.in, *call.out); },
    /* SEQUENCE_FLATTEN */ [](const SelectorCall& call) { return SequenceFlatten(*call.in, *call.out); },
    /* SEQUENCE_SETDOWN */ [](const SelectorCall& call) { return SequenceSetdown(*call.in); },
    /* DO_DIALOG */ Nothing,
    /* FRAME_SETUP */ [](const SelectorCall& call) { return FrameSetup(*call.in, *call.out, call.params); },
    /* RENDER */
    [](const SelectorCall& call) {
        return call.output ? Render(*call.in, *call.out, call.params, *call.output) : PF_Err{PF_Err_NONE};
    },
    /* FRAME_SETDOWN */ [](const SelectorCall& call) { return FrameSetdown(*call.in, call.out); },
    /* USER_CHANGED_PARAM */
    [](const SelectorCall& call) {
        return UserChangedParam(*call.in, *call.out, call.params,
                                static_cast<const PF_UserChangedParamExtra*>(call.extra));
    },
    /* UPDATE_PARAMS_UI */ [](const SelectorCall& call) { return UpdateParamsUI(*call.in, *call.out, call.params); },
    /* EVENT */ Event,
    /* GET_EXTERNAL_DEPENDENCIES */ Nothing,
    /* COMPLETELY_GENERAL */ Nothing,
    /* QUERY_DYNAMIC_FLAGS */ Nothing,
    /* AUDIO_RENDER */ Nothing,
    /* AUDIO_SETUP */ Nothing,
    /* AUDIO_SETDOWN */ Nothing,
    /* ARBITRARY_CALLBACK */ Nothing,
    /* SMART_PRE_RENDER */
    [](const SelectorCall& call) {
        auto* const extra = static_cast<PF_PreRenderExtra*>(call.extra);
        return extra ? SmartPreRender(*call.in, *extra) : PF_Err{PF_Err_NONE};
    },
    /* SMART_RENDER */
    [](const SelectorCall& call) {
        auto* const extra = static_cast<PF_SmartRenderExtra*>(call.extra);
        return extra ? SmartRender(*call.in, *call.out, call.params, *extra) : PF_Err{PF_Err_NONE};
    },
};
static_assert(std::size(kHandlers) == PF_Cmd_SMART_RENDER + 1);

// Held for the whole of every selector, by one thread, as often as that thread comes back in. Its memory is never
// freed: a host thread may still be inside when the process ends. Throws where there is no memory for it yet.
SystemMutex& entryGate() {
    static auto* const kGate = new SystemMutex;
    return *kGate;
}

// The host's code for what was thrown. Only an int is a code by itself.
PF_Err CodeOf(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (int code) {
        return code;
    } catch (...) {
        return PF_Err_INVALID_CALLBACK;
    }
}

// The code that `call` returns, or the one for what it throws.
template <class Call>
PF_Err RunGuarded(Call call) {
    std::exception_ptr thrown;
    try {
        return call();
    } catch (...) {
        thrown = std::current_exception();
    }
    return CodeOf(thrown);
}

}  // namespace

}  // namespace quillon

extern "C" QUILLON_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                                PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
    using namespace quillon;
    return RunGuarded([&]() -> PF_Err {
        const std::lock_guard gate(entryGate());
        const ActiveCall active(in_data);
        const auto selector = static_cast<A_u_long>(cmd);
        if (selector >= std::size(kHandlers)) return PF_Err_NONE;
        return RunGuarded([&] { return kHandlers[selector]({in_data, out_data, params, output, extra}); });
    });
}
