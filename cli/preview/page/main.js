// The page: what the author looks at is `view`; each change of it asks for a frame.
import { CostGraph } from "./cost.js";
import { NoteList, showFaults, showWarnings } from "./faults.js";
import { commandLine, copyText, download, saveValues } from "./output.js";
import { Panel } from "./panel.js";
import { paint } from "./pixels.js";
import { FrameQueue, InputPicture, listen, restartEffect, sendLayer } from "./server.js";
import { Stage } from "./stage.js";
import { Timeline } from "./timeline.js";
import { layerOf } from "./values.js";

const byId = (id) => document.getElementById(id);

let state = null;
let view = null;
let frame = null; // the last good one
let description = "";
const look = { channels: "color", behind: "checker", exposure: 0 };
let wipe = null;
const inputPicture = new InputPicture();
const cost = new CostGraph();
const notes = new NoteList(byId("notes"));

// Buttons of which one is chosen. Gives a function that shows which.
function choice(id, entries, choose) {
  const buttons = entries.map(([value, text, title]) => {
    const button = document.createElement("button");
    button.textContent = text;
    button.title = title ?? text;
    button.setAttribute("role", "radio");
    button.dataset.value = value;
    button.addEventListener("click", () => choose(value));
    return button;
  });
  byId(id).append(...buttons);
  return (chosen) => {
    for (const button of buttons) button.setAttribute("aria-checked", String(button.dataset.value === String(chosen)));
  };
}

function change(name, value) {
  if (!view || view[name] === value) return;
  view[name] = value;
  showChoices();
  ask();
}

function changeLook(name, value) {
  look[name] = value;
  showChoices();
  draw();
}

const showDepth = choice("depth", [[8, "8"], [16, "16"], [32, "32"]].map(([n, text]) => [n, text, text + " bits per channel"]), (value) => change("depth", value));
const showHost = choice("host", [[0, "AE", "After Effects"], [1, "Pr", "Premiere Pro"]], (value) => change("host", value));
const showChannels = choice("channels", [["color", "RGB"], ["red", "R"], ["green", "G"], ["blue", "B"], ["alpha", "A"], ["luminance", "L", "Luminance"]], (value) => changeLook("channels", value));
const showBehind = choice("behind", [["checker", "Checker"], ["black", "Black"], ["white", "White"], ["none", "Straight", "Colors as they are, without alpha"]], (value) => changeLook("behind", value));

for (const n of [1, 2, 3, 4, 8]) byId("downsample").append(new Option(n === 1 ? "Full" : `1/${n}`, n));
byId("downsample").addEventListener("change", () => change("downsample", Number(byId("downsample").value)));
byId("show").addEventListener("change", () => change("show", byId("show").value));
byId("exposure").addEventListener("input", () => changeLook("exposure", byId("exposure").valueAsNumber));

function showChoices() {
  showChannels(look.channels);
  showBehind(look.behind);
  byId("exposure-text").value = (look.exposure > 0 ? "+" : "") + look.exposure;
  if (!view) return;
  showDepth(view.depth);
  showHost(view.host);
  if (![...byId("downsample").options].some((option) => option.value === String(view.downsample)))
    byId("downsample").append(new Option(`1/${view.downsample}`, view.downsample));
  byId("downsample").value = view.downsample;
}

const stage = new Stage({
  onReadout: (text) => (byId("readout").value = text),
  onPoint: (name, x, y) => panel.movePoint(name, x, y),
  onWipe: (share) => {
    wipe = share;
    stage.setWipe(share);
    draw();
  },
  onZoom: (zoom) => (byId("zoom-text").textContent = `${Math.round(zoom * 100)} %`),
});

const timeline = new Timeline({
  onFrame: () => {
    view.frame = timeline.frame;
    view.fps = timeline.fps;
    ask();
  },
});

const panel = new Panel({
  onChange: () => {
    view.values = panel.values;
    stage.setPoints(panel.points());
    ask();
  },
  onLayer: async (control, file) => {
    const faults = await sendLayer(control.uniform, file?.name ?? "", file);
    if (faults) showFaults(byId("faults"), faults);
  },
});

const queue = new FrameQueue((answer) => {
  if (answer.isLost) {
    setConnection(false);
    timeline.stop();
    return;
  }
  notes.add(answer.notes);
  if (answer.faults) {
    timeline.stop();
    showFaults(byId("faults"), answer.faults);
    byId("stage").classList.add("old");
    setBusy(false);
    return;
  }
  frame = answer;
  showFaults(byId("faults"), []);
  byId("stage").classList.remove("old");
  panel.setStates(frame.states);
  stage.setPoints(view.show ? [] : panel.points());
  showTargets();
  showExtent();
  showWarnings(byId("warnings"), frame.warnings);
  cost.add(frame);
  draw();
  setBusy(false);
  timeline.advance();
});

function ask() {
  if (!view || !state?.description) return;
  setBusy(true);
  queue.request(view);
}

// Late, so that quick frames do not flicker.
let busyTimer = 0;
function setBusy(isBusy) {
  clearTimeout(busyTimer);
  if (!isBusy) byId("loading").hidden = true;
  else
    busyTimer = setTimeout(() => {
      byId("loading").textContent = "Rendering…";
      byId("loading").hidden = false;
    }, 400);
}

