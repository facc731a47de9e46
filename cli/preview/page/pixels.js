// From a host's channels to the opaque pixels of a canvas, exactly: a canvas keeps colors multiplied by alpha and would
// lose what is under a soft one, so that alpha is mixed here.

const kFullScale = { 8: 255, 16: 32768, 32: 1 };

// What every value of a channel looks like, 0 to 255, where there are few enough; rounded to the nearest.
function tableOf(depth, gain) {
  const full = kFullScale[depth];
  const table = new Uint8ClampedArray(depth === 8 ? 256 : 65536);
  for (let i = 0; i < table.length; ++i) table[i] = Math.floor(Math.min((i / full) * gain, 1) * 255 + 0.5);
  return table;
}

// A function from a channel's value to 0 to 255.
function brightness(depth, stops) {
  const gain = 2 ** stops;
  if (depth !== 32) {
    const table = tableOf(depth, gain);
    return (value) => table[value];
  }
  return (value) => (value * gain > 0 ? Math.floor(Math.min(value * gain, 1) * 255 + 0.5) : 0);
}

const kSquare = 8; // pixels of the checkerboard
const kBackgrounds = {
  checker: (x, y) => ((x / kSquare) ^ (y / kSquare)) & 1 ? 102 : 153,
  black: () => 0,
  white: () => 255,
};

const gray = (value) => 0xff000000 | (value << 16) | (value << 8) | value;

// One of the views of a picture: a function from the index of a pixel's first channel and its place to a pixel, in the
// byte order of an ImageData.
function viewOf(frame, look) {
  const c = frame.channels;
  const show = brightness(frame.depth, look.exposure);
  const plain = brightness(frame.depth, 0);
  const single = { alpha: 0, red: 1, green: 2, blue: 3 }[look.channels];
  if (single === 0) return (i) => gray(plain(c[i]));
  if (single) return (i) => gray(show(c[i + single]));
  if (look.channels === "luminance") return (i) => gray(luminance(c, i, frame.depth, look.exposure));
  const behind = kBackgrounds[look.behind];
  return (i, x, y) => {
    let red = show(c[i + 1]), green = show(c[i + 2]), blue = show(c[i + 3]);
    const alpha = behind ? plain(c[i]) : 255;
    if (alpha !== 255) {
      const rest = behind(x, y) * (255 - alpha) + 127;
      red = ((red * alpha + rest) / 255) | 0;
      green = ((green * alpha + rest) / 255) | 0;
      blue = ((blue * alpha + rest) / 255) | 0;
    }
    return 0xff000000 | (blue << 16) | (green << 8) | red;
  };
}

// BT.709, of the numbers as they are.
function luminance(c, i, depth, stops) {
  const value = ((0.2126 * c[i + 1] + 0.7152 * c[i + 2] + 0.0722 * c[i + 3]) / kFullScale[depth]) * 2 ** stops;
  return value > 0 ? Math.floor(Math.min(value, 1) * 255 + 0.5) : 0;
}

// Paints the frame, and left of `wipe`, a share of its width, the input.
export function paint(canvas, frame, look, input, wipe) {
  const { width, height } = frame;
  if (canvas.width !== width || canvas.height !== height) {
    canvas.width = width;
    canvas.height = height;
  }
  const context = canvas.getContext("2d");
  const image = context.createImageData(width, height);
  const pixels = new Uint32Array(image.data.buffer);
  const show = viewOf(frame, look);
  const edge = input ? Math.round(wipe * width) : 0;
  for (let y = 0; y < height; ++y) {
    let i = y * width + edge;
    for (let x = edge; x < width; ++x, ++i) pixels[i] = show(4 * i, x, y);
  }
  if (edge > 0) paintInput(pixels, frame, input, viewOf(input, look), look, edge);
  context.putImageData(image, 0, 0);
}

function paintInput(pixels, frame, input, show, look, edge) {
  const [left, top] = frame.origin;
  const behind = kBackgrounds[look.behind] ?? (() => 0);
  for (let y = 0; y < frame.height; ++y) {
    for (let x = 0; x < edge; ++x) {
      const inputX = x - left, inputY = y - top;
      const isInside = inputX >= 0 && inputY >= 0 && inputX < input.width && inputY < input.height;
      pixels[y * frame.width + x] = isInside
        ? show(4 * (inputY * input.width + inputX), x, y)
        : gray(behind(x, y));
    }
  }
}

// The numbers of one pixel, as the host has them: red, green, blue, alpha.
export function readPixel(frame, x, y) {
  const i = 4 * (y * frame.width + x);
  const c = frame.channels;
  return [c[i + 1], c[i + 2], c[i + 3], c[i]];
}
