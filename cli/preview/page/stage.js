// The place where the picture is: its size on the screen, what is under the pointer, handles of points, the wipe.
import { readPixel } from "./pixels.js";

const kZooms = [0.25, 1 / 3, 0.5, 2 / 3, 1, 1.5, 2, 3, 4, 6, 8, 12, 16];

export class Stage {
  // `onReadout` gets a text, `onPoint` the name of a point and its place in pixels of the input, `onWipe` a share.
  constructor({ onReadout, onPoint, onWipe, onZoom }) {
    this.root = document.getElementById("stage");
    this.board = document.getElementById("board");
    this.canvas = document.getElementById("picture");
    this.handles = document.getElementById("handles");
    this.line = document.getElementById("wipe-line");
    Object.assign(this, { onReadout, onPoint, onWipe, onZoom });
    this.zoom = 1;
    this.isFitted = true;
    this.left = this.top = 0;
    this.frame = null;
    this.points = [];
    this.wipe = null;
    new ResizeObserver(() => (this.isFitted ? this.fit() : this.place())).observe(this.root);
    this.listen();
  }

  setFrame(frame) {
    const isOther = !this.frame || this.frame.width !== frame.width || this.frame.height !== frame.height;
    this.frame = frame;
    if (isOther && this.isFitted) this.fit();
    else this.place();
    if (this.pointer) this.read(this.pointer);
  }

  // Each {name, label, x, y}: a place in pixels of the input at full size.
  setPoints(points) {
    this.points = points;
    this.placeHandles();
  }

  // A share of the picture's width, or null.
  setWipe(share) {
    this.wipe = share;
    this.line.hidden = share === null;
    this.placeWipe();
  }

  // Pixels of the picture on one of the screen.
  fit() {
    this.isFitted = true;
    const ratio = window.devicePixelRatio;
    const { width, height } = this.canvas;
    const zoom = Math.min((this.root.clientWidth * ratio) / width, (this.root.clientHeight * ratio) / height, 16);
    // Above 100 % only whole factors show every pixel at the same size.
    this.zoom = zoom > 1 ? Math.floor(zoom) : zoom;
    this.center();
  }

  center() {
    const scale = this.scale();
    this.left = Math.round((this.root.clientWidth - this.canvas.width * scale) / 2);
    this.top = Math.round((this.root.clientHeight - this.canvas.height * scale) / 2);
    this.place();
  }

  // Around a place on the stage, by default its middle.
  zoomTo(zoom, x = this.root.clientWidth / 2, y = this.root.clientHeight / 2) {
    const before = this.scale();
    this.isFitted = false;
    this.zoom = Math.min(Math.max(zoom, kZooms[0]), kZooms[kZooms.length - 1]);
    const factor = this.scale() / before;
    this.left = x - (x - this.left) * factor;
    this.top = y - (y - this.top) * factor;
    this.place();
  }

  step(direction, x, y) {
    const next = direction > 0
      ? kZooms.find((zoom) => zoom > this.zoom * 1.001)
      : kZooms.findLast((zoom) => zoom < this.zoom * 0.999);
    if (next) this.zoomTo(next, x, y);
  }

  // CSS pixels for one of the picture: at 100 % it has one of the screen's own.
  scale() {
    return this.zoom / window.devicePixelRatio;
  }

  place() {
    const scale = this.scale();
    this.board.style.transform = `translate(${this.left}px, ${this.top}px) scale(${scale})`;
    this.canvas.classList.toggle("exact", this.zoom >= 1);
    this.placeHandles();
    this.placeWipe();
    this.onZoom(this.zoom);
  }

  // Between a point in pixels of the input and one on the stage.
  toStage(x, y) {
    const [originX, originY] = this.frame?.origin ?? [0, 0];
    const n = this.frame?.view.downsample ?? 1;
    const scale = this.scale();
    return [this.left + (x / n + originX) * scale, this.top + (y / n + originY) * scale];
  }

