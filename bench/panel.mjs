// What an open panel costs: node bench/panel.mjs BUILD-FOLDER [SECONDS]
// The same unit, in one run: without a panel, with one that nobody has open, and with one in a browser; idle, and with
// the knob turned 60 times a second. CPU time is that of /proc, in percent of one core.
import fs from "node:fs";
import { createRequire } from "node:module";
import net from "node:net";
import os from "node:os";
import path from "node:path";
import { Unit } from "../tests/panel/browser/unit.mjs";

const build = path.resolve(process.argv[2]);
const seconds = Number(process.argv[3] ?? 10);
const { chromium } = createRequire(`${build}/panel-browser/`)("playwright-core");

const wait = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));
const ticks = (pid) => {
  if (!pid) return 0;
  const fields = fs.readFileSync(`/proc/${pid}/stat`, "utf8").split(") ")[1].split(" ");
  return Number(fields[11]) + Number(fields[12]);
};

const unit = new Unit(build, "bench");
unit.start("--scene", "prime-metres");
const profile = fs.mkdtempSync(path.join(os.tmpdir(), "tern-browser-"));
let browser;
try {
  const control = net.connect(`${unit.folder}/var/volatile/unit-control.socket`);
  control.on("data", () => undefined);
  let page = null;

  async function measure(what, turning) {
    const begin = performance.now();
    const timer = turning ? setInterval(() => control.write(`do hands knob ${(0.5 + 0.4 * Math.sin((performance.now() - begin) / 1500)).toFixed(4)}\n`), 1000 / 60) : 0;
    await wait(1000);
    const shown = async () => (page ? Number(await page.evaluate(() => window.drawn)) : 0);
    const status = unit.status;
    const before = { shown: await shown(), at: performance.now() };
    const [product, panel, server] = [status.product, status.panel, status.server].map((pid) => [pid, ticks(pid)]);
    await wait(seconds * 1000);
    const length = (performance.now() - before.at) / 1000;
    const cost = ([pid, old]) => (pid ? `${((ticks(pid) - old) / length).toFixed(1)} %` : "-");
    const passes = ((unit.status.frames - status.frames) / length).toFixed(0);
    const drawn = page ? (((await shown()) - before.shown) / length).toFixed(0) : "-";
    console.log(`${what.padEnd(26)} product ${cost(product)}  panel ${cost(panel)}  server ${cost(server)}  passes/s ${passes}  drawn in the page/s ${drawn}`);
    clearInterval(timer);
  }

  await measure("no panel, idle", false);
  await measure("no panel, turning", true);
  const address = unit.ctl("panel");
  await measure("panel, no page, idle", false);
  await measure("panel, no page, turning", true);
  browser = await chromium.launchPersistentContext(profile, { executablePath: "/usr/bin/chromium", args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking", "--disable-component-update", "--disable-sync"], viewport: { width: 1440, height: 900 } });
  page = browser.pages()[0] ?? (await browser.newPage());
  await page.goto(address);
  await page.waitForSelector("#display[data-frame]");
  await page.evaluate(() => {
    window.drawn = 0;
    new MutationObserver(() => ++window.drawn).observe(document.getElementById("display"), { attributes: true, attributeFilter: ["data-frame"] });
  });
  await measure("panel, one page, idle", false);
  await measure("panel, one page, turning", true);
} finally {
  await browser?.close();
  fs.rmSync(profile, { recursive: true, force: true });
  unit.end();
}
process.exit(0);
