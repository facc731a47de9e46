// Values of controls as `quillon render --set` takes them, by the control's kind.

const kNumber = /^\s*[-+]?(\d+\.?\d*|\.\d+)(e[-+]?\d+)?\s*$/i;

export function isNumbers(text, least, most) {
  const parts = text.split(",");
  return parts.length >= least && parts.length <= most && parts.every((part) => kNumber.test(part));
}

const hex = (byte) => byte.toString(16).padStart(2, "0");

// A color's four numbers, 0 to 1, of either form of text.
export function colorOf(text) {
  if (text.startsWith("#")) {
    const bytes = text.slice(1).match(/../g).map((digits) => parseInt(digits, 16) / 255);
    return bytes.length === 3 ? [...bytes, 1] : bytes;
  }
  const numbers = text.split(",").map(Number);
  return numbers.length === 3 ? [...numbers, 1] : numbers;
}

export function isColor(text) {
  return /^#([0-9a-f]{6}|[0-9a-f]{8})$/i.test(text) || isNumbers(text, 3, 4);
}

export function colorText(numbers) {
  return "#" + numbers.map((number) => hex(Math.round(Math.min(Math.max(number, 0), 1) * 255))).join("");
}

const entryText = (control, index) => {
  const text = control.choices[index - 1] ?? "";
  return text !== "" && control.choices.indexOf(text) === index - 1 ? text : String(index);
};

// The text of each kind's default. A position's default is a share of the input.
const kDefaults = {
  FLOAT: (control) => String(control.default),
  ANGLE: (control) => String(control.default),
  BOOL: (control) => (control.default ? "true" : "false"),
  POPUP: (control) => entryText(control, control.default),
  COLOR: (control) => "#" + control.default.map(hex).join(""),
  POINT: (control) => control.default.join(","),
  POINT2D: (control, input) =>
    [control.default_share[0] * input.width, control.default_share[1] * input.height].map(round).join(","),
};

export function round(number, digits = 2) {
  return Number(number.toFixed(digits));
}

export function hasValue(control) {
  return control.kind in kDefaults;
}

export function defaultText(control, input) {
  return kDefaults[control.kind](control, input);
}

export { entryText };

// The uniform of the control that a NAME=FILE of the command line is for: a uniform's name or a label.
export function layerOf(state, assignment) {
  const name = assignment.slice(0, assignment.indexOf("="));
  const { controls } = state.description;
  return (controls.find(({ uniform }) => uniform === name) ?? controls.find((control) => control.name === name))?.uniform;
}
