#pragma once

#include "hostapi/AegpTypes.h"

// From a layer to its composition and the composition's size.

inline constexpr char kAEGPLayerSuite[] = "AEGP Layer Suite";
inline constexpr A_long kAEGPLayerSuiteVersion5 = 11;

// Should this version lack AEGP_GetLayerSourceItemID, as an older generation does, the last entry is one place earlier.
struct AEGP_LayerSuite5 {
    void* AEGP_GetCompNumLayers;
    void* AEGP_GetCompLayerByIndex;
    void* AEGP_GetActiveLayer;
    void* AEGP_GetLayerIndex;
    void* AEGP_GetLayerSourceItem;
    void* AEGP_GetLayerSourceItemID;
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH layer, AEGP_CompH* out);
};

inline constexpr char kAEGPCompSuite[] = "AEGP Comp Suite";
inline constexpr A_long kAEGPCompSuiteVersion4 = 9;

// From a composition to the project's item, which has the extent and the pixel aspect.
struct AEGP_CompSuite4 {
    void* AEGP_GetCompFromItem;
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH comp, AEGP_ItemH* out);
};

inline constexpr char kAEGPItemSuite[] = "AEGP Item Suite";
inline constexpr A_long kAEGPItemSuiteVersion6 = 10;

// The two used entries are at 16 and 17 by the best reading; nothing at hand confirms the order before them.
struct AEGP_ItemSuite6 {
    void* AEGP_GetFirstProjItem;
    void* AEGP_GetNextProjItem;
    void* AEGP_GetActiveItem;
    void* AEGP_IsItemSelected;
    void* AEGP_SelectItem;
    void* AEGP_GetItemType;
    void* AEGP_GetTypeName;
    void* AEGP_GetItemName;
    void* AEGP_SetItemName;
    void* AEGP_GetItemID;
    void* AEGP_GetItemFlags;
    void* AEGP_SetItemUseProxy;
    void* AEGP_GetItemParentFolder;
    void* AEGP_SetItemParentFolder;
    void* AEGP_GetItemDuration;
    void* AEGP_GetItemCurrentTime;
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH item, A_long* width, A_long* height);
    A_Err (*AEGP_GetItemPixelAspectRatio)(AEGP_ItemH item, A_Ratio* out);
};
