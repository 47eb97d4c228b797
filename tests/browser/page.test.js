// The page as its readers have it: in a browser, while jobs run in processes of their own.
"use strict";

const assert = require("node:assert/strict");
const fs = require("node:fs");
const { after, before, test } = require("node:test");
const { Site, job, openBrowser, kToken } = require("./site.js");

const kPages = ["", "runs", "runs/1", "plots"];
const axe = fs.readFileSync(require.resolve("axe-core/axe.min.js"), "utf8");

let site;
let browser;
let address;

/** A page in a context of its own; what the browser complains of ends the test. */
async function open(at, settings = {}) {
  const context = await browser.newContext({ viewport: { width: 1100, height: 800 }, ...settings });
  const page = await context.newPage();
  page.faults = [];
  page.on("console", (said) => said.type() === "error" && page.faults.push(said.text()));
  page.on("pageerror", (fault) => page.faults.push(String(fault)));
  await page.goto(address + at);
  if (settings.javaScriptEnabled !== false) {
    await page.waitForFunction(() => document.getElementById("live").textContent === "live");
  }
  return page;
}

async function close(page) {
  assert.deepEqual(page.faults, []);
  await page.context().close();
}

/** The text of a table's cell on the first page. */
const cell = (page, table, label) =>
  page.locator("tr", { has: page.getByRole("rowheader", { name: table, exact: true }) }).locator(`td[data-label="${label}"]`);

async function shows(locator, text) {
  await locator.filter({ hasText: text }).waitFor({ timeout: 20000 });
}

const complete = (rows) => [job.begin, job.started, job.rows(rows), job.complete(rows)];

before(async () => {
  site = new Site();
  site.edit("home/zenqay.toml", 'tables = "all"', 'tables = ["SITE", "PRIORITY"]');
  site.script(1, ...complete(7));
  site.script(4, ...complete(3));
  site.ctl("run", "demo");
  address = await site.serve("--allow-actions", "--token-file", site.path("token"));
  browser = await openBrowser();
});

after(async () => {
  if (browser) await browser.close();
  await site.close();
});

test("rows go up while a run is under way, and a table that fails turns up with its record", async () => {
  site.script(1, job.begin, job.started, job.rows(1200), "wait go-on", job.rows(4711), "wait end", ...complete(5000).slice(2));
  site.script(4, job.begin, job.started, job.rows(2),
    job.failure({ number: 13, source: "X", description: "Type <b>mismatch</b>", statement: "UPDATE PRIORITY", key: "PRIORITY='A1'" }),
    job.error);
  const page = await open("");
  await page.evaluate(() => (window.isTheSame = true));

  const run = site.start("run", "demo");
  await shows(cell(page, "SITE", "Rows"), "1\u202f200");
  await shows(cell(page, "SITE", "State"), "copying");
  await shows(cell(page, "PRIORITY", "Last run"), "failed");
  site.release("go-on");
  await shows(cell(page, "SITE", "Rows"), "4\u202f711");
  site.release("end");
  await shows(cell(page, "SITE", "Last run"), "complete");
  await shows(cell(page, "SITE", "Rows"), "5\u202f000");

  assert.equal(await run.ended, 1);
  assert.equal(await page.evaluate(() => window.isTheSame), true);
  await cell(page, "PRIORITY", "Last run").getByRole("link").click();
  await shows(page.locator("dl.facts"), "a table failed");
  await shows(page.locator(".failures li"), "13 Type <b>mismatch</b>");
  await shows(page.locator(".failures li"), "PRIORITY='A1'");
  await shows(page.locator(".failures li"), "UPDATE PRIORITY");
  await close(page);
});

