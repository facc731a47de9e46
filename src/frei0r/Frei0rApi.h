#pragma once

namespace quillon::frei0r {

// The records and numbers that a frei0r host shares with its plug-ins, as far as this shell uses them: version 1 of
// the interface. A host finds the plug-in's functions by name, see module/EntryPoints.cpp.

inline constexpr int kInterfaceVersion = 1;

enum class PluginType : int {
    filter = 0,  // one input
    source = 1,  // none
    mixer2 = 2,  // two
};

inline constexpr int kColorModelRgba8888 = 1;  // bytes R, G, B, A; straight alpha; tight rows, the top row first

enum class ParamType : int {
    boolean = 0,   // one double: 0 or 1
    number = 1,    // one double from 0 to 1
    color = 2,     // a Color
    position = 3,  // a Position
};

struct Color {
    float red, green, blue;  // from 0 to 1
};

// In shares of the frame, from its top left corner.
struct Position {
    double x, y;
};

// The texts belong to the plug-in and stay until it is unloaded.
struct PluginInfo {
    const char* name;
    const char* author;
    int pluginType;
    int colorModel;
    int interfaceVersion;
    int majorVersion;
    int minorVersion;
    int paramCount;
    const char* explanation;
};

struct ParamInfo {
    const char* name;
    int type;
    const char* explanation;
};

}  // namespace quillon::frei0r
