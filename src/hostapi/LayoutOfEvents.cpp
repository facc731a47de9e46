#include "hostapi/LayoutCheck.h"

// Events and custom UI.

#ifndef QUILLON_VENDOR_HEADERS

CHECK_SIZE(PF_EventExtra, 208);
CHECK_FIELD(PF_EventExtra, contextH, 0, 8);
CHECK_FIELD(PF_EventExtra, e_type, 8, 4);
CHECK_FIELD(PF_EventExtra, u, 16, 64);
CHECK_FIELD(PF_EventExtra, effect_win, 80, 44);
CHECK_FIELD(PF_EventExtra, cbs, 128, 72);
CHECK_FIELD(PF_EventExtra, evt_in_flags, 200, 4);
CHECK_FIELD(PF_EventExtra, evt_out_flags, 204, 4);

CHECK_SIZE(PF_EventUnion, 64);
CHECK_FIELD(PF_EventUnion, do_click, 0, 64);
CHECK_FIELD(PF_EventUnion, draw, 0, 20);
CHECK_FIELD(PF_EventUnion, key_down, 0, 20);
CHECK_FIELD(PF_EventUnion, adjust_cursor, 0, 16);

CHECK_SIZE(PF_DoClickEventInfo, 64);
CHECK_FIELD(PF_DoClickEventInfo, when, 0, 4);
CHECK_FIELD(PF_DoClickEventInfo, screen_point, 4, 8);
CHECK_FIELD(PF_DoClickEventInfo, num_clicks, 12, 4);
CHECK_FIELD(PF_DoClickEventInfo, modifiers, 16, 4);
CHECK_FIELD(PF_DoClickEventInfo, continue_refcon, 24, 32);
CHECK_FIELD(PF_DoClickEventInfo, send_drag, 56, 1);
CHECK_FIELD(PF_DoClickEventInfo, last_time, 57, 1);

CHECK_SIZE(PF_DrawEventInfo, 20);
CHECK_FIELD(PF_DrawEventInfo, update_rect, 0, 16);
CHECK_FIELD(PF_DrawEventInfo, depth, 16, 4);

CHECK_SIZE(PF_KeyDownEvent, 20);
CHECK_FIELD(PF_KeyDownEvent, when, 0, 4);
CHECK_FIELD(PF_KeyDownEvent, screen_point, 4, 8);
CHECK_FIELD(PF_KeyDownEvent, keycode, 12, 4);
CHECK_FIELD(PF_KeyDownEvent, modifiers, 16, 4);

CHECK_SIZE(PF_AdjustCursorEventInfo, 16);
CHECK_FIELD(PF_AdjustCursorEventInfo, screen_point, 0, 8);
CHECK_FIELD(PF_AdjustCursorEventInfo, modifiers, 8, 4);
CHECK_FIELD(PF_AdjustCursorEventInfo, set_cursor, 12, 4);

CHECK_SIZE(PF_EffectWindowInfo, 44);
CHECK_FIELD(PF_EffectWindowInfo, index, 0, 4);
CHECK_FIELD(PF_EffectWindowInfo, area, 4, 4);
CHECK_FIELD(PF_EffectWindowInfo, current_frame, 8, 16);
CHECK_FIELD(PF_EffectWindowInfo, param_title_frame, 24, 16);
CHECK_FIELD(PF_EffectWindowInfo, horiz_offset, 40, 4);

CHECK_SIZE(PF_EventCallbacks, 72);
CHECK_FIELD(PF_EventCallbacks, refcon, 0, 8);
CHECK_FIELD(PF_EventCallbacks, layer_to_comp, 8, 8);
CHECK_FIELD(PF_EventCallbacks, comp_to_layer, 16, 8);
CHECK_FIELD(PF_EventCallbacks, get_comp2layer_xform, 24, 8);
CHECK_FIELD(PF_EventCallbacks, get_layer2comp_xform, 32, 8);
CHECK_FIELD(PF_EventCallbacks, source_to_frame, 40, 8);
CHECK_FIELD(PF_EventCallbacks, frame_to_source, 48, 8);
CHECK_FIELD(PF_EventCallbacks, info_draw_color, 56, 8);
CHECK_FIELD(PF_EventCallbacks, info_draw_text, 64, 8);

CHECK_SIZE(PF_Context, 72);
CHECK_FIELD(PF_Context, magic, 0, 4);
CHECK_FIELD(PF_Context, w_type, 4, 4);
CHECK_FIELD(PF_Context, reserved_flt, 8, 8);
CHECK_FIELD(PF_Context, plugin_state, 16, 32);
CHECK_FIELD(PF_Context, reserved_drawref, 48, 8);
CHECK_FIELD(PF_Context, reserved_paneP, 56, 8);
CHECK_FIELD(PF_Context, reserved_job_manager, 64, 8);

CHECK_SIZE(PF_UserChangedParamExtra, 4);
CHECK_FIELD(PF_UserChangedParamExtra, param_index, 0, 4);

CHECK_SIZE(PF_CustomUIInfo, 44);
CHECK_FIELD(PF_CustomUIInfo, reserved, 0, 4);
CHECK_FIELD(PF_CustomUIInfo, events, 4, 4);
CHECK_FIELD(PF_CustomUIInfo, comp_ui_width, 8, 4);
CHECK_FIELD(PF_CustomUIInfo, comp_ui_height, 12, 4);
CHECK_FIELD(PF_CustomUIInfo, comp_ui_alignment, 16, 4);
CHECK_FIELD(PF_CustomUIInfo, layer_ui_width, 20, 4);
CHECK_FIELD(PF_CustomUIInfo, layer_ui_height, 24, 4);
CHECK_FIELD(PF_CustomUIInfo, layer_ui_alignment, 28, 4);
CHECK_FIELD(PF_CustomUIInfo, preview_ui_width, 32, 4);
CHECK_FIELD(PF_CustomUIInfo, preview_ui_height, 36, 4);
CHECK_FIELD(PF_CustomUIInfo, preview_ui_alignment, 40, 4);

#endif
