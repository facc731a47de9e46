// A glow in four passes, each reading what an earlier one has drawn:
//
//   bright    what is brighter than the threshold, at half the size: a quarter of the pixels for what follows
//   soften    softens that along rows, then along columns
//   combine   the glow over the picture

var controls = {};
var bright, soften, combine;
var light = 0, softened = 0;    // targets

function slider(name, label, value, min, max, flags) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, 1);    // after the flags, which hold it too
    controls[name] = id;
}

function setup() {
    slider("threshold", "Threshold (percent)", 70, 0, 100, QL_ParamFlags.NONE);
    slider("radius", "Radius (pixels)", 40, 0, 200, QL_ParamFlags.ScaleByWidth);
    slider("strength", "Strength (percent)", 100, 0, 500, QL_ParamFlags.NONE);

    bright = QL_initShader("bright");
    soften = QL_initShader("soften");
    combine = QL_initShader("combine");
}

// This target if it has the size, else a new one in its place.
function ofSize(target, width, height) {
    var now = QL_getSurfaceDim(target);
    if (now && now[0] === width && now[1] === height) return target;
    QL_release(target);
    target = QL_initRenderTarget(width, height, 32);    // floats: lights may be brighter than 1
    QL_setTextureParam(target, QL_GL.TEXTURE_WRAP_S, QL_GL.CLAMP_TO_EDGE);
    QL_setTextureParam(target, QL_GL.TEXTURE_WRAP_T, QL_GL.CLAMP_TO_EDGE);
    return target;
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);
    var width = Math.max(Math.ceil(size[0] / 2), 1);
    var height = Math.max(Math.ceil(size[1] / 2), 1);
    light = ofSize(light, width, height);
    softened = ofSize(softened, width, height);

    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(bright, "picture", picture);
    QL_setShaderParamVal(bright, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(bright, "targetSize", [width, height]);
    QL_setShaderParam(bright, controls.threshold);
    QL_renderShader(bright, light, false);

    // A pass must not read the target that it draws into, so two of them take turns.
    QL_setShaderParam(soften, controls.radius);
    QL_setShaderParamVal(soften, "source", light);
    QL_setShaderParamVal(soften, "pixel", [1 / size[0], 0]);
    QL_renderShader(soften, softened, false);
    QL_setShaderParamVal(soften, "source", softened);
    QL_setShaderParamVal(soften, "pixel", [0, 1 / size[1]]);
    QL_renderShader(soften, light, false);

    QL_setShaderParamVal(combine, "picture", picture);
    QL_setShaderParamVal(combine, "light", light);
    QL_setShaderParam(combine, controls.strength);
    QL_renderShader(combine, output, true);    // only the pass into the frame flips
}
