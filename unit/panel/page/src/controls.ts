// What is turned, pushed and pressed: the knob, the slider, the stick and the force pad.
import type { Connection } from "./connection";
import { el, isTurned, onceAFrame, setText, svg } from "./dom";
import type { Setting } from "./protocol";

const coarse = 0.01;
const fine = 0.001;
const large = 0.1;

function clamp(value: number, lowest: number, highest: number): number {
  return Math.min(Math.max(value, lowest), highest);
}

/** Follows the server's setting but while a hand is on it, and shortly after. */
abstract class Control {
  abstract readonly element: HTMLElement;
  protected touched = 0;
  private held = false;

  protected hold(held: boolean): void {
    this.held = held;
    this.touched = performance.now();
  }

  protected get isHeld(): boolean {
    return this.held || performance.now() - this.touched < 700;
  }
}

/** A control with a place between 0 and 1 that it keeps. */
abstract class Positioned extends Control {
  protected value = 0.5;
  private readonly tell = onceAFrame(() => {
    this.connection.send({ t: "do", module: "hands", setting: this.setting, value: Number(this.value.toFixed(4)) });
  });

  constructor(private readonly connection: Connection, private readonly setting: string) {
    super();
  }

  take(setting: Setting | undefined): void {
    if (!setting || this.isHeld || typeof setting.value !== "number" || setting.value === this.value) return;
    this.value = setting.value;
    this.show();
  }

  nudge(by: number): void {
    this.moveTo(this.value + by);
  }

  protected moveTo(value: number): void {
    this.touched = performance.now();
    const next = clamp(value, 0, 1);
    if (next === this.value) return;
    this.value = next;
    this.show();
    this.tell();
  }

  protected hear(element: HTMLElement): void {
    element.addEventListener("wheel", (event) => this.turnWheel(event), { passive: false });
    element.addEventListener("keydown", (event) => this.press(event));
  }

  protected show(): void {
    this.element.setAttribute("aria-valuenow", (this.value * 100).toFixed(1));
    this.element.setAttribute("aria-valuetext", `${(this.value * 100).toFixed(1)} percent`);
  }

  private turnWheel(event: WheelEvent): void {
    event.preventDefault();
    // With Shift some browsers turn the wheel sideways.
    const turn = event.deltaY || event.deltaX;
    this.nudge(-Math.sign(turn) * (event.shiftKey ? fine : coarse));
  }

  private press(event: KeyboardEvent): void {
    const step = event.shiftKey ? fine : coarse;
    const places: Record<string, number> = {
      ArrowUp: this.value + step,
      ArrowRight: this.value + step,
      ArrowDown: this.value - step,
      ArrowLeft: this.value - step,
      PageUp: this.value + large,
      PageDown: this.value - large,
      Home: 0,
      End: 1,
    };
    const next = places[event.key];
    if (next === undefined) return;
    event.preventDefault();
    event.stopPropagation();
    this.moveTo(next);
  }
}

const sweep = 300;

function polar(degrees: number, radius: number): [number, number] {
  const angle = ((degrees - 90) * Math.PI) / 180;
  return [radius * Math.cos(angle), radius * Math.sin(angle)];
}

function spoke(degrees: number, from: number, to: number, look: string): SVGLineElement {
  const [x1, y1] = polar(degrees, from);
  const [x2, y2] = polar(degrees, to);
  return svg("line", { x1, y1, x2, y2, class: look });
}

/** The focus knob: 300 degrees from end to end, turned by dragging around it, by the wheel and by keys. */
export class Knob extends Positioned {
  readonly element: HTMLElement;
  private readonly grip: SVGGElement;
  private readonly arc: SVGPathElement;
  private readonly figure = el("span", { class: "figure" });
  private readonly caption = el("span", { class: "caption" }, "Knob");
  private angle = 0;

  constructor(connection: Connection) {
    super(connection, "knob");
    this.grip = svg("g", { class: "grip" });
    this.grip.append(svg("circle", { r: 58, class: "disc" }));
    for (let i = 0; i < 72; ++i) this.grip.append(spoke(i * 5, 60, 69, "knurl"));
    this.grip.append(svg("circle", { r: 69, class: "rim" }), spoke(0, 42, 69, "mark"));
    this.arc = svg("path", { class: "arc" });
    const scale = svg("g");
    for (let i = 0; i <= 50; ++i) {
      const long = i % 5 === 0;
      scale.append(spoke(-sweep / 2 + (sweep * i) / 50, 78, long ? 88 : 83, long ? "tick long" : "tick"));
    }
    const picture = svg("svg", { viewBox: "-92 -92 184 184", "aria-hidden": "true" }, scale, this.arc, this.grip);
    this.element = el(
      "div",
      { class: "knob", role: "slider", tabindex: 0, "aria-label": "Focus knob", "aria-valuemin": 0, "aria-valuemax": 100 },
      el("div", { class: "knob-face" }),
      el("div", { class: "knob-words" }, this.figure, this.caption),
    );
    this.element.firstElementChild?.append(picture);
    this.hear(this.element);
    this.drag();
    this.show();
  }

