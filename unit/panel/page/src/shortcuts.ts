import type { Knob, Slider, Springy } from "./controls";
import { byId, el, isTurned } from "./dom";
import type { Keys } from "./keys";

interface Hands {
  keys: Keys;
  knob: Knob;
  slider: Slider;
  stick: Springy;
  pad: Springy;
  step: (frames: number) => void;
}

/** By where the keys lie, whatever the keyboard's language. */
const unitKeys: Record<string, string> = {
  KeyQ: "ul",
  KeyW: "um",
  KeyE: "ur",
  KeyA: "ll",
  KeyS: "lm",
  KeyD: "lr",
  Digit1: "user1",
  Digit2: "user2",
  Digit3: "user3",
  KeyP: "page",
  KeyR: "record",
  KeyF: "function",
  KeyO: "power",
};

/** Of a unit that is held upside down. */
const opposite: Record<string, string> = { ul: "lr", um: "lm", ur: "ll", ll: "ur", lm: "um", lr: "ul" };

const stickKeys: Record<string, [number, number]> = {
  ArrowUp: [0, 1],
  ArrowDown: [0, -1],
  ArrowLeft: [-1, 0],
  ArrowRight: [1, 0],
};

const padKeys: Record<string, number> = { KeyT: 1, KeyG: -1 };
const turns: Record<string, ["knob" | "slider", number]> = {
  Comma: ["knob", -0.01],
  Period: ["knob", 0.01],
  KeyX: ["slider", -0.02],
  KeyC: ["slider", 0.02],
};

export const sheet: [string, string][] = [
  ["Q  W  E", "Upper soft keys"],
  ["A  S  D", "Lower soft keys"],
  ["1  2  3", "User buttons"],
  ["P", "Page"],
  ["F", "Function"],
  ["R", "Record"],
  ["O", "Power"],
  ["← ↑ → ↓", "Joystick"],
  [",  .", "Focus knob; with Shift a tenth of it"],
  ["X  C", "Slider"],
  ["T  G", "Force pad up, down"],
  ["N", "One frame, in lockstep"],
  ["/", "Search a variable"],
  ["?", "This sheet"],
  ["Mouse", "On the display: one finger. With Shift at the press: two that pinch"],
  ["Wheel", "On the display: pinch. On the knob and the slider: turn"],
];

function isTyping(target: EventTarget | null): boolean {
  return target instanceof HTMLInputElement || target instanceof HTMLSelectElement || target instanceof HTMLTextAreaElement;
}

export function listenToKeyboard(hands: Hands): void {
  const dialog = byId("shortcuts") as HTMLDialogElement;
  byId("shortcut-list").append(...sheet.flatMap(([keys, meaning]) => [el("dt", {}, ...keys.split("  ").map((key) => el("kbd", {}, key))), el("dd", {}, meaning)]));
  byId("help").addEventListener("click", () => dialog.showModal());
  dialog.addEventListener("click", (event) => {
    if (event.target === dialog) dialog.close();
  });

  window.addEventListener("keydown", (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey || isTyping(event.target) || dialog.open) return;
    const turn = turns[event.code];
    if (turn) {
      hands[turn[0]].nudge(turn[1] * (event.shiftKey ? 0.1 : 1));
    } else if (event.key === "?") {
      dialog.showModal();
    } else if (event.key === "/") {
      showPane("variables");
      byId("search").focus();
    } else if (event.code === "KeyN") {
      hands.step(1);
    } else if (!event.repeat && !press(event.code)) {
      return;
    }
    event.preventDefault();
  });
  window.addEventListener("keyup", (event) => lift(event.code));
  window.addEventListener("blur", () => {
    hands.stick.letGo();
    hands.pad.letGo();
  });

  const held = new Map<string, string>();

  function keyFor(code: string): string | undefined {
    const key = unitKeys[code];
    return key && isTurned() ? opposite[key] ?? key : key;
  }

  function press(code: string): boolean {
    const key = keyFor(code);
    const lean = stickKeys[code];
    const push = padKeys[code];
    if (key) {
      held.set(code, key);
      hands.keys.hold(key, "keyboard");
    }
    if (lean) hands.stick.lean(code, ...lean);
    if (push) hands.pad.lean(code, 0, push);
    return Boolean(key ?? lean ?? push);
  }

  function lift(code: string): void {
    const key = held.get(code);
    held.delete(code);
    if (key) hands.keys.release(key, "keyboard");
    hands.stick.relax(code);
    hands.pad.relax(code);
  }
}

/** In a narrow window one pane is shown at a time. */
export function showPane(name: string): void {
  document.body.dataset["pane"] = name;
  for (const tab of document.querySelectorAll<HTMLElement>("[role=tab]")) {
    const chosen = tab.dataset["pane"] === name;
    tab.setAttribute("aria-selected", String(chosen));
    tab.tabIndex = chosen ? 0 : -1;
  }
}
