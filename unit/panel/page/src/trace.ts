import type { Connection } from "./connection";
import { byId, el } from "./dom";
import type { TraceWord } from "./protocol";

const bits: Record<TraceWord, [string, number][]> = {
  draw: [["page", 1], ["overlay", 2], ["widget", 4], ["border", 8], ["frame time", 0x80000000]],
  event: [["post", 1], ["dispatch", 2], ["command", 4], ["result", 8], ["reaction", 16], ["action", 32], ["focus", 64], ["match", 128]],
  var: [["to value", 4], ["to variable", 8], ["list", 16], ["edit", 32]],
  page: [["enter", 1], ["leave", 2]],
};

/** The switches of the product's own trace, whose lines come in the log. */
export class TraceSwitches {
  private readonly masks: Record<TraceWord, number> = { draw: 0, event: 0, var: 0, page: 0 };
  private readonly switches: [TraceWord, number, HTMLButtonElement][] = [];

  constructor(private readonly connection: Connection) {
    const rows = (Object.keys(bits) as TraceWord[]).map((word) => {
      const chips = bits[word].map(([name, bit]) => {
        const chip = el("button", { type: "button", class: "chip", "aria-pressed": "false", "aria-label": `Trace ${word}: ${name}` }, name);
        chip.addEventListener("click", () => this.toggle(word, bit));
        this.switches.push([word, bit, chip]);
        return chip;
      });
      return el("div", { class: "trace-row" }, el("span", { class: "caption" }, word), el("div", { class: "chips" }, ...chips));
    });
    byId("trace").append(...rows);
  }

  take(masks: Record<TraceWord, number>): void {
    Object.assign(this.masks, masks);
    for (const [word, bit, chip] of this.switches) chip.setAttribute("aria-pressed", String((this.masks[word] & bit) !== 0));
    const any = Object.values(this.masks).some((mask) => mask !== 0);
    byId("trace-box").classList.toggle("on", any);
  }

  private toggle(word: TraceWord, bit: number): void {
    const mask = (this.masks[word] ^ bit) >>> 0;
    this.take({ ...this.masks, [word]: mask });
    this.connection.send({ t: "trace", word, mask });
  }
}
