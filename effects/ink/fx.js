// Ink. Draws the edges of the picture as a pen would, on paper, over the picture, or on nothing.

var controls = {};
var ink;

function slider(name, label, value, min, max, flags, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, precision);  // after the flags, which hold it too
    controls[name] = id;
}

function color(name, label, value) {
    controls[name] = QL_initParam(name, QL_Type.COLOR, label);
    QL_setParamValue(controls[name], value);
}

function setup() {
    slider("width", "Pen width (pixels)", 2, 0.5, 20, QL_ParamFlags.ScaleByWidth, 2);
    slider("threshold", "Weakest edge (percent)", 12, 0, 100, QL_ParamFlags.NONE, 1);
    slider("softness", "Softness (percent)", 20, 1, 100, QL_ParamFlags.NONE, 1);
    color("inkColor", "Ink", [20, 24, 40, 255]);

    controls.ground = QL_initParam("ground", QL_Type.POPUP, "Draw on");
    QL_setParamChoices(controls.ground, "Paper|Picture|Nothing");
    QL_setParamValue(controls.ground, 1);
    color("paper", "Paper", [246, 240, 226, 255]);
    slider("wash", "Picture on the paper (percent)", 25, 0, 100, QL_ParamFlags.NONE, 1);

    ink = QL_initShader("ink");
}

function updateUIFlags() {
    var onPaper = QL_getParamValue(controls.ground) === 1 ? 1 : 0;
    QL_setParamEnabled(controls.paper, onPaper);
    QL_setParamEnabled(controls.wash, onPaper);
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);

    // The shader weighs pixels by hand. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(ink, "picture", picture);
    QL_setShaderParamVal(ink, "pictureSize", [size[0], size[1]]);
    Object.keys(controls).forEach(function (name) {
        QL_setShaderParam(ink, controls[name]);
    });
    QL_renderShader(ink, output, true);
}
