// Blends another layer over the picture. A LAYER control lets the artist choose it.

var controls = {};
var blend;

function setup() {
    controls.other = QL_initParam("other", QL_Type.LAYER, "Other layer");

    controls.mode = QL_initParam("mode", QL_Type.POPUP, "Blending");
    QL_setParamChoices(controls.mode, "Normal|Add|Multiply|Screen");
    QL_setParamValue(controls.mode, 4);     // the number of an entry, from 1

    controls.opacity = QL_initParam("opacity", QL_Type.FLOAT, "Opacity (percent)");
    QL_setParamMinMax(controls.opacity, 0, 100);
    QL_setParamValue(controls.opacity, 100);
    QL_setParamPrecision(controls.opacity, 1);

    blend = QL_initShader("blend");
}

function draw() {
    var picture = QL_getSequenceTexture();

    // Each frame's upload resets the filters and what is read beyond the edges.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(controls.other, QL_GL.TEXTURE_WRAP_S, QL_GL.CLAMP_TO_EDGE);
    QL_setTextureParam(controls.other, QL_GL.TEXTURE_WRAP_T, QL_GL.CLAMP_TO_EDGE);

    QL_setShaderParamVal(blend, "picture", picture);
    // By the control and not by its texture's id: the texture is shared by all instances, and only the control knows
    // that this instance has no layer. The shader then reads transparent black.
    QL_setShaderParam(blend, controls.other);
    QL_setShaderParam(blend, controls.mode);
    QL_setShaderParam(blend, controls.opacity);
    QL_renderShader(blend, QL_getSequenceRT(), true);
}
