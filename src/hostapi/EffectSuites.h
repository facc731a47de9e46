#pragma once

#include "hostapi/DrawbotTypes.h"
#include "hostapi/Events.h"
#include "hostapi/ParamDef.h"
#include "hostapi/PixelFormats.h"

// The effect side's suites. As everywhere in this folder, a table ends with its last used entry: the host's own may go
// on, so that an effect never copies one. Entries without a signature are there to keep the count.

inline constexpr char kPFHandleSuite[] = "PF Handle Suite";
inline constexpr A_long kPFHandleSuiteVersion1 = 2;

// The host's memory: null when there is none left. A handle's bytes stay in place while it is locked.
struct PF_HandleSuite1 {
    PF_Handle (*host_new_handle)(A_HandleSize size);
    void* (*host_lock_handle)(PF_Handle handle);
    void (*host_unlock_handle)(PF_Handle handle);
    void (*host_dispose_handle)(PF_Handle handle);
};

inline constexpr char kPFParamUtilsSuite[] = "PF Param Utils Suite";
inline constexpr A_long kPFParamUtilsSuiteVersion1 = 1;
inline constexpr A_long kPFParamUtilsSuiteVersion2 = 2;
inline constexpr A_long kPFParamUtilsSuiteVersion3 = 3;

// The first entry is the same in all three versions.
struct PF_ParamUtilsSuite3 {
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex index, const PF_ParamDef* def);
};

inline constexpr char kPFEffectUISuite[] = "PF Effect UI Suite";
inline constexpr A_long kPFEffectUISuiteVersion1 = 1;

// The button beside the effect's name, which opens options.
struct PF_EffectUISuite1 {
    PF_Err (*PF_SetOptionsButtonName)(PF_ProgPtr effect_ref, const A_char* nameZ);
};

inline constexpr char kPFColorParamSuite[] = "PF ColorParamSuite";
inline constexpr A_long kPFColorParamSuiteVersion1 = 1;

// A color control as floats, also above 1, which its own 8 bits cannot hold.
struct PF_ColorParamSuite1 {
    PF_Err (*PF_GetFloatingPointColorFromColorDef)(PF_ProgPtr effect_ref, const PF_ParamDef* def, PF_PixelFloat* out);
};

inline constexpr char kPFPixelDataSuite[] = "PF Pixel Data Suite";
inline constexpr A_long kPFPixelDataSuiteVersion1 = 1;

// `pixelsP0` null means the world's own pixels. `*out` is null when the world is of another depth.
struct PF_PixelDataSuite1 {
    PF_Err (*get_pixel_data8)(PF_EffectWorld* world, PF_PixelPtr pixelsP0, PF_Pixel8** out);
    PF_Err (*get_pixel_data16)(PF_EffectWorld* world, PF_PixelPtr pixelsP0, PF_Pixel16** out);
    PF_Err (*get_pixel_data_float)(PF_EffectWorld* world, PF_PixelPtr pixelsP0, PF_PixelFloat** out);
};

inline constexpr char kPFWorldSuite[] = "PF World Suite";
inline constexpr A_long kPFWorldSuiteVersion2 = 2;

// The depth of a world.
struct PF_WorldSuite2 {
    void* PF_NewWorld;
    void* PF_DisposeWorld;
    PF_Err (*PF_GetPixelFormat)(const PF_EffectWorld* world, PF_PixelFormat* out);
};

inline constexpr char kPFEffectCustomUISuite[] = "PF Effect Custom UI Suite";
inline constexpr A_long kPFEffectCustomUISuiteVersion1 = 1;

// Where a panel is drawn during a draw event.
struct PF_EffectCustomUISuite1 {
    PF_Err (*PF_GetDrawingReference)(const PF_ContextH context, DRAWBOT_DrawRef* out);
};

inline constexpr char kPFHelperSuite2[] = "AE Plugin Helper Suite2";
inline constexpr A_long kPFHelperSuite2Version2 = 2;

enum PF_ExtendedSuiteTool : A_long {};

// The second entry's place is certain, the names are not.
struct PF_HelperSuite2 {
    void* PF_ParseClipboard;
    PF_Err (*PF_SetCurrentExtendedTool)(PF_ExtendedSuiteTool tool);
    void* PF_GetCurrentExtendedTool;
};
