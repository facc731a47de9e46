#include "host/HostCallback.h"

#include <iterator>

#include "hostapi/SuiteKeys.h"

namespace quillon::host {

namespace {

using C = Callback;
namespace s = suites;

constexpr CallbackInfo kInfos[] = {
    {C::acquireSuite, "AcquireSuite", nullptr},
    {C::releaseSuite, "ReleaseSuite", nullptr},
    // The handle functions are in the utilities as well.
    {C::newHandle, "host_new_handle", nullptr},
    {C::lockHandle, "host_lock_handle", nullptr},
    {C::unlockHandle, "host_unlock_handle", nullptr},
    {C::disposeHandle, "host_dispose_handle", nullptr},
    {C::platformData, "get_platform_data", nullptr},
    {C::copy, "copy", nullptr},
    {C::fill, "fill", nullptr},
    {C::addParam, "add_param", nullptr},
    {C::checkoutParam, "checkout_param", nullptr},
    {C::checkinParam, "checkin_param", nullptr},
    {C::registerUI, "register_ui", nullptr},
    {C::abort, "abort", nullptr},
    {C::progress, "progress", nullptr},
    {C::checkoutLayer, "checkout_layer", nullptr},
    {C::checkoutPixels, "checkout_layer_pixels", nullptr},
    {C::checkinPixels, "checkin_layer_pixels", nullptr},
    {C::checkoutOutput, "checkout_output", nullptr},
    {C::updateParamUI, "PF_UpdateParamUI", s::kParamUtils.name},
    {C::setOptionsButtonName, "PF_SetOptionsButtonName", s::kEffectUI.name},
    {C::floatingPointColor, "PF_GetFloatingPointColorFromColorDef", s::kColorParam.name},
    {C::pixelData8, "get_pixel_data8", s::kPixelData.name},
    {C::pixelData16, "get_pixel_data16", s::kPixelData.name},
    {C::pixelDataFloat, "get_pixel_data_float", s::kPixelData.name},
    {C::worldFormat, "PF_GetPixelFormat", s::kWorld.name},
    {C::drawingReference, "PF_GetDrawingReference", s::kEffectCustomUI.name},
    {C::setExtendedTool, "PF_SetCurrentExtendedTool", s::kHelper.name},
    {C::addPixelFormat, "AddSupportedPixelFormat", s::kPixelFormat.name},
    {C::clearPixelFormats, "ClearSupportedPixelFormats", s::kPixelFormat.name},
    {C::premiereFormat, "GetPixelFormat", s::kPixelFormat.name},
    {C::containingTimeline, "GetContainingTimelineID", s::kPremiereUtility.name},
    {C::frameRect, "GetFrameRect", s::kSequenceInfo.name},
    {C::sequenceAspect, "GetPixelAspectRatio", s::kSequenceInfo.name},
    {C::effectLayer, "AEGP_GetEffectLayer", s::kAegpInterface.name},
    {C::newEffect, "AEGP_GetNewEffectForEffect", s::kAegpInterface.name},
    {C::parentComp, "AEGP_GetLayerParentComp", s::kAegpLayer.name},
    {C::compItem, "AEGP_GetItemFromComp", s::kAegpComp.name},
    {C::itemDimensions, "AEGP_GetItemDimensions", s::kAegpItem.name},
    {C::itemAspect, "AEGP_GetItemPixelAspectRatio", s::kAegpItem.name},
    {C::registerAegp, "AEGP_RegisterWithAEGP", s::kAegpUtility.name},
    {C::disposeEffect, "AEGP_DisposeEffect", s::kAegpEffect.name},
    {C::newRenderOptions, "AEGP_NewFromUpstreamOfEffect", s::kAegpLayerRenderOptions.name},
    {C::disposeRenderOptions, "AEGP_Dispose", s::kAegpLayerRenderOptions.name},
    {C::setRenderTime, "AEGP_SetTime", s::kAegpLayerRenderOptions.name},
    {C::renderLayerFrame, "AEGP_RenderAndCheckoutLayerFrame", s::kAegpRender.name},
    {C::checkinFrame, "AEGP_CheckinFrame", s::kAegpRender.name},
    {C::receiptWorld, "AEGP_GetReceiptWorld", s::kAegpRender.name},
    {C::fillOutWorld, "AEGP_FillOutPFEffectWorld", s::kAegpWorld.name},
    {C::drawSupplier, "GetSupplier", s::kDrawbotDraw.name},
    {C::drawSurface, "GetSurface", s::kDrawbotDraw.name},
    {C::newPen, "NewPen", s::kDrawbotSupplier.name},
    {C::newBrush, "NewBrush", s::kDrawbotSupplier.name},
    {C::newImage, "NewImageFromBuffer", s::kDrawbotSupplier.name},
    {C::newPath, "NewPath", s::kDrawbotSupplier.name},
    {C::releaseObject, "ReleaseObject", s::kDrawbotSupplier.name},
    {C::paintRect, "PaintRect", s::kDrawbotSurface.name},
    {C::fillPath, "FillPath", s::kDrawbotSurface.name},
    {C::strokePath, "StrokePath", s::kDrawbotSurface.name},
    {C::drawImage, "DrawImage", s::kDrawbotSurface.name},
    {C::moveTo, "MoveTo", s::kDrawbotPath.name},
    {C::lineTo, "LineTo", s::kDrawbotPath.name},
    {C::addArc, "AddArc", s::kDrawbotPath.name},
};

constexpr bool IsInOrder() {
    int place = 0;
    for (const CallbackInfo& info : kInfos)
        if (static_cast<int>(info.callback) != place++) return false;
    return place == kCallbackCount;
}
static_assert(IsInOrder());

}  // namespace

const CallbackInfo& InfoOf(Callback callback) {
    return kInfos[static_cast<int>(callback)];
}

}  // namespace quillon::host
