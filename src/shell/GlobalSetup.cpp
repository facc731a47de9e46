// The effect introduces itself to the host.

#include <cstdint>
#include <string>

#include "engine/AEQuillon2.h"
#include "package/EffectFlags.h"
#include "package/EffectVersion.h"
#include "shell/HostCleanup.h"
#include "shell/HostVersion.h"
#include "shell/Instances.h"
#include "shell/Selectors.h"
#include "shell/Suites.h"

namespace quillon {

namespace {

static_assert(kFixedOutFlags == (PF_OutFlag_KEEP_RESOURCE_OPEN | PF_OutFlag_NON_PARAM_VARY | PF_OutFlag_CUSTOM_UI |
                                 PF_OutFlag_SEND_UPDATE_PARAMS_UI));

// The effect's global data, a block of host memory.
struct GlobalData {
    std::uint8_t isSetUp;
    std::uint8_t reserved[3];
    AEGP_PluginID pluginId;  // unwritten under Premiere Pro
};
static_assert(sizeof(GlobalData) == 8);

// Premiere Pro learns the depths by pixel formats; the flag that After Effects knows them by is then taken back.
void AddPixelFormats(PF_InData& in, PF_OutData& out) {
    const SuiteHold suite(in.pica_basicP, suites::kPixelFormat);
    if (!suite) return;
    suite->ClearSupportedPixelFormats(in.effect_ref);
    const auto add = [&](PrPixelFormat first, PrPixelFormat second) {
        suite->AddSupportedPixelFormat(in.effect_ref, first);
        suite->AddSupportedPixelFormat(in.effect_ref, second);
    };
    add(PrPixelFormat_ARGB_4444_8u, PrPixelFormat_XRGB_4444_8u);
    if (out.out_flags & PF_OutFlag_DEEP_COLOR_AWARE) {
        add(PrPixelFormat_XRGB_4444_16u, PrPixelFormat_ARGB_4444_16u);
        out.out_flags &= ~PF_OutFlag_DEEP_COLOR_AWARE;
    }
    if (out.out_flags2 & PF_OutFlag2_FLOAT_COLOR_AWARE) {
        add(PrPixelFormat_ARGB_4444_32f, PrPixelFormat_XRGB_4444_32f);
        out.out_flags2 &= ~PF_OutFlag2_FLOAT_COLOR_AWARE;
    }
}

// Makes the global data and registers the effect where the host is After Effects.
PF_Err MakeGlobalData(PF_InData& in, PF_OutData& out) {
    SuiteCache cache(in.pica_basicP);
    const PF_HandleSuite1& handles = cache.get(suites::kHandle);
    PF_Handle handle = handles.host_new_handle(sizeof(GlobalData));
    if (!handle) return PF_Err_INTERNAL_STRUCT_DAMAGED;
    auto* data = static_cast<GlobalData*>(handles.host_lock_handle(handle));
    if (!data) return PF_Err_NONE;
    const AtEnd unlock([&] { handles.host_unlock_handle(handle); });

    data->isSetUp = 1;
    PF_Err error = PF_Err_NONE;
    if (!IsPremiere(in)) {
        std::string name;
        AEQuillon2::instance().identityString(name, 2);
        error = cache.get(suites::kAegpUtility).AEGP_RegisterWithAEGP(nullptr, name.c_str(), &data->pluginId);
    }
    if (error == PF_Err_NONE) out.global_data = handle;
    return error;
}

}  // namespace

PF_Err GlobalSetup(PF_InData& in, PF_OutData& out) {
    IPlugin& engine = AEQuillon2::instance();
    void* module = nullptr;
    in.utils->get_platform_data(in.effect_ref, PF_PlatData_RES_DLLINSTANCE, &module);
    Instances::instance().scriptRestarts();
    if (!engine.init(module, nullptr)) return PF_Err_INTERNAL_STRUCT_DAMAGED;

    EffectVersion version;
    engine.packedVersion(&version.word);
    out.my_version = version.hostWord();
    out.out_flags = static_cast<A_long>(engine.effectFlags() | kFixedOutFlags);
    out.out_flags2 = static_cast<A_long>(engine.effectFlags2());
    // The instance's data holds a pointer, which a copy of it must not carry along.
    if (IsPremiere(in)) out.out_flags2 |= PF_OutFlag2_PPRO_DO_NOT_CLONE_SEQUENCE_DATA_FOR_RENDER;

    const PF_Err error = MakeGlobalData(in, out);
    if (IsPremiere(in)) AddPixelFormats(in, out);
    return error;
}

PF_Err About(PF_InData& in, PF_OutData& out) {
    if (IsPremiere(in)) return PF_Err_NONE;
    // The message is a field of 256 bytes and ends in two line feeds.
    constexpr std::size_t kLongest = sizeof(out.return_msg) - 3;
    std::string text;
    AEQuillon2::instance().identityString(text, 0);
    if (text.size() > kLongest) text.resize(kLongest);
    in.utils->ansi.sprintf(out.return_msg, "%s\n\n%s", text.c_str(), "");
    return PF_Err_NONE;
}

}  // namespace quillon
