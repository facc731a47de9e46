// Matte. Takes the transparency of the picture from another layer.

var controls = {};
var matte;

function slider(name, label, value, min, max, flags, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, precision);  // after the flags, which hold it too
    controls[name] = id;
}

function popup(name, label, entries, value) {
    controls[name] = QL_initParam(name, QL_Type.POPUP, label);
    QL_setParamChoices(controls[name], entries);
    QL_setParamValue(controls[name], value);
}

function setup() {
    controls.matte = QL_initParam("matte", QL_Type.LAYER, "Matte layer");
    popup("channel", "Take from", "Brightness|Alpha|Red|Green|Blue", 1);
    slider("black", "Black point (percent)", 0, 0, 100, QL_ParamFlags.NONE, 1);
    slider("white", "White point (percent)", 100, 0, 100, QL_ParamFlags.NONE, 1);
    slider("soften", "Soften (pixels)", 0, 0, 50, QL_ParamFlags.ScaleByWidth, 1);
    controls.invert = QL_initParam("invert", QL_Type.BOOL, "Invert");
    popup("mode", "Picture's own alpha", "Multiply|Replace", 1);

    matte = QL_initShader("matte");
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);

    // The picture is taken pixel by pixel; the matte may have another size. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(controls.matte, QL_GL.TEXTURE_WRAP_S, QL_GL.CLAMP_TO_EDGE);
    QL_setTextureParam(controls.matte, QL_GL.TEXTURE_WRAP_T, QL_GL.CLAMP_TO_EDGE);

    // Until the artist chooses a layer its texture has 2 by 2 pixels.
    var layer = QL_getSurfaceDim(QL_getParamValue(controls.matte));
    QL_setShaderParamVal(matte, "isChosen", layer && (layer[0] > 2 || layer[1] > 2) ? 1 : 0);

    QL_setShaderParamVal(matte, "picture", picture);
    QL_setShaderParamVal(matte, "pixel", [1 / size[0], 1 / size[1]]);
    Object.keys(controls).forEach(function (name) {
        QL_setShaderParam(matte, controls[name]);
    });
    QL_renderShader(matte, output, true);
}
