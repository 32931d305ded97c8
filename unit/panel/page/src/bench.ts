// The bench: what lies around the unit, and is plugged in, taken away or run down by hand.
import type { Catalogue } from "./catalogue";
import type { Connection } from "./connection";
import { byId, el, setText, words } from "./dom";
import type { Modules, Scene, Setting } from "./protocol";

type Value = boolean | number | string;

/** Choices up to so many are keys side by side; more are a list. */
const mostKeys = 5;
/** Numbers with a wider range are written, not pushed. */
const widestFader = 2000;

const order = ["lens", "motors", "camera", "radio", "power", "files"];
/** On the unit itself, not on the bench. */
const elsewhere = ["hands"];
const titles: Record<string, string> = { power: "Battery", files: "USB stick" };
const labels: Record<string, string> = {
  "lens.lens": "",
  "camera.camera": "",
  "radio.modem": "Modem",
  "power.battery": "Charge",
  "power.external": "External supply",
  "files.usb": "Plugged in",
  "camera.media-minutes": "Medium, min",
};
/** The sign of a motor's state, as on the unit: a disc when it is ready, a ring when it is not. */
const motorSigns: Record<string, string> = { ready: "ready", absent: "none", lost: "wrong", error: "wrong" };

const choiceNames: Record<string, string> = { "prime-35": "35 mm", "prime-75": "75 mm", "zoom-25-250": "25–250 mm" };
/** Numbers that are values of an enum, named as those of this variable are. */
const wordsLike: Record<string, string> = { "camera.state": "VarCamState", "radio.region": "VarRadioRegion" };
/** Within a module; others follow by name. */
const settingOrder = ["lens", "focus", "iris", "zoom", "aux", "cinefade", "camera", "recording", "modem", "connected"];

function byOrder(names: string[], first: string[]): string[] {
  return [...first.filter((name) => names.includes(name)), ...names.filter((name) => !first.includes(name)).sort()];
}

let lastId = 0;

interface Row {
  element: HTMLElement;
  take(setting: Setting): void;
}

class Rows {
  constructor(
    private readonly connection: Connection,
    private readonly catalogue: Catalogue,
    private readonly complain: (text: string) => void,
  ) {}

  make(module: string, name: string, setting: Setting): Row {
    const id = `bench${++lastId}`;
    const label = labels[`${module}.${name}`] ?? words(name);
    const spoken = `${titles[module] ?? words(module)}: ${label || words(name)}`;
    const change = (value: Value): void => {
      this.connection
        .ask({ t: "do", module, setting: name, value })
        .catch((problem: Error) => this.complain(problem.message));
    };
    const entries = this.catalogue.find(wordsLike[`${module}.${name}`] ?? "")?.words ?? [];
    const control = entries.length > 0 ? wordList(id, spoken, entries, change) : this.control(setting, id, spoken, change);
    const head = label ? [el("label", { for: id, id: `${id}-label` }, label)] : [];
    const element = el("div", { class: `row ${setting.kind}`, "data-setting": `${module}.${name}` }, ...head, control.element);
    if (module === "motors") element.prepend(el("i", { class: "sign" }));
    const take = (now: Setting): void => {
      control.take(now);
      if (module === "motors") element.dataset["sign"] = motorSigns[String(now.value)] ?? "not";
        if (name === "recording") element.classList.toggle("recording", now.value === true);
    };
    take(setting);
    return { element, take };
  }

  /** By the kind that the server tells: a setting it learns tomorrow has its control today. */
  private control(setting: Setting, id: string, spoken: string, change: (value: Value) => void): Row {
    if (setting.kind === "flag") return flag(id, spoken, change);
    if (setting.kind === "choice")
      return (setting.choices ?? []).length <= mostKeys ? choiceKeys(id, spoken, setting, change) : choiceList(id, spoken, setting, change);
    if (setting.kind === "number" && isShortCount(setting)) return digits(id, spoken, setting, change);
    const range = (setting.maximum ?? Infinity) - (setting.minimum ?? -Infinity);
    if (setting.kind === "number" && range <= widestFader) return fader(id, spoken, setting, change);
    return written(id, spoken, setting, change);
  }
}

function flag(id: string, spoken: string, change: (value: Value) => void): Row {
  const element = el("button", { id, class: "switch", role: "switch", "aria-label": spoken, type: "button" }, el("i"));
  element.addEventListener("click", () => change(element.getAttribute("aria-checked") !== "true"));
  return { element, take: (now) => element.setAttribute("aria-checked", String(now.value === true)) };
}

/** From 0 to a few, in whole steps. */
function isShortCount({ minimum = 0, maximum = 0 }: Setting): boolean {
  return minimum === 0 && Number.isInteger(maximum) && maximum > 1 && maximum < mostKeys;
}

function digits(id: string, spoken: string, setting: Setting, change: (value: Value) => void): Row {
  const all = Array.from({ length: (setting.maximum ?? 0) + 1 }, (_, digit) => String(digit));
  const row = choiceKeys(id, spoken, { ...setting, choices: all }, (value) => change(Number(value)));
  return { element: row.element, take: (now) => row.take({ ...now, value: String(now.value) }) };
}

