// What the last frames have cost, in milliseconds: the effect's script, its passes with the picture's way back from GL,
// reading of inputs, and the way to the page.

const kFrames = 120;
const kParts = [
  { name: "script", color: "#c96bd8" },
  { name: "passes", color: "#e8a33d" },
  { name: "read", color: "#5aa9e6" },
  { name: "transfer", color: "#8a929b" },
];

export class CostGraph {
  constructor() {
    this.canvas = document.getElementById("cost-graph");
    this.text = document.getElementById("cost-text");
    this.frames = [];
  }

  add(frame) {
    const { read, script, passes } = frame.times;
    this.frames.push({ read, script, passes, transfer: Math.max(frame.milliseconds - read - script - passes, 0) });
    if (this.frames.length > kFrames) this.frames.shift();
    this.draw();
    const last = this.frames[this.frames.length - 1];
    this.text.textContent = kParts.map(({ name }) => `${name} ${last[name].toFixed(1)}`).join("   ") + " ms";
  }

  draw() {
    const { width, height } = this.canvas;
    const context = this.canvas.getContext("2d");
    context.clearRect(0, 0, width, height);
    const sum = (cost) => kParts.reduce((total, { name }) => total + cost[name], 0);
    const scale = height / Math.max(...this.frames.map(sum), 1);
    const step = width / kFrames;
    this.frames.forEach((cost, index) => {
      let y = height;
      for (const { name, color } of kParts) {
        const part = cost[name] * scale;
        context.fillStyle = color;
        context.fillRect(index * step, y - part, Math.max(step - 0.5, 1), part);
        y -= part;
      }
    });
  }
}
