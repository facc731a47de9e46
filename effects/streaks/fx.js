// Streaks. Draws bright parts out into rays that cross.
//
// A ray is blurred in a few passes: each looks four times as far as the one before, so a long ray costs little more
// than a short one. Every ray starts from what passes the threshold and is added to the sum. Script variables are
// shared by all instances of the effect, so the targets are only ever as large as the largest frame so far, and a frame
// uses its part.

var PASSES = 4;       // steps of 1, 4, 16, 64 pixels: a ray of up to 340 pixels at full length
var TAPS = 4;
var BITS = 32;

var controls = {};
var bright, ray, combine;
var room = { width: 0, height: 0, light: 0, even: 0, odd: 0, sum: 0, spare: 0 };

function slider(name, label, value, min, max, flags, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, precision);  // after the flags, which hold it too
    controls[name] = id;
}

function setup() {
    slider("threshold", "Threshold", 0.8, 0, 4, QL_ParamFlags.NONE, 2);
    slider("length", "Length (pixels)", 120, 1, 340, QL_ParamFlags.ScaleByWidth, 1);
    controls.rays = QL_initParam("rays", QL_Type.POPUP, "Rays");
    QL_setParamChoices(controls.rays, "2|4|6|8");
    QL_setParamValue(controls.rays, 2);
    controls.angle = QL_initParam("angle", QL_Type.ANGLE, "Angle");
    QL_setParamValue(controls.angle, 30);
    slider("intensity", "Intensity", 2, 0, 10, QL_ParamFlags.NONE, 2);
    controls.tint = QL_initParam("tint", QL_Type.COLOR, "Tint");
    QL_setParamValue(controls.tint, [255, 255, 255, 255]);

    bright = QL_initShader("bright");
    ray = QL_initShader("ray");
    combine = QL_initShader("combine");
}

function makeRoom(width, height) {
    if (width <= room.width && height <= room.height) return;
    room.width = Math.max(width, room.width);
    room.height = Math.max(height, room.height);
    ["light", "even", "odd", "sum", "spare"].forEach(function (name) {
        QL_release(room[name]);
        room[name] = QL_initRenderTarget(room.width, room.height, BITS);
        QL_setTextureParam(room[name], QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
        QL_setTextureParam(room[name], QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    });
}

// Runs a shader into the frame's part of a target.
function pass(shader, target, size) {
    QL_setShaderParamVal(shader, "roomSize", [room.width, room.height]);
    QL_setShaderParamVal(shader, "frameSize", [size[0], size[1]]);
    QL_renderShader(shader, target, false, [0, 0, size[0], size[1]]);
}

// Draws the light out in one direction and adds it to `sum`; gives the target that holds the new sum.
function addRay(direction, length, size, sum, spare, isFirst) {
    var source = room.light;
    for (var k = 0; k < PASSES; ++k) {
        var isLast = k === PASSES - 1;
        var target = isLast ? spare : (k % 2 ? room.odd : room.even);
        var step = Math.pow(TAPS, k);
        QL_setShaderParamVal(ray, "source", source);
        QL_setShaderParamVal(ray, "sum", isFirst ? source : sum);
        QL_setShaderParamVal(ray, "sumWeight", isLast && !isFirst ? 1 : 0);
        QL_setShaderParamVal(ray, "stride", [direction[0] * step, direction[1] * step]);
        // The light has faded to a fiftieth at the ray's end.
        QL_setShaderParamVal(ray, "fade", Math.pow(0.02, step / length));
        pass(ray, target, size);
        source = target;
    }
    return spare;
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);
    makeRoom(size[0], size[1]);

    // The shaders take pixels as they are. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(bright, "picture", picture);
    QL_setShaderParam(bright, controls.threshold);
    pass(bright, room.light, size);

    var count = QL_getParamValue(controls.rays) * 2;
    var angle = QL_getParamValue(controls.angle) * Math.PI / 180;
    var length = Math.max(QL_getParamValue(controls.length), 0.1);
    var aspect = QL_getContextExtent()[2];
    var sum = room.sum, spare = room.spare;
    for (var i = 0; i < count; ++i) {
        var turned = angle + 2 * Math.PI * i / count;
        var next = addRay([Math.sin(turned) / aspect, -Math.cos(turned)], length, size, sum, spare, i === 0);
        spare = sum;
        sum = next;
    }

    QL_setShaderParamVal(combine, "picture", picture);
    QL_setShaderParamVal(combine, "glare", sum);
    QL_setShaderParamVal(combine, "roomSize", [room.width, room.height]);
    QL_setShaderParamVal(combine, "frameSize", [size[0], size[1]]);
    // More rays share the light.
    QL_setShaderParamVal(combine, "intensity", QL_getParamValue(controls.intensity) * 2 / count);
    QL_setShaderParam(combine, controls.tint);
    QL_renderShader(combine, output, true);
}
