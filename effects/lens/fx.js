// Lens. Bends the picture as a lens does, or straightens what a lens has bent.
//
// With distances from the center in halves of the picture's diagonal, the bend is
//
//   bend(r) = r (1 + k1 r^2 + k2 r^4)
//
// Barrel: a point of the output at r shows the picture at bend(r), so the borders move inwards. Pincushion is the other
// way round: a point of the picture at r is shown at bend(r), and the borders move outwards. There, and above a zoom of
// 100, the layer grows: preRender looks how far the border reaches and asks for that size. The host puts the larger
// output around the picture's middle, and draw finds the picture's place in it from the two sizes.

var BARREL = 1, PINCUSHION = 2;

var MOST_GROWTH = 3;            // times the picture's width or height
var MOST_PIXELS = 33554431;     // what the host's read-back can carry at 32 bits per channel
var POINTS_PER_SIDE = 32;       // of the border, looked at for the size

var controls = {};
var lens;

function slider(name, label, value, min, max, precision) {
    controls[name] = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(controls[name], min, max);
    QL_setParamValue(controls[name], value);
    QL_setParamPrecision(controls[name], precision);
}

function setup() {
    controls.shape = QL_initParam("shape", QL_Type.POPUP, "Shape");
    QL_setParamChoices(controls.shape, "Barrel|Pincushion");
    QL_setParamValue(controls.shape, PINCUSHION);

    slider("k1", "Distortion (k1)", 0.15, 0, 2, 3);
    slider("k2", "Distortion at the corners (k2)", 0, 0, 2, 3);
    slider("zoom", "Zoom (percent)", 100, 10, 400, 1);

    controls.center = QL_initParam("center", QL_Type.POINT2D, "Center");
    QL_setParamValue(controls.center, [0.5, 0.5]);

    controls.grow = QL_initParam("grow", QL_Type.BOOL, "Grow the layer");
    QL_setParamValue(controls.grow, 1);

    lens = QL_initShader("lens");
}

// The controls as the model takes them, with a zoom of 1 for the picture's own size.
function settings() {
    return {
        shape: QL_getParamValue(controls.shape),
        k1: Math.max(QL_getParamValue(controls.k1), 0),
        k2: Math.max(QL_getParamValue(controls.k2), 0),
        zoom: Math.max(QL_getParamValue(controls.zoom), 1) / 100,
        center: QL_getParamValue(controls.center),
        aspect: QL_getContextExtent()[2]
    };
}

function bend(r, model) {
    return r * (1 + r * r * (model.k1 + model.k2 * r * r));
}

// The radius that bend brings to this one.
function unbend(radius, model) {
    var low = 0, high = radius;
    for (var i = 0; i < 40; ++i) {
        var middle = 0.5 * (low + high);
        if (bend(middle, model) < radius) low = middle; else high = middle;
    }
    return high;
}

// Calls visit(x, y) with points all around the border of a picture.
function walkBorder(width, height, visit) {
    for (var i = 0; i <= POINTS_PER_SIDE; ++i) {
        var x = width * i / POINTS_PER_SIDE;
        var y = height * i / POINTS_PER_SIDE;
        visit(x, 0);
        visit(x, height);
        visit(0, y);
        visit(width, y);
    }
}

// The size that reaches that far from the middle, larger than before by as much on both sides.
function grown(size, reach) {
    var margin = Math.ceil(Math.min(reach, 0.5 * MOST_GROWTH * size) - 0.5 * size - 0.01);
    return size + 2 * Math.max(margin, 0);
}

function preRender(width, height) {
    if (!QL_getParamValue(controls.grow)) return;

    var now = settings();
    var place = now.shape === BARREL ? unbend : bend;
    var unit = 0.5 * Math.sqrt(width * width * now.aspect * now.aspect + height * height);
    var reachX = 0, reachY = 0;
    walkBorder(width, height, function (x, y) {
        var dx = x - now.center[0], dy = y - now.center[1];
        var radius = Math.sqrt(dx * dx * now.aspect * now.aspect + dy * dy) / unit;
        if (radius === 0) return;
        var scale = now.zoom * place(radius, now) / radius;
        reachX = Math.max(reachX, Math.abs(now.center[0] + dx * scale - 0.5 * width));
        reachY = Math.max(reachY, Math.abs(now.center[1] + dy * scale - 0.5 * height));
    });

    var outputWidth = grown(width, reachX), outputHeight = grown(height, reachY);
    var excess = Math.max(Math.sqrt(outputWidth * outputHeight / MOST_PIXELS), 1);
    QL_setOutputExtent(Math.max(Math.floor(outputWidth / excess), width),
                       Math.max(Math.floor(outputHeight / excess), height));
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var outputSize = QL_getSurfaceDim(output);
    var pictureSize = QL_getSurfaceDim(picture) || outputSize;
    var now = settings();

    // The shaders take pixels as they are. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(lens, "picture", picture);
    QL_setShaderParamVal(lens, "pictureSize", [pictureSize[0], pictureSize[1]]);
    QL_setShaderParamVal(lens, "outputSize", [outputSize[0], outputSize[1]]);
    QL_setShaderParamVal(lens, "corner", [(outputSize[0] >> 1) - (pictureSize[0] >> 1),
                                          (outputSize[1] >> 1) - (pictureSize[1] >> 1)]);
    ["shape", "k1", "k2", "center", "aspect"].forEach(function (name) {
        QL_setShaderParamVal(lens, name, now[name]);
    });
    QL_setShaderParamVal(lens, "scale", 1 / now.zoom);
    QL_renderShader(lens, output, true);
}
