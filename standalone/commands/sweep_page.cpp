#include "standalone/commands/sweep_page.h"

#include <string_view>

#include "standalone/commands/job_messages.h"

namespace jostle::standalone {

const char* const networkPlayer = "https://cdn.jsdelivr.net/npm/lottie-web@5.13.0/build/player/lottie.min.js";

namespace {

constexpr std::string_view head = R"html(<style>
body { font: 14px sans-serif; margin: 0; background: #f4f4f4; color: #222; }
header { position: sticky; top: 0; z-index: 1; background: #fff; border-bottom: 1px solid #ccc; padding: 8px 16px;
         display: flex; flex-wrap: wrap; gap: 12px; align-items: center; }
h1 { font-size: 16px; margin: 0; }
input { flex: 1; min-width: 120px; }
main { display: grid; gap: 12px; padding: 16px; grid-template-columns: repeat(auto-fill, minmax(240px, 1fr)); }
figure { margin: 0; background: #fff; border: 1px solid #ccc; min-width: 0; }
figure div { min-height: 80px; }
figcaption { padding: 6px 8px; border-top: 1px solid #eee; overflow-wrap: anywhere; }
.failure { padding: 8px; color: #a00; }
</style>
)html";

constexpr std::string_view script = R"html(<script>
"use strict";
const index = JSON.parse(document.getElementById("index").textContent);
const main = document.querySelector("main");
const button = document.querySelector("button");
const slider = document.querySelector("input");
const output = document.querySelector("output");
const shown = new Map(); // animations in sight, by figure
let seconds = 0, longest = 0, last = null, playing = true;

function fail(box, text) {
  box.className = "failure";
  box.textContent = text;
}

async function dataOf(cell, number) {
  const inside = document.getElementById("result" + number);
  if (inside) return JSON.parse(inside.textContent);
  const answer = await fetch(encodeURIComponent(cell.file));
  return answer.json();
}

async function show(figure, cell, number) {
  const box = figure.firstChild;
  try {
    const animationData = await dataOf(cell, number);
    longest = Math.max(longest, (animationData.op - animationData.ip) / animationData.fr);
    figure.animation = lottie.loadAnimation({ container: box, renderer: "svg", loop: true, autoplay: false, animationData });
    if (figure.inSight) shown.set(figure, figure.animation);
  } catch (error) {
    fail(box, "cannot be shown here: " + error.message + (location.protocol === "file:"
      ? " (the results are too large to be inside this page; open it through a web server)" : ""));
  }
}

const watcher = new IntersectionObserver(entries => {
  for (const entry of entries) {
    const figure = entry.target;
    figure.inSight = entry.isIntersecting;
    if (!entry.isIntersecting) shown.delete(figure);
    else if (figure.animation) shown.set(figure, figure.animation);
    else if (!figure.asked) { figure.asked = true; show(figure, index.cells[figure.number], figure.number); }
  }
}, { rootMargin: "200px" });

if (index.columns > 0) main.style.gridTemplateColumns = `repeat(${index.columns}, minmax(140px, 1fr))`;
index.cells.forEach((cell, number) => {
  const figure = document.createElement("figure");
  const caption = document.createElement("figcaption");
  caption.textContent = cell.caption;
  figure.append(document.createElement("div"), caption);
  figure.number = number;
  main.append(figure);
  if (cell.failure) fail(figure.firstChild, cell.failure);
  else if (typeof lottie === "undefined") fail(figure.firstChild, "the player could not be loaded from " + index.player +
    "; the option --player takes a copy on this computer");
  else watcher.observe(figure);
});

button.onclick = () => { playing = !playing; button.textContent = playing ? "Pause" : "Play"; };
slider.oninput = () => { seconds = slider.value / 1000 * longest; if (playing) button.onclick(); };

function draw(now) {
  if (playing && last !== null && longest > 0) seconds = (seconds + (now - last) / 1000) % longest;
  last = now;
  for (const animation of shown.values()) {
    if (animation.isLoaded)
      animation.goToAndStop(Math.min(seconds * animation.frameRate, Math.max(animation.totalFrames - 1, 0)), true);
  }
  if (longest > 0) slider.value = 1000 * seconds / longest;
  output.textContent = seconds.toFixed(2) + " s";
  requestAnimationFrame(draw);
}
requestAnimationFrame(draw);
</script>
)html";

/// JSON as it may stand in a script: "<" is only ever inside a string there, and nothing ends the script early.
std::string insideScript(std::string_view json) {
    std::string text;
    text.reserve(json.size());
    for (const char c : json) {
        if (c == '<') {
            text += "\\u003c";
        } else {
            text += c;
        }
    }
    return text;
}

std::string insideMarkup(std::string_view plain) {
    std::string text;
    for (const char c : plain) {
        switch (c) {
        case '&':
            text += "&amp;";
            break;
        case '<':
            text += "&lt;";
            break;
        case '"':
            text += "&quot;";
            break;
        default:
            text += c;
        }
    }
    return text;
}

std::string indexText(const SweepPage& page) {
    std::string text =
        "{\"columns\":" + std::to_string(page.columns) + ",\"player\":" + jsonString(page.player) + ",\"cells\":[";
    for (const SweepCell& cell : page.cells) {
        text += &cell == page.cells.data() ? "\n" : ",\n";
        text += "{\"file\":" + jsonString(cell.file) + ",\"caption\":" + jsonString(cell.caption) +
                ",\"failure\":" + jsonString(cell.failure) + "}";
    }
    return text + "]}";
}

} // namespace

std::string sweepPageText(const SweepPage& page) {
    const std::string title = insideMarkup(page.title);
    std::string text = "<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width\">\n<title>" +
                       title + "</title>\n";
    text += head;
    text += "<header><h1>" + title +
            "</h1><button>Pause</button><input type=\"range\" max=\"1000\" step=\"any\" value=\"0\" "
            "aria-label=\"Time\"><output></output></header>\n<main></main>\n";
    text += "<script src=\"" + insideMarkup(page.player) + "\"></script>\n";
    text += "<script type=\"application/json\" id=\"index\">" + insideScript(indexText(page)) + "</script>\n";
    for (std::size_t i = 0; i < page.cells.size(); ++i) {
        if (!page.cells[i].text.empty()) {
            text += "<script type=\"application/json\" id=\"result" + std::to_string(i) + "\">" +
                    insideScript(page.cells[i].text) + "</script>\n";
        }
    }
    text += script;
    return text + "</html>\n";
}

} // namespace jostle::standalone
