// Draws the pictures of docs/: the four pages in both themes, and a run on a terminal. scripts/pictures starts this.
//
//   node pictures.js DIRECTORY
"use strict";

const { execFileSync, spawn } = require("node:child_process");
const fs = require("node:fs");
const path = require("node:path");
const { Site, job, openBrowser } = require("./site.js");
const { terminalPicture } = require("./terminal.js");

process.env.TZ = "Europe/Berlin";

const kTables = { SITE: 1, PROBLEM: 3, PRIORITY: 4, OBJECT: 6, SITECONTRACT: 7, CONTRACTS: 8, WARRANTIES: 9 };
const kRows = { SITE: 18400, PROBLEM: 260, PRIORITY: 12, OBJECT: 241000, SITECONTRACT: 9100, CONTRACTS: 31500, WARRANTIES: 122000 };
const kRate = { SITE: 1900, PROBLEM: 260, PRIORITY: 12, OBJECT: 2350, SITECONTRACT: 1700, CONTRACTS: 2100, WARRANTIES: 2600 };
const kNights = 24;

const kSource = "Kv50QTMtscfgObjects.ObjectsManager";
const kCause = 'Type mismatch: Kv50QTMtscfgObjects.csv, line 841, column 12: "31.02.2019" is no date: InstallationDate';
const kResult = "Objects could not be copied from the ERP (generation 3).";
const kKey = "OBJECT='P-20817', OBJECTNR='4'";

/** The same numbers every time. */
let seed = 7;
const chance = () => (seed = (seed * 16807) % 2147483647) / 2147483647;
const about = (number, share) => Math.round(number * (1 + share * (chance() - 0.5)));

const iso = (moment) => new Date(moment).toISOString().replace(/\.\d+Z$/, "Z");
const literal = (text) => `'${String(text).replaceAll("'", "''")}'`;
const row = (table, values) =>
  `INSERT INTO ${table} (${Object.keys(values).join(",")}) VALUES (${Object.values(values).map(literal).join(",")});\n`;

/** Weeks of nightly full copies and hourly passes of changes, as the history holds them. */
function pastRuns(site, now) {
  let sql = "";
  let id = 0;
  let tableId = 0;
  const addRun = (name, method, began, outcomes) => {
    id += 1;
    let latest = began;
    for (const [table, rows, outcome] of outcomes) {
      const seconds = Math.max(1, about(rows / kRate[table], 0.25));
      const started = began + 1000 * Math.round(chance() * 3);
      const ended = started + 1000 * (outcome === "complete" ? seconds : Math.min(seconds, 4));
      latest = Math.max(latest, ended);
      tableId += 1;
      sql += row("table_run", {
        id: tableId, run: id, job: name, db: "service", name: table, method, started: iso(started), ended: iso(ended),
        outcome, met: outcome === "complete" ? rows : about(rows / 3, 0.5), inserted: about(rows / 200, 1),
        updated: outcome === "complete" ? rows : about(rows / 3, 0.5), deleted: about(rows / 900, 1), attempts: 1,
        words: outcome === "failed" ? `13: ${kCause} (row ${kKey})` : "",
        logs: site.path("home/log"), host: "dbhost", boot: "b", pid: 4000 + tableId, pid_start: "1",
      });
      if (outcome === "failed") {
        const record = { table_run: tableId, at: iso(ended), during: "copy", row_key: kKey };
        sql += row("failure", { ...record, number: 13, source: kSource, description: kCause, call: "InstallationDate" });
        sql += row("failure", { ...record, number: 113, source: "Data copy: Objects", description: kResult });
      }
    }
    const failed = outcomes.some(([, , outcome]) => outcome === "failed");
    sql += row("run", {
      id, command: `run ${name}`, started: iso(began), ended: iso(latest), outcome: failed ? 1 : 0, host: "dbhost", boot: "b",
      pid: 3000 + id, pid_start: "1",
    });
  };
  const midnight = now - (now % 86400000);
  for (let night = kNights; night > 0; --night) {
    const growth = 1 - night / 150;
    addRun("nightly", "full", midnight - night * 86400000 + 7260000,
      Object.keys(kTables).map((name) => [name, about(kRows[name] * growth, 0.02), "complete"]));
  }
  for (let hour = 14; hour > 0; --hour) {
    addRun("hourly", "changed", now - hour * 3600000, ["SITE", "OBJECT", "WARRANTIES"].map((name) =>
      [name, about(kRows[name] / 60, 1.2), hour === 2 && name === "OBJECT" ? "failed" : "complete"]));
  }
  return { sql, failedRun: id - 1 };
}

