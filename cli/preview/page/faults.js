// What is wrong with the effect: the tool's own words, the author's line, and the place to copy.

import { copyText } from "./output.js";

const kNotes = 200;

function placeOf(fault) {
  let place = fault.file ?? fault.path;
  if (fault.line > 0) place += ":" + fault.line;
  if (fault.line > 0 && fault.column > 0) place += ":" + fault.column;
  return place;
}

function line(name, className, text) {
  const made = document.createElement(name);
  made.className = className;
  made.textContent = text;
  return made;
}

function show(fault) {
  const root = document.createElement("div");
  root.className = "fault " + fault.severity;
  const head = document.createElement("div");
  const place = placeOf(fault);
  if (place) {
    const copy = document.createElement("button");
    copy.textContent = place;
    copy.title = "Copy the place";
    copy.addEventListener("click", () => copyText(fault.line > 0 ? `${fault.path}:${fault.line}` : fault.path));
    head.append(copy, " ");
  }
  head.append(fault.text.trim(), " ");
  if (fault.kind !== "tool") head.append(line("span", "kind", `[${fault.kind}]`));
  root.append(head);
  if (fault.source) {
    const column = fault.column || fault.source.search(/\S/) + 1;
    const caret = fault.source.slice(0, column - 1).replace(/[^\t]/g, " ") + "^";
    root.append(line("pre", "", fault.column ? fault.source + "\n" + caret : fault.source));
  }
  if (fault.remedy) root.append(line("div", "remedy", fault.remedy));
  return root;
}

export function showFaults(root, faults) {
  root.replaceChildren(...faults.map(show));
}

// What the script prints, the last lines of it.
export class NoteList {
  constructor(root) {
    this.root = root;
    this.lines = [];
    root.querySelector("button").addEventListener("click", () => this.clear());
  }

  add(notes = []) {
    if (notes.length === 0) return;
    this.lines = [...this.lines, ...notes].slice(-kNotes);
    const list = this.root.querySelector("pre");
    list.textContent = this.lines.join("\n");
    this.root.hidden = false;
    list.scrollTop = list.scrollHeight;
  }

  clear() {
    this.lines = [];
    this.root.hidden = true;
  }
}

export function showWarnings(root, warnings) {
  root.hidden = warnings.length === 0;
  root.firstElementChild.textContent = warnings.length === 1 ? "1 warning" : `${warnings.length} warnings`;
  showFaults(root.lastElementChild, warnings);
}