test("a run is shown as it goes on its own page and in the list", async () => {
  site.script(1, job.begin, job.started, job.rows(10), "hold", "asked:", job.error);
  site.script(4, ...complete(3));
  const page = await open("runs");
  const run = site.start("run", "demo");
  await shows(page.locator("tbody tr").first(), "running");
  await page.locator("tbody a").first().click();
  await shows(cell(page, "SITE", "Outcome"), "copying");
  await page.locator("h1").evaluate((heading) => (heading.isTheSame = true));

  run.kill("SIGTERM");
  await shows(page.locator("dl.facts"), "stopped by signal 15");
  await shows(cell(page, "SITE", "Outcome"), "stopped");

  assert.equal(await page.locator("h1").evaluate((heading) => heading.isTheSame), true);
  assert.equal(await run.ended, 143);
  await close(page);
});

test("a run whose zenqayctl was killed is lost", async () => {
  site.script(1, job.begin, job.started, job.rows(10), "hold", "asked:", job.error);
  const page = await open("runs");
  const run = site.start("run", "demo", "--table", "SITE");
  await shows(page.locator("tbody tr").first(), "running");
  run.kill("SIGKILL");
  await shows(page.locator("tbody tr").first(), "lost");
  await close(page);
});

test("a job is started with the token, by the keyboard", async () => {
  site.script(1, ...complete(77));
  site.script(4, ...complete(3));
  const page = await open("");
  await page.getByRole("button", { name: "Run demo" }).focus();
  await page.keyboard.press("Enter");
  await page.keyboard.type("a wrong token of 16");
  await page.keyboard.press("Enter");
  await shows(page.locator("#said"), "not the page's token");
  page.faults = page.faults.filter((fault) => !fault.includes("401"));  // the browser logs the refusal

  await page.keyboard.press("Enter");  // the button has the focus again
  await page.keyboard.type(kToken);
  await page.keyboard.press("Enter");
  await shows(page.locator("#said"), "a run of demo is started");
  await shows(cell(page, "SITE", "Rows"), "77");
  await shows(cell(page, "SITE", "Last run"), "complete");
  await close(page);
});

test("an answer that is not the page's own is told by its status", async () => {
  const page = await open("");
  await page.evaluate((token) => sessionStorage.setItem("token", token), kToken);
  await page.route("**/api/**", (route) =>
    route.fulfill({ status: 502, contentType: "text/html", body: "<h1>Bad gateway</h1>" }));
  await page.getByRole("button", { name: "Run demo" }).click();
  await shows(page.locator("#said"), "The page does not answer (HTTP 502).");
  page.faults = page.faults.filter((fault) => !fault.includes("502"));  // the browser logs it
  await close(page);
});

test("a plot has a point for each run of its table", async () => {
  const runs = JSON.parse(site.ctl("history", "--json"));
  let isComplete = 0;
  let isNot = 0;
  for (const { run } of runs) {
    const { tables } = JSON.parse(site.ctl("history", String(run), "--json"));
    for (const { table, outcome } of tables) {
      if (table === "SITE") outcome === "complete" ? ++isComplete : ++isNot;
    }
  }
  const page = await open("plots");
  const duration = page.locator('section:has(h2:text-is("SITE")) figure:has(figcaption:text-is("Duration"))');
  const rows = page.locator('section:has(h2:text-is("SITE")) figure:has(figcaption:text-is("Rows"))');
  assert.ok(isComplete >= 3 && isNot >= 2);
  assert.equal(await duration.locator("circle").count(), isComplete);
  assert.equal(await duration.locator("path.missed").count(), isNot);
  assert.match(await rows.locator("circle title").nth(1).textContent(), /^run 2, .* full, complete: 5\u202f000$/);
  const label = await rows.locator("svg").getAttribute("aria-label");
  assert.equal(label, `Rows: ${isComplete} values, from 7 to 5\u202f000, the last 77`);

  await page.locator('section:has(h2:text-is("SITE")) summary').click();
  assert.equal(await page.locator('section:has(h2:text-is("SITE")) details tbody tr').count(), isComplete + isNot);
  await close(page);
});