function choiceKeys(id: string, spoken: string, setting: Setting, change: (value: Value) => void): Row {
  const keys = (setting.choices ?? []).map((choice) => {
    const key = el("button", { type: "button", role: "radio", tabindex: -1, "data-choice": choice }, choiceNames[choice] ?? words(choice));
    key.addEventListener("click", () => change(choice));
    return key;
  });
  const element = el("div", { id, class: "segments", role: "radiogroup", "aria-label": spoken }, ...keys);
  element.addEventListener("keydown", (event) => {
    const step = { ArrowRight: 1, ArrowDown: 1, ArrowLeft: -1, ArrowUp: -1 }[event.key];
    if (!step) return;
    event.preventDefault();
    event.stopPropagation();
    const at = keys.findIndex((key) => key === document.activeElement);
    const next = keys[(at + step + keys.length) % keys.length];
    next?.focus();
    next?.click();
  });
  const take = (now: Setting): void => {
    for (const key of keys) {
      const chosen = key.dataset["choice"] === now.value;
      key.setAttribute("aria-checked", String(chosen));
      key.tabIndex = chosen ? 0 : -1;
    }
  };
  return { element, take };
}

function choiceList(id: string, spoken: string, setting: Setting, change: (value: Value) => void): Row {
  const element = el("select", { id, "aria-label": spoken });
  for (const choice of setting.choices ?? []) element.append(el("option", { value: choice }, words(choice)));
  element.addEventListener("change", () => change(element.value));
  return { element, take: (now) => (element.value = String(now.value)) };
}

function wordList(id: string, spoken: string, entries: [number, string][], change: (value: Value) => void): Row {
  const element = el("select", { id, "aria-label": spoken });
  for (const [value, word] of entries) element.append(el("option", { value }, word.replace(/([a-z])([A-Z])/g, "$1 $2")));
  element.addEventListener("change", () => change(Number(element.value)));
  return { element, take: (now) => (element.value = String(now.value)) };
}

function fader(id: string, spoken: string, setting: Setting, change: (value: Value) => void): Row {
  const lowest = setting.minimum ?? 0;
  const highest = setting.maximum ?? 1;
  const step = highest - lowest >= 100 ? 1 : highest - lowest > 2 ? 0.1 : 0.01;
  const decimals = step === 1 ? 0 : step === 0.1 ? 1 : 2;
  const input = el("input", { id, type: "range", min: lowest, max: highest, step, "aria-label": spoken });
  const figure = el("output", { for: id });
  let touched = 0;
  const show = (value: number): void => {
    input.value = String(value);
    input.style.setProperty("--part", `${((value - lowest) / (highest - lowest)) * 100}%`);
    setText(figure, value.toFixed(decimals));
  };
  input.addEventListener("input", () => {
    touched = performance.now();
    show(Number(input.value));
    change(Number(input.value));
  });
  const take = (now: Setting): void => {
    if (performance.now() - touched > 700) show(Number(now.value));
  };
  return { element: el("div", { class: "fader" }, input, figure), take };
}

function written(id: string, spoken: string, setting: Setting, change: (value: Value) => void): Row {
  const element = el("input", { id, type: "text", "aria-label": spoken, autocomplete: "off", spellcheck: "false" });
  element.addEventListener("change", () => change(setting.kind === "number" ? Number(element.value) : element.value));
  const take = (now: Setting): void => {
    if (document.activeElement !== element) element.value = String(now.value);
  };
  return { element, take };
}

export class Bench {
  private readonly rows = new Map<string, Row>();
  private shape = "";
  private readonly maker: Rows;

  constructor(
    private readonly connection: Connection,
    catalogue: Catalogue,
    private readonly complain: (text: string) => void,
  ) {
    this.maker = new Rows(connection, catalogue, complain);
  }

  takeScenes(scenes: Scene[]): void {
    const about = el("p", { class: "about", "aria-live": "polite" }, "A scene switches the unit on anew.");
    const chips = scenes.map((scene) => {
      const chip = el("button", { type: "button", class: "chip", "data-scene": scene.name, title: scene.about }, words(scene.name));
      const tell = (): void => setText(about, scene.about);
      chip.addEventListener("pointerenter", tell);
      chip.addEventListener("focus", tell);
      chip.addEventListener("click", () => {
        for (const other of chips) other.removeAttribute("aria-current");
        this.connection
          .ask({ t: "scene", name: scene.name })
          .then(() => chip.setAttribute("aria-current", "true"))
          .catch((problem: Error) => this.complain(problem.message));
      });
      return chip;
    });
    byId("scenes").replaceChildren(el("div", { class: "chips" }, ...chips), about);
  }

  /** The rows stay while their kinds do, so that nothing moves under a hand. */
  take(modules: Modules): void {
    const known = Object.keys(modules).filter((name) => !elsewhere.includes(name));
    const names = byOrder(known, order);
    const shape = JSON.stringify(names.map((name) => Object.entries(modules[name] ?? {}).map(([key, one]) => [name, key, one.kind, one.choices])));
    if (shape !== this.shape) this.build(names, modules);
    this.shape = shape;
    for (const [module, settings] of Object.entries(modules))
      for (const [name, setting] of Object.entries(settings)) this.rows.get(`${module}.${name}`)?.take(setting);
  }

  private build(names: string[], modules: Modules): void {
    this.rows.clear();
    const sections: HTMLElement[] = [];
    for (const module of names) {
      const settings = modules[module] ?? {};
      if (Object.keys(settings).length === 0) continue;
      const section = el("section", { class: "module", "data-module": module }, el("h3", {}, titles[module] ?? words(module)));
      for (const name of byOrder(Object.keys(settings), settingOrder)) {
        const setting = settings[name];
        if (!setting) continue;
        const row = this.maker.make(module, name, setting);
        this.rows.set(`${module}.${name}`, row);
        section.append(row.element);
      }
      sections.push(section);
    }
    byId("modules").replaceChildren(...sections);
  }
}
