// Grain. Film grain that depends on the place in the picture, the seed and the frame's time, and on nothing else: the
// same frame has the same grain in every render, on every machine.

var controls = {};
var grain;

function slider(name, label, value, min, max, flags, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, precision);  // after the flags, which hold it too
    controls[name] = id;
}

function setup() {
    slider("amount", "Amount (percent)", 12, 0, 100, QL_ParamFlags.NONE, 1);
    slider("size", "Grain size (pixels)", 1.5, 0.5, 20, QL_ParamFlags.ScaleByWidth, 2);
    slider("saturation", "Color (percent)", 25, 0, 100, QL_ParamFlags.NONE, 1);
    slider("midtones", "Less in black and white (%)", 60, 0, 100, QL_ParamFlags.NONE, 1);
    slider("seed", "Seed", 1, 0, 1000, QL_ParamFlags.NONE, 0);

    controls.moves = QL_initParam("moves", QL_Type.BOOL, "New grain in every frame");
    QL_setParamValue(controls.moves, 1);

    grain = QL_initShader("grain");
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);

    // Milliseconds tell frames apart at every usual rate. The wrap keeps the number exact in a float.
    var moment = QL_getParamValue(controls.moves) ? Math.round(QL_getTime() * 1000) % 65536 : 0;

    // The shader takes pixels as they are. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(grain, "picture", picture);
    QL_setShaderParamVal(grain, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(grain, "moment", moment);
    ["amount", "size", "saturation", "midtones", "seed"].forEach(function (name) {
        QL_setShaderParam(grain, controls[name]);
    });
    QL_renderShader(grain, output, true);
}
