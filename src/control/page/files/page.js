// What makes the page go: it reads itself anew when something has happened, and shows times in the reader's zone.
// Without it the page is the same, as it stood when it was read.
"use strict";

const kSecondsBetweenReads = 30;

const twoDigits = (number) => String(number).padStart(2, "0");

/** "2026-01-31 11:11:12", in the reader's zone. */
function localText(moment) {
  return `${moment.getFullYear()}-${twoDigits(moment.getMonth() + 1)}-${twoDigits(moment.getDate())} ` +
    `${twoDigits(moment.getHours())}:${twoDigits(moment.getMinutes())}:${twoDigits(moment.getSeconds())}`;
}

function localize(root) {
  for (const time of root.querySelectorAll("time")) {
    const moment = new Date(time.dateTime);
    if (!Number.isNaN(moment.getTime())) time.textContent = localText(moment);
  }
  for (const button of root.querySelectorAll("button[data-post]")) button.hidden = false;
}

/** Makes `from` what `to` is, and keeps what is the same: the focus, an open part, a place that was scrolled to. */
function morph(from, to) {
  if (from.nodeType !== to.nodeType || from.nodeName !== to.nodeName) return from.replaceWith(to);
  if (from.nodeType !== Node.ELEMENT_NODE) {
    if (from.nodeValue !== to.nodeValue) from.nodeValue = to.nodeValue;
    return;
  }
  for (const { name, value } of [...to.attributes]) {
    if (from.getAttribute(name) !== value) from.setAttribute(name, value);
  }
  for (const { name } of [...from.attributes]) {
    if (name !== "open" && name !== "aria-busy" && !to.hasAttribute(name)) from.removeAttribute(name);
  }
  const here = [...from.childNodes];
  const there = [...to.childNodes];
  there.forEach((child, at) => (at < here.length ? morph(here[at], child) : from.append(child)));
  here.slice(there.length).forEach((child) => child.remove());
}

let isReading = false;
let isAsked = false;

/** Reads the page anew; once more when it was asked for meanwhile. */
async function refresh() {
  isAsked = true;
  if (isReading || document.hidden) return;
  isReading = true;
  try {
    while (isAsked) {
      isAsked = false;
      const answer = await fetch(location.href, { headers: { Accept: "text/html" } });
      const read = new DOMParser().parseFromString(await answer.text(), "text/html");
      for (const part of ["main", "footer"]) {
        const there = read.querySelector(part);
        if (!there) continue;
        localize(there);
        morph(document.querySelector(part), document.adoptNode(there));
      }
      nameZone();
    }
  } catch {
    // The stream says that nobody answers.
  } finally {
    isReading = false;
  }
}

function nameZone() {
  const zone = Intl.DateTimeFormat().resolvedOptions().timeZone;
  const place = document.getElementById("zone");
  if (place) place.textContent = `, times are those of ${zone}; hover over one for UTC`;
}

let events = null;

function sayLive(isLive, words) {
  const live = document.getElementById("live");
  live.className = isLive ? "on" : "off";
  if (live.textContent !== words) live.textContent = words;
}

/** Listens as long as the page is looked at: a browser keeps few connections to one place, for all its tabs. */
function follow() {
  if (events || document.hidden) return;
  events = new EventSource("/events");
  events.addEventListener("open", () => sayLive(true, "live"));
  events.addEventListener("changed", refresh);
  events.addEventListener("error", () => {
    sayLive(false, "not connected");
    // A browser does not try again by itself after a refusal.
    if (!events || events.readyState !== EventSource.CLOSED) return;
    events = null;
    setTimeout(follow, 10000);
  });
}

function leave() {
  if (events) events.close();
  events = null;
}

/** Asks the reader for the token; nothing when the question is left. */
function askForToken() {
  const dialog = document.getElementById("ask");
  const input = document.getElementById("ask-token");
  input.value = "";
  return new Promise((resolve) => {
    document.getElementById("ask-form").onsubmit = (event) => {
      event.preventDefault();
      resolve(input.value);
      dialog.close();
    };
    document.getElementById("ask-cancel").onclick = () => dialog.close();
    dialog.onclose = () => resolve("");
    dialog.showModal();
  });
}

async function act(button) {
  if (button.ariaBusy) return;
  const token = sessionStorage.getItem("token") || (await askForToken());
  if (!token) return;
  const said = document.getElementById("said");
  button.ariaBusy = "true";  // and keeps the focus
  try {
    const answer = await fetch(button.dataset.post, { method: "POST", headers: { "X-Zenqay-Token": token } });
    const isJson = answer.headers.get("Content-Type") === "application/json";
    if (answer.status === 401) sessionStorage.removeItem("token");
    else sessionStorage.setItem("token", token);
    said.textContent = isJson ? (await answer.json()).words : `The page does not answer (HTTP ${answer.status}).`;
  } catch {
    said.textContent = "The page does not answer.";
  } finally {
    button.ariaBusy = null;
  }
  setTimeout(() => (said.textContent = ""), 10000);
  refresh();
}

localize(document);
nameZone();
follow();  // which reads the page anew once it is connected
setInterval(refresh, kSecondsBetweenReads * 1000);
addEventListener("pagehide", leave);
addEventListener("pageshow", follow);
document.addEventListener("visibilitychange", () => (document.hidden ? leave() : follow()));
document.addEventListener("click", (event) => {
  const button = event.target.closest("button[data-post]");
  if (button) act(button);
});
