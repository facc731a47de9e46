#include "hostapi/LayoutCheck.h"

// The suites' tables, each up to its last used entry: AEGP.

#ifndef QUILLON_VENDOR_HEADERS

CHECK_SIZE(AEGP_PFInterfaceSuite1, 16);
CHECK_ENTRY(AEGP_PFInterfaceSuite1, AEGP_GetEffectLayer, 0);
CHECK_ENTRY(AEGP_PFInterfaceSuite1, AEGP_GetNewEffectForEffect, 1);

CHECK_SIZE(AEGP_LayerSuite5, 56);
CHECK_ENTRY(AEGP_LayerSuite5, AEGP_GetCompNumLayers, 0);
CHECK_ENTRY(AEGP_LayerSuite5, AEGP_GetCompLayerByIndex, 1);
CHECK_ENTRY(AEGP_LayerSuite5, AEGP_GetActiveLayer, 2);
CHECK_ENTRY(AEGP_LayerSuite5, AEGP_GetLayerIndex, 3);
CHECK_ENTRY(AEGP_LayerSuite5, AEGP_GetLayerSourceItem, 4);
CHECK_ENTRY(AEGP_LayerSuite5, AEGP_GetLayerSourceItemID, 5);
CHECK_ENTRY(AEGP_LayerSuite5, AEGP_GetLayerParentComp, 6);

CHECK_SIZE(AEGP_CompSuite4, 16);
CHECK_ENTRY(AEGP_CompSuite4, AEGP_GetCompFromItem, 0);
CHECK_ENTRY(AEGP_CompSuite4, AEGP_GetItemFromComp, 1);

CHECK_SIZE(AEGP_ItemSuite6, 144);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetFirstProjItem, 0);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetNextProjItem, 1);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetActiveItem, 2);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_IsItemSelected, 3);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_SelectItem, 4);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetItemType, 5);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetTypeName, 6);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetItemName, 7);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_SetItemName, 8);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetItemID, 9);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetItemFlags, 10);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_SetItemUseProxy, 11);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetItemParentFolder, 12);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_SetItemParentFolder, 13);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetItemDuration, 14);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetItemCurrentTime, 15);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetItemDimensions, 16);
CHECK_ENTRY(AEGP_ItemSuite6, AEGP_GetItemPixelAspectRatio, 17);

CHECK_SIZE(AEGP_UtilitySuite3, 72);
CHECK_ENTRY(AEGP_UtilitySuite3, AEGP_ReportInfo, 0);
CHECK_ENTRY(AEGP_UtilitySuite3, AEGP_GetDriverPluginInitFuncVersion, 1);
CHECK_ENTRY(AEGP_UtilitySuite3, AEGP_GetDriverImplementationVersion, 2);
CHECK_ENTRY(AEGP_UtilitySuite3, AEGP_StartQuietErrors, 3);
CHECK_ENTRY(AEGP_UtilitySuite3, AEGP_EndQuietErrors, 4);
CHECK_ENTRY(AEGP_UtilitySuite3, AEGP_GetLastErrorMessage, 5);
CHECK_ENTRY(AEGP_UtilitySuite3, AEGP_StartUndoGroup, 6);
CHECK_ENTRY(AEGP_UtilitySuite3, AEGP_EndUndoGroup, 7);
CHECK_ENTRY(AEGP_UtilitySuite3, AEGP_RegisterWithAEGP, 8);

CHECK_SIZE(AEGP_EffectSuite3, 72);
CHECK_ENTRY(AEGP_EffectSuite3, AEGP_GetLayerNumEffects, 0);
CHECK_ENTRY(AEGP_EffectSuite3, AEGP_GetLayerEffectByIndex, 1);
CHECK_ENTRY(AEGP_EffectSuite3, AEGP_GetInstalledKeyFromLayerEffect, 2);
CHECK_ENTRY(AEGP_EffectSuite3, AEGP_GetEffectParamUnionByIndex, 3);
CHECK_ENTRY(AEGP_EffectSuite3, AEGP_GetEffectFlags, 4);
CHECK_ENTRY(AEGP_EffectSuite3, AEGP_SetEffectFlags, 5);
CHECK_ENTRY(AEGP_EffectSuite3, AEGP_ReorderEffect, 6);
CHECK_ENTRY(AEGP_EffectSuite3, AEGP_EffectCallGeneric, 7);
CHECK_ENTRY(AEGP_EffectSuite3, AEGP_DisposeEffect, 8);

CHECK_SIZE(AEGP_LayerRenderOptionsSuite1, 40);
CHECK_ENTRY(AEGP_LayerRenderOptionsSuite1, AEGP_NewFromLayer, 0);
CHECK_ENTRY(AEGP_LayerRenderOptionsSuite1, AEGP_NewFromUpstreamOfEffect, 1);
CHECK_ENTRY(AEGP_LayerRenderOptionsSuite1, AEGP_Duplicate, 2);
CHECK_ENTRY(AEGP_LayerRenderOptionsSuite1, AEGP_Dispose, 3);
CHECK_ENTRY(AEGP_LayerRenderOptionsSuite1, AEGP_SetTime, 4);

CHECK_SIZE(AEGP_RenderSuite4, 48);
CHECK_ENTRY(AEGP_RenderSuite4, AEGP_RenderAndCheckoutFrame, 0);
CHECK_ENTRY(AEGP_RenderSuite4, AEGP_RenderAndCheckoutLayerFrame, 1);
CHECK_ENTRY(AEGP_RenderSuite4, AEGP_RenderAndCheckoutLayerFrame_Async, 2);
CHECK_ENTRY(AEGP_RenderSuite4, AEGP_CancelAsyncRequest, 3);
CHECK_ENTRY(AEGP_RenderSuite4, AEGP_CheckinFrame, 4);
CHECK_ENTRY(AEGP_RenderSuite4, AEGP_GetReceiptWorld, 5);

CHECK_SIZE(AEGP_WorldSuite3, 72);
CHECK_ENTRY(AEGP_WorldSuite3, AEGP_New, 0);
CHECK_ENTRY(AEGP_WorldSuite3, AEGP_Dispose, 1);
CHECK_ENTRY(AEGP_WorldSuite3, AEGP_GetType, 2);
CHECK_ENTRY(AEGP_WorldSuite3, AEGP_GetSize, 3);
CHECK_ENTRY(AEGP_WorldSuite3, AEGP_GetRowBytes, 4);
CHECK_ENTRY(AEGP_WorldSuite3, AEGP_GetBaseAddr8, 5);
CHECK_ENTRY(AEGP_WorldSuite3, AEGP_GetBaseAddr16, 6);
CHECK_ENTRY(AEGP_WorldSuite3, AEGP_GetBaseAddr32, 7);
CHECK_ENTRY(AEGP_WorldSuite3, AEGP_FillOutPFEffectWorld, 8);

#endif
