// A unit of the build for one test, and a socket client that does what no browser would.
import { execFileSync, spawnSync } from "node:child_process";
import crypto from "node:crypto";
import fs from "node:fs";
import net from "node:net";
import os from "node:os";

const wait = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

/** Until `condition` gives something; what it gave. */
export async function eventually(what, condition, patience = 10000) {
  const end = Date.now() + patience;
  for (;;) {
    const result = await condition();
    if (result) return result;
    if (Date.now() > end) throw new Error(`It did not come to this: ${what}`);
    await wait(40);
  }
}

export class Unit {
  constructor(build, name) {
    this.name = `${name}-${process.pid}`;
    this.program = `${build}/bin/unitctl`;
    this.folder = `/tmp/tern-${os.userInfo().uid}/${this.name}`;
  }

  /** What unitctl says; throws with its complaint. */
  ctl(...words) {
    const done = spawnSync(this.program, ["--instance", this.name, ...words], { encoding: "utf8", env: { ...process.env, ...this.env } });
    if (done.status !== 0) throw new Error(`unitctl ${words.join(" ")}: ${done.stderr}`);
    return done.stdout.trim();
  }

  start(...words) {
    this.ctl("start", ...words);
  }

  get status() {
    return JSON.parse(this.ctl("--json", "status"));
  }

  /** Of the open panel. */
  get port() {
    return Number(new URL(this.ctl("panel")).port);
  }

  get log() {
    return fs.readFileSync(`${this.folder}/dev/kmsg`, "utf8");
  }

  end() {
    try {
      this.ctl("stop");
    } catch {
      // It did not run.
    }
    fs.rmSync(this.folder, { recursive: true, force: true });
  }
}

/** The answer to a request as it is written, byte by byte; its first line. */
export function request(port, text) {
  return new Promise((resolve, reject) => {
    const socket = net.connect(port, "127.0.0.1", () => socket.write(text));
    let answer = "";
    socket.on("data", (data) => {
      answer += data;
      if (answer.includes("\r\n\r\n")) socket.destroy();
    });
    socket.on("close", () => resolve(answer.split("\r\n")[0]));
    socket.on("error", reject);
  });
}

export function handshake(port, headers = {}) {
  const all = {
    Host: `127.0.0.1:${port}`,
    Origin: `http://127.0.0.1:${port}`,
    Upgrade: "websocket",
    Connection: "Upgrade",
    "Sec-WebSocket-Version": "13",
    "Sec-WebSocket-Key": crypto.randomBytes(16).toString("base64"),
    ...headers,
  };
  const lines = Object.entries(all).filter(([, value]) => value !== undefined);
  return `GET /socket HTTP/1.1\r\n${lines.map(([name, value]) => `${name}: ${value}\r\n`).join("")}\r\n`;
}

/** A client of the panel's socket that can be as bad as it likes. */
export class Socket {
  messages = [];
  frames = 0;
  closed = false;

  static async open(port) {
    const made = new Socket();
    made.socket = net.connect(port, "127.0.0.1");
    made.socket.on("error", () => (made.closed = true));
    made.socket.on("close", () => (made.closed = true));
    let bytes = Buffer.alloc(0);
    let upgraded = false;
    made.socket.on("data", (data) => {
      bytes = Buffer.concat([bytes, data]);
      if (!upgraded) {
        const end = bytes.indexOf("\r\n\r\n");
        if (end < 0) return;
        upgraded = bytes.subarray(0, 12).toString() === "HTTP/1.1 101";
        bytes = bytes.subarray(end + 4);
      }
      bytes = made.#take(bytes);
    });
    made.socket.write(handshake(port));
    await eventually("the socket says hello", () => made.messages.find((message) => message.t === "hello"));
    return made;
  }

  #take(bytes) {
    for (;;) {
      if (bytes.length < 2) return bytes;
      let length = bytes[1] & 127;
      let at = 2;
      if (length === 126) {
        if (bytes.length < 4) return bytes;
        length = bytes.readUInt16BE(2);
        at = 4;
      } else if (length === 127) {
        if (bytes.length < 10) return bytes;
        length = Number(bytes.readBigUInt64BE(2));
        at = 10;
      }
      if (bytes.length < at + length) return bytes;
      const content = bytes.subarray(at, at + length);
      if ((bytes[0] & 15) === 1) this.messages.push(JSON.parse(content.toString()));
      if ((bytes[0] & 15) === 2) {
        ++this.frames;
        if (this.givesCredit) this.send({ t: "credit" });
      }
      bytes = bytes.subarray(at + length);
    }
  }

  /** One frame of the protocol with any opcode. */
  sendRaw(content, opcode = 1) {
    const data = Buffer.from(content);
    const head = data.length < 126 ? Buffer.from([0x80 | opcode, 0x80 | data.length]) : Buffer.from([0x80 | opcode, 0xfe, data.length >> 8, data.length & 255]);
    const mask = crypto.randomBytes(4);
    const masked = Buffer.from(data.map((byte, index) => byte ^ mask[index & 3]));
    if (!this.closed) this.socket.write(Buffer.concat([head, mask, masked]));
  }

  send(message) {
    this.sendRaw(JSON.stringify(message));
  }

  vanish() {
    this.socket.destroy();
  }
}

/** Of a process of the machine. */
export function isAlive(pid) {
  try {
    process.kill(pid, 0);
    return true;
  } catch {
    return false;
  }
}

export function version(program) {
  return execFileSync(program, ["--version"], { encoding: "utf8" }).trim();
}
