// Displace. A second layer, the map, moves the pixels of the picture: its middle gray leaves them in place, white
// moves them by the full amount to the right or down, black to the left or up. Where the map is transparent nothing
// moves, and so nothing does while no layer is chosen.

var TILE = 3;             // of the placements
var GL_REPEAT = 0x2901;   // QL_GL.REPEAT has another number, which GL does not know

var controls = {};
var displace;

function amount(name, label, flags) {
    controls[name] = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(controls[name], -1000, 1000);
    QL_setParamValue(controls[name], 40);
    QL_setParamFlags(controls[name], flags);
    QL_setParamPrecision(controls[name], 1);  // after the flags, which hold it too
}

function popup(name, label, choices, value) {
    controls[name] = QL_initParam(name, QL_Type.POPUP, label);
    QL_setParamChoices(controls[name], choices);
    QL_setParamValue(controls[name], value);
}

function setup() {
    var channels = "Red|Green|Blue|Luminance";
    controls.map = QL_initParam("map", QL_Type.LAYER, "Map");
    popup("placement", "Map placement", "Stretch|Center|Tile", 1);
    popup("channelX", "Horizontal by", channels, 1);
    amount("amountX", "Horizontal amount", QL_ParamFlags.ScaleByWidth);
    popup("channelY", "Vertical by", channels, 2);
    amount("amountY", "Vertical amount", QL_ParamFlags.ScaleByHeight);
    popup("edge", "Edges", "Transparent|Repeat pixels|Wrap around|Mirror", 2);

    displace = QL_initShader("displace");
}

// Middle gray as a map of this depth has it: 128 of 255, half of the host's 16 bits as they arrive, one half.
function neutral(bits) {
    if (bits === 8) return 128 / 255;
    return bits === 16 ? 32768 / 65535 : 0.5;
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(picture) || QL_getSurfaceDim(output);
    var mapSize = QL_getSurfaceDim(QL_getParamValue(controls.map));

    // Each upload resets filters and wrapping. The shader weighs the picture's pixels by hand.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    var wrap = QL_getParamValue(controls.placement) === TILE ? GL_REPEAT : QL_GL.CLAMP_TO_EDGE;
    QL_setTextureParam(controls.map, QL_GL.TEXTURE_WRAP_S, wrap);
    QL_setTextureParam(controls.map, QL_GL.TEXTURE_WRAP_T, wrap);

    QL_setShaderParamVal(displace, "picture", picture);
    QL_setShaderParamVal(displace, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(displace, "mapSize", [mapSize[0], mapSize[1]]);
    QL_setShaderParamVal(displace, "neutral", neutral(mapSize[2]));
    // Not by its id: the layer's texture is shared by all instances, and only its value says that this one has none.
    QL_setShaderParam(displace, controls.map);
    ["placement", "channelX", "channelY", "amountX", "amountY", "edge"].forEach(function (name) {
        QL_setShaderParam(displace, controls[name]);
    });
    QL_renderShader(displace, output, true);
}
