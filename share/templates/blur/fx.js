// A soft blur in three passes: colors are multiplied by their alpha, then softened along rows, then along columns.
// Two passes along one line each cost far less than one pass over a square, and look the same.

var radius;
var multiply, soften;
var multiplied = 0, halfway = 0;    // targets

function setup() {
    radius = QL_initParam("radius", QL_Type.FLOAT, "Radius (pixels)");
    QL_setParamMinMax(radius, 0, 100);
    QL_setParamValue(radius, 20);
    QL_setParamFlags(radius, QL_ParamFlags.ScaleByWidth);  // a preview at half size gets half of the pixels
    QL_setParamPrecision(radius, 1);                       // after the flags, which hold it too

    multiply = QL_initShader("multiply");
    soften = QL_initShader("soften");
}

// This target if it has the size, else a new one in its place. Floats, so that dark colors keep their steps.
function ofSize(target, width, height) {
    var now = QL_getSurfaceDim(target);
    if (now && now[0] === width && now[1] === height) return target;
    QL_release(target);
    target = QL_initRenderTarget(width, height, 32);
    QL_setTextureParam(target, QL_GL.TEXTURE_WRAP_S, QL_GL.CLAMP_TO_EDGE);
    QL_setTextureParam(target, QL_GL.TEXTURE_WRAP_T, QL_GL.CLAMP_TO_EDGE);
    return target;
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);
    multiplied = ofSize(multiplied, size[0], size[1]);
    halfway = ofSize(halfway, size[0], size[1]);

    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setShaderParamVal(multiply, "picture", picture);
    QL_renderShader(multiply, multiplied, false);

    QL_setShaderParam(soften, radius);
    QL_setShaderParamVal(soften, "source", multiplied);
    QL_setShaderParamVal(soften, "pixel", [1 / size[0], 0]);
    QL_setShaderParamVal(soften, "divides", false);
    QL_renderShader(soften, halfway, false);

    // The same shader again, along the other axis. Only the pass into the frame flips.
    QL_setShaderParamVal(soften, "source", halfway);
    QL_setShaderParamVal(soften, "pixel", [0, 1 / size[1]]);
    QL_setShaderParamVal(soften, "divides", true);
    QL_renderShader(soften, output, true);
}
