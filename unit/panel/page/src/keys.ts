import type { Connection } from "./connection";
import { el } from "./dom";

/** What a key is called by whoever does not see it. */
export const keyNames: Record<string, string> = {
  ul: "Upper left soft key",
  um: "Upper middle soft key",
  ur: "Upper right soft key",
  ll: "Lower left soft key",
  lm: "Lower middle soft key",
  lr: "Lower right soft key",
  user1: "User button 1",
  user2: "User button 2",
  user3: "User button 3",
  page: "Page",
  record: "Record",
  function: "Function",
  power: "Power",
};

/** The unit's keys: a key is down as long as any finger, mouse button or key of the keyboard holds it. */
export class Keys {
  private readonly holders = new Map<string, Set<string>>();
  private readonly buttons = new Map<string, HTMLButtonElement>();

  constructor(private readonly connection: Connection) {
    window.addEventListener("blur", () => this.releaseAll());
  }

  button(key: string, look: string, ...face: (Node | string)[]): HTMLButtonElement {
    const name = keyNames[key] ?? key;
    const button = el("button", { class: `key ${look}`, "aria-label": name, title: name, "data-key": key }, ...face);
    button.type = "button";
    button.addEventListener("pointerdown", (event) => {
      if (event.button !== 0) return;
      button.setPointerCapture(event.pointerId);
      this.hold(key, `pointer${event.pointerId}`);
    });
    for (const end of ["pointerup", "pointercancel", "lostpointercapture"] as const)
      button.addEventListener(end, (event) => this.release(key, `pointer${event.pointerId}`));
    button.addEventListener("keydown", (event) => {
      if (event.repeat || (event.key !== " " && event.key !== "Enter")) return;
      event.preventDefault();
      event.stopPropagation();
      this.hold(key, "focus");
    });
    button.addEventListener("keyup", (event) => {
      if (event.key !== " " && event.key !== "Enter") return;
      event.preventDefault();
      this.release(key, "focus");
    });
    button.addEventListener("blur", () => this.release(key, "focus"));
    button.addEventListener("contextmenu", (event) => event.preventDefault());
    this.buttons.set(key, button);
    return button;
  }

  hold(key: string, holder: string): void {
    const holders = this.holders.get(key) ?? new Set();
    this.holders.set(key, holders);
    holders.add(holder);
    if (holders.size === 1) this.tell(key, true);
  }

  release(key: string, holder: string): void {
    const holders = this.holders.get(key);
    if (!holders?.delete(holder) || holders.size > 0) return;
    this.tell(key, false);
  }

  releaseAll(): void {
    for (const [key, holders] of this.holders)
      for (const holder of [...holders]) this.release(key, holder);
  }

  private tell(key: string, down: boolean): void {
    this.buttons.get(key)?.classList.toggle("down", down);
    this.connection.send({ t: "key", key, down });
  }
}
