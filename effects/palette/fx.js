// Palette. Few colors, dithered, in pixels as large as one likes.
//
//   shrink   the picture at one pixel a block, twice: with its alpha, and opaque for the reduction
//   CPU      the opaque one is taken to the CPU, reduced, and copied back
//   draw     the blocks at full size: colors of the one, alpha of the other
//
// Both small pictures hold floats, whatever the depth of the project. The reduction works on floats anyway, and a
// surface of 16 bits per channel would be off: its values run to 65535 where the reduction takes 32768 for 1.
//
// The reduction counts alpha among the things by which two colors differ. Over soft or transparent parts it would
// choose other colors and hand the error on, so what it gets is opaque.

var BITS = 32;
var LARGEST = 64;             // pixel size; the loops in shrink.frag end there
var MOST_BLOCKS = 1 << 25;    // a float target of so many pixels, 512 MiB, can no longer be taken to the CPU

var BLACK_AND_WHITE = 1, ALL_COLORS = 8, FIRST_FIXED = 9;
// A popup's value is the number that the reduction knows the palette by.
var PALETTES = [
    "Black and white",
    "8 colors of the picture",
    "16 colors of the picture",
    "32 colors of the picture",
    "64 colors of the picture",
    "128 colors of the picture",
    "256 colors of the picture",
    "All colors",
    "RGB, 8 pure colors",
    "Desktop, 16 colors",
    "Apple II, 15 colors",
    "VIC-20, 16 colors",
    "Commodore 64, 16 colors",
    "CGA cyan, magenta, gray",
    "CGA cyan, magenta, white",
    "CGA green, red, brown",
    "CGA green, red, yellow",
    "CGA cyan, red, gray",
    "CGA cyan, red, white",
    "EGA, 16 colors",
    "MSX, 15 colors"
];

var NONE = 1, FIRST_ORDERED = 13;
var BLACK_AND_WHITE_SPREAD = 0.2;
// `code` is what the reduction knows the dithering by. `mean` is the mean of an ordered pattern, which runs from almost
// 0 to 1 and so makes a picture brighter by that much of the amount.
var DITHERS = [
    { code: NONE, name: "None" },
    { code: 3, name: "Floyd-Steinberg" },
    { code: 4, name: "Jarvis, Judice and Ninke" },
    { code: 5, name: "Stucki" },
    { code: 6, name: "Atkinson" },
    { code: 7, name: "Burkes" },
    { code: 8, name: "Sierra" },
    { code: 9, name: "Sierra, two rows" },
    { code: 10, name: "Sierra Lite" },
    { code: 11, name: "Stevenson-Arce" },
    { code: FIRST_ORDERED, name: "Pattern 2 x 2", mean: 0.625 },
    { code: 14, name: "Pattern 4 x 4", mean: 0.5 },
    { code: 15, name: "Pattern 8 x 8", mean: 0.5 }
];

var controls = {};
var shrink, enlarge;
var small = 0, reduced = 0;   // targets

function popup(name, label, choices, value) {
    controls[name] = QL_initParam(name, QL_Type.POPUP, label);
    QL_setParamChoices(controls[name], choices.join("|"));
    QL_setParamValue(controls[name], value);
}

function slider(name, label, value, min, max, flags, precision) {
    controls[name] = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(controls[name], min, max);
    QL_setParamValue(controls[name], value);
    QL_setParamFlags(controls[name], flags);
    QL_setParamPrecision(controls[name], precision);  // after the flags, which hold it too
}

function checkbox(name, label) {
    controls[name] = QL_initParam(name, QL_Type.BOOL, label);
}

function setup() {
    popup("palette", "Palette", PALETTES, 20);
    popup("dither", "Dithering", DITHERS.map(function (dither) { return dither.name; }), 2);
    slider("amount", "Threshold or pattern amount", 0.5, 0, 1, QL_ParamFlags.NONE, 2);
    checkbox("serpentine", "Every other row backward");
    checkbox("grayscale", "Grayscale first");
    slider("pixelSize", "Pixel size", 1, 1, LARGEST, QL_ParamFlags.ScaleByWidth, 0);

    shrink = QL_initShader("shrink");
    enlarge = QL_initShader("enlarge");
}

