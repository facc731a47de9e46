// Host check. Writes into the frame what the host gives, a line for each claim: green where it is as it must be, red where
// it is not, gray where a person has to judge. docs/real-hosts.md leads through it.
//
// In the mode "Chart" it paints the chart that the mode "Check" expects as its input and as its layer.
//
// It counts frames and instances on purpose. That what it writes depends on them is meant:
// quillon-ignore render/frame-order, render/instances-share

var CHART = 1, APPLIED = 1;
var COLUMNS = 64, LINES = 30;           // of the sheet, in characters
var CELL_WIDTH = 8, CELL_HEIGHT = 12;   // pixels of a character
var VALUE_COLUMN = 26;
var GROWTH = 20;                        // pixels on each side

var GOOD = [0.0, 0.45, 0.15, 1], BAD = [0.75, 0.05, 0.05, 1], OPEN = [0.25, 0.25, 0.28, 1];
var INK = [1, 1, 1, 1];

var controls = {};
var chart, glyph, value, combine;
var font;
var sheet = 0;
var line, badLines;
var asked = [0, 0], askedNumber = 0;    // what preRender() was given and saw
var drawn = 0;                          // frames of all instances
var numbers = {};                       // the instance numbers, by output target
var before = {};                        // the time of the frame before, by output target

// The chart: four patches side by side, two rows, the top one first.
var PATCHES = [
    { name: "red, top left", color: [1, 0, 0, 1] },
    { name: "green", color: [0, 1, 0, 1] },
    { name: "blue", color: [0, 0, 1, 1] },
    { name: "white, top right", color: [1, 1, 1, 1] },
    { name: "gray, bottom left", color: [0.5, 0.5, 0.5, 1] },
    { name: "half transparent", color: [1, 0.5, 0, 0.5] },
    { name: "twice as bright as white", color: [2, 2, 2, 1] },
    { name: "black, bottom right", color: [0, 0, 0, 1] }
];

function slider(name, label, value, min, max, precision) {
    controls[name] = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(controls[name], min, max);
    QL_setParamValue(controls[name], value);
    QL_setParamPrecision(controls[name], precision);
}

function popup(name, label, entries, value) {
    controls[name] = QL_initParam(name, QL_Type.POPUP, label);
    QL_setParamChoices(controls[name], entries);
    QL_setParamValue(controls[name], value);
}

function other(name, kind, label, value) {
    controls[name] = QL_initParam(name, kind, label);
    if (value !== undefined) QL_setParamValue(controls[name], value);
}

function setup() {
    popup("mode", "Mode", "Chart|Check", CHART);
    popup("position", "Controls below are", "As applied|Moved", APPLIED);
    slider("slider", "Slider", 50, 0, 100, 1);
    other("angle", QL_Type.ANGLE, "Angle", 30);
    other("box", QL_Type.BOOL, "Check box", 1);
    popup("menu", "Menu", "One|Two|Three", 2);
    other("color", QL_Type.COLOR, "Color", [255, 128, 0, 255]);
    other("point", QL_Type.POINT2D, "Point", [0.25, 0.5]);
    other("space", QL_Type.POINT, "Point in space");
    other("layer", QL_Type.LAYER, "Layer with the chart");
    other("grows", QL_Type.BOOL, "Grow the frame", 0);
    slider("rate", "Frames per second", 25, 1, 240, 3);
    slider("instance", "Number of this instance", 1, 1, 9, 0);

    chart = QL_initShader("chart");
    glyph = QL_initShader("glyph");
    value = QL_initShader("value");
    combine = QL_initShader("combine");
    font = QL_initTexture("font.png");
    readAsItIs(font);
}

