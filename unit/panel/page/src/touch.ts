import type { Connection } from "./connection";
import type { Display } from "./display";
import { isTurned, onceAFrame } from "./dom";
import type { Point } from "./protocol";

const pinchStart = 60;
const wheelStart = 80;
const wheelEnd = 250;
const narrowest = 16;

interface Finger {
  slot: number;
  at: Point;
  /** Of a mouse with Shift: the second contact lies opposite of it around this point. */
  around?: Point;
}

/**
 * Fingers on the display, two at most. A mouse is one finger; with Shift held at its press it is two that pinch, and so
 * is the wheel.
 */
export class Touch {
  private readonly fingers = new Map<number, Finger>();
  private wheel: { centre: Point; distance: number; timer: number } | null = null;
  private readonly moved = onceAFrame(() => this.tell());
  private told = "";

  constructor(private readonly display: Display, private readonly connection: Connection) {
    const canvas = display.canvas;
    canvas.addEventListener("pointerdown", (event) => this.down(event));
    canvas.addEventListener("pointermove", (event) => this.move(event));
    for (const end of ["pointerup", "pointercancel", "lostpointercapture"] as const)
      canvas.addEventListener(end, (event) => this.up(event));
    canvas.addEventListener("wheel", (event) => this.turnWheel(event), { passive: false });
    canvas.addEventListener("contextmenu", (event) => event.preventDefault());
  }

  /** Nothing is held any more, and nothing is told: the connection is new. */
  reset(): void {
    this.fingers.clear();
    this.endWheel();
    this.told = "";
  }

  private pointOf(event: MouseEvent): Point {
    const box = this.display.canvas.getBoundingClientRect();
    const x = Math.floor(((event.clientX - box.left) / box.width) * this.display.width);
    const y = Math.floor(((event.clientY - box.top) / box.height) * this.display.height);
    return this.inside(isTurned() ? [this.display.width - 1 - x, this.display.height - 1 - y] : [x, y]);
  }

  private inside([x, y]: Point): Point {
    return [
      Math.min(Math.max(x, 0), this.display.width - 1),
      Math.min(Math.max(y, 0), this.display.height - 1),
    ];
  }

  private down(event: PointerEvent): void {
    event.preventDefault();
    this.display.canvas.focus({ preventScroll: true });
    if (event.pointerType === "mouse" && event.button !== 0) return;
    const used = [...this.fingers.values()].map((finger) => finger.slot);
    const slot = [0, 1].find((one) => !used.includes(one));
    if (slot === undefined || this.wheel || [...this.fingers.values()].some((finger) => finger.around)) return;
    this.display.canvas.setPointerCapture(event.pointerId);
    const at = this.pointOf(event);
    const finger: Finger = { slot, at };
    if (event.shiftKey && event.pointerType === "mouse") {
      const side = at[0] >= pinchStart ? -1 : 1;
      finger.around = [at[0] + (side * pinchStart) / 2, at[1]];
    }
    this.fingers.set(event.pointerId, finger);
    this.tell();
  }

  private move(event: PointerEvent): void {
    const finger = this.fingers.get(event.pointerId);
    if (!finger) return;
    finger.at = this.pointOf(event);
    this.moved();
  }

  private up(event: PointerEvent): void {
    const finger = this.fingers.get(event.pointerId);
    if (!finger) return;
    if (event.type === "pointerup") finger.at = this.pointOf(event);
    this.tell();
    this.fingers.delete(event.pointerId);
    this.tell();
  }

  private turnWheel(event: WheelEvent): void {
    event.preventDefault();
    if (this.fingers.size > 0) return;
    if (!this.wheel) {
      this.wheel = { centre: this.pointOf(event), distance: wheelStart, timer: 0 };
      this.tell();
    }
    const widest = this.display.width - 2;
    const factor = Math.exp(-event.deltaY * (event.deltaMode === 0 ? 0.0025 : 0.08));
    this.wheel.distance = Math.min(Math.max(this.wheel.distance * factor, narrowest), widest);
    window.clearTimeout(this.wheel.timer);
    this.wheel.timer = window.setTimeout(() => {
      this.endWheel();
      this.tell();
    }, wheelEnd);
    this.moved();
  }

  private endWheel(): void {
    if (this.wheel) window.clearTimeout(this.wheel.timer);
    this.wheel = null;
  }

  private contacts(): (Point | null)[] {
    const points: (Point | null)[] = [null, null];
    if (this.wheel) {
      const half = this.wheel.distance / 2;
      const x = Math.min(Math.max(this.wheel.centre[0], half), this.display.width - 1 - half);
      const y = this.wheel.centre[1];
      return [this.inside([Math.round(x - half), y]), this.inside([Math.round(x + half), y])];
    }
    for (const finger of this.fingers.values()) {
      points[finger.slot] = finger.at;
      if (!finger.around) continue;
      const [x, y] = finger.around;
      points[1 - finger.slot] = this.inside([Math.round(2 * x - finger.at[0]), Math.round(2 * y - finger.at[1])]);
    }
    return points;
  }

  private tell(): void {
    const points = this.contacts();
    const text = JSON.stringify(points);
    if (text === this.told) return;
    if (this.connection.send({ t: "touch", points })) this.told = text;
  }
}
