// Which frame is shown, and how time passes.

const byId = (id) => document.getElementById(id);

export class Timeline {
  // `onFrame` is called after frame or rate have changed.
  constructor({ onFrame }) {
    this.onFrame = onFrame;
    this.first = this.last = this.frame = 0;
    this.fps = 25;
    this.isPlaying = false;
    byId("frame").addEventListener("input", () => this.go(byId("frame").valueAsNumber));
    byId("frame-number").addEventListener("change", () => this.go(byId("frame-number").valueAsNumber || 0));
    byId("first").addEventListener("click", () => this.go(this.first));
    byId("back").addEventListener("click", () => this.step(-1));
    byId("forward").addEventListener("click", () => this.step(1));
    byId("play").addEventListener("click", () => this.toggle());
    byId("fps").addEventListener("change", () => {
      const fps = byId("fps").valueAsNumber;
      if (fps >= 0.001 && fps <= 100000) this.fps = fps;
      this.show();
      this.onFrame();
    });
  }

  setRange(first, last) {
    this.first = first;
    this.last = last;
    for (const id of ["frame", "frame-number"]) {
      byId(id).min = first;
      byId(id).max = last;
    }
    this.frame = Math.min(Math.max(this.frame, first), last);
    this.show();
  }

  show() {
    byId("frame").value = this.frame;
    if (document.activeElement !== byId("frame-number")) byId("frame-number").value = this.frame;
    if (document.activeElement !== byId("fps")) byId("fps").value = this.fps;
    byId("seconds").textContent = (this.frame / this.fps).toFixed(2) + " s";
  }

  go(frame) {
    frame = Math.min(Math.max(Math.round(frame), this.first), this.last);
    if (this.isPlaying) this.startAt(frame);
    this.setFrame(frame);
  }

  setFrame(frame) {
    if (frame === this.frame) return;
    this.frame = frame;
    this.show();
    this.onFrame();
  }

  step(count) {
    this.stop();
    this.go(this.frame + count);
  }

  toggle() {
    if (this.isPlaying) {
      this.stop();
      return;
    }
    this.isPlaying = true;
    byId("play").textContent = "❚❚";
    byId("play").setAttribute("aria-label", "Stop");
    const isAtEnd = this.frame >= this.last;
    this.startAt(isAtEnd ? this.first : this.frame);
    if (isAtEnd) this.setFrame(this.first);
    else this.advance();
  }

  stop() {
    this.isPlaying = false;
    byId("play").textContent = "▶";
    byId("play").setAttribute("aria-label", "Play");
  }

  startAt(frame) {
    this.startFrame = frame;
    this.startTime = performance.now();
  }

  // After a frame has come: the next one, when its time is there.
  advance() {
    if (!this.isPlaying) return;
    requestAnimationFrame(() => {
      if (!this.isPlaying) return;
      const isReal = byId("pace").value === "real";
      const count = this.last - this.first + 1;
      let next = this.frame + 1;
      if (isReal) {
        next = this.startFrame + Math.floor(((performance.now() - this.startTime) / 1000) * this.fps);
        if (next === this.frame) {
          this.advance();
          return;
        }
      }
      if (next > this.last) {
        if (!byId("loop").checked) {
          this.setFrame(this.last);
          this.stop();
          return;
        }
        next = this.first + ((next - this.first) % count);
        this.startAt(next);
      }
      if (next === this.frame) this.onFrame();
      else this.setFrame(next);
    });
  }
}