function chosenDither() {
    return DITHERS[QL_getParamValue(controls.dither) - 1] || DITHERS[0];
}

// Gray out what the palette and the dithering make no use of.
function updateUIFlags() {
    var palette = QL_getParamValue(controls.palette);
    var dither = chosenDither().code;
    var reduces = palette !== ALL_COLORS;
    QL_setParamEnabled(controls.dither, reduces);
    QL_setParamEnabled(controls.amount, palette === BLACK_AND_WHITE || (reduces && dither >= FIRST_ORDERED));
    QL_setParamEnabled(controls.serpentine, reduces && dither > NONE && dither < FIRST_ORDERED);
    QL_setParamEnabled(controls.grayscale, palette !== BLACK_AND_WHITE);
}

// This target if it has the size, else a new one in its place. The size must be exact, since the reduction takes the
// whole of a target: instances of different sizes make their targets anew, frame by frame.
function ofSize(target, width, height) {
    var now = QL_getSurfaceDim(target);
    if (now && now[0] === width && now[1] === height) return target;
    QL_release(target);
    return QL_initRenderTarget(width, height, BITS);
}

// What the shader takes off the picture, so that a pattern leaves it as bright as it was. A palette of the picture
// itself would move along; there a pattern brightens.
function darkening(palette, dither, amount) {
    return palette >= FIRST_FIXED && dither.mean ? dither.mean * amount : 0;
}

function reduce(target, palette, dither, amount) {
    if (palette === BLACK_AND_WHITE && dither.mean) amount += dither.mean * BLACK_AND_WHITE_SPREAD;
    var surface = QL_textureToSurface(target);
    QL_surfaceQuantize(surface, QL_getParamValue(controls.grayscale), palette, dither.code, amount,
                       QL_getParamValue(controls.serpentine));
    QL_surfaceCopyTo(surface, target, false);
    QL_release(surface);      // each frame makes a new one
}

function takePixelsAsTheyAre(texture) {
    QL_setTextureParam(texture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(texture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
}

function blocksAlong(length, block) {
    return Math.max(Math.ceil(length / block - 0.001), 1);
}

function draw() {
    var picture = QL_getSequenceTexture();
    var output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(picture) || QL_getSurfaceDim(output);
    var palette = QL_getParamValue(controls.palette);
    var dither = chosenDither();
    var amount = QL_getParamValue(controls.amount);

    // In a preview at reduced size this may lie between whole numbers; the blocks are then of uneven size.
    var block = Math.min(Math.max(QL_getParamValue(controls.pixelSize), 1), LARGEST);
    while (blocksAlong(size[0], block) * blocksAlong(size[1], block) >= MOST_BLOCKS) ++block;
    var columns = blocksAlong(size[0], block);
    var rows = blocksAlong(size[1], block);
    small = ofSize(small, columns, rows);
    reduced = ofSize(reduced, columns, rows);

    takePixelsAsTheyAre(picture);
    QL_setShaderParamVal(shrink, "picture", picture);
    QL_setShaderParamVal(shrink, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(shrink, "smallSize", [columns, rows]);
    QL_setShaderParamVal(shrink, "block", block);
    QL_setShaderParamVal(shrink, "opaque", false);
    QL_setShaderParamVal(shrink, "darkening", 0);
    QL_renderShader(shrink, small, false);
    QL_setShaderParamVal(shrink, "opaque", true);
    QL_setShaderParamVal(shrink, "darkening", darkening(palette, dither, amount));
    QL_renderShader(shrink, reduced, false);

    reduce(reduced, palette, dither, amount);

    takePixelsAsTheyAre(small);
    takePixelsAsTheyAre(reduced);
    QL_setShaderParamVal(enlarge, "small", small);
    QL_setShaderParamVal(enlarge, "reduced", reduced);
    QL_setShaderParamVal(enlarge, "pictureSize", [size[0], size[1]]);
    QL_setShaderParamVal(enlarge, "smallSize", [columns, rows]);
    QL_setShaderParamVal(enlarge, "block", block);
    QL_renderShader(enlarge, output, true);
}