function readAsItIs(texture) {
    QL_setTextureParam(texture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(texture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
}

function get(name) {
    return QL_getParamValue(controls[name]);
}

function preRender(width, height) {
    asked = [width, height];
    askedNumber = get("instance");
    if (get("mode") !== CHART && get("grows") === 1) QL_setOutputExtent(width + 2 * GROWTH, height + 2 * GROWTH);
}

function updateUIFlags() {
    QL_setParamEnabled(controls.rate, get("mode") !== CHART);
}

// Text and papers of the sheet.

function viewport(column, columns) {
    return [column * CELL_WIDTH, line * CELL_HEIGHT, columns * CELL_WIDTH, CELL_HEIGHT];
}

function fill(color, column, columns) {
    QL_setShaderParamVal(glyph, "font", font);
    QL_setShaderParamVal(glyph, "code", 0);
    QL_setShaderParamVal(glyph, "paper", color);
    QL_setShaderParamVal(glyph, "ink", INK);
    QL_renderShader(glyph, sheet, false, viewport(column, columns));
}

function write(text, paper, column) {
    QL_setShaderParamVal(glyph, "paper", paper);
    for (var i = 0; i < text.length && column + i < COLUMNS; ++i) {
        if (text.charAt(i) === " ") continue;
        QL_setShaderParamVal(glyph, "code", text.charCodeAt(i) - 32);
        QL_renderShader(glyph, sheet, false, viewport(column + i, 1));
    }
}

// A line of the sheet; `isGood` is null where a person has to judge.
function say(label, text, isGood) {
    if (isGood === false) ++badLines;
    var paper = isGood === null ? OPEN : isGood ? GOOD : BAD;
    fill(paper, 0, COLUMNS);
    write(label, paper, 0);
    write(text, paper, VALUE_COLUMN);
    ++line;
}

// A line whose verdict the shader finds: the pixel of a picture at a patch of the chart.
function sayPixel(label, picture, patch, expected) {
    fill(OPEN, 0, COLUMNS);
    write(label + " " + PATCHES[patch].name, OPEN, 0);
    QL_setShaderParamVal(value, "font", font);
    QL_setShaderParamVal(value, "picture", picture);
    QL_setShaderParamVal(value, "place", [(patch % 4 + 0.5) / 4, (Math.floor(patch / 4) + 0.5) / 2]);
    QL_setShaderParamVal(value, "expected", expected);
    QL_setShaderParamVal(value, "good", GOOD);
    QL_setShaderParamVal(value, "bad", BAD);
    QL_renderShader(value, sheet, false, viewport(VALUE_COLUMN + 8, 24));
    ++line;
}

function near(seen, expected, allowed) {
    return Math.abs(seen - expected) <= allowed;
}

function number(value, digits) {
    return value.toFixed(digits);
}

function sayControls(size) {
    var moved = get("position") !== APPLIED;
    var color = get("color"), point = get("point"), space = get("space");
    var blue = [0, 0, 1, 1], orange = [1, 128 / 255, 0, 1];
    var wanted = moved ? blue : orange;
    var corner = moved ? [0, 0] : [size[0] * 0.25, size[1] * 0.5];
    say("Slider", number(get("slider"), 3), near(get("slider"), moved ? 75.5 : 50, 0.001));
    say("Angle", number(get("angle"), 3), near(get("angle"), moved ? 400 : 30, 0.001));
    say("Check box", number(get("box"), 0), get("box") === (moved ? 0 : 1));
    say("Menu", number(get("menu"), 0), get("menu") === (moved ? 3 : 2));
    say("Color", color.map(function (c) { return number(c, 3); }).join(" "),
        color.every(function (c, i) { return near(c, wanted[i], 0.003); }));
    say("Point, pixels", number(point[0], 2) + ", " + number(point[1], 2),
        near(point[0], corner[0], 1) && near(point[1], corner[1], 1));
    say("Point in space", space.map(function (c) { return number(c, 2); }).join(", "), null);
}

function sayFrame(size, extent) {
    var grows = get("grows") === 1;
    var comp = QL_getContextExtent(), origin = QL_getInputOrigin();
    var larger = [extent[0] - size[0], extent[1] - size[1]];
    say("Input", size[0] + " x " + size[1] + ", " + size[2] + " bits", [8, 16, 32].indexOf(size[2]) >= 0);
    say("Output", extent[0] + " x " + extent[1] + ", " + extent[2] + " bits",
        size[2] === extent[2] && (grows ? larger[0] > 0 && larger[1] > 0 : larger[0] <= 0 && larger[1] <= 0));
    say("preRender() was given", asked[0] + " x " + asked[1], near(asked[0], size[0], 1) && near(asked[1], size[1], 1));
    say("Layer's corner in it", number(origin[0], 0) + ", " + number(origin[1], 0),
        // The classic route cuts a pixel off.
        grows ? null : near(origin[0], 0, 1) && near(origin[1], 0, 1));
    say("Composition", comp[0] + " x " + comp[1] + ", pixels " + number(comp[2], 4) + " wide", null);
    say("Preview is 1 /", number(comp[0] / size[0], 2) + ", if the layer fills it", null);
}

function sayTime(output) {
    var time = QL_getTime(), frame = time * get("rate");
    say("Time, frame", number(time, 4) + " s, " + number(frame, 3), near(frame, Math.round(frame), 0.01));
    say("Frame before, drawn", (before[output] === undefined ? "none" : number(before[output], 4) + " s") + ", " + drawn,
        null);
    before[output] = time;
}

function sayInstances(output) {
    var mine = Math.round(get("instance")), others = [], isAlone = true;
    numbers[output] = mine;
    Object.keys(numbers).forEach(function (key) {
        if (key === String(output)) return;
        others.push(numbers[key]);
        if (numbers[key] === mine) isAlone = false;
    });
    say("Instance " + mine + ", others", others.length ? others.join(" ") : "none", isAlone);
    say("The same in preRender()", number(askedNumber, 0), Math.round(askedNumber) === mine);
}

function drawSheet(picture, output, size, extent) {
    var i, white = size[2] === 32 ? 2 : 1;
    line = badLines = 0;
    fill([0, 0, 0, 1], 0, COLUMNS);
    write("QUILLON HOST CHECK", [0, 0, 0, 1], 0);
    write("seen: red green blue alpha", [0, 0, 0, 1], VALUE_COLUMN + 8);
    ++line;
    for (i = 0; i < PATCHES.length; ++i)
        sayPixel("Input,", picture, i, i === 6 ? [white, white, white, 1] : PATCHES[i].color);
    var layer = get("layer"), layerSize = QL_getSurfaceDim(layer);
    if (layerSize && layerSize[0] > 2) {
        readAsItIs(controls.layer);
        sayPixel("Layer,", layer, 0, PATCHES[0].color);
        sayPixel("Layer,", layer, 5, PATCHES[5].color);
    } else {
        say("Layer", "none is chosen", null);
    }
    sayFrame(size, extent);
    sayTime(output);
    sayControls(size);
    sayInstances(output);
    var bad = badLines;
    say(bad === 0 ? "No red line below the pixels" : bad + " red lines below the pixels", "", bad === 0);
    while (line < LINES) {
        fill([0, 0, 0, 0], 0, COLUMNS);
        ++line;
    }
}

// Pixels of the frame for one of the sheet: whole ones where there is room.
function scaleFor(extent) {
    var scale = Math.min(extent[0] / (COLUMNS * CELL_WIDTH), extent[1] / (LINES * CELL_HEIGHT));
    return scale > 1 ? Math.floor(scale) : scale;
}

function draw() {
    var picture = QL_getSequenceTexture(), output = QL_getSequenceRT();
    var size = QL_getSurfaceDim(picture), extent = QL_getSurfaceDim(output);
    ++drawn;
    if (get("mode") === CHART) {
        QL_renderShader(chart, output, true);
        return;
    }
    if (!sheet) {
        sheet = QL_initRenderTarget(COLUMNS * CELL_WIDTH, LINES * CELL_HEIGHT, 8);
        readAsItIs(sheet);
    }
    readAsItIs(picture);
    drawSheet(picture, output, size, extent);

    QL_setShaderParamVal(combine, "picture", picture);
    QL_setShaderParamVal(combine, "sheet", sheet);
    QL_setShaderParamVal(combine, "outputSize", [extent[0], extent[1]]);
    QL_setShaderParamVal(combine, "sheetSize", [COLUMNS * CELL_WIDTH, LINES * CELL_HEIGHT]);
    QL_setShaderParamVal(combine, "scale", scaleFor(extent));
    QL_renderShader(combine, output, true);
}
