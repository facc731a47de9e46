// One control each. A widget shows a text and calls `set` with another one; see values.js for the texts.
import { colorOf, colorText, entryText, isColor, isNumbers, round } from "./values.js";

function element(name, attributes = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (key.startsWith("on")) made.addEventListener(key.slice(2), value);
    else if (key in made && typeof value !== "string") made[key] = value;
    else made.setAttribute(key, value);
  }
  made.append(...children);
  return made;
}

// A box for a number. Typed values count when they are whole, and end at the host's own limits.
function numberBox(label, { min = -Infinity, max = Infinity, step = "any" }, set) {
  const box = element("input", { type: "number", step: String(step), "aria-label": label });
  box.addEventListener("change", () => {
    if (box.value === "" || Number.isNaN(box.valueAsNumber)) return;
    set(String(Math.min(Math.max(box.valueAsNumber, min), max)));
  });
  return box;
}

function slider(control, { set }) {
  const digits = Math.min(control.precision, 7);
  const step = 10 ** -digits;
  const hasRange = control.slider_max > control.slider_min;
  const limits = control.valid_max > control.valid_min ? { min: control.valid_min, max: control.valid_max } : {};
  const box = numberBox(control.name, { ...limits, step }, set);
  const show = (text) => (box.value = String(round(Number(text), digits + 2)));
  if (!hasRange) return { parts: [box], show };
  const range = element("input", {
    type: "range", min: String(control.slider_min), max: String(control.slider_max), step: String(step),
    "aria-label": control.name, oninput: () => set(String(round(range.valueAsNumber, digits))),
  });
  return {
    parts: [range, box],
    show: (text) => {
      show(text);
      range.value = text;
    },
  };
}

const kDial = '<circle cx="15" cy="15" r="14"/><line x1="15" y1="15" x2="15" y2="4"/>';

// Degrees clockwise from the top, with whole turns.
function angle(control, { set }) {
  const dial = document.createElementNS("http://www.w3.org/2000/svg", "svg");
  dial.setAttribute("class", "dial");
  dial.setAttribute("aria-hidden", "true");
  dial.innerHTML = kDial;
  const turns = element("span", { class: "turns" });
  const box = numberBox(control.name, { step: 1 }, set);
  let degrees = 0;
  const directionOf = (event) => {
    const area = dial.getBoundingClientRect();
    const x = event.clientX - area.left - area.width / 2, y = event.clientY - area.top - area.height / 2;
    return (Math.atan2(x, -y) * 180) / Math.PI;
  };
  dial.addEventListener("pointerdown", (event) => {
    if (box.disabled) return;
    dial.setPointerCapture(event.pointerId);
    let last = directionOf(event);
    let exact = degrees;
    const move = (moved) => {
      const now = directionOf(moved);
      exact += ((now - last + 540) % 360) - 180;
      last = now;
      set(String(moved.shiftKey ? Math.round(exact / 15) * 15 : Math.round(exact)));
    };
    dial.addEventListener("pointermove", move);
    dial.addEventListener("pointerup", () => dial.removeEventListener("pointermove", move), { once: true });
  });
  return {
    parts: [dial, box, turns],
    show: (text) => {
      degrees = Number(text);
      box.value = String(round(degrees, 4));
      dial.lastElementChild.setAttribute("transform", `rotate(${degrees % 360} 15 15)`);
      const whole = Math.trunc(degrees / 360);
      turns.textContent = whole === 0 ? "" : `${whole} × 360° ${degrees % 360 < 0 ? "−" : "+"} ${round(Math.abs(degrees % 360), 1)}°`;
    },
  };
}

function checkbox(control, { set }) {
  const box = element("input", {
    type: "checkbox", "aria-label": control.name, onchange: () => set(box.checked ? "true" : "false"),
  });
  return { parts: [box], show: (text) => (box.checked = text === "true" || text === "1") };
}

function popup(control, { set }) {
  const list = element("select", { "aria-label": control.name, onchange: () => set(list.value) });
  control.choices.forEach((text, index) =>
    list.append(element("option", { value: entryText(control, index + 1) }, text)));
  return { parts: [list], show: (text) => (list.value = control.choices.includes(text) ? text : entryText(control, Number(text))) };
}

