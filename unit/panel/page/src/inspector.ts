import type { Catalogue, Entry, Table } from "./catalogue";
import type { Connection } from "./connection";
import { byId, el, setText } from "./dom";
import type { ValueNews } from "./protocol";

const mostFound = 50;
const mostWatched = 40;
const memoryKey = "tern.watch";
/** For whoever has not chosen yet. */
const firstWatched = ["VarFocusTargetValue", "VarIrisTargetValue", "VarFocusMotor.State", "VarFocusMotor.ActPosition", "VarCamState", "VarJoystickY"];

/** One value: its name, what it is now, and what it shall be. */
class ValueRow {
  readonly element: HTMLElement;
  private readonly pin: HTMLButtonElement;
  private readonly value: HTMLButtonElement;
  private readonly problem = el("span", { class: "problem", role: "alert" });
  private shown = "";

  constructor(readonly entry: Entry, private readonly connection: Connection, togglePin: (name: string) => void) {
    this.pin = el("button", { type: "button", class: "pin", "aria-label": `Watch ${entry.name}` }, el("i"));
    this.pin.addEventListener("click", () => togglePin(entry.name));
    this.value = el("button", { type: "button", class: "value", "aria-label": `Set ${entry.name}` }, "");
    this.value.addEventListener("click", () => this.edit());
    const point = entry.name.indexOf(".");
    const name = point < 0 ? [entry.name] : [entry.name.slice(0, point), el("b", {}, entry.name.slice(point))];
    this.element = el("div", { class: "value-row", "data-name": entry.name }, this.pin, el("span", { class: "name", title: `${entry.name}, ${entry.kind}` }, ...name), this.value, this.problem);
  }

  setPinned(pinned: boolean): void {
    this.pin.setAttribute("aria-pressed", String(pinned));
  }

  take(news: ValueNews): void {
    const text = news.problem ?? news.value;
    const shown = news.word ? `${news.word} ${text}` : text === "" ? "“”" : text;
    if (shown === this.shown) return;
    const first = this.shown === "";
    this.shown = shown;
    this.value.dataset["value"] = news.value;
    this.value.replaceChildren(news.word ? el("span", { class: "word" }, news.word) : "", news.word ? ` ${text}` : shown);
    if (first) return;
    this.value.classList.remove("changed");
    void this.value.offsetWidth; // so that the mark begins again
    this.value.classList.add("changed");
  }

  private set(value: string): void {
    setText(this.problem, "");
    this.connection.ask({ t: "set", name: this.entry.name, value }).catch((problem: Error) => setText(this.problem, problem.message));
  }

  private edit(): void {
    const now = this.value.dataset["value"] ?? "";
    if (this.entry.kind === "flag") return this.set(now === "1" ? "0" : "1");
    const field = this.entry.words.length > 0 ? this.list(now) : this.line(now);
    let open = true;
    const close = (): void => {
      if (!open) return;
      open = false; // before the field goes and so loses the focus
      field.replaceWith(this.value);
    };
    field.addEventListener("keydown", (event: Event) => {
      const key = (event as KeyboardEvent).key;
      event.stopPropagation();
      if (key === "Escape") close();
      if (key === "Enter" && field instanceof HTMLInputElement) {
        event.preventDefault(); // or it presses the button that comes back
        this.set(field.value);
        close();
        this.value.focus();
      }
    });
    field.addEventListener("blur", close);
    this.value.replaceWith(field);
    field.focus();
  }

  private line(now: string): HTMLInputElement {
    const { minimum, maximum, kind } = this.entry;
    const range = minimum !== null || maximum !== null ? `${minimum ?? ""} to ${maximum ?? ""}` : kind;
    const field = el("input", { class: "edit", type: "text", value: now, placeholder: range, "aria-label": `New value of ${this.entry.name}, ${range}`, autocomplete: "off", spellcheck: "false" });
    if (kind === "int" || kind === "float") field.inputMode = "decimal";
    queueMicrotask(() => field.select());
    return field;
  }

