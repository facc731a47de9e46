// Kaleidoscope. Mirrors a wedge of the picture around a point.

var controls = {};
var kaleidoscope;

function slider(name, label, value, min, max, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamPrecision(id, precision);
    controls[name] = id;
}

function setup() {
    slider("mirrors", "Mirrors", 6, 2, 48, 0);
    controls.center = QL_initParam("center", QL_Type.POINT2D, "Center");
    QL_setParamValue(controls.center, [0.5, 0.5]);
    controls.source = QL_initParam("source", QL_Type.POINT2D, "Center of the wedge");
    QL_setParamValue(controls.source, [0.5, 0.5]);
    controls.wedge = QL_initParam("wedge", QL_Type.ANGLE, "Turn the wedge");
    controls.turn = QL_initParam("turn", QL_Type.ANGLE, "Turn the result");
    slider("zoom", "Zoom (percent)", 100, 10, 1000, 1);

    kaleidoscope = QL_initShader("kaleidoscope");
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);
    var radians = Math.PI / 180;

    // The shader weighs pixels by hand. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(kaleidoscope, "picture", picture);
    QL_setShaderParamVal(kaleidoscope, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(kaleidoscope, "aspect", QL_getContextExtent()[2]);
    // A wedge and its mirror image are a whole number of parts of the circle, or a seam would show.
    QL_setShaderParamVal(kaleidoscope, "part", Math.PI / Math.max(Math.round(QL_getParamValue(controls.mirrors)), 1));
    QL_setShaderParamVal(kaleidoscope, "wedge", QL_getParamValue(controls.wedge) * radians);
    QL_setShaderParamVal(kaleidoscope, "turn", QL_getParamValue(controls.turn) * radians);
    ["center", "source", "zoom"].forEach(function (name) {
        QL_setShaderParam(kaleidoscope, controls[name]);
    });
    QL_renderShader(kaleidoscope, output, true);
}
