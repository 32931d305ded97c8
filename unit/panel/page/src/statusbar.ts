import type { Connection } from "./connection";
import { byId, setText } from "./dom";
import type { Status } from "./protocol";

/** The line at the top: which unit, which page, and how its frames go. */
export class StatusBar {
  private last: { at: number; status: Status } | null = null;
  private linked = false;

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
      const rate = (count: number): string => (seconds > 0.2 ? Math.round(Math.max(0, count) / seconds).toString() : "0");
      setText(byId("rate"), rate(status.pans - before.status.pans));
      setText(byId("passes"), rate(status.passes - before.status.passes));
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
