// Few colors in large pixels. The picture goes to the CPU, where its colors are reduced, and comes back:
//
//   shrink    the picture at one pixel a block, opaque
//   CPU       reduces it to a palette
//   enlarge   draws the blocks at full size, as transparent as the picture is

var MOST_BLOCKS = 1 << 25;      // a target of so many pixels can no longer be taken to the CPU

// What QL_surfaceQuantize knows the entries of the popups by. `quillon docs color-reduction` has all of them.
var PALETTES = [1, 3, 9, 13, 20];
var DITHERS = [1, 3, 6];

var controls = {};
var shrink, enlarge;
var small = 0;                  // target

function popup(name, label, entries, value) {
    controls[name] = QL_initParam(name, QL_Type.POPUP, label);
    QL_setParamChoices(controls[name], entries);
    QL_setParamValue(controls[name], value);
}

function setup() {
    popup("palette", "Palette", "Black and white|16 colors of the picture|Pure colors|Commodore 64|EGA", 5);
    popup("dither", "Dithering", "None|Floyd-Steinberg|Atkinson", 2);

    controls.block = QL_initParam("block", QL_Type.FLOAT, "Pixel size");
    QL_setParamMinMax(controls.block, 1, 64);
    QL_setParamValue(controls.block, 1);
    QL_setParamFlags(controls.block, QL_ParamFlags.ScaleByWidth);
    QL_setParamPrecision(controls.block, 0);    // after the flags, which hold it too

    shrink = QL_initShader("shrink");
    enlarge = QL_initShader("enlarge");
}

// This target if it has the size, else a new one in its place.
function ofSize(target, width, height) {
    var now = QL_getSurfaceDim(target);
    if (now && now[0] === width && now[1] === height) return target;
    QL_release(target);
    target = QL_initRenderTarget(width, height, 32);
    QL_setTextureParam(target, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(target, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    return target;
}

function reduce(target) {
    var palette = PALETTES[QL_getParamValue(controls.palette) - 1];
    var dither = DITHERS[QL_getParamValue(controls.dither) - 1];
    var surface = QL_textureToSurface(target);
    QL_surfaceQuantize(surface, false, palette, dither, 0.5, true);
    QL_surfaceCopyTo(surface, target, false);
    QL_release(surface);        // each frame makes a new one
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(output);
    var block = Math.max(QL_getParamValue(controls.block), 1);
    while (Math.ceil(size[0] / block) * Math.ceil(size[1] / block) >= MOST_BLOCKS) block *= 2;
    var columns = Math.ceil(size[0] / block);
    var rows = Math.ceil(size[1] / block);
    small = ofSize(small, columns, rows);

    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(shrink, "picture", picture);
    QL_setShaderParamVal(shrink, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(shrink, "smallSize", [columns, rows]);
    QL_setShaderParamVal(shrink, "blockSize", block);
    QL_renderShader(shrink, small, false);

    reduce(small);

    QL_setShaderParamVal(enlarge, "picture", picture);
    QL_setShaderParamVal(enlarge, "small", small);
    QL_setShaderParamVal(enlarge, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(enlarge, "smallSize", [columns, rows]);
    QL_setShaderParamVal(enlarge, "blockSize", block);
    QL_renderShader(enlarge, output, true);     // only the pass into the frame flips
}
