#pragma once

#include "hostapi/AegpTypes.h"

// Registration with the host, and an effect's own reference and layer.

inline constexpr char kAEGPPFInterfaceSuite[] = "AEGP PF Interface Suite";
inline constexpr A_long kAEGPPFInterfaceSuiteVersion1 = 1;

// An effect's layer, and a reference to the effect that lives until it is disposed.
struct AEGP_PFInterfaceSuite1 {
    A_Err (*AEGP_GetEffectLayer)(PF_ProgPtr effect_ref, AEGP_LayerH* out);
    A_Err (*AEGP_GetNewEffectForEffect)(AEGP_PluginID plugin, PF_ProgPtr effect_ref, AEGP_EffectRefH* out);
};

inline constexpr char kAEGPUtilitySuite[] = "AEGP Utility Suite";
inline constexpr A_long kAEGPUtilitySuiteVersion3 = 7;

// The registration is at 8, or at 7 should this version lack AEGP_GetLastErrorMessage, as the first generation does.
struct AEGP_UtilitySuite3 {
    void* AEGP_ReportInfo;
    void* AEGP_GetDriverPluginInitFuncVersion;
    void* AEGP_GetDriverImplementationVersion;
    void* AEGP_StartQuietErrors;
    void* AEGP_EndQuietErrors;
    void* AEGP_GetLastErrorMessage;
    void* AEGP_StartUndoGroup;
    void* AEGP_EndUndoGroup;
    A_Err (*AEGP_RegisterWithAEGP)(AEGP_GlobalRefcon refcon, const A_char* nameZ, AEGP_PluginID* out);
};

inline constexpr char kAEGPEffectSuite[] = "AEGP Effect Suite";
inline constexpr A_long kAEGPEffectSuiteVersion3 = 3;

// Ends such a reference.
struct AEGP_EffectSuite3 {
    void* AEGP_GetLayerNumEffects;
    void* AEGP_GetLayerEffectByIndex;
    void* AEGP_GetInstalledKeyFromLayerEffect;
    void* AEGP_GetEffectParamUnionByIndex;
    void* AEGP_GetEffectFlags;
    void* AEGP_SetEffectFlags;
    void* AEGP_ReorderEffect;
    void* AEGP_EffectCallGeneric;
    A_Err (*AEGP_DisposeEffect)(AEGP_EffectRefH effect);
};