function setConnection(isThere) {
  if (isThere) {
    setBusy(false);
    return;
  }
  clearTimeout(busyTimer);
  byId("loading").textContent = "The tool does not answer. It may have ended; the page goes on when it is back.";
  byId("loading").hidden = false;
}

async function draw() {
  if (!frame) return;
  const shown = frame;
  const input = wipe === null || shown.view.show ? null : await inputPicture.at(shown.view);
  if (shown !== frame) return;
  paint(byId("picture"), frame, look, input, wipe);
  byId("picture").dataset.frame = JSON.stringify(frame.view);
  stage.setFrame(frame);
}

function showExtent() {
  const { width, height, origin, view: shown } = frame;
  const { input } = state.description;
  const n = shown.downsample;
  const isInput = width === Math.ceil(input.width / n) && height === Math.ceil(input.height / n);
  const place = isInput || shown.show ? "" : `, input at ${origin[0]}, ${origin[1]}`;
  const part = n === 1 || shown.show ? "" : `, 1/${n} of ${input.width} × ${input.height}`;
  byId("extent").textContent = `${width} × ${height}, ${frame.depth} bits${part}${place}`;
}

function showTargets() {
  const entries = [["", "Output"]];
  frame.targets.forEach((target, index) => {
    const name = target.name || String(index + 1);
    entries.push([name, `${name}  ${target.width} × ${target.height}, ${target.depth} bits`]);
  });
  const list = byId("show");
  const text = JSON.stringify(entries);
  if (list.dataset.entries !== text) {
    list.replaceChildren(...entries.map(([value, words]) => new Option(words, value)));
    list.dataset.entries = text;
  }
  list.value = view.show;
}

function take(next) {
  const isFirst = !view;
  state = next;
  document.title = `${state.name} – Quillon`;
  byId("name").textContent = state.name;
  if (!state.description) {
    showFaults(byId("faults"), state.faults);
    byId("loading").textContent = "Loading…";
    byId("loading").hidden = state.faults.length > 0;
    return;
  }
  view ??= state.view;
  const { input, warnings } = state.description;
  if (isFirst) {
    timeline.frame = view.frame;
    timeline.fps = view.fps;
  }
  timeline.setRange(input.first, input.last);
  view.frame = timeline.frame;
  const text = JSON.stringify([state.description, state.uploads]);
  if (text !== description) {
    description = text;
    notes.clear();
    notes.add(state.description.notes);
    panel.build(state.description, view.values, titlesOf(state));
    view.values = panel.values;
  }
  showWarnings(byId("warnings"), warnings);
  showChoices();
  inputPicture.forget();
  if (state.faults.length > 0) {
    timeline.stop();
    showFaults(byId("faults"), state.faults);
    byId("stage").classList.add("old");
    setBusy(false);
  } else {
    ask();
  }
}

// Of the layers' pictures: those named on the command line, and those that a page has sent.
function titlesOf(state) {
  const titles = {};
  for (const layer of state.layers) titles[layerOf(state, layer)] = layer.slice(layer.indexOf("=") + 1);
  return Object.assign(titles, state.uploads);
}

async function restart() {
  await restartEffect();
  ask();
}

for (const [value, text] of [["", "…"], ["picture.png", "PNG"], ["picture.exr", "EXR"], ["picture.tif", "TIFF"], ["values", "Values"]])
  byId("save").append(new Option(text, value));
byId("save").addEventListener("change", () => {
  const chosen = byId("save").value;
  byId("save").value = "";
  if (chosen === "values") saveValues(state, view);
  else if (chosen) download(`${state.name}-${view.frame}.${chosen.split(".")[1]}`, chosen);
});
byId("copy").addEventListener("click", async () => {
  await copyText(commandLine(state, view));
  byId("copy").textContent = "Copied";
  setTimeout(() => (byId("copy").textContent = "Copy command"), 1200);
});
byId("wipe").addEventListener("change", () => {
  wipe = byId("wipe").checked ? 0.5 : null;
  stage.setWipe(wipe);
  draw();
});
byId("zoom-in").addEventListener("click", () => stage.step(1));
byId("zoom-out").addEventListener("click", () => stage.step(-1));
byId("zoom-text").addEventListener("click", () => stage.zoomTo(1));
byId("zoom-fit").addEventListener("click", () => stage.fit());
byId("restart").addEventListener("click", restart);
byId("help-open").addEventListener("click", () => byId("help").showModal());

const kKeys = {
  " ": () => timeline.toggle(),
  ArrowLeft: (event) => timeline.step(event.shiftKey ? -10 : -1),
  ArrowRight: (event) => timeline.step(event.shiftKey ? 10 : 1),
  Home: () => timeline.go(timeline.first),
  End: () => timeline.go(timeline.last),
  1: () => stage.zoomTo(1),
  f: () => stage.fit(),
  "+": () => stage.step(1),
  "-": () => stage.step(-1),
  w: () => byId("wipe").click(),
  r: restart,
  "?": () => byId("help").showModal(),
};

// Controls that take keys themselves keep them.
document.addEventListener("keydown", (event) => {
  if (event.ctrlKey || event.metaKey || event.altKey || byId("help").open || !view) return;
  const own = event.target.closest?.("input, select, textarea, button, summary, [role=slider]");
  if (own && (own.matches("input, select, textarea, [role=slider]") || event.key === " ")) return;
  const action = kKeys[event.key];
  if (!action) return;
  event.preventDefault();
  action(event);
});

showChoices();
listen(take, setConnection);
