#pragma once

#include "hostapi/Geometry.h"

// The `extra` record of PF_Cmd_EVENT and of PF_Cmd_USER_CHANGED_PARAM.

typedef A_long PF_EventType;
typedef A_long PF_EventInFlags;
typedef A_long PF_EventOutFlags;
typedef A_long PF_CursorType;
typedef A_long PF_Modifiers;
typedef A_long PF_EffectArea;
typedef A_long PF_WindowType;

enum : A_long {
    PF_Event_NONE = -1,
    PF_Event_NEW_CONTEXT = 0,
    PF_Event_ACTIVATE = 1,
    PF_Event_DO_CLICK = 2,
    PF_Event_DRAG = 3,
    PF_Event_DRAW = 4,
    PF_Event_DEACTIVATE = 5,
    PF_Event_CLOSE_CONTEXT = 6,
    PF_Event_IDLE = 7,
    PF_Event_KEYDOWN_OBSOLETE = 8,
    PF_Event_ADJUST_CURSOR = 9,
    PF_Event_KEYDOWN = 10,
    PF_Event_MOUSE_EXITED = 11
};

enum : A_long { PF_EI_NONE = 0, PF_EI_DONT_DRAW = 1 };

enum : A_long {
    PF_EO_NONE = 0,
    PF_EO_HANDLED_EVENT = 1,
    PF_EO_ALWAYS_UPDATE = 2,
    PF_EO_NEVER_UPDATE = 4,
    PF_EO_UPDATE_NOW = 8
};

enum : A_long {
    PF_Window_NONE = -1,
    PF_Window_COMP = 0,
    PF_Window_LAYER = 1,
    PF_Window_EFFECT = 2,
    PF_Window_PREVIEW = 3
};

enum : A_long { PF_EA_NONE = 0, PF_EA_PARAM_TITLE = 1, PF_EA_CONTROL = 2 };

enum : A_long { PF_Cursor_EYEDROPPER = 8 };  // the number is certain, the name is not

// The window in which an event happens.
struct PF_Context {
    A_u_long magic;
    PF_WindowType w_type;
    A_FpLong reserved_flt;
    A_intptr_t plugin_state[4];
    void* reserved_drawref;
    void* reserved_paneP;
    void* reserved_job_manager;
};
typedef PF_Context** PF_ContextH;

// A click or drag, in pixels of the window. continue_refcon comes back with the next drag.
struct PF_DoClickEventInfo {
    A_u_long when;
    PF_Point screen_point;
    A_long num_clicks;
    PF_Modifiers modifiers;
    A_intptr_t continue_refcon[4];
    PF_Boolean send_drag;
    PF_Boolean last_time;
};

// What is to be drawn anew.
struct PF_DrawEventInfo {
    PF_UnionableRect update_rect;
    A_long depth;
};

// A key, and where the mouse was.
struct PF_KeyDownEvent {
    A_u_long when;
    PF_Point screen_point;
    A_long keycode;
    PF_Modifiers modifiers;
};

// Which cursor is to be shown there.
struct PF_AdjustCursorEventInfo {
    PF_Point screen_point;
    PF_Modifiers modifiers;
    PF_CursorType set_cursor;
};

// By the event's type.
union PF_EventUnion {
    PF_DoClickEventInfo do_click;
    PF_DrawEventInfo draw;
    PF_KeyDownEvent key_down;
    PF_AdjustCursorEventInfo adjust_cursor;
};

// The vendor's headers can overlay this with an item window's port rectangle; the size is the same.
struct PF_EffectWindowInfo {
    PF_ParamIndex index;
    PF_EffectArea area;
    PF_UnionableRect current_frame;
    PF_UnionableRect param_title_frame;
    A_long horiz_offset;
};

// What a window offers during an event. Nothing here is used.
struct PF_EventCallbacks {
    void* refcon;
    void* layer_to_comp;
    void* comp_to_layer;
    void* get_comp2layer_xform;
    void* get_layer2comp_xform;
    void* source_to_frame;
    void* frame_to_source;
    void* info_draw_color;
    void* info_draw_text;
};

// The record of a PF_Cmd_EVENT.
struct PF_EventExtra {
    PF_ContextH contextH;
    PF_EventType e_type;
    PF_EventUnion u;
    PF_EffectWindowInfo effect_win;
    PF_EventCallbacks cbs;  // by value; as a pointer the two flag words would be 64 bytes earlier
    PF_EventInFlags evt_in_flags;
    PF_EventOutFlags evt_out_flags;
};

// The record of a PF_Cmd_USER_CHANGED_PARAM: the host index of the control.
struct PF_UserChangedParamExtra {
    PF_ParamIndex param_index;
};
