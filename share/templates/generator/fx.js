// Makes its own picture: the layer that it is applied to only says how large it is. Everything follows from the controls
// and the time, so each frame is the same in any order and on every machine.

var controls = {};
var stripes;

function slider(name, label, value, min, max, flags) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, 1);    // after the flags, which hold it too
    controls[name] = id;
}

function color(name, label, value) {
    controls[name] = QL_initParam(name, QL_Type.COLOR, label);
    QL_setParamValue(controls[name], value);
}

function setup() {
    slider("spacing", "Width (pixels)", 80, 2, 1000, QL_ParamFlags.ScaleByWidth);
    controls.direction = QL_initParam("direction", QL_Type.ANGLE, "Direction");
    QL_setParamValue(controls.direction, 60);
    slider("speed", "Speed (stripes a second)", 1, -100, 100, QL_ParamFlags.NONE);
    color("first", "First color", [20, 60, 120, 255]);      // 0 to 255 here; shaders see 0 to 1
    color("second", "Second color", [250, 220, 160, 255]);

    stripes = QL_initShader("stripes");
}

function draw() {
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);
    var angle = QL_getParamValue(controls.direction) * Math.PI / 180;   // 0 is up, as on the host's dial

    QL_setShaderParamVal(stripes, "size", [size[0], size[1]]);
    QL_setShaderParamVal(stripes, "aspect", QL_getContextExtent()[2]);
    QL_setShaderParamVal(stripes, "way", [Math.sin(angle), -Math.cos(angle)]);
    QL_setShaderParamVal(stripes, "moved", QL_getParamValue(controls.speed) * QL_getTime() % 1);
    ["spacing", "first", "second"].forEach(function (name) {
        QL_setShaderParam(stripes, controls[name]);
    });
    QL_renderShader(stripes, output, true);
}
