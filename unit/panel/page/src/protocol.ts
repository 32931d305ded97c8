// What goes over the socket. The program's side is unit/panel/request.h and panel.cpp.

export interface Scene {
  name: string;
  about: string;
}

export interface Hello {
  t: "hello";
  instance: string;
  width: number;
  height: number;
  keys: string[];
  scenes: Scene[];
}

export type TraceWord = "draw" | "event" | "var" | "page";

export interface Status {
  t: "status";
  up: boolean;
  pans: number;
  passes: number;
  pacing?: "free" | "lockstep";
  page?: string;
  restarts?: number;
  lastEnd?: string;
  product?: number;
  server?: number;
  missed?: number;
  trace?: Record<TraceWord, number>;
}

export interface Setting {
  kind: "flag" | "number" | "choice" | "text";
  value: boolean | number | string;
  minimum?: number;
  maximum?: number;
  choices?: string[];
}

export type Modules = Record<string, Record<string, Setting>>;

export interface Settings {
  t: "settings";
  modules: Modules;
}

export interface ValueNews {
  name: string;
  value: string;
  word?: string;
  problem?: string;
}

export interface Values {
  t: "values";
  values: ValueNews[];
}

/** Level, program, place, text. */
export type LogLine = [number, string, string, string];

export interface Log {
  t: "log";
  lines: LogLine[];
  gap: boolean;
}

export interface Notice {
  key: string;
  problem: boolean;
  title: string;
  text: string;
}

export interface Notices {
  t: "notices";
  notices: Notice[];
}

export interface Answer {
  t: "answer";
  n: number;
  ok: boolean;
  text: string;
}

export interface Refused {
  t: "refused";
  text: string;
}

export type Incoming = Hello | Status | Settings | Values | Log | Notices | Answer | Refused;

export type Point = [number, number];

export type Outgoing =
  | { t: "credit" }
  | { t: "key"; key: string; down: boolean }
  | { t: "touch"; points: (Point | null)[] }
  | { t: "do"; module: string; setting: string; value: boolean | number | string }
  | { t: "set"; name: string; value: string }
  | { t: "scene"; name: string }
  | { t: "trace"; word: TraceWord; mask: number }
  | { t: "watch"; names: string[] }
  | { t: "loglevel"; level: number }
  | { t: "step"; frames: number };
