// Grade. Exposure, white balance, contrast, saturation, and the color of shadows and lights. All of it is computed in
// float, and at 32 bits nothing is cut.

var controls = {};
var grade;

function slider(name, label, value, min, max, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamPrecision(id, precision);
    controls[name] = id;
}

function color(name, label, value) {
    controls[name] = QL_initParam(name, QL_Type.COLOR, label);
    QL_setParamValue(controls[name], value);
}

function setup() {
    slider("exposure", "Exposure (stops)", 0, -8, 8, 2);
    slider("warmth", "Blue to amber", 0, -100, 100, 1);
    slider("magenta", "Green to magenta", 0, -100, 100, 1);
    slider("contrast", "Contrast (percent)", 100, 0, 300, 1);
    slider("pivot", "Contrast turns around", 0.435, 0.01, 1, 3);
    slider("saturation", "Saturation (percent)", 100, 0, 300, 1);

    QL_initParam("balance", QL_Type.GROUP_START, "Color balance");
    color("shadows", "Shadows (gray: none)", [128, 128, 128, 255]);
    color("lights", "Lights (gray: none)", [128, 128, 128, 255]);
    slider("strength", "Strength (percent)", 50, 0, 100, 1);
    QL_initParam("balanceEnd", QL_Type.GROUP_END, "");

    grade = QL_initShader("grade");
}

function updateUIFlags() {
    QL_setParamEnabled(controls.pivot, QL_getParamValue(controls.contrast) === 100 ? 0 : 1);
}

function draw() {
    var picture = QL_getSequenceTexture();

    // The shader takes pixels as they are. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(grade, "picture", picture);
    Object.keys(controls).forEach(function (name) {
        QL_setShaderParam(grade, controls[name]);
    });
    QL_renderShader(grade, QL_getSequenceRT(), true);
}
