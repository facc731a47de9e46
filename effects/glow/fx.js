// Glow. Bright parts shine over their surroundings.
//
// What passes the threshold is halved in size again and again; each halving blurs a little, so that a few small
// passes make a wide glow. All sizes lie one above the other in one tall target, the atlas, and each pass draws into
// the viewport of one of them:
//
//   light   level 0 (half the picture's size), level 1 (a quarter), ...
//   odd, even: the same places; first for half-done blurs, then for the sums on the way back up
//
// A pass never reads the target that it draws into, hence three atlases. Script variables are shared by all instances
// of the effect, so the atlases are only ever as large as the largest frame so far, and a frame uses its part.

var MOST_LEVELS = 9;
var ATLAS_BITS = 32;

var controls = {};
var bright, blur, sum, combine;

var atlas = { width: 0, height: 0, light: 0, even: 0, odd: 0 };

function slider(name, label, value, min, max, flags, precision) {
    var id = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(id, min, max);
    QL_setParamValue(id, value);
    QL_setParamFlags(id, flags);
    QL_setParamPrecision(id, precision);  // after the flags, which hold it too
    controls[name] = id;
}

function setup() {
    slider("threshold", "Threshold", 0.6, 0, 2, QL_ParamFlags.NONE, 2);
    slider("radius", "Radius", 80, 0, 1000, QL_ParamFlags.ScaleByWidth, 1);
    slider("intensity", "Intensity", 1.5, 0, 10, QL_ParamFlags.NONE, 2);

    controls.tint = QL_initParam("tint", QL_Type.COLOR, "Tint");
    QL_setParamValue(controls.tint, [255, 255, 255, 255]);

    controls.mode = QL_initParam("mode", QL_Type.POPUP, "Composite");
    QL_setParamChoices(controls.mode, "Add|Screen|Glow only");
    QL_setParamValue(controls.mode, 1);

    bright = QL_initShader("bright");
    blur = QL_initShader("blur");
    sum = QL_initShader("sum");
    combine = QL_initShader("combine");
}

// The levels of a picture of this size: where each is in the atlas.
function levelsFor(width, height) {
    var levels = [];
    var y = 0;
    while (levels.length < MOST_LEVELS && (levels.length === 0 || width > 1 || height > 1)) {
        width = Math.ceil(width / 2);
        height = Math.ceil(height / 2);
        levels.push({ y: y, width: width, height: height });
        y += height;
    }
    return levels;
}

function makeRoom(width, height) {
    if (width <= atlas.width && height <= atlas.height) return;
    atlas.width = Math.max(width, atlas.width);
    atlas.height = Math.max(height, atlas.height);
    ["light", "even", "odd"].forEach(function (name) {
        QL_release(atlas[name]);
        atlas[name] = QL_initRenderTarget(atlas.width, atlas.height, ATLAS_BITS);
        // The shaders weigh pixels by hand: a frame must not depend in its last digits on the size of the atlas.
        QL_setTextureParam(atlas[name], QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
        QL_setTextureParam(atlas[name], QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    });
}

// How much each level has in the glow: the larger ones more, or the glow would hardly leave its source, up to the one
// whose blur reaches the radius, which counts in part, so that the glow grows evenly with the radius. Level 0 reaches
// about 2.6 pixels, each next one twice as far.
function weightsFor(radius, levelCount) {
    var reach = Math.log(Math.max(radius, 2.6) / 2.6) / Math.LN2;
    var weights = [];
    var total = 0;
    for (var k = 0; k < levelCount; ++k) {
        var weight = Math.min(Math.max(reach - k + 1, 0), 1);
        if (weight === 0) break;
        weights.push(weight * (k + 1));
        total += weight * (k + 1);
    }
    return weights.map(function (weight) { return weight / total; });
}

function viewport(level, width, height) {
    return [0, level.y, width, height];
}

// Halves `from` in the direction of `axis`: of width by height pixels into the same place of another atlas.
function halve(source, from, axis, width, height, target, to) {
    var sourceHeight = from.height;
    var sourceWidth = axis[0] ? from.width : width;
    QL_setShaderParamVal(blur, "source", source);
    QL_setShaderParamVal(blur, "atlasSize", [atlas.width, atlas.height]);
    QL_setShaderParamVal(blur, "region", [0, from.y, sourceWidth, sourceHeight]);
    QL_setShaderParamVal(blur, "axis", axis);
    QL_setShaderParamVal(blur, "targetSize", [width, height]);
    QL_renderShader(blur, target, false, viewport(to, width, height));
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);
    var levels = levelsFor(size[0], size[1]);
    var last = levels[levels.length - 1];
    makeRoom(levels[0].width, last.y + last.height);

    var weights = weightsFor(QL_getParamValue(controls.radius), levels.length);
    var top = weights.length - 1;
    var k;

    // The shaders take pixels as they are. Each upload resets this.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(bright, "picture", picture);
    QL_setShaderParamVal(bright, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(bright, "targetSize", [levels[0].width, levels[0].height]);
    QL_setShaderParam(bright, controls.threshold);
    QL_renderShader(bright, atlas.light, false, viewport(levels[0], levels[0].width, levels[0].height));

    for (k = 1; k <= top; ++k) {
        var from = levels[k - 1];
        var to = levels[k];
        halve(atlas.light, from, [1, 0], to.width, from.height, atlas.even, from);
        halve(atlas.even, from, [0, 1], to.width, to.height, atlas.light, to);
    }

    for (k = top; k >= 0; --k) {
        var upper = levels[Math.min(k + 1, top)];
        QL_setShaderParamVal(sum, "light", atlas.light);
        QL_setShaderParamVal(sum, "sums", k % 2 ? atlas.even : atlas.odd);
        QL_setShaderParamVal(sum, "atlasSize", [atlas.width, atlas.height]);
        QL_setShaderParamVal(sum, "lightRegion", [0, levels[k].y, levels[k].width, levels[k].height]);
        QL_setShaderParamVal(sum, "sumsRegion", [0, upper.y, upper.width, upper.height]);
        QL_setShaderParamVal(sum, "weight", weights[k]);
        QL_setShaderParamVal(sum, "hasSums", k < top);
        QL_renderShader(sum, k % 2 ? atlas.odd : atlas.even, false,
                        viewport(levels[k], levels[k].width, levels[k].height));
    }

    QL_setShaderParamVal(combine, "picture", picture);
    QL_setShaderParamVal(combine, "glow", atlas.even);
    QL_setShaderParamVal(combine, "atlasSize", [atlas.width, atlas.height]);
    QL_setShaderParamVal(combine, "glowRegion", [0, levels[0].y, levels[0].width, levels[0].height]);
    QL_setShaderParamVal(combine, "pictureSize", [size[0], size[1]]);
    QL_setShaderParam(combine, controls.intensity);
    QL_setShaderParam(combine, controls.tint);
    QL_setShaderParam(combine, controls.mode);
    QL_renderShader(combine, output, true);  // the one flip of the chain
}
