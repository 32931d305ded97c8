import { Bench } from "./bench";
import { Catalogue } from "./catalogue";
import { Connection } from "./connection";
import { Knob, Slider, Springy } from "./controls";
import { Display } from "./display";
import { byId, el, setText, turn } from "./dom";
import { Inspector } from "./inspector";
import { Keys } from "./keys";
import { LogView } from "./logview";
import { NoticeBoard } from "./notices";
import type { ValueNews } from "./protocol";
import { listenToKeyboard, showPane } from "./shortcuts";
import { StatusBar } from "./statusbar";
import { Touch } from "./touch";
import { TraceSwitches } from "./trace";

const connection = new Connection();
const keys = new Keys(connection);
const display = new Display(byId("display") as HTMLCanvasElement, connection);
const touch = new Touch(display, connection);
const knob = new Knob(connection);
const slider = new Slider(connection);
const stick = new Springy(connection, "stick", "Joystick");
const pad = new Springy(connection, "pad", "Force pad");
const status = new StatusBar(connection);
const notices = new NoticeBoard();
const log = new LogView(connection);
const trace = new TraceSwitches(connection);

let complaint = 0;
function complain(text: string): void {
  const place = byId("complaint");
  setText(place, text);
  place.hidden = false;
  window.clearTimeout(complaint);
  complaint = window.setTimeout(() => (place.hidden = true), 6000);
}
const catalogue = new Catalogue();
const bench = new Bench(connection, catalogue, complain);

function softKey(key: string): HTMLElement {
  return keys.button(key, "soft", el("i"));
}
byId("soft-upper").append(softKey("ul"), softKey("um"), softKey("ur"));
byId("soft-lower").append(softKey("ll"), softKey("lm"), softKey("lr"));
byId("users").append(...["1", "2", "3"].map((number) => keys.button(`user${number}`, "round", number)));
byId("left-rail").append(slider.element, pad.element);
byId("record-place").append(keys.button("record", "round record", el("i")));
byId("power-place").append(keys.button("power", "round power", el("i")));
byId("knob-place").append(knob.element);
byId("named-keys").append(keys.button("page", "wide", "Page"), keys.button("function", "wide", "Function"));
byId("stick-place").append(stick.element);

// What moves what is told under the control that moves it.
const controlled = { stickDrives: true, pad: "" };
function namePad(): void {
  pad.nameAxis(controlled.stickDrives ? "" : controlled.pad, !controlled.stickDrives);
}
const wordOf = (news: ValueNews): string => news.word ?? "";
const also = new Map<string, (news: ValueNews) => void>([
  ["VarKnobAssignment", (news) => knob.nameAxis(wordOf(news))],
  ["VarSliderAssignment", (news) => slider.nameAxis(wordOf(news))],
  ["VarForcePadAssignment", (news) => { controlled.pad = wordOf(news); namePad(); }],
  ["VarGuiRotate", (news) => turn(news.value === "1")],
  ["VarJoystickControlsGui", (news) => { controlled.stickDrives = news.value === "1"; namePad(); }],
]);

const inspector = new Inspector(connection, catalogue, also);

connection.onLink = (open) => {
  status.setLink(open);
  touch.reset();
  if (!open) return;
  log.restart();
  inspector.restart();
};
connection.on("hello", (hello) => {
  setText(byId("instance"), hello.instance);
  document.title = `${hello.instance} · Tern`;
  bench.takeScenes(hello.scenes);
  byId("log-lines").replaceChildren();
});
connection.on("status", (now) => {
  status.take(now);
  if (now.trace) trace.take(now.trace);
  display.canvas.setAttribute("aria-label", now.page ? `Display, shows the page ${now.page}` : "Display");
});
connection.on("settings", ({ modules }) => {
  knob.take(modules["hands"]?.["knob"]);
  slider.take(modules["hands"]?.["slider"]);
  bench.take(modules);
});
connection.on("values", ({ values }) => inspector.take(values));
connection.on("log", (lines) => log.take(lines));
connection.on("notices", (now) => notices.take(now.notices));

/** The display takes what the window leaves it. */
function fit(): void {
  const style = getComputedStyle(document.documentElement);
  const room = (name: string): number => Number.parseFloat(style.getPropertyValue(name)) || 0;
  const narrow = window.matchMedia("(max-width: 989px)").matches;
  const width = narrow ? window.innerWidth - room("--beside-narrow") : window.innerWidth - room("--beside");
  const height = narrow ? Infinity : window.innerHeight - room("--above");
  display.fit(Math.max(width, 120), Math.max(height, 200));
}
window.addEventListener("resize", fit);

for (const tab of document.querySelectorAll<HTMLElement>("[role=tab]")) {
  tab.addEventListener("click", () => showPane(tab.dataset["pane"] ?? "bench"));
  tab.addEventListener("keydown", (event) => {
    if (event.key !== "ArrowRight" && event.key !== "ArrowLeft") return;
    event.preventDefault();
    event.stopPropagation();
    const other = event.key === "ArrowRight" ? tab.nextElementSibling : tab.previousElementSibling;
    if (!(other instanceof HTMLElement)) return;
    showPane(other.dataset["pane"] ?? "bench");
    other.focus();
  });
}
showPane("bench");
listenToKeyboard({ keys, knob, slider, stick, pad, step: (frames) => status.step(frames) });
fit();
catalogue
  .load()
  .catch(() => complain("The names of the values cannot be loaded."))
  .finally(() => connection.open());
