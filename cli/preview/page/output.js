// What leaves the page: the command line that renders the same picture, the picture, the values.

import { layerOf } from "./values.js";

const kHosts = ["after-effects", "premiere"];

function quote(text, system) {
  if (/^[\w@%+=:,./-]+$/.test(text)) return text;
  return system === "Windows" ? `"${text.replaceAll('"', '\\"')}"` : `'${text.replaceAll("'", "'\\''")}'`;
}

// The picture at one frame of a still is that of the same moment, so that --frames says which.
export function commandLine(state, view) {
  const input = state.input || "chart.png";
  const words = ["quillon", "render", state.effect, "-i", input, "-o", `${state.name.replace(/\.\w+$/, "")}-${view.frame}.${view.depth === 32 ? "exr" : "png"}`];
  words.push("--depth", String(view.depth), "--frames", `${view.frame}-${view.frame}`, "--fps", String(view.fps));
  for (const [name, { text }] of Object.entries(view.values)) words.push("--set", `${name}=${text}`);
  for (const layer of state.layers) if (!(layerOf(state, layer) in state.uploads)) words.push("--layer", layer);
  for (const [name, title] of Object.entries(state.uploads)) if (title) words.push("--layer", `${name}=${title}`);
  if (view.show) words.push("--show", view.show);
  if (view.host !== 0) words.push("--host", kHosts[view.host]);
  if (view.downsample !== 1) words.push("--downsample", String(view.downsample));
  const line = words.map((word) => quote(word, state.system)).join(" ");
  return state.input ? line : `quillon chart -o chart.png && ${line}`;
}

// Browsers that refuse the clipboard still copy a selection.
export async function copyText(text) {
  try {
    await navigator.clipboard.writeText(text);
  } catch {
    const area = document.createElement("textarea");
    area.value = text;
    document.body.append(area);
    area.select();
    document.execCommand("copy");
    area.remove();
  }
}

export function download(name, href) {
  const link = document.createElement("a");
  link.href = href;
  link.download = name;
  link.click();
}

// A table for `quillon render --keys`: each value that is set as a key at the frame that is seen.
export function saveValues(state, view) {
  const table = {};
  for (const [name, { text }] of Object.entries(view.values)) table[name] = { [view.frame]: text };
  const href = URL.createObjectURL(new Blob([JSON.stringify(table, null, 2) + "\n"], { type: "application/json" }));
  download(`${state.name}-values.json`, href);
  setTimeout(() => URL.revokeObjectURL(href), 10000);
}