function makeLivedIn(site) {
  const now = Math.floor(Date.now() / 1000) * 1000;
  site.edit("home/zenqay.toml", "[job.demo]", "[job.nightly]");
  fs.appendFileSync(site.path("home/zenqay.toml"),
    '\n[job.hourly]\ndatabase = "service"\nerp = "main"\ntables = ["SITE", "OBJECT", "WARRANTIES"]\nmethod = "changed"\nlogs = "log"\n');
  site.ctl("history");
  const { sql, failedRun } = pastRuns(site, now);
  execFileSync("sqlite3", [path.join(site.environment.XDG_STATE_HOME, "zenqay/history.db")], { input: `BEGIN;${sql}COMMIT;` });
  const sqlTime = (moment) => iso(moment).replace("T", " ").replace("Z", "");
  const ages = { SITE: 1, PROBLEM: 31, PRIORITY: 8, OBJECT: 3, SITECONTRACT: 8, CONTRACTS: 8, WARRANTIES: 1 };
  execFileSync("sqlite3", [site.path("home/service.db")], {
    input: Object.entries(ages).map(([name, hours]) =>
      `UPDATE tstables SET lutm = '${sqlTime(now - hours * 3600000 + 120000)}' WHERE tablename = '${name}';`).join("\n"),
  });
  const day = new Date(now - 2 * 3600000);
  const name = `OBJECT_${day.getFullYear()}${String(day.getMonth() + 1).padStart(2, "0")}${String(day.getDate()).padStart(2, "0")}.log`;
  const written = (moment) => moment.toLocaleString("en-US");
  const [date, time] = written(day).split(", ");
  site.write(`home/log/${name}`, [
    `Date: ${date} Time: ${written(new Date(day - 3600000)).split(", ")[1]}`, '"Rows copied: OBJECT -  4102"',
    `"Date-Time :${date} : ${time}"`, `"${kSource}","${kCause.replaceAll('"', '""')}"`,
    `"Data copy: Objects","${kResult}"`].join("\r\n") + "\r\n");
  return failedRun;
}

/** A nightly run that stands in the middle. */
function standInTheMiddle(site) {
  const holds = (met, end) => [job.begin, job.started, job.rows(met), "hold", "asked:", end || job.error];
  const done = (met) => [job.begin, job.started, job.rows(met), job.complete(met)];
  site.edit("home/zenqay.toml", "parallel = 4", "parallel = 6");
  site.script(1, ...done(18530));
  site.script(2, ...done(262));
  site.script(3, ...done(262));
  site.script(4, ...done(12));
  for (const [name, id] of Object.entries(kTables)) {
    if (["OBJECT", "CONTRACTS", "SITECONTRACT"].includes(name)) site.script(id, ...holds(Math.round(kRows[name] * 0.37)));
  }
  for (let id = 5; id < 20; ++id) {
    if (!fs.existsSync(site.path(`home/log/${id}.script`))) site.script(id, ...holds(3367));
  }
}

async function drawPages(site, address, failedRun, directory) {
  const browser = await openBrowser();
  const pages = { tables: "", runs: "runs", run: `runs/${failedRun}`, plots: "plots" };
  for (const colorScheme of ["light", "dark"]) {
    const context = await browser.newContext({ colorScheme, viewport: { width: 1000, height: 700 }, timezoneId: process.env.TZ });
    const page = await context.newPage();
    for (const [name, at] of Object.entries(pages)) {
      await page.goto(address + at);
      await page.waitForFunction(() => document.getElementById("live").textContent === "live");
      await page.waitForTimeout(700);
      await page.screenshot({ path: path.join(directory, `page-${name}-${colorScheme}.png`), animations: "disabled" });
    }
    await context.close();
  }
  await browser.close();
}

/** What a terminal shows when the run has stood for some seconds. */
async function drawTerminal(site, directory) {
  const lines = "stty cols 92 rows 24; exec \"$ZENQAYCTL\" run nightly";
  const child = spawn("script", ["-qefc", lines, site.path("typescript")], {
    env: { ...site.environment, TERM: "xterm", SHELL: "/bin/sh" }, stdio: "ignore" });
  await new Promise((resolve) => setTimeout(resolve, 9000));
  fs.writeFileSync(path.join(directory, "run.svg"), terminalPicture("zenqayctl run nightly", fs.readFileSync(site.path("typescript"), "utf8")));
  return child;
}

async function main() {
  const directory = process.argv[2];
  fs.mkdirSync(directory, { recursive: true });
  const site = new Site();
  try {
    const failedRun = makeLivedIn(site);
    standInTheMiddle(site);
    const run = await drawTerminal(site, directory);
    await drawPages(site, await site.serve(), failedRun, directory);
    run.kill("SIGTERM");
  } finally {
    await site.close();
  }
}

main();
