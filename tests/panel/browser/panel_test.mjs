// The front panel in a real browser over a real unit: node panel_test.mjs BUILD-FOLDER
import assert from "node:assert/strict";
import fs from "node:fs";
import { createRequire } from "node:module";
import os from "node:os";
import path from "node:path";
import { Socket, Unit, eventually, handshake, request } from "./unit.mjs";

const build = path.resolve(process.argv[2]);
const { chromium } = createRequire(`${build}/panel-browser/`)("playwright-core");

const unit = new Unit(build, "panel");
const profile = fs.mkdtempSync(path.join(os.tmpdir(), "tern-browser-"));
let failures = 0;
let page = null;

async function check(name, action) {
  const begin = Date.now();
  try {
    await action();
    console.log(`ok      ${name} (${Date.now() - begin} ms)`);
  } catch (problem) {
    ++failures;
    console.log(`FAILED  ${name}\n        ${String(problem.stack ?? problem).replaceAll("\n", "\n        ")}`);
    const picture = `${build}/panel-browser/failed-${failures}.png`;
    await page?.screenshot({ path: picture }).then(() => console.log(`        The page then: ${picture}`), () => undefined);
  }
}

unit.start("--scene", "prime-metres", "--panel");
let browser;
try {
  const port = unit.port;
  const browserOptions = ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking", "--disable-component-update", "--disable-sync"];
  browser = await chromium.launchPersistentContext(profile, { executablePath: "/usr/bin/chromium", args: browserOptions, viewport: { width: 1440, height: 900 } });
  page = browser.pages()[0] ?? (await browser.newPage());
  const problems = [];
  page.on("pageerror", (problem) => problems.push(String(problem)));
  page.on("console", (message) => message.type() === "error" && problems.push(message.text()));
  await page.goto(`http://127.0.0.1:${port}/`);

  const value = (name) => unit.ctl("get", name);
  const logged = (text) => eventually(`the log says "${text}"`, () => unit.log.includes(text));
  const open = (pane) => page.click(`[role=tab][data-pane=${pane}]`);
  const state = (wanted, patience) => eventually(`state ${wanted}`, () => page.evaluate((one) => document.body.dataset.state === one, wanted), patience);
  /** Centre of a pixel of the unit's display, in the window. */
  const at = async (x, y) => {
    const box = await page.locator("#display").boundingBox();
    return [box.x + ((x + 0.5) * box.width) / 240, box.y + ((y + 0.5) * box.height) / 400];
  };
  const pixels = (points) =>
    page.evaluate((all) => {
      const canvas = document.getElementById("display");
      const context = canvas.getContext("2d");
      const step = canvas.width / 240;
      return all.map(([x, y]) => {
        const [r, g, b] = context.getImageData(Math.floor((x + 0.5) * step), Math.floor((y + 0.5) * step), 1, 1).data;
        return "#" + [r, g, b].map((one) => one.toString(16).padStart(2, "0")).join("");
      });
    }, points);
  const sample = [[120, 33], [120, 34], [60, 170], [75, 200], [120, 200], [20, 60], [5, 199], [230, 120], [0, 0], [239, 399]];
  const showsTheTruth = () =>
    eventually("the page shows what the display shows", async () => {
      const shown = await pixels(sample);
      return sample.every(([x, y], index) => unit.ctl("pixel", String(x), String(y)) === shown[index]);
    });

  await check("shows the display, and says so", async () => {
    await state("on");
    await showsTheTruth();
    assert.equal(await page.textContent("#page-name"), unit.ctl("page"));
  });

  await check("keys: by mouse, by the keyboard, by the focus", async () => {
    await page.locator("[data-key=user2]").click({ delay: 60 });
    await page.locator("[data-key=record]").focus();
    await page.keyboard.press("Space", { delay: 60 });
    await page.locator("#display").focus();
    await page.keyboard.press("w", { delay: 60 });
    for (const name of ["user2", "record", "um"]) assert.ok(await page.locator(`[data-key=${name}]`).isEnabled());
    await eventually("three keys went down and up", () => (unit.log.match(/USER Key: /g) ?? []).length >= 3);
  });

  await check("touch: a mouse, and where it points", async () => {
    await page.mouse.move(...(await at(200, 150)));
    await page.mouse.down();
    await page.mouse.move(...(await at(200, 180)), { steps: 3 });
    await page.mouse.up();
    await logged("USER Touch: touch/0 at 200x150");
    await logged("USER Touch: release/0 at 200x180");
  });

  await check("pinch: two fingers, the mouse with Shift, the wheel", async () => {
    const fingers = await page.context().newCDPSession(page);
    const points = async (distance) => Promise.all([-1, 1].map(async (side) => at(180 + (side * distance) / 2, 120))).then((all) => all.map(([x, y], id) => ({ x, y, id })));
    await fingers.send("Input.dispatchTouchEvent", { type: "touchStart", touchPoints: await points(40) });
    for (const distance of [60, 80, 100]) await fingers.send("Input.dispatchTouchEvent", { type: "touchMove", touchPoints: await points(distance) });
    await fingers.send("Input.dispatchTouchEvent", { type: "touchEnd", touchPoints: [] });
    await logged("USER Touch: touch/0 at 160x120");
    await logged("USER Touch: touch/1 at 200x120");
    await logged("USER Touch: release/1 at 230x120");

    await page.keyboard.down("Shift");
    await page.mouse.move(...(await at(100, 250)));
    await page.mouse.down();
    await page.mouse.move(...(await at(120, 250)), { steps: 3 });
    await page.mouse.up();
    await page.keyboard.up("Shift");
    await logged("USER Touch: touch/1 at 40x250");
    await logged("USER Touch: release/1 at 20x250");

    await page.mouse.move(...(await at(120, 300)));
    await page.mouse.wheel(0, -200);
    await logged("USER Touch: touch/1 at 160x300");
    await logged("USER Touch: release/1 at 18");
  });

  await check("knob: keys, wheel, drag", async () => {
    await page.locator(".knob").focus();
    await page.keyboard.press("Home");
    await eventually("0", () => value("VarKnob") === "0");
    await page.keyboard.press("PageUp");
    await page.keyboard.press("ArrowUp");
    await page.keyboard.press("Shift+ArrowDown");
    await eventually("0.109", () => value("VarKnob") === "0.109");
    await page.locator(".knob").hover();
    await page.mouse.wheel(0, -100);
    await eventually("0.119", () => value("VarKnob") === "0.119");
    const box = await page.locator(".knob").boundingBox();
    const [x, y, r] = [box.x + box.width / 2, box.y + box.height / 2, box.width * 0.33];
    await page.mouse.move(x, y - r);
    await page.mouse.down();
    for (let angle = 0; angle <= 90; angle += 15) await page.mouse.move(x + r * Math.sin((angle * Math.PI) / 180), y - r * Math.cos((angle * Math.PI) / 180));
    await page.mouse.up();
    await eventually("a quarter turn of 300 degrees is 0.3", () => Math.abs(Number(value("VarKnob")) - 0.419) < 0.01);
    assert.match(await page.getAttribute(".knob", "aria-valuetext"), /^41\.\d|^42\.\d/);
  });

  await check("slider, stick and force pad", async () => {
    const track = await page.locator(".slider .track").boundingBox();
    await page.mouse.click(track.x + track.width / 2, track.y + 14);
    await eventually("the slider is at its end", () => value("VarSlider") > 0.97);
    await page.locator(".slider").focus();
    await page.keyboard.press("Home");
    await eventually("the slider is at its other end", () => value("VarSlider") === "0");
    const well = await page.locator(".stick .well").boundingBox();
    await page.mouse.move(well.x + well.width / 2, well.y + well.height / 2);
    await page.mouse.down();
    await page.mouse.move(well.x + well.width, well.y + well.height / 2);
    await eventually("the stick is held", () => value("VarJoystickX") === "1");
    await page.mouse.up();
    await eventually("the stick goes back", () => value("VarJoystickX") === "0");
    await page.locator("#display").focus();
    await page.keyboard.down("ArrowUp");
    await eventually("an arrow pushes the stick", () => value("VarJoystickY") === "1");
    await page.keyboard.up("ArrowUp");
    await eventually("the stick goes back", () => value("VarJoystickY") === "0");
    unit.ctl("set", "VarJoystickControlsGui", "0");
    await page.locator(".pad:not([aria-disabled=true])").waitFor();
    await page.keyboard.down("g");
    await eventually("the force pad is pushed", () => value("VarJoystickY") === "-1");
    await page.keyboard.up("g");
    unit.ctl("set", "VarJoystickControlsGui", "1");
    await page.locator(".pad[aria-disabled=true]").waitFor();
  });

  await check("bench: lens, motor, battery, USB stick", async () => {
    await page.click("[data-setting='lens.lens'] [data-choice='prime-35']");
    await page.locator("[data-setting='lens.lens'] [data-choice='prime-35'][aria-checked=true]").waitFor();
    await page.selectOption("[data-setting='motors.zoom'] select", "ready");
    await page.locator("[data-setting='motors.zoom'][data-sign=ready]").waitFor();
    await page.fill("[data-setting='power.battery'] input", "17");
    await page.click("[data-setting='files.usb'] [role=switch]");
    await page.locator("[data-setting='files.usb'] [aria-checked=true]").waitFor();
    await page.click("[data-setting='camera.recording'] [role=switch]");
    await page.locator("[data-setting='camera.recording'].recording").waitFor();
    await showsTheTruth();
  });

  await check("variables: search, set, refuse, watch", async () => {
    await page.locator("#display").focus();
    await page.keyboard.press("/");
    await page.keyboard.type("knob lock");
    const row = page.locator("#found .value-row[data-name=VarKnobLock]");
    await row.locator(".value").click();
    await eventually("it is set", () => value("VarKnobLock") === "1");
    await row.locator(".value", { hasText: "1" }).waitFor();
    unit.ctl("set", "VarKnobLock", "0");
    await row.locator(".value", { hasText: "0" }).waitFor();
    await row.locator(".pin").click();

    await page.fill("#search", "ForcePadSpeed");
    const speed = page.locator("#found .value-row[data-name=VarForcePadSpeed]");
    await speed.locator(".value").click();
    await page.keyboard.type("4000\n");
    await speed.locator(".problem", { hasText: "out of range" }).waitFor();
    await speed.locator(".value").click();
    await page.keyboard.type("37\n");
    await eventually("it is set", () => value("VarForcePadSpeed") === "37");

    await page.fill("#search", "VarLensList[1]");
    assert.ok((await page.locator("#found .value-row").count()) > 0 || (await page.locator("#search-note").textContent()) !== "");
    await page.fill("#search", "no such thing");
    await page.locator("#search-note", { hasText: "No value" }).waitFor();
    await page.reload();
    await state("on");
    await open("variables");
    await page.locator("#watched .value-row[data-name=VarKnobLock] .value", { hasText: "0" }).waitFor();
  });

  await check("log and trace", async () => {
    await open("log");
    await page.click("#trace-box summary");
    await page.click("[aria-label='Trace event: post']");
    await eventually("the switch is on", () => (Number(value("VarTRACE_INFO_VARIABLE[0].EventFlags")) & 1) === 1);
    unit.ctl("press", "user1");
    await page.locator(".line .text", { hasText: "EVENT" }).first().waitFor();
    await page.click("[aria-label='Trace event: post']");
    await eventually("the switch is off", () => value("VarTRACE_INFO_VARIABLE[0].EventFlags") === "0");
    await page.click("#log-levels [data-level='7']");
    assert.equal(await page.locator(".line:visible").filter({ hasText: "USER" }).count(), 0);
    await page.click("#log-levels [data-level='3']");
  });

  await check("scene: the display turns white", async () => {
    await open("bench");
    await page.click("[data-scene=day]");
    await eventually("white", async () => (await pixels([[0, 0], [239, 399]])).every((color) => color === "#ffffff"));
    await page.locator("[data-scene=day][aria-current=true]").waitFor();
    await showsTheTruth();
  });

  await check("notices over the display", async () => {
    unit.ctl("notice", "model", "1 error", "home.tern:12", "--problem");
    await page.locator(".notice.wrong pre", { hasText: "home.tern:12" }).waitFor();
    unit.ctl("notice", "model", "2 errors", "--problem");
    await page.locator(".notice strong", { hasText: "2 errors" }).waitFor();
    unit.ctl("notice", "model", "--remove");
    await page.locator(".notice").waitFor({ state: "detached" });
  });

  await check("serves its own page and nothing else, to this machine and nobody else", async () => {
    const get = (target, host = `127.0.0.1:${port}`, method = "GET") => request(port, `${method} ${target} HTTP/1.1\r\nHost: ${host}\r\n\r\n`);
    assert.match(await get("/"), / 200 /);
    for (const target of ["/../../../../etc/passwd", "//etc/passwd", "/%2e%2e/etc/passwd", "/src/main.ts", "/socket"]) assert.match(await get(target), / 404 /, target);
    assert.match(await get("/", "evil.example"), / 403 /);
    assert.match(await get("/", `127.0.0.1:${port}`, "DELETE"), / 405 /);
    assert.match(await request(port, handshake(port)), / 101 /);
    assert.match(await request(port, handshake(port, { Origin: "http://evil.example" })), / 403 /);
    assert.match(await request(port, handshake(port, { Origin: `http://127.0.0.1:${port + 1}` })), / 403 /);
    assert.match(await request(port, handshake(port, { Origin: undefined })), / 403 /);
    assert.match(await request(port, handshake(port, { Host: "evil.example", Origin: "http://evil.example" })), / 403 /);
  });

  await check("eight pages and no more", async () => {
    const many = [];
    for (let i = 0; i < 7; ++i) many.push(await Socket.open(port));
    assert.match(await request(port, handshake(port)), / 503 /);
    many.pop().vanish();
    await eventually("there is room again", async () => / 101 /.test(await request(port, handshake(port))));
    for (const one of many) one.vanish();
  });

  await check("garbage, a flood, and who vanishes with a key held", async () => {
    const good = await Socket.open(port);
    good.givesCredit = true;
    const bad = await Socket.open(port);
    for (const text of ["{", "[1]", '{"t":"scene","name":"../x"}', '{"t":"do","module":"lens\\nstop","setting":"x","value":1}', "\u0000"]) bad.sendRaw(text);
    await eventually("it is told", () => bad.messages.filter((message) => message.t === "refused").length === 5);
    bad.sendRaw(Buffer.alloc(300), 2);
    await eventually("bytes end it", () => bad.closed);
    const large = await Socket.open(port);
    large.sendRaw(`{"t":"set","name":"VarA","value":"${"x".repeat(20000)}"}`);
    await eventually("a large message ends it", () => large.closed);
    const torn = await Socket.open(port);
    torn.socket.write(Buffer.from([0xff, 0x00, 0x13, 0x37]));
    await eventually("a torn protocol ends it", () => torn.closed);
    const flood = await Socket.open(port);
    for (let i = 0; i < 20000 && !flood.closed; ++i) flood.send({ t: "loglevel", level: 3 });
    await eventually("a flood ends it", () => flood.closed);

    const holder = await Socket.open(port);
    const before = (unit.log.match(/USER Key: /g) ?? []).length;
    holder.send({ t: "key", key: "user3", down: true });
    await eventually("the key is down", () => (unit.log.match(/USER Key: /g) ?? []).length > before);
    holder.vanish();
    await eventually("the key is let go", () => (unit.log.match(/USER Key: /g) ?? []).length > before + 1 || unit.log.includes("Released"));
    assert.ok(!good.closed && good.frames > 0, "the others go on");
    good.vanish();
    await showsTheTruth();
  });

  await check("two at once see the same", async () => {
    const second = await Socket.open(port);
    second.givesCredit = true;
    const frames = second.frames;
    await page.locator(".knob").focus();
    await page.keyboard.press("End");
    unit.ctl("set", "VarGuiDesignIsNightStyle", "1");
    await eventually("the other one is shown it too", () => second.frames > frames);
    await eventually("and told of it", () => second.messages.some((message) => message.t === "settings" && message.modules.hands.knob.value === 1));
    second.vanish();
  });

  await check("the product ends and comes back", async () => {
    const before = unit.status.restarts;
    process.kill(unit.status.product, "SIGKILL");
    await eventually("it is counted", () => unit.status.restarts === before + 1);
    await state("on");
    await eventually("the page counts it", async () => (await page.textContent("#restarts")) === String(before + 1));
    await showsTheTruth();
  });

  await check("the server ends and comes back", async () => {
    process.kill(unit.status.server, "SIGKILL");
    await eventually("another product runs", () => unit.status.restarts >= 2 && unit.status.product !== 0);
    await open("variables");
    unit.ctl("set", "VarKnobLock", "1");
    await page.locator("#watched .value-row[data-name=VarKnobLock] .value", { hasText: "1" }).waitFor();
    await showsTheTruth();
  });

  await check("the panel ends and comes back", async () => {
    const before = unit.status.panel;
    process.kill(before, "SIGKILL");
    await state("lost");
    await eventually("another one runs", () => ![0, before].includes(unit.status.panel), 15000);
    await state("on");
    assert.equal(unit.port, port);
    await showsTheTruth();
  });

  await check("fits a phone, and every control has a name", async () => {
    await page.setViewportSize({ width: 390, height: 844 });
    await eventually("nothing sticks out", () => page.evaluate(() => document.scrollingElement.scrollWidth <= 390));
    await page.mouse.move(0, 0);
    await page.locator("#display").scrollIntoViewIfNeeded();
    await page.mouse.click(...(await at(30, 300)));
    await logged("USER Touch: touch/0 at 30x300");
    const nameless = await page.evaluate(() =>
      [...document.querySelectorAll("button, input, select, canvas, [role=slider], [role=group], [role=radiogroup], [tabindex]")]
        .filter((one) => !one.ariaHidden && !one.getAttribute("aria-label") && !one.textContent?.trim() && !one.labels?.length)
        .map((one) => one.outerHTML.slice(0, 80)));
    assert.deepEqual(nameless, []);
    assert.deepEqual(problems.filter((problem) => !/WebSocket|ERR_CONNECTION/.test(problem)), []);
  });
} finally {
  await browser?.close();
  page = null;
  fs.rmSync(profile, { recursive: true, force: true });
  unit.end();
}