for (const colorScheme of ["light", "dark"]) {
  test(`no page has a barrier that axe-core knows, in the ${colorScheme} theme`, async () => {
    const page = await open("", { colorScheme, bypassCSP: true });
    const barriers = async (where) => {
      await page.evaluate(axe);
      const { violations } = await page.evaluate((part) => window.axe.run(part), where);
      return violations.map(({ id, nodes }) => `${id}: ${nodes[0].html}`);
    };
    for (const at of [...kPages, "runs/2", "nowhere"]) {
      await page.goto(address + at);
      for (const summary of await page.locator("summary").all()) await summary.click();
      assert.deepEqual(await barriers("html"), [], `/${at}`);
    }
    await page.goto(address);
    await page.getByRole("button", { name: "Run demo" }).click();
    assert.deepEqual(await barriers("#ask"), []);
    await page.context().close();
  });
}

test("every page is as wide as a screen of 400 pixels", async () => {
  const page = await open("", { viewport: { width: 400, height: 800 } });
  for (const at of [...kPages, "runs/2"]) {
    await page.goto(address + at);
    for (const summary of await page.locator("summary").all()) await summary.click();
    const widths = await page.evaluate(() => [document.documentElement.scrollWidth, document.documentElement.clientWidth]);
    assert.ok(widths[0] <= widths[1], `/${at} is ${widths[0]} wide`);
  }
  await close(page);
});

test("the keyboard reaches everything, and keeps its place when the page reads itself anew", async () => {
  const page = await open("plots");
  const focused = () => page.evaluate(() => document.activeElement.textContent);
  const order = [];
  for (let i = 0; i < 6; ++i) {
    await page.keyboard.press("Tab");
    order.push(await focused());
  }
  assert.deepEqual(order, ["To the content", "Tables", "Runs", "Plots", "The figures of PRIORITY", "The figures of SITE"]);
  await page.keyboard.press("Enter");
  const details = page.locator("details").nth(1);
  assert.equal(await details.evaluate((part) => part.open), true);

  const rows = await details.locator("tbody tr").count();
  site.ctl("run", "demo");
  await page.waitForFunction((count) => document.querySelectorAll("details")[1].querySelectorAll("tbody tr").length > count, rows);
  assert.equal(await focused(), "The figures of SITE");
  assert.equal(await details.evaluate((part) => part.open), true);

  await page.goto(address);
  await page.keyboard.press("Tab");
  await page.keyboard.press("Enter");
  assert.equal(await page.evaluate(() => document.activeElement.id), "main");
  await close(page);
});

test("times are the reader's, and UTC to hover over", async () => {
  const started = JSON.parse(site.ctl("history", "1", "--json")).started;
  for (const [timezoneId, offset] of [["Asia/Tokyo", 9], ["America/Phoenix", -7]]) {
    const page = await open("runs/1", { timezoneId });
    const time = page.locator("dl.facts time");
    const there = new Date(new Date(started).getTime() + offset * 3600000).toISOString().replace("T", " ").slice(0, 19);
    const utc = started.replace("T", " ").replace("Z", " UTC");
    assert.equal(await time.textContent(), there);
    assert.equal(await time.getAttribute("title"), utc);
    assert.match(await page.locator("footer").textContent(), new RegExp(`times are those of ${timezoneId}`));
    await close(page);
  }
});

test("without a script the pages read, with times in UTC and no buttons that do nothing", async () => {
  const page = await open("", { javaScriptEnabled: false });
  await shows(cell(page, "SITE", "Last run"), "complete");
  assert.equal(await page.getByRole("button").count(), 0);
  await page.getByRole("link", { name: "Runs" }).click();
  await page.getByRole("link", { name: "run 1", exact: true }).click();
  const started = JSON.parse(site.ctl("history", "1", "--json")).started;
  assert.equal(await page.locator("dl.facts time").textContent(), started.replace("T", " ").replace("Z", " UTC"));
  await page.getByRole("link", { name: "Plots" }).click();
  assert.ok((await page.locator("circle").count()) > 0);
  await close(page);
});

test("the page says when nobody answers any more", async () => {
  const page = await open("");
  site.server.kill("SIGTERM");
  assert.equal(await site.server.ended, 0);
  await shows(page.locator("#live"), "not connected");
  await page.context().close();
  address = await site.serve();
  assert.equal(site.errors.match(/run of demo ended with 0/g).length, 1);
});
