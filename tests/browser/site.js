// A home with jobs, the page of it, and a browser to look at that: what the tests and the pictures share.
"use strict";

const { execFileSync, spawn } = require("node:child_process");
const fs = require("node:fs");
const os = require("node:os");
const path = require("node:path");
const { chromium } = require("playwright-core");

const kBrowser = process.env.ZENQAY_BROWSER || "/usr/bin/chromium";
const kFlags = [
  "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
  "--disable-component-update", "--disable-sync", "--disable-dev-shm-usage",
];
const kToken = "a token of the tests";

/** A directory with the first job, whose program does as scripts say (tests/control/fake_job.cpp). */
class Site {
  constructor() {
    this.directory = fs.mkdtempSync(path.join(os.tmpdir(), "zenqay-page-"));
    this.environment = {
      ...process.env,
      XDG_STATE_HOME: path.join(this.directory, "state"),
      ZENQAY_FILE: this.path("home/zenqay.toml"),
      ZENQAY_DBSYNC: process.env.ZENQAY_FAKE_JOB,
    };
    this.children = [];
    this.ctl("init", this.path("home"));
    fs.writeFileSync(this.path("token"), kToken, { mode: 0o600 });
  }

  path(name) {
    return path.join(this.directory, name);
  }

  write(name, text) {
    fs.writeFileSync(this.path(name), text);
  }

  edit(name, before, after) {
    this.write(name, fs.readFileSync(this.path(name), "utf8").replace(before, after));
  }

  /** What the job of a table does. */
  script(tableId, ...lines) {
    this.write(`home/log/${tableId}.script`, lines.join("\n") + "\n");
  }

  /** Lets a job go on that waits for the file. */
  release(name) {
    this.write(`home/log/${name}`, "");
  }

  /** Runs zenqayctl to its end; a status of its own is no error. */
  ctl(...parameters) {
    try {
      return execFileSync(process.env.ZENQAYCTL, parameters, { env: this.environment, encoding: "utf8" });
    } catch (failure) {
      if (failure.status === null) throw failure;
      return failure.stdout;
    }
  }

  start(...parameters) {
    const child = spawn(process.env.ZENQAYCTL, parameters, { env: this.environment, stdio: ["ignore", "pipe", "pipe"] });
    child.ended = new Promise((resolve) => child.on("exit", (status) => resolve(status)));
    child.stderr.setEncoding("utf8").on("data", (text) => (this.errors = (this.errors || "") + text));
    this.children.push(child);
    return child;
  }

  /** Starts the page and gives its address. */
  async serve(...parameters) {
    this.server = this.start("serve", "--listen", "127.0.0.1:0", ...parameters);
    const said = await new Promise((resolve) => this.server.stdout.once("data", (text) => resolve(String(text))));
    return said.match(/http:\S+/)[0];
  }

  async close() {
    for (const child of this.children) child.kill("SIGTERM");
    for (const child of this.children) await child.ended;
    fs.rmSync(this.directory, { recursive: true, force: true });
  }
}

const say = (line) => JSON.stringify(line);

/** Lines for scripts. */
const job = {
  begin: say({ kind: "begin", channel: 1, pid: 1, version: "0.1.0" }),
  started: say({ kind: "started", id: 1, table: "T" }),
  rows: (met) => say({ kind: "rows", met, inserted: 0, updated: met, deleted: 0 }),
  complete: (met) => say({ kind: "complete", id: 1, table: "T", inserted: met, updated: 0, deleted: 0 }),
  failure: (fields) => say({ kind: "failure", during: "copy", ...fields }),
  error: say({ kind: "error", id: 1, table: "T", number: -1, description: "See the log file." }),
};

/** A browser of its own, with a profile that nothing else has. */
function openBrowser() {
  return chromium.launch({ executablePath: kBrowser, headless: true, args: kFlags, chromiumSandbox: false });
}

module.exports = { Site, job, openBrowser, kToken };
