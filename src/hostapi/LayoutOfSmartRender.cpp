#include "hostapi/LayoutCheck.h"

// The smart route.

#ifndef QUILLON_VENDOR_HEADERS

CHECK_SIZE(PF_RenderRequest, 44);
CHECK_FIELD(PF_RenderRequest, rect, 0, 16);
CHECK_FIELD(PF_RenderRequest, field, 16, 4);
CHECK_FIELD(PF_RenderRequest, channel_mask, 20, 4);
CHECK_FIELD(PF_RenderRequest, preserve_rgb_of_zero_alpha, 24, 1);
CHECK_FIELD(PF_RenderRequest, unused, 25, 3);
CHECK_FIELD(PF_RenderRequest, reserved, 28, 16);

CHECK_SIZE(PF_CheckoutResult, 80);
CHECK_FIELD(PF_CheckoutResult, result_rect, 0, 16);
CHECK_FIELD(PF_CheckoutResult, max_result_rect, 16, 16);
CHECK_FIELD(PF_CheckoutResult, par, 32, 8);
CHECK_FIELD(PF_CheckoutResult, solid, 40, 4);
CHECK_FIELD(PF_CheckoutResult, reservedB, 44, 3);
CHECK_FIELD(PF_CheckoutResult, ref_width, 48, 4);
CHECK_FIELD(PF_CheckoutResult, ref_height, 52, 4);
CHECK_FIELD(PF_CheckoutResult, reserved, 56, 24);

CHECK_SIZE(PF_PreRenderInput, 64);
CHECK_FIELD(PF_PreRenderInput, output_request, 0, 44);
CHECK_FIELD(PF_PreRenderInput, bitdepth, 44, 2);
CHECK_FIELD(PF_PreRenderInput, gpu_data, 48, 8);
CHECK_FIELD(PF_PreRenderInput, what_gpu, 56, 4);
CHECK_FIELD(PF_PreRenderInput, device_index, 60, 4);

CHECK_SIZE(PF_PreRenderOutput, 56);
CHECK_FIELD(PF_PreRenderOutput, result_rect, 0, 16);
CHECK_FIELD(PF_PreRenderOutput, max_result_rect, 16, 16);
CHECK_FIELD(PF_PreRenderOutput, solid, 32, 1);
CHECK_FIELD(PF_PreRenderOutput, reserved, 33, 1);
CHECK_FIELD(PF_PreRenderOutput, flags, 34, 2);
CHECK_FIELD(PF_PreRenderOutput, pre_render_data, 40, 8);
CHECK_FIELD(PF_PreRenderOutput, delete_pre_render_data_func, 48, 8);

CHECK_SIZE(PF_PreRenderCallbacks, 16);
CHECK_FIELD(PF_PreRenderCallbacks, checkout_layer, 0, 8);
CHECK_FIELD(PF_PreRenderCallbacks, GuidMixInPtr, 8, 8);

CHECK_SIZE(PF_PreRenderExtra, 24);
CHECK_FIELD(PF_PreRenderExtra, input, 0, 8);
CHECK_FIELD(PF_PreRenderExtra, output, 8, 8);
CHECK_FIELD(PF_PreRenderExtra, cb, 16, 8);

CHECK_SIZE(PF_SmartRenderInput, 72);
CHECK_FIELD(PF_SmartRenderInput, output_request, 0, 44);
CHECK_FIELD(PF_SmartRenderInput, bitdepth, 44, 2);
CHECK_FIELD(PF_SmartRenderInput, pre_render_data, 48, 8);
CHECK_FIELD(PF_SmartRenderInput, gpu_data, 56, 8);
CHECK_FIELD(PF_SmartRenderInput, what_gpu, 64, 4);
CHECK_FIELD(PF_SmartRenderInput, device_index, 68, 4);

CHECK_SIZE(PF_SmartRenderCallbacks, 24);
CHECK_FIELD(PF_SmartRenderCallbacks, checkout_layer_pixels, 0, 8);
CHECK_FIELD(PF_SmartRenderCallbacks, checkin_layer_pixels, 8, 8);
CHECK_FIELD(PF_SmartRenderCallbacks, checkout_output, 16, 8);

CHECK_SIZE(PF_SmartRenderExtra, 16);
CHECK_FIELD(PF_SmartRenderExtra, input, 0, 8);
CHECK_FIELD(PF_SmartRenderExtra, cb, 8, 8);

#endif