function color(control, { set }) {
  let numbers = [0, 0, 0, 1];
  const well = element("input", {
    type: "color", "aria-label": control.name,
    oninput: () => set(colorText([...colorOf(well.value).slice(0, 3), numbers[3]])),
  });
  const text = element("input", {
    type: "text", "aria-label": control.name + " as text", spellcheck: "false",
    onchange: () => {
      if (isColor(text.value.trim())) set(text.value.trim());
    },
  });
  const alpha = element("input", {
    type: "range", min: "0", max: "255", step: "1", title: "Alpha", "aria-label": control.name + ", alpha",
    oninput: () => set(colorText([...numbers.slice(0, 3), alpha.valueAsNumber / 255])),
  });
  return {
    parts: [well, text, alpha],
    show: (shown) => {
      numbers = colorOf(shown);
      well.value = colorText(numbers).slice(0, 7);
      alpha.value = String(Math.round(numbers[3] * 255));
      text.value = shown;
    },
  };
}

function position(control, { set }) {
  const names = control.kind === "POINT" ? ["x", "y", "z"] : ["x", "y"];
  let numbers = [];
  const boxes = names.map((name, index) =>
    numberBox(`${control.name}, ${name}`, {}, (text) => {
      const changed = [...numbers];
      changed[index] = text;
      if (isNumbers(changed.join(","), names.length, names.length)) set(changed.join(","));
    }));
  return {
    parts: boxes,
    isNumbers: true,
    show: (text) => {
      numbers = text.split(",");
      boxes.forEach((box, index) => (box.value = numbers[index]));
    },
  };
}

// A picture chosen or dropped. The tool is sent its bytes.
function layer(control, { title, setLayer }) {
  const name = element("span", { class: "layer-name" }, title || "None");
  const file = element("input", { type: "file", accept: "image/*,.exr,.tif,.tiff,.psd,.hdr,.tga", hidden: true });
  file.addEventListener("change", () => file.files[0] && setLayer(file.files[0]));
  const choose = element("button", { "aria-label": `${control.name}: choose a picture`, onclick: () => file.click() }, "Choose…");
  const none = element("button", { "aria-label": `${control.name}: none`, onclick: () => setLayer(null) }, "None");
  return {
    parts: [name, file, choose, none],
    show: () => {},
    prepare: (root) => {
      root.addEventListener("dragover", (event) => {
        event.preventDefault();
        root.classList.add("drop");
      });
      root.addEventListener("dragleave", () => root.classList.remove("drop"));
      root.addEventListener("drop", (event) => {
        event.preventDefault();
        root.classList.remove("drop");
        if (event.dataTransfer.files[0]) setLayer(event.dataTransfer.files[0]);
      });
    },
  };
}

// What a host's panel has no value for.
function other() {
  return { parts: [element("span", { class: "layer-name" }, "None")], show: () => {} };
}

const kWidgets = { FLOAT: slider, ANGLE: angle, BOOL: checkbox, POPUP: popup, COLOR: color, POINT2D: position, POINT: position, LAYER: layer };

// The row of a control: {element, control, isOff, show(text), setState(name, isOn)}.
export function makeControl(control, actions) {
  const widget = (kWidgets[control.kind] ?? other)(control, actions);
  const label = element("span", { class: "label", title: `${control.label} (${control.uniform})` }, control.name);
  label.addEventListener("dblclick", actions.reset);
  const reset = element("button", { class: "reset", title: "Reset", "aria-label": `Reset ${control.name}`, onclick: actions.reset }, "↺");
  const parts = element("div", { class: widget.isNumbers ? "parts numbers" : "parts" }, ...widget.parts, reset);
  const root = element("div", { class: "control", "data-name": control.uniform, "data-kind": control.kind }, label, parts);
  widget.prepare?.(root);
  const item = { element: root, control, isOff: false, show: widget.show };
  item.setState = (name, isOn) => {
    label.textContent = name;
    item.isOff = !isOn;
    root.classList.toggle("off", !isOn);
    for (const part of parts.querySelectorAll("input, select, button")) part.disabled = !isOn;
  };
  return item;
}
