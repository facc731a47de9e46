// Fringe. Red and blue reach the picture at slightly different sizes, as through a simple lens, and the corners are darker.

var controls = {};
var fringe;

function slider(name, label, value, min, max, flags, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, precision);  // after the flags, which hold it too
    controls[name] = id;
}

function group(name, label, fill) {
    QL_initParam(name, QL_Type.GROUP_START, label);
    fill();
    QL_initParam(name + "End", QL_Type.GROUP_END, "");
}

function setup() {
    controls.center = QL_initParam("center", QL_Type.POINT2D, "Center");
    QL_setParamValue(controls.center, [0.5, 0.5]);
    slider("spread", "Fringe at the corners (pixels)", 6, -100, 100, QL_ParamFlags.ScaleByWidth, 2);

    group("vignette", "Vignette", function () {
        slider("darken", "Darken (percent)", 35, -100, 100, QL_ParamFlags.NONE, 1);
        slider("reach", "Clear area (percent)", 50, 0, 150, QL_ParamFlags.NONE, 1);
        slider("soft", "Softness (percent)", 60, 1, 150, QL_ParamFlags.NONE, 1);
    });

    fringe = QL_initShader("fringe");
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);

    // The shader weighs pixels by hand. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(fringe, "picture", picture);
    QL_setShaderParamVal(fringe, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(fringe, "aspect", QL_getContextExtent()[2]);
    ["center", "spread", "darken", "reach", "soft"].forEach(function (name) {
        QL_setShaderParam(fringe, controls[name]);
    });
    QL_renderShader(fringe, output, true);
}