/** Calls of the product, by kind, while it does the same with and without somebody who looks. */
async function callsInLockstep(watched) {
  const one = new Unit(build, watched ? "watched" : "alone");
  const counts = path.join(os.tmpdir(), `${one.name}.calls`);
  one.env = { TERN_CALL_COUNTS: counts };
  const read = () => [...new Uint32Array(Uint8Array.from(fs.readFileSync(`${counts}.gui-virtual`)).buffer)];
  try {
    one.start("--lockstep", "--scene", "prime-metres");
    const watcher = watched ? await Socket.open(one.port) : null;
    if (watcher) {
      watcher.givesCredit = true;
      watcher.send({ t: "watch", names: ["VarKnob", "VarKnobLock", "VarFocusMotor.State"] });
      watcher.send({ t: "loglevel", level: 0 });
    }
    const before = read();
    one.ctl("press", "lm");
    one.ctl("drag", "120", "300", "120", "100");
    one.ctl("set", "VarKnob", "0.25");
    one.ctl("set", "VarGuiDesignIsNightStyle", "0");
    one.ctl("step", "60");
    const calls = read().map((count, kind) => count - before[kind]);
    if (watcher) {
      await eventually("frames and lines have come", () => watcher.frames > 1 && watcher.messages.some((message) => message.t === "log" && message.lines.some((line) => line[3].includes("USER Touch"))));
      watcher.vanish();
    }
    return calls;
  } finally {
    one.end();
    for (const program of ["gui-virtual", "unit-server"]) fs.rmSync(`${counts}.${program}`, { force: true });
  }
}

await check("lockstep: the product's system calls are the same with and without a panel", async () => {
  const alone = await callsInLockstep(false);
  const watched = await callsInLockstep(true);
  assert.ok(alone.reduce((sum, count) => sum + count, 0) > 100);
  assert.deepEqual(watched, alone);
});

if (failures > 0) console.log(`${failures} failed`);
process.exit(failures > 0 ? 1 : 0);