  nameAxis(axis: string): void {
    setText(this.caption, axis || "Knob");
    this.element.setAttribute("aria-label", axis ? `Focus knob, moves ${axis}` : "Focus knob");
  }

  protected override show(): void {
    super.show();
    const turned = -sweep / 2 + sweep * this.value;
    this.grip.setAttribute("transform", `rotate(${turned.toFixed(2)})`);
    const [x1, y1] = polar(-sweep / 2, 74);
    const [x2, y2] = polar(turned, 74);
    this.arc.setAttribute("d", `M${x1} ${y1}A74 74 0 ${this.value * sweep > 180 ? 1 : 0} 1 ${x2} ${y2}`);
    setText(this.figure, (this.value * 100).toFixed(1));
  }

  private angleOf(event: PointerEvent): number {
    const box = (this.element.firstElementChild ?? this.element).getBoundingClientRect();
    const x = event.clientX - (box.left + box.width / 2);
    const y = event.clientY - (box.top + box.height / 2);
    return (Math.atan2(y, x) * 180) / Math.PI;
  }

  private drag(): void {
    this.element.addEventListener("pointerdown", (event) => {
      if (event.button !== 0) return;
      this.element.setPointerCapture(event.pointerId);
      this.angle = this.angleOf(event);
      this.hold(true);
    });
    this.element.addEventListener("pointermove", (event) => {
      if (!this.element.hasPointerCapture(event.pointerId)) return;
      const now = this.angleOf(event);
      const turn = ((now - this.angle + 540) % 360) - 180;
      this.angle = now;
      this.nudge((turn / sweep) * (event.shiftKey ? 0.1 : 1));
    });
    for (const end of ["pointerup", "pointercancel"] as const)
      this.element.addEventListener(end, () => this.hold(false));
  }
}

/** The slider: a lever on a track. */
export class Slider extends Positioned {
  readonly element: HTMLElement;
  private readonly thumb = el("div", { class: "thumb" });
  private readonly fill = el("div", { class: "fill" });
  private readonly figure = el("span", { class: "figure" });
  private readonly caption = el("span", { class: "caption" }, "Slider");
  private readonly track: HTMLElement;
  private grabbed = 0;

  constructor(connection: Connection) {
    super(connection, "slider");
    const ticks = el("div", { class: "ticks" });
    for (let i = 0; i <= 10; ++i) ticks.append(el("i"));
    this.track = el("div", { class: "track" }, ticks, el("div", { class: "rail" }, this.fill), this.thumb);
    this.element = el(
      "div",
      {
        class: "slider",
        role: "slider",
        tabindex: 0,
        "aria-label": "Slider",
        "aria-orientation": "vertical",
        "aria-valuemin": 0,
        "aria-valuemax": 100,
      },
      this.track,
      this.figure,
      this.caption,
    );
    this.hear(this.element);
    this.drag();
    this.show();
  }

  nameAxis(axis: string): void {
    setText(this.caption, axis || "Slider");
    this.element.setAttribute("aria-label", axis ? `Slider, moves ${axis}` : "Slider");
  }

  protected override show(): void {
    super.show();
    this.thumb.style.bottom = `calc(${this.value} * (100% - var(--thumb)))`;
    this.fill.style.height = `${this.value * 100}%`;
    setText(this.figure, (this.value * 100).toFixed(1));
  }

  private placeOf(event: PointerEvent): number {
    const box = this.track.getBoundingClientRect();
    const thumb = this.thumb.getBoundingClientRect().height;
    const place = (box.bottom - thumb / 2 - event.clientY) / (box.height - thumb);
    return isTurned() ? 1 - place : place;
  }

  private drag(): void {
    this.track.addEventListener("pointerdown", (event) => {
      if (event.button !== 0) return;
      this.track.setPointerCapture(event.pointerId);
      this.hold(true);
      const onThumb = event.target === this.thumb;
      this.grabbed = onThumb ? this.value - this.placeOf(event) : 0;
      this.moveTo(this.placeOf(event) + this.grabbed);
    });
    this.track.addEventListener("pointermove", (event) => {
      if (this.track.hasPointerCapture(event.pointerId)) this.moveTo(this.placeOf(event) + this.grabbed);
    });
    for (const end of ["pointerup", "pointercancel"] as const)
      this.track.addEventListener(end, () => this.hold(false));
  }
}

