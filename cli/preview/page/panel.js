// The effect's controls, as its artist's host shows them: the same order, groups, names, ranges, and what is switched off.
import { makeControl } from "./widgets.js";
import { defaultText, hasValue } from "./values.js";

export class Panel {
  // `onChange` is called without arguments after `view.values` has changed; `onLayer` with a control and a File or null.
  constructor({ onChange, onLayer }) {
    this.root = document.getElementById("controls");
    this.onChange = onChange;
    this.onLayer = onLayer;
    this.items = [];
    document.getElementById("reset-all").addEventListener("click", () => {
      this.values = {};
      this.refresh();
      this.onChange();
    });
  }

  // Builds the list anew. Values whose control has another kind now are dropped.
  build(description, values, uploads) {
    this.input = description.input;
    this.values = {};
    this.items = [];
    const open = [];
    const root = document.createDocumentFragment();
    let place = root;
    for (const control of description.controls) {
      const kept = values[control.uniform];
      if (kept && kept.kind === control.kind && hasValue(control)) this.values[control.uniform] = kept;
      if (control.kind === "GROUP_START") {
        const group = document.createElement("details");
        group.className = "group";
        group.open = !this.closed?.has(control.uniform);
        group.addEventListener("toggle", () => this.noteGroup(control.uniform, group.open));
        const name = document.createElement("summary");
        name.textContent = control.name;
        const inside = document.createElement("div");
        group.append(name, inside);
        place.append(group);
        open.push(place);
        place = inside;
        this.items.push({ control, setState: (text) => (name.textContent = text) });
      } else if (control.kind === "GROUP_END") {
        place = open.pop() ?? root;
        this.items.push({ control, setState: () => {} });
      } else {
        const item = makeControl(control, {
          input: this.input,
          title: uploads[control.uniform],
          set: (text) => this.set(control, text),
          reset: () => this.reset(control),
          setLayer: (file) => this.onLayer(control, file),
        });
        place.append(item.element);
        this.items.push(item);
      }
    }
    this.root.replaceChildren(root);
    if (this.items.length === 0) this.root.textContent = "This effect has no controls.";
    this.refresh();
  }

  noteGroup(name, isOpen) {
    this.closed ??= new Set();
    if (isOpen) this.closed.delete(name);
    else this.closed.add(name);
  }

  textOf(control) {
    return this.values[control.uniform]?.text ?? defaultText(control, this.input);
  }

  set(control, text) {
    if (text === defaultText(control, this.input)) delete this.values[control.uniform];
    else this.values[control.uniform] = { kind: control.kind, text };
    this.refresh();
    this.onChange();
  }

  reset(control) {
    if (control.kind === "LAYER") {
      this.onLayer(control, null);
      return;
    }
    delete this.values[control.uniform];
    this.refresh();
    this.onChange();
  }

  refresh() {
    for (const item of this.items) {
      if (!item.show || !hasValue(item.control)) continue;
      item.show(this.textOf(item.control));
      item.element.classList.toggle("changed", item.control.uniform in this.values);
    }
  }

  // For each control its name and whether it is on, as the effect's updateUIFlags() has left them.
  setStates(states) {
    states.forEach(([name, isOn], index) => this.items[index]?.setState(name, isOn));
  }

  // The positions that have a handle on the picture.
  points() {
    return this.items
      .filter(({ control, isOff }) => (control.kind === "POINT2D" || control.kind === "POINT") && !isOff)
      .map(({ control }) => {
        const [x, y] = this.textOf(control).split(",").map(Number);
        return { name: control.uniform, label: control.name, x, y };
      });
  }

  movePoint(name, x, y) {
    const { control } = this.items.find((item) => item.control.uniform === name && item.show);
    const numbers = this.textOf(control).split(",");
    numbers[0] = String(Math.round(x * 10) / 10);
    numbers[1] = String(Math.round(y * 10) / 10);
    this.set(control, numbers.join(","));
  }
}
