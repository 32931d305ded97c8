import type { Connection } from "./connection";
import { byId, setText } from "./dom";
import type { Status } from "./protocol";

const samplesKept = 60;
const fullRate = 60;

/** Drawn frames a second over the last half minute, and where frames were missed. */
class RateChart {
  private readonly samples: { rate: number; missed: number }[] = [];

  constructor(private readonly canvas: HTMLCanvasElement) {}

  add(rate: number, missed: number): void {
    this.samples.push({ rate, missed });
    if (this.samples.length > samplesKept) this.samples.shift();
    const context = this.canvas.getContext("2d");
    if (!context) return;
    const { width, height } = this.canvas;
    const step = width / samplesKept;
    context.clearRect(0, 0, width, height);
    context.fillStyle = "#282828";
    for (let x = 0; x < width; x += step) context.fillRect(x, height - 2, step - 2, 2);
    this.samples.forEach((sample, index) => {
      const x = (samplesKept - this.samples.length + index) * step;
      const tall = Math.min(1, sample.rate / fullRate) * (height - 8);
      context.fillStyle = "#7cc0ff";
      context.fillRect(x, height - tall, step - 2, tall);
      context.fillStyle = "#ffc880";
      if (sample.missed > 0) context.fillRect(x, 0, step - 2, 4);
    });
  }
}

/** The line at the top: which unit, which page, and how its frames go. */
export class StatusBar {
  private last: { at: number; status: Status } | null = null;
  private linked = false;
  private readonly chart = new RateChart(byId("rate-chart") as HTMLCanvasElement);

  constructor(private readonly connection: Connection) {
    for (const button of byId("steps").querySelectorAll("button"))
      button.addEventListener("click", () => this.step(Number(button.dataset["frames"])));
  }

  step(frames: number): void {
    if (this.last?.status.pacing === "lockstep") this.connection.send({ t: "step", frames });
  }

  setLink(open: boolean): void {
    this.linked = open;
    if (!open) this.last = null;
    this.showState();
  }

  take(status: Status): void {
    const now = performance.now();
    const before = this.last;
    this.last = { at: now, status };
    setText(byId("page-name"), status.page ?? "");
    setText(byId("frames"), String(status.pans));
    setText(byId("missed"), String(status.missed ?? 0));
    byId("missed").classList.toggle("some", (status.missed ?? 0) > 0);
    setText(byId("restarts"), String(status.restarts ?? 0));
    byId("restarts").title = status.lastEnd ? `The product ended ${status.lastEnd}` : "";
    byId("steps").hidden = status.pacing !== "lockstep";
    if (before) {
      const seconds = (now - before.at) / 1000;
      // Two may come close to each other when somebody opens another page.
      const rate = (count: number): number => (seconds > 0.2 ? Math.round(Math.max(0, count) / seconds) : 0);
      const drawn = rate(status.pans - before.status.pans);
      setText(byId("rate"), String(drawn));
      setText(byId("passes"), String(rate(status.passes - before.status.passes)));
      this.chart.add(drawn, (status.missed ?? 0) - (before.status.missed ?? 0));
    }
    this.showState();
  }

  private showState(): void {
    const up = this.last?.status.up ?? false;
    const running = up && (this.last?.status.product ?? 0) !== 0;
    const state = !this.linked ? "lost" : !up ? "off" : running ? "on" : "starting";
    const texts: Record<string, string> = {
      lost: "No connection",
      off: "Unit is off",
      starting: "Starting",
      on: this.last?.status.pacing === "lockstep" ? "Lockstep" : "Running",
    };
    document.body.dataset["state"] = state;
    setText(byId("state"), texts[state] ?? "");
  }
}
