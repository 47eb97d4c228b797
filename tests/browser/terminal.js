// What a terminal shows, as a picture that knows both themes.
"use strict";

/** The lines that stand on the screen behind all that was written to it: texts, line ends, cursor up, erasing. */
function screenOf(written) {
  const lines = [""];
  let at = 0;
  for (const [piece] of written.matchAll(/\x1b\[\d*[A-Z]|\r|\n|[^\x1b\r\n]+/g)) {
    const up = piece.match(/^\x1b\[(\d*)A$/);
    if (up) at = Math.max(0, at - Number(up[1] || 1));
    else if (piece === "\x1b[J") lines.length = at + 1;
    else if (piece === "\n") lines[++at] ??= "";
    else if (piece !== "\r" && !piece.startsWith("\x1b")) lines[at] = piece;
  }
  return lines;
}

const escaped = (text) => text.replaceAll("&", "&amp;").replaceAll("<", "&lt;").replaceAll(">", "&gt;");

const kStates = { complete: "good", copying: "busy", beginning: "busy", failed: "bad" };

/** A line of a table, its state in the colour that the page gives it. */
function coloured(line) {
  const found = line.match(/^(\S+ +)(complete|copying|beginning|failed)\b/);
  if (!found) return escaped(line);
  return `${escaped(found[1])}<tspan class="${kStates[found[2]]}">${found[2]}</tspan>${escaped(line.slice(found[0].length))}`;
}

function terminalPicture(command, written) {
  const body = written.slice(written.indexOf("\n") + 1);  // the first line is script's own
  const lines = [`$ ${command}`, ...screenOf(body)].map((line) => line.trimEnd());
  while (lines.at(-1) === "") lines.pop();
  const width = 24 + 7.83 * Math.max(...lines.map((line) => line.length));
  const height = 48 + 19 * lines.length;
  const texts = lines.map((line, at) => `<text x="16" y="${52 + 19 * at}">${coloured(line)}</text>`).join("\n");
  return `<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 ${Math.round(width)} ${height}" width="${Math.round(width)}" height="${height}" role="img" aria-label="A run on a terminal">
<style>
.frame { fill: #ffffff; stroke: #dde2e9; }
.bar { fill: #dde2e9; }
text { fill: #1b2330; font: 13px ui-monospace, "DejaVu Sans Mono", "Liberation Mono", monospace; white-space: pre; }
.good { fill: #1a6e42; } .busy { fill: #1f5fa8; } .bad { fill: #a32424; }
@media (prefers-color-scheme: dark) {
.frame { fill: #181d25; stroke: #2d3541; }
.bar { fill: #2d3541; }
text { fill: #e4e8ee; }
.good { fill: #7fd3a3; } .busy { fill: #86b8f0; } .bad { fill: #f5a09b; }
}
</style>
<rect class="frame" x="0.5" y="0.5" width="${Math.round(width) - 1}" height="${height - 1}" rx="8"/>
<circle class="bar" cx="20" cy="18" r="5"/><circle class="bar" cx="38" cy="18" r="5"/><circle class="bar" cx="56" cy="18" r="5"/>
${texts}
</svg>
`;
}

module.exports = { terminalPicture };
