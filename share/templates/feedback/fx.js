// The picture leaves a trail that rises and fades: each frame shows what the frame before showed, higher up and weaker.
//
// Hosts render frames in any order, leave some out and repeat others, and all instances of the effect share this script.
// So each instance has a memory. A frame goes on from the one before when it comes soon after it; the same moment once
// more starts from the same picture; anything else starts afresh. A trail still depends on where the render began, which
// an effect cannot change. `check` warns of that, and this comment says that it is meant:
//
// quillon-ignore render/frame-order

var LONGEST_GAP = 0.5;      // seconds that a trail outlives without a frame
var MOST_MEMORIES = 4;      // with more instances the one that has waited longest starts afresh

var halfLife, speed;
var trail, show;
// The last used at the end. `end` is the target that the frame at `time` drew, `start` the one that it went on from, of
// `startTime`, unless it is fresh.
var memories = [];

function setup() {
    halfLife = QL_initParam("halfLife", QL_Type.FLOAT, "Half-life (seconds)");
    QL_setParamMinMax(halfLife, 0.01, 10);
    QL_setParamValue(halfLife, 0.25);
    QL_setParamPrecision(halfLife, 2);

    speed = QL_initParam("speed", QL_Type.FLOAT, "Speed (pixels a second)");
    QL_setParamMinMax(speed, 0, 1000);
    QL_setParamValue(speed, 100);
    QL_setParamFlags(speed, QL_ParamFlags.ScaleByHeight);   // a preview at half size gets half of the pixels
    QL_setParamPrecision(speed, 1);                         // after the flags, which hold it too

    trail = QL_initShader("trail");
    show = QL_initShader("show");
}

function newMemory(output) {
    return { output: output, start: 0, end: 0, time: 0, startTime: 0, isFresh: true };
}

// The memory of the instance that draws into this output: no two instances have the same one.
function memoryOf(output) {
    for (var i = 0; i < memories.length; ++i)
        if (memories[i].output === output) return memories.splice(i, 1)[0];
    return newMemory(output);
}

function fits(target, size) {
    var now = QL_getSurfaceDim(target);
    return now && now[0] === size[0] && now[1] === size[1];
}

function forget(memory) {
    QL_release(memory.start);
    QL_release(memory.end);
}

// The memory as the frame at this time needs it: `start` is what it goes on from, unless it is fresh.
function prepare(memory, size, time) {
    if (!fits(memory.end, size)) {
        forget(memory);
        memory.start = QL_initRenderTarget(size[0], size[1], 32);   // floats: at 8 bits a trail never quite fades
        memory.end = QL_initRenderTarget(size[0], size[1], 32);
        memory.isFresh = true;
    } else if (time !== memory.time) {
        var old = memory.start;
        memory.start = memory.end;
        memory.end = old;
        memory.startTime = memory.time;
        memory.isFresh = !(time > memory.time && time - memory.time <= LONGEST_GAP);
    }
    memory.time = time;
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);
    var memory = memoryOf(output);
    prepare(memory, size, QL_getTime());

    // By time and not by frame: a preview that skips frames looks much the same.
    var age = memory.time - memory.startTime;
    var strength = memory.isFresh ? 0 : Math.pow(0.5, age / QL_getParamValue(halfLife));

    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setShaderParamVal(trail, "picture", picture);
    QL_setShaderParamVal(trail, "before", memory.start);
    QL_setShaderParamVal(trail, "strength", strength);
    QL_setShaderParamVal(trail, "rise", QL_getParamValue(speed) * age / size[1]);
    QL_renderShader(trail, memory.end, false);

    QL_setTextureParam(memory.end, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(memory.end, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setShaderParamVal(show, "memory", memory.end);
    QL_renderShader(show, output, true);    // only the pass into the frame flips
    QL_setTextureParam(memory.end, QL_GL.TEXTURE_MIN_FILTER, QL_GL.LINEAR);
    QL_setTextureParam(memory.end, QL_GL.TEXTURE_MAG_FILTER, QL_GL.LINEAR);

    memories.push(memory);
    if (memories.length > MOST_MEMORIES) forget(memories.shift());
}
