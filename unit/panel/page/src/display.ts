import type { Connection } from "./connection";

const black = 0xff000000;

/** Whole device pixels where they fit, else halves and quarters of a step. */
function bestScale(room: number): number {
  const steps = [0.5, 0.75, 1, 1.25, 1.5, 1.75, 2, 2.5, 3, 4];
  return steps.filter((step) => step <= room).pop() ?? 0.5;
}

/**
 * The unit's display. Tiles come into a picture of the display's own size; it is drawn with whole steps of enlargement,
 * so that its pixels stay sharp, and a credit goes back for each frame drawn. A page nobody looks at draws nothing and
 * so gets nothing.
 */
export class Display {
  width = 240;
  height = 400;
  frame = 0;

  private readonly small = document.createElement("canvas");
  private image: ImageData;
  private pixels: Uint32Array;
  private owed = 0;
  private drawing = false;

  constructor(readonly canvas: HTMLCanvasElement, private readonly connection: Connection) {
    this.image = new ImageData(this.width, this.height);
    this.pixels = new Uint32Array(this.image.data.buffer);
    this.resize(this.width, this.height);
    connection.onFrame = (bytes) => this.take(bytes);
  }

  /** CSS pixels of room that the display may take. */
  fit(roomWidth: number, roomHeight: number): void {
    const scale = bestScale(Math.min(roomWidth / this.width, roomHeight / this.height));
    const whole = Math.max(1, Math.ceil(scale * window.devicePixelRatio - 0.01));
    this.canvas.style.width = `${this.width * scale}px`;
    this.canvas.style.height = `${this.height * scale}px`;
    if (this.canvas.width !== this.width * whole || this.canvas.height !== this.height * whole) {
      this.canvas.width = this.width * whole;
      this.canvas.height = this.height * whole;
    }
    this.draw();
  }

  private resize(width: number, height: number): void {
    this.width = width;
    this.height = height;
    this.small.width = width;
    this.small.height = height;
    this.image = new ImageData(width, height);
    this.pixels = new Uint32Array(this.image.data.buffer);
    this.pixels.fill(black);
  }

  /** The message is that of unit/panel/tilediffer.h. */
  private take(bytes: ArrayBuffer): void {
    const words = new Uint32Array(bytes);
    const [frame = 0, size = 0, tiles = 0] = words;
    const width = size & 0xffff;
    const height = size >>> 16;
    if (width !== this.width || height !== this.height) {
      this.resize(width, height);
      window.dispatchEvent(new Event("resize"));
    }
    const tile = tiles & 0xffff;
    let at = 3;
    for (let left = tiles >>> 16; left > 0; --left) {
      const head = words[at++] ?? 0;
      this.takeTile(words.subarray(at, at + (head >>> 16)), head & 0xffff, tile);
      at += head >>> 16;
    }
    this.frame = frame;
    this.owed += 1;
    if (this.drawing) return;
    this.drawing = true;
    requestAnimationFrame(() => {
      this.drawing = false;
      this.draw();
      for (; this.owed > 0; --this.owed) this.connection.send({ t: "credit" });
    });
  }

  private takeTile(words: Uint32Array, index: number, tile: number): void {
    const columns = Math.ceil(this.width / tile);
    const left = (index % columns) * tile;
    const right = Math.min(left + tile, this.width);
    let x = left;
    let y = Math.floor(index / columns) * tile;
    for (const word of words) {
      const color = black | ((word & 0xff) << 16) | (word & 0xff00) | ((word >>> 16) & 0xff);
      for (let run = (word >>> 24) + 1; run > 0; --run) {
        this.pixels[y * this.width + x] = color;
        if (++x < right) continue;
        x = left;
        ++y;
      }
    }
  }

  private draw(): void {
    const small = this.small.getContext("2d");
    const large = this.canvas.getContext("2d");
    if (!small || !large) return;
    small.putImageData(this.image, 0, 0);
    large.imageSmoothingEnabled = false;
    large.drawImage(this.small, 0, 0, this.canvas.width, this.canvas.height);
    this.canvas.dataset["frame"] = String(this.frame);
  }
}
