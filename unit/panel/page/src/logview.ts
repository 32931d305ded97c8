import type { Connection } from "./connection";
import { byId, el, setText } from "./dom";
import type { Log, LogLine } from "./protocol";

const mostLines = 800;
const levelNames = ["Debug", "Debug", "Debug", "Log", "Log", "Log", "Warn", "Error"];
const choices: [string, number][] = [
  ["All", 0],
  ["Light", 2],
  ["Log", 3],
  ["Warn", 6],
  ["Error", 7],
];

/** The live log. It stays at its end until somebody scrolls up to read. */
export class LogView {
  private readonly list = byId("log-lines");
  private readonly filter = byId("log-filter") as HTMLInputElement;
  private level = 3;

  constructor(private readonly connection: Connection) {
    const keys = choices.map(([name, level]) => {
      const key = el("button", { type: "button", role: "radio", "aria-checked": level === this.level, "data-level": level }, name);
      key.addEventListener("click", () => {
        this.level = level;
        for (const other of keys) other.setAttribute("aria-checked", String(other === key));
        this.restart();
        this.refilter();
      });
      return key;
    });
    byId("log-levels").append(...keys);
    for (const key of keys) key.setAttribute("aria-checked", String(Number(key.dataset["level"]) === this.level));
    this.filter.addEventListener("input", () => this.refilter());
    this.filter.addEventListener("keydown", (event) => event.stopPropagation());
    byId("log-clear").addEventListener("click", () => this.list.replaceChildren());
  }

  /** The program forgets the level with the connection. */
  restart(): void {
    this.connection.send({ t: "loglevel", level: this.level });
  }

  take(log: Log): void {
    const atEnd = this.list.scrollHeight - this.list.scrollTop - this.list.clientHeight < 24;
    const lines = log.lines.map((line) => this.line(line));
    if (log.gap) lines.unshift(el("div", { class: "line gap" }, "There were more lines than are shown."));
    this.list.append(...lines);
    while (this.list.childElementCount > mostLines) this.list.firstElementChild?.remove();
    if (atEnd) this.list.scrollTop = this.list.scrollHeight;
  }

  private line([level, program, place, text]: LogLine): HTMLElement {
    const name = levelNames[level] ?? "";
    const element = el(
      "div",
      { class: `line ${name.toLowerCase()}`, "data-level": level },
      el("span", { class: "level" }, name),
      el("span", { class: "from", title: program }, place),
      el("span", { class: "text" }, text),
    );
    this.hide(element);
    return element;
  }

  private hide(line: HTMLElement): void {
    const wanted = this.filter.value.toLowerCase();
    const level = Number(line.dataset["level"] ?? 7);
    line.hidden = level < this.level || (wanted !== "" && !line.textContent?.toLowerCase().includes(wanted));
  }

  private refilter(): void {
    for (const line of this.list.querySelectorAll<HTMLElement>(".line")) this.hide(line);
    this.list.scrollTop = this.list.scrollHeight;
    setText(byId("log-note"), "");
  }
}
