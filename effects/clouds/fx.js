// Clouds. Fills the layer with soft noise that moves in time. The picture under it is not used.

var controls = {};
var clouds;

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
    slider("size", "Size (pixels)", 240, 2, 4000, QL_ParamFlags.ScaleByWidth, 0);
    slider("detail", "Detail", 5, 1, 8, QL_ParamFlags.NONE, 1);
    slider("roughness", "Roughness (percent)", 50, 0, 100, QL_ParamFlags.NONE, 1);
    slider("contrast", "Contrast (percent)", 150, 0, 500, QL_ParamFlags.NONE, 1);

    QL_initParam("motion", QL_Type.GROUP_START, "Motion");
    slider("evolution", "Change (steps a second)", 0.3, 0, 20, QL_ParamFlags.NONE, 2);
    slider("drift", "Drift (pixels a second)", 20, -2000, 2000, QL_ParamFlags.ScaleByWidth, 1);
    controls.direction = QL_initParam("direction", QL_Type.ANGLE, "Direction");
    QL_setParamValue(controls.direction, 90);
    slider("seed", "Seed", 0, 0, 1000, QL_ParamFlags.NONE, 0);
    QL_initParam("motionEnd", QL_Type.GROUP_END, "");

    color("low", "Dark parts", [28, 64, 128, 255]);
    color("high", "Light parts", [255, 255, 255, 255]);

    clouds = QL_initShader("clouds");
}

function draw() {
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);
    var time = QL_getTime();
    var angle = QL_getParamValue(controls.direction) * Math.PI / 180;
    var way = QL_getParamValue(controls.drift) * time;

    QL_setShaderParamVal(clouds, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(clouds, "aspect", QL_getContextExtent()[2]);
    QL_setShaderParamVal(clouds, "age", QL_getParamValue(controls.evolution) * time);
    // 0 degrees is up, as on the host's dial.
    QL_setShaderParamVal(clouds, "moved", [Math.sin(angle) * way, -Math.cos(angle) * way]);
    ["size", "detail", "roughness", "contrast", "seed", "low", "high"].forEach(function (name) {
        QL_setShaderParam(clouds, controls[name]);
    });
    QL_renderShader(clouds, output, true);
}