  toInput(stageX, stageY) {
    const [originX, originY] = this.frame?.origin ?? [0, 0];
    const n = this.frame?.view.downsample ?? 1;
    const scale = this.scale();
    return [((stageX - this.left) / scale - originX) * n, ((stageY - this.top) / scale - originY) * n];
  }

  placeHandles() {
    const make = (name, attributes) => {
      const element = document.createElementNS("http://www.w3.org/2000/svg", name);
      for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
      return element;
    };
    this.handles.replaceChildren(
      ...this.points.map((point) => {
        const [x, y] = this.toStage(point.x, point.y);
        const group = make("g", { transform: `translate(${x} ${y})`, "data-name": point.name });
        const label = make("text", { x: 12, y: 4 });
        label.textContent = point.label;
        group.append(make("circle", { r: 7 }), make("path", { d: "M-11 0h8M3 0h8M0-11v8M0 3v8" }), label);
        return group;
      }),
    );
  }

  placeWipe() {
    if (this.wipe === null) return;
    const x = this.left + this.wipe * this.canvas.width * this.scale();
    this.line.style.left = `${x}px`;
    this.line.setAttribute("aria-valuenow", Math.round(this.wipe * 100));
  }

  placeOf(event) {
    const box = this.root.getBoundingClientRect();
    return [event.clientX - box.left, event.clientY - box.top];
  }

  listen() {
    this.root.addEventListener("wheel", (event) => {
      if (event.target.closest("#faults")) return;
      event.preventDefault();
      this.step(event.deltaY < 0 ? 1 : -1, ...this.placeOf(event));
    }, { passive: false });
    this.root.addEventListener("pointerdown", (event) => this.take(event));
    this.root.addEventListener("pointermove", (event) => {
      this.pointer = this.placeOf(event);
      this.read(this.pointer);
    });
    this.root.addEventListener("pointerleave", () => {
      this.pointer = null;
      this.onReadout("");
    });
    this.line.addEventListener("keydown", (event) => {
      const step = { ArrowLeft: -0.01, ArrowRight: 0.01 }[event.key];
      if (!step) return;
      event.preventDefault();
      event.stopPropagation();
      this.onWipe(Math.min(Math.max(this.wipe + step, 0), 1));
    });
  }

  // A drag of a handle, of the wipe's line or of the picture.
  take(event) {
    if (event.target.closest("#faults") || event.button > 1) return;
    const [startX, startY] = this.placeOf(event);
    const { left, top } = this;
    const name = event.target.closest("#handles g")?.dataset.name;
    let move;
    if (name !== undefined) move = (x, y) => this.onPoint(name, ...this.toInput(x, y));
    else if (event.target === this.line)
      move = (x) => this.onWipe(Math.min(Math.max((x - this.left) / (this.canvas.width * this.scale()), 0), 1));
    else
      move = (x, y) => {
        this.isFitted = false;
        this.left = left + x - startX;
        this.top = top + y - startY;
        this.place();
      };
    this.root.setPointerCapture(event.pointerId);
    this.root.classList.add("moving");
    const onMove = (moved) => move(...this.placeOf(moved));
    this.root.addEventListener("pointermove", onMove);
    this.root.addEventListener("pointerup", () => {
      this.root.removeEventListener("pointermove", onMove);
      this.root.classList.remove("moving");
    }, { once: true });
  }

  read([stageX, stageY]) {
    if (!this.frame) return;
    const scale = this.scale();
    const x = Math.floor((stageX - this.left) / scale), y = Math.floor((stageY - this.top) / scale);
    if (x < 0 || y < 0 || x >= this.frame.width || y >= this.frame.height) {
      this.onReadout("");
      return;
    }
    const isReal = this.frame.depth === 32;
    const numbers = readPixel(this.frame, x, y).map((value) => {
      if (!Number.isFinite(value)) return Number.isNaN(value) ? "NaN!" : value > 0 ? "+∞!" : "−∞!";
      return isReal ? value.toFixed(4) : String(value);
    });
    this.onReadout(`${x}, ${y}    R ${numbers[0]}  G ${numbers[1]}  B ${numbers[2]}  A ${numbers[3]}`);
  }
}
