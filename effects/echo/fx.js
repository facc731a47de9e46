// Echo. The picture leaves trails: what is shown at one moment is shown again at the next, weaker, and turned and
// zoomed a little further.
//
// Between two frames that picture is kept on the CPU. Script variables are shared by all instances of the effect, so
// there is one memory an instance, known by its output target: no two instances have the same.
//
// A frame that comes right after the one before goes on from what that one left. The same moment once more (a control
// was moved) starts again from what it started from the last time, so each memory keeps two pictures. Anything else
// starts afresh: an earlier moment, a later one beyond LONGEST_GAP, another size, another depth, and time 0.
// Frames depend on the ones before them, as they are meant to: quillon-ignore render/frame-order

var LONGEST_GAP = 0.5;        // seconds that a trail outlives without a frame
var MOST_MEMORIES = 4;        // the one not used for longest goes when there are more instances
var SMALLEST_STEP = 1e-6;     // seconds; moments closer than this are one
var LARGEST = 512 << 20;      // bytes of a target that can no longer be taken to the CPU; frames so large leave no trail

var controls = {};
var feedback;
var trail = 0, shown = 0;     // targets
// { output, width, height, bits, time, start, end }, the last used at the end. `start` and `end` are surfaces: what the
// frame at `time` started from, 0 for nothing, and what it left.
var memories = [];

function slider(name, label, value, min, max) {
    controls[name] = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(controls[name], min, max);
    QL_setParamValue(controls[name], value);
    QL_setParamPrecision(controls[name], 2);
}

function setup() {
    controls.mode = QL_initParam("mode", QL_Type.POPUP, "Trail");
    QL_setParamChoices(controls.mode, "Behind the picture|In front of it|The brighter of both");
    QL_setParamValue(controls.mode, 3);

    slider("halfLife", "Half-life (seconds)", 0.25, 0.01, 10);
    slider("zoom", "Growth per second (percent)", 150, 10, 1000);
    slider("turn", "Turn per second (degrees)", 0, -720, 720);
    controls.center = QL_initParam("center", QL_Type.POINT2D, "Center");
    QL_setParamValue(controls.center, [0.5, 0.5]);

    feedback = QL_initShader("feedback");
}

function forget(memory) {
    QL_release(memory.start);
    QL_release(memory.end);
}

// Takes this instance's memory out of the list.
function takeMemory(output) {
    for (var i = 0; i < memories.length; ++i)
        if (memories[i].output === output) return memories.splice(i, 1)[0];
    return null;
}

// The memory as it is before a frame: `start` and `startTime` are what to go on from, or `start` is 0.
function recall(output, width, height, bits, time) {
    var old = takeMemory(output);
    var now = { output: output, width: width, height: height, bits: bits, time: time, start: 0, startTime: time, end: 0 };
    if (!old) return now;

    var step = time - old.time;
    var fits = old.width === width && old.height === height && old.bits === bits && time > 0;
    if (fits && Math.abs(step) < SMALLEST_STEP) {
        now.start = old.start;
        now.startTime = old.startTime;
        old.start = 0;
    } else if (fits && step > 0 && step <= LONGEST_GAP) {
        now.start = old.end;
        now.startTime = old.time;
        old.end = 0;
    }
    forget(old);
    return now;
}

function remember(memory) {
    memories.push(memory);
    if (memories.length > MOST_MEMORIES) forget(memories.shift());
}

function ofSize(target, width, height, bits) {
    var now = QL_getSurfaceDim(target);
    if (now && now[0] === width && now[1] === height && now[2] === bits) return target;
    QL_release(target);
    return QL_initRenderTarget(width, height, bits);
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(picture) || QL_getSurfaceDim(output);
    // Not 8 bits per channel: a fading trail would stop at the first step that rounds to nothing.
    var bits = QL_getSurfaceDim(output)[2] === 32 ? 32 : 16;
    trail = ofSize(trail, size[0], size[1], bits);
    shown = ofSize(shown, size[0], size[1], bits);

    var memory = recall(output, size[0], size[1], bits, QL_getTime());
    var step = memory.time - memory.startTime;
    var strength = 0;
    if (memory.start) {
        QL_surfaceCopyTo(memory.start, trail, false);
        strength = Math.pow(0.5, step / Math.max(QL_getParamValue(controls.halfLife), 0.001));
    }

    // The shader weighs pixels by hand. Each upload resets this.
    [picture, trail].forEach(function (texture) {
        QL_setTextureParam(texture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
        QL_setTextureParam(texture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    });

    var zoom = Math.pow(Math.max(QL_getParamValue(controls.zoom), 1) / 100, step);
    var turn = QL_getParamValue(controls.turn) * step * Math.PI / 180;
    QL_setShaderParamVal(feedback, "picture", picture);
    QL_setShaderParamVal(feedback, "trail", trail);
    QL_setShaderParamVal(feedback, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(feedback, "strength", strength);
    QL_setShaderParamVal(feedback, "back", [Math.cos(turn) / zoom, Math.sin(turn) / zoom]);
    QL_setShaderParamVal(feedback, "aspect", QL_getContextExtent()[2]);
    QL_setShaderParam(feedback, controls.center);
    QL_setShaderParam(feedback, controls.mode);
    QL_renderShader(feedback, shown, false);

    if (size[0] * size[1] * bits / 2 < LARGEST) memory.end = QL_textureToSurface(shown);
    remember(memory);
    QL_blitRenderTarget(shown, output, true, false);  // the one flip of the chain
}