/** What goes back by itself: the stick in two directions, the force pad in one. */
export class Springy extends Control {
  readonly element: HTMLElement;
  private readonly cap = el("div", { class: "cap" });
  private readonly caption: HTMLElement;
  private readonly keys = new Map<string, [number, number]>();
  private place: [number, number] = [0, 0];
  private told: [number, number] = [0, 0];
  private readonly tell = onceAFrame(() => {
    (["stick-x", "stick-y"] as const).forEach((setting, axis) => {
      const value = Number((this.place[axis] ?? 0).toFixed(2));
      if (value === this.told[axis]) return;
      this.told[axis] = value;
      this.connection.send({ t: "do", module: "hands", setting, value });
    });
  });

  constructor(private readonly connection: Connection, private readonly kind: "stick" | "pad", private readonly label: string) {
    super();
    this.caption = el("span", { class: "caption" }, label);
    this.element = el(
      "div",
      { class: `springy ${kind}`, tabindex: 0, role: "group", "aria-label": label, "aria-roledescription": kind === "stick" ? "joystick" : "force pad" },
      el("div", { class: "well" }, this.cap),
      this.caption,
    );
    const well = this.element.firstElementChild as HTMLElement;
    well.addEventListener("pointerdown", (event) => {
      if (event.button !== 0 || this.element.getAttribute("aria-disabled") === "true") return;
      well.setPointerCapture(event.pointerId);
      this.hold(true);
      this.push(event, well);
    });
    well.addEventListener("pointermove", (event) => {
      if (well.hasPointerCapture(event.pointerId)) this.push(event, well);
    });
    for (const end of ["pointerup", "pointercancel"] as const)
      well.addEventListener(end, () => {
        this.hold(false);
        this.moveTo(0, 0);
      });
    this.element.addEventListener("keydown", (event) => this.key(event, true));
    this.element.addEventListener("keyup", (event) => this.key(event, false));
    this.element.addEventListener("blur", () => this.letGo());
  }

  nameAxis(axis: string, usable: boolean): void {
    setText(this.caption, axis || this.label);
    this.element.setAttribute("aria-label", axis ? `${this.label}, moves ${axis}` : this.label);
    this.element.setAttribute("aria-disabled", String(!usable));
  }

  /** Pushed by a key of the keyboard, named so that several may be held. */
  lean(name: string, x: number, y: number): void {
    this.keys.set(name, [x, y]);
    this.sum();
  }

  relax(name: string): void {
    if (this.keys.delete(name)) this.sum();
  }

  letGo(): void {
    this.keys.clear();
    this.sum();
  }

  private key(event: KeyboardEvent, down: boolean): void {
    const directions: Record<string, [number, number]> = {
      ArrowUp: [0, 1],
      ArrowDown: [0, -1],
      ArrowLeft: [-1, 0],
      ArrowRight: [1, 0],
    };
    const direction = directions[event.key];
    if (!direction || (this.kind === "pad" && direction[1] === 0)) return;
    event.preventDefault();
    event.stopPropagation();
    if (down) this.lean(event.key, ...direction);
    else this.relax(event.key);
  }

  private sum(): void {
    let x = 0;
    let y = 0;
    for (const [dx, dy] of this.keys.values()) {
      x += dx;
      y += dy;
    }
    this.moveSeen(clamp(x, -1, 1), clamp(y, -1, 1));
  }

  private push(event: PointerEvent, well: HTMLElement): void {
    const box = well.getBoundingClientRect();
    const reach = (this.kind === "stick" ? 0.36 : 0.42) * box.height;
    let x = this.kind === "stick" ? (event.clientX - box.left - box.width / 2) / reach : 0;
    let y = -(event.clientY - box.top - box.height / 2) / reach;
    const length = Math.hypot(x, y);
    if (length > 1) {
      x /= length;
      y /= length;
    }
    this.moveSeen(x, y);
  }

  private moveSeen(x: number, y: number): void {
    if (isTurned()) this.moveTo(-x || 0, -y || 0);
    else this.moveTo(x, y);
  }

  private moveTo(x: number, y: number): void {
    this.place = [x, y];
    this.cap.style.transform = `translate(${x * 60}%, ${-y * 60}%)`;
    this.element.classList.toggle("pushed", x !== 0 || y !== 0);
    this.tell();
  }
}
