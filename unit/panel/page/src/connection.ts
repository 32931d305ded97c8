import type { Answer, Incoming, Outgoing } from "./protocol";

type Listener<T extends Incoming["t"]> = (message: Extract<Incoming, { t: T }>) => void;

const firstPause = 250;
const longestPause = 2000;
/** Beyond that much unsent input the unit is not there to take it. */
const mostUnsent = 64 * 1024;
const answerPatience = 15000;

/** The socket to the panel's program. It comes back by itself; whoever listens is told the whole truth anew then. */
export class Connection {
  onFrame: (bytes: ArrayBuffer) => void = () => undefined;
  onLink: (open: boolean) => void = () => undefined;

  private socket: WebSocket | null = null;
  private pause = firstPause;
  private listeners = new Map<string, ((message: Incoming) => void)[]>();
  private answers = new Map<number, (answer: Answer) => void>();
  private lastNumber = 0;

  on<T extends Incoming["t"]>(word: T, listener: Listener<T>): void {
    const known = this.listeners.get(word) ?? [];
    known.push(listener as (message: Incoming) => void);
    this.listeners.set(word, known);
  }

  open(): void {
    const socket = new WebSocket(`ws://${location.host}/socket`);
    socket.binaryType = "arraybuffer";
    socket.onopen = () => {
      this.pause = firstPause;
      this.onLink(true);
    };
    socket.onmessage = (event: MessageEvent<string | ArrayBuffer>) => {
      if (typeof event.data === "string") this.hear(JSON.parse(event.data) as Incoming);
      else this.onFrame(event.data);
    };
    socket.onclose = () => this.lost();
    this.socket = socket;
  }

  /** False when it cannot be sent: what a hand does now is of no use later. */
  send(message: Outgoing): boolean {
    return this.transmit(message);
  }

  /** Resolves with what was answered, and rejects with what is the matter. */
  ask(message: Outgoing): Promise<string> {
    const n = ++this.lastNumber;
    return new Promise((resolve, reject) => {
      const timer = setTimeout(() => {
        this.answers.delete(n);
        reject(new Error("The unit does not answer."));
      }, answerPatience);
      this.answers.set(n, (answer) => {
        clearTimeout(timer);
        if (answer.ok) resolve(answer.text);
        else reject(new Error(answer.text));
      });
      if (!this.transmit({ ...message, n })) this.settle({ t: "answer", n, ok: false, text: "The panel is not connected." });
    });
  }

  private transmit(message: object): boolean {
    const socket = this.socket;
    if (!socket || socket.readyState !== WebSocket.OPEN || socket.bufferedAmount > mostUnsent) return false;
    socket.send(JSON.stringify(message));
    return true;
  }

  private hear(message: Incoming): void {
    if (message.t === "answer") this.settle(message);
    if (message.t === "refused") console.warn("The panel refused a message:", message.text);
    for (const listener of this.listeners.get(message.t) ?? []) listener(message);
  }

  private settle(answer: Answer): void {
    const waiting = this.answers.get(answer.n);
    this.answers.delete(answer.n);
    waiting?.(answer);
  }

  private lost(): void {
    this.onLink(false);
    for (const n of [...this.answers.keys()]) this.settle({ t: "answer", n, ok: false, text: "The connection was lost." });
    setTimeout(() => this.open(), this.pause);
    this.pause = Math.min(this.pause * 2, longestPause);
  }
}
