#pragma once

namespace quillon::cli {

// Functions of imported effects' scripts, as their readers find them in fx.js. Each is there only where it is used.
namespace ScriptHelpers {

inline constexpr const char* kSlider = R"(function slider(name, label, value, min, max, decimals) {
    controls[name] = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(controls[name], min, max);
    QL_setParamValue(controls[name], value);
    QL_setParamPrecision(controls[name], decimals);
}

)";

inline constexpr const char* kPopup = R"(function popup(name, label, entries, value, values) {
    controls[name] = QL_initParam(name, QL_Type.POPUP, label);
    QL_setParamChoices(controls[name], entries);
    QL_setParamValue(controls[name], value);
    choices[name] = values;
}

)";

inline constexpr const char* kControl = R"(function control(name, kind, label, value) {
    controls[name] = QL_initParam(name, kind, label);
    QL_setParamValue(controls[name], value);
}

)";

inline constexpr const char* kNewTarget = R"(function newTarget(sides) {
    return { sides: sides, front: 0 };
}

)";

inline constexpr const char* kCopy =
    R"(// The shader that turns a picture over. While there is no picture, transparent black.
function copy(name, sampler) {
    copies[name] = newTarget(['front']);
    copies[name].shader = QL_initShader(name + ' copy',
        'uniform vec4 Texture0Params;\nuniform sampler2D ' + sampler + ';\n' +
        'void main() {\n    gl_FragColor = Texture0Params.x > 0.0 ? texture2D(' + sampler +
        ', gl_TexCoord[0].st) : vec4(0.0);\n}\n');
}

)";

inline constexpr const char* kWhole = R"(
// A side of a target: whole pixels, as many as every driver takes.
function whole(side) {
    return Math.floor(Math.min(Math.max(side, 1), 8192)) || 1;
}
)";

inline constexpr const char* kFit = R"(
// Gives a target this size. True when its pictures are new, and then transparent black.
function fit(target, width, height, bits) {
    var now = QL_getSurfaceDim(target.front);
    if (now && now[0] === width && now[1] === height && now[2] === bits) return false;
    target.sides.forEach(function (side) {
        QL_release(target[side]);
        target[side] = QL_initRenderTarget(width, height, bits);
        QL_setTextureParam(target[side], QL_GL.TEXTURE_WRAP_S, QL_GL.CLAMP_TO_EDGE);
        QL_setTextureParam(target[side], QL_GL.TEXTURE_WRAP_T, QL_GL.CLAMP_TO_EDGE);
    });
    return true;
}
)";

inline constexpr const char* kFeed = R"(
// Gives a uniform its value. A shader whose result does not depend on a uniform has lost it, which is no fault here.
function feed(shader, name, value) {
    QL_setShaderParamVal(shader, name, value);  // quillon-ignore script/unknown-uniform
}
)";

inline constexpr const char* kRead = R"(
// How the next pass reads a picture: its nearest pixel or filtered, repeated beyond its borders or not.
function read(picture, isNearest, isTiled) {
    var filter = isNearest ? QL_GL.NEAREST : QL_GL.LINEAR;
    var wrap = isTiled ? 0x2901 : QL_GL.CLAMP_TO_EDGE;  // GL's number for repeating; QL_GL.REPEAT has another
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, filter);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, filter);
    QL_setTextureParam(picture, QL_GL.TEXTURE_WRAP_S, wrap);
    QL_setTextureParam(picture, QL_GL.TEXTURE_WRAP_T, wrap);
}
)";

inline constexpr const char* kTurnOver = R"(
// The picture with its bottom row first, as the shaders want it. `isKept`: a picture that never changes.
function turnOver(name, picture, size, isKept) {
    var copy = copies[name];
    var isNew = fit(copy, size[0], size[1], size[2]);
    if (isKept && !isNew) return copy.front;
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);  // an exact copy; each upload resets this
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setShaderParamVal(copy.shader, 'picture', picture);
    QL_renderShader(copy.shader, copy.front, true);
    return copy.front;
}
)";

inline constexpr const char* kTurnLayer = R"(
// The same of a layer. The texture of a layer control is shared by all instances of the effect, and only the control's
// value says that this one has none. A layer that nobody has chosen yet is 2 by 2; it then has the output's size.
function turnLayer(name, size) {
    var copy = copies[name];
    var picture = QL_getParamValue(controls[name]);
    var own = QL_getSurfaceDim(picture);
    if (own && (own[0] > 2 || own[1] > 2)) size = own;
    fit(copy, size[0], size[1], size[2]);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setShaderParam(copy.shader, controls[name]);
    QL_renderShader(copy.shader, copy.front, true);
    return copy.front;
}
)";

inline constexpr const char* kPlace = R"(
// Where a point control is, from the bottom left corner. The borders of the picture stand for `least` and `most`. A
// default at the right or lower border arrives a hair before it.
function place(name, least, most, size) {
    var point = QL_getParamValue(controls[name]);
    return [point[0] / size[0], point[1] / size[1]].map(function (share, i) {
        if (Math.abs(share - 1) < 1 / 32768) share = 1;
        return least[i] + (most[i] - least[i]) * (i === 0 ? share : 1 - share);
    });
}
)";

inline constexpr const char* kMouse = R"(
// A pointer that is held where the control is; four zeros while the control is in its corner, where it starts.
function mouse(name, size) {
    var point = QL_getParamValue(controls[name]);
    if (point[0] === 0 && point[1] === 0) return [0, 0, 0, 0];
    var y = size[1] - point[1];
    return [point[0], y, point[0], -y];
}
)";

inline constexpr const char* kRecall = R"(
// What this instance keeps. Script variables are shared by all instances; no two have the same output target.
function recall(output) {
    var memory = null;
    for (var i = 0; i < memories.length; ++i)
        if (memories[i].output === output) memory = memories.splice(i, 1)[0];
    memory = memory || newMemory(output);
    memories.push(memory);
    if (memories.length > MOST_MEMORIES) {
        var oldest = memories.shift();
        Object.keys(oldest.targets).forEach(function (name) {
            oldest.targets[name].sides.forEach(function (side) { QL_release(oldest.targets[name][side]); });
        });
    }
    return memory;
}

// Brings the kept pictures to where this frame starts from. The same moment once more, as when a control is moved,
// starts from what it started from before; a later moment goes on; an earlier one, and another size, start afresh.
function begin(memory, time, size) {
    var step = time - memory.time;
    var isNew = memory.width !== size[0] || memory.height !== size[1] || step < -SAME_MOMENT;
    var isAgain = !isNew && step < SAME_MOMENT;
    if (isNew) {
        memory.index = 0;
        memory.delta = 0;
    } else if (!isAgain) {
        memory.index += 1;
        memory.delta = step;
    }
    memory.time = time;
    memory.width = size[0];
    memory.height = size[1];
    Object.keys(memory.targets).forEach(function (name) {
        var target = memory.targets[name];
        if (isNew) QL_renderShader(shaders.clear, target.front, false);
        if (isAgain) QL_blitRenderTarget(target.start, target.front, false, false);
        else QL_blitRenderTarget(target.front, target.start, false, false);
    });
}
)";

}  // namespace ScriptHelpers

}  // namespace quillon::cli
