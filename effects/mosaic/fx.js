// Mosaic. Squares or hexagons of one color each, with joints between them.

var controls = {};
var mosaic;

function slider(name, label, value, min, max, flags, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, precision);  // after the flags, which hold it too
    controls[name] = id;
}

function setup() {
    controls.shape = QL_initParam("shape", QL_Type.POPUP, "Shape");
    QL_setParamChoices(controls.shape, "Squares|Hexagons");
    QL_setParamValue(controls.shape, 2);

    slider("size", "Size (pixels)", 24, 2, 500, QL_ParamFlags.ScaleByWidth, 1);
    controls.center = QL_initParam("center", QL_Type.POINT2D, "Center of a stone");
    QL_setParamValue(controls.center, [0.5, 0.5]);

    slider("joint", "Joint (percent of the size)", 8, 0, 50, QL_ParamFlags.NONE, 1);
    controls.jointColor = QL_initParam("jointColor", QL_Type.COLOR, "Joint color");
    QL_setParamValue(controls.jointColor, [24, 24, 28, 255]);
    slider("relief", "Relief (percent)", 15, 0, 100, QL_ParamFlags.NONE, 1);

    mosaic = QL_initShader("mosaic");
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);

    // The shader takes pixels as they are. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(mosaic, "picture", picture);
    QL_setShaderParamVal(mosaic, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(mosaic, "aspect", QL_getContextExtent()[2]);
    Object.keys(controls).forEach(function (name) {
        QL_setShaderParam(mosaic, controls[name]);
    });
    QL_renderShader(mosaic, output, true);
}