  private list(now: string): HTMLSelectElement {
    const field = el("select", { class: "edit", "aria-label": `New value of ${this.entry.name}` });
    for (const [value, word] of this.entry.words) field.append(el("option", { value, selected: String(value) === now }, `${word} ${value}`));
    field.addEventListener("change", () => {
      this.set(field.value);
      field.blur();
    });
    return field;
  }
}

/** Searches every value of the unit, shows what it is now, and keeps an eye on some of them. */
export class Inspector {
  private watched: string[] = [];
  private found: Entry[] = [];
  private readonly rows = new Map<string, ValueRow[]>();
  private readonly known = new Map<string, ValueNews>();
  private readonly search = byId("search") as HTMLInputElement;

  /** `also`: what the page itself wants to know. */
  constructor(private readonly connection: Connection, private readonly catalogue: Catalogue, private readonly also: Map<string, (news: ValueNews) => void>) {
    try {
      const kept = JSON.parse(localStorage.getItem(memoryKey) ?? JSON.stringify(firstWatched)) as unknown;
      if (Array.isArray(kept)) this.watched = kept.filter((name): name is string => typeof name === "string").slice(0, mostWatched);
    } catch {
      this.watched = firstWatched;
    }
    this.search.addEventListener("input", () => this.show());
    this.search.addEventListener("keydown", (event) => event.stopPropagation());
  }

  /** Everything is told anew: the connection is new. */
  restart(): void {
    this.known.clear();
    this.show();
  }

  take(news: ValueNews[]): void {
    for (const one of news) {
      this.known.set(one.name, one);
      this.also.get(one.name)?.(one);
      for (const row of this.rows.get(one.name) ?? []) row.take(one);
    }
  }

  private toggle(name: string): void {
    if (this.watched.includes(name)) this.watched = this.watched.filter((one) => one !== name);
    else if (this.watched.length < mostWatched) this.watched.push(name);
    localStorage.setItem(memoryKey, JSON.stringify(this.watched));
    this.show();
  }

  private row(entry: Entry): HTMLElement {
    const row = new ValueRow(entry, this.connection, (name) => this.toggle(name));
    row.setPinned(this.watched.includes(entry.name));
    const known = this.known.get(entry.name);
    if (known) row.take(known);
    this.rows.set(entry.name, [...(this.rows.get(entry.name) ?? []), row]);
    return row.element;
  }

  private tableRow(table: Table): HTMLElement {
    const open = el("button", { type: "button", class: "value" }, `${table.rows} rows of ${table.fields.length}`);
    open.addEventListener("click", () => {
      this.search.value = `${table.name}[0]`;
      this.show();
      this.search.focus();
    });
    return el("div", { class: "value-row table" }, el("span"), el("span", { class: "name" }, table.name), open);
  }

  private show(): void {
    this.rows.clear();
    const text = this.search.value;
    const { entries, tables } = text.trim() ? this.catalogue.search(text) : { entries: [], tables: [] };
    this.found = entries.slice(0, mostFound);
    const left = entries.length + tables.length - this.found.length - Math.min(tables.length, mostFound);
    const watched = this.watched.flatMap((name) => this.catalogue.find(name) ?? []);
    byId("watched").replaceChildren(...watched.map((entry) => this.row(entry)));
    byId("found").replaceChildren(...this.found.map((entry) => this.row(entry)), ...tables.slice(0, mostFound).map((table) => this.tableRow(table)));
    setText(byId("search-note"), this.note(text, entries.length + tables.length, left));
    this.connection.send({ t: "watch", names: [...new Set([...this.also.keys(), ...this.watched, ...this.found.map((entry) => entry.name)])] });
  }

  private note(text: string, found: number, left: number): string {
    if (!text.trim()) return this.watched.length > 0 ? "" : "Search a name, then pin what you want to keep an eye on.";
    if (found === 0) return "No value has such a name.";
    return left > 0 ? `${left} more; say more of the name.` : "";
  }
}
