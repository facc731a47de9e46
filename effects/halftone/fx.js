// Halftone. Prints the picture in dots, in four inks with a screen angle each, or in black.

var controls = {};
var halftone;

function slider(name, label, value, min, max, flags, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, precision);  // after the flags, which hold it too
    controls[name] = id;
}

function setup() {
    controls.inks = QL_initParam("inks", QL_Type.POPUP, "Inks");
    QL_setParamChoices(controls.inks, "Cyan, magenta, yellow, black|Black");
    QL_setParamValue(controls.inks, 1);

    slider("size", "Screen (pixels)", 8, 2, 200, QL_ParamFlags.ScaleByWidth, 1);
    controls.angle = QL_initParam("angle", QL_Type.ANGLE, "Turn the screens");
    slider("softness", "Softness of the dots (percent)", 20, 0, 100, QL_ParamFlags.NONE, 1);
    slider("gain", "Dot gain (percent)", 0, -50, 50, QL_ParamFlags.NONE, 1);
    controls.paper = QL_initParam("paper", QL_Type.COLOR, "Paper");
    QL_setParamValue(controls.paper, [255, 252, 244, 255]);

    halftone = QL_initShader("halftone");
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);

    // The shader takes pixels as they are. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(halftone, "picture", picture);
    QL_setShaderParamVal(halftone, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(halftone, "aspect", QL_getContextExtent()[2]);
    Object.keys(controls).forEach(function (name) {
        QL_setShaderParam(halftone, controls[name]);
    });
    QL_renderShader(halftone, output, true);
}
