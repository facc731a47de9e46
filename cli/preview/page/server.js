// What the page asks of the tool: the event stream of its state, frames, and pictures for layers. Addresses are relative:
// the page's own has the token.

// Calls `show` with each state, from the first one on. The browser reconnects by itself, after a sleep too.
export function listen(show, showConnection) {
  const stream = new EventSource("events");
  stream.onmessage = (event) => {
    showConnection(true);
    show(JSON.parse(event.data));
  };
  stream.onopen = () => showConnection(true);
  stream.onerror = () => showConnection(false);
}

// A frame as PreviewServer.h describes its body: what is said about it, and its pixels as the host has them, A, R, G, B.
function readFrame(body) {
  const size = new DataView(body).getUint32(0, true);
  const about = JSON.parse(new TextDecoder().decode(new Uint8Array(body, 4, size)));
  if (about.faults) return about;
  const Channels = { 8: Uint8Array, 16: Uint16Array, 32: Float32Array }[about.depth];
  about.channels = new Channels(body, 4 + size, about.width * about.height * 4);
  return about;
}

async function askForFrame(view) {
  const start = performance.now();
  const response = await fetch("frame", {
    method: "POST",
    headers: { "Content-Type": "application/json" },
    body: JSON.stringify(view),
  });
  if (!response.ok) throw new Error("status " + response.status);
  const frame = readFrame(await response.arrayBuffer());
  frame.view = view;
  frame.milliseconds = performance.now() - start;
  return frame;
}

// Frames one at a time. While one is on its way only the newest wish is kept, so that nothing queues up.
export class FrameQueue {
  constructor(show) {
    this.show = show;
    this.next = null;
    this.isBusy = false;
  }

  async request(view) {
    this.next = structuredClone(view);
    if (this.isBusy) return;
    this.isBusy = true;
    while (this.next) {
      const wanted = this.next;
      this.next = null;
      try {
        this.show(await askForFrame(wanted));
      } catch (error) {
        this.show({ view: wanted, isLost: true, text: error.message });
      }
    }
    this.isBusy = false;
  }
}

// The picture that goes into the effect at a view's frame; the last one is kept.
export class InputPicture {
  async at(view) {
    const wanted = { ...view, values: {}, show: "", input: true };
    const key = JSON.stringify(wanted);
    if (this.key !== key) {
      const frame = await askForFrame(wanted);
      if (frame.faults) return null;
      this.frame = frame;
      this.key = key;
    }
    return this.frame;
  }

  forget() {
    this.key = undefined;
  }
}

// `file` is a Blob, or null for "None". Gives the faults, or nothing.
export async function sendLayer(name, title, file) {
  const query = new URLSearchParams({ name, title });
  const response = await fetch("layer?" + query, {
    method: "POST",
    headers: { "Content-Type": "application/octet-stream" },
    body: file ?? "",
  });
  if (response.status === 413) return [{ text: "the picture has more than 64 MiB", severity: "error", kind: "tool" }];
  if (!response.ok) throw new Error("status " + response.status);
  return (await response.json()).faults;
}

export function restartEffect() {
  return fetch("restart", { method: "POST", body: "" });
}
