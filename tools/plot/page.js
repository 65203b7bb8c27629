// The page of plots: draws addresses and footprint over time, which share their time axis, and the table of places.
"use strict";

const data = JSON.parse(document.getElementById("data").textContent);
const element = (id) => document.getElementById(id);
const plane = element("plane"), canvas = plane.querySelector("canvas"), tip = element("tip");
const margin = {left: 70, right: 8, top: 8, bottom: 42};
const all = {x0: data.time.first, x1: data.time.end, y0: 0, y1: 1};  // y is a share of the address axis
const view = {...all};
let pointedPlace = -1, keptPlace = -1;

// Numbers and ticks.

function shortNumber(number, factor = 1000, units = ["", "k", "M", "G", "T", "P", "E"]) {
  let unit = 0;
  for (; number >= factor && unit + 1 < units.length; ++unit) number /= factor;
  const digits = number >= 100 ? number.toFixed(0) : String(Number(number.toPrecision(3)));
  return units[unit] ? `${digits} ${units[unit]}` : digits;
}
const shortBytes = (bytes) => shortNumber(bytes, 1024, ["B", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"]);

function ticks(first, end, step) {
  const found = [];
  for (let tick = Math.ceil(first / step) * step; tick <= end; tick += step) found.push(tick);
  return found;
}
function decimalTicks(first, end, most) {
  const least = Math.max(1, (end - first) / most);
  let step = 10 ** Math.floor(Math.log10(least));
  for (const factor of [2, 2.5, 2]) if (step < least) step *= factor;
  return ticks(first, end, step);
}
const binaryTicks = (first, end, most) =>
  ticks(first, end, 2 ** Math.ceil(Math.log2(Math.max(1, (end - first) / most))));
// Ticks that are near to each other need all their digits to differ.
const tickText = (tick, step) => (step < tick / 200 ? tick.toLocaleString("en") : shortNumber(tick));
const rangeText = (first, bytes) => `0x${first.toString(16)} to 0x${(first + BigInt(bytes) - 1n).toString(16)}`;

// Cells, as rectangles in the units of the view.

const cells = [];
data.places.forEach((place, index) => {
  for (let i = 0; i < place.cells.length; i += 4) {
    const [column, row, rows, bytes] = place.cells.slice(i, i + 4);
    const area = data.areas.findLast((each) => each.row <= row);
    const scale = area.height / area.rows, low = row - area.row, x0 = data.time.first + column * data.time.step;
    const shown = Math.min(rows, area.rows - low);  // rows that were joined may reach beyond the area
    cells.push({
      x0, x1: x0 + data.time.step, y0: area.bottom + low * scale, y1: area.bottom + (low + shown) * scale,
      place: index, area, row: low, rows: shown, joined: rows, bytes,
    });
  }
});
const mostBytes = cells.reduce((most, cell) => Math.max(most, cell.bytes), 1);
const kindOf = (place) => (place.stores === 0 ? "load" : place.loads === 0 ? "store" : "mixed");
const strength = (cell) => (mostBytes === 1 ? 1 : 0.35 + (0.65 * Math.log2(cell.bytes + 1)) / Math.log2(mostBytes + 1));

// The plane in pixels.

function scales() {
  const {clientWidth: width, clientHeight: height} = plane;
  const inner = {width: width - margin.left - margin.right, height: height - margin.top - margin.bottom};
  const perX = inner.width / (view.x1 - view.x0), perY = inner.height / (view.y1 - view.y0);
  return {
    width, height, inner, perX, perY,
    x: (time) => margin.left + (time - view.x0) * perX,
    y: (share) => margin.top + (view.y1 - share) * perY,
    time: (x) => view.x0 + (x - margin.left) / perX,
    share: (y) => view.y1 - (y - margin.top) / perY,
  };
}

function addTo(svg, name, attributes, text) {
  const made = document.createElementNS("http://www.w3.org/2000/svg", name);
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
  if (text !== undefined) made.textContent = text;
  svg.append(made);
}
const line = (svg, kind, x1, y1, x2, y2) => addTo(svg, "line", {class: kind, x1, y1, x2, y2});
const label = (svg, kind, x, y, anchor, text) => addTo(svg, "text", {class: kind, x, y, "text-anchor": anchor}, text);

// Answers the lines of its grid.
function drawTimeAxis(svg, at, height) {
  const bottom = height - margin.bottom, found = decimalTicks(view.x0, view.x1, Math.max(2, at.inner.width / 60));
  for (const tick of found) {
    label(svg, "tick-x", at.x(tick), bottom + 17, "middle", tickText(tick, found[1] - found[0]));
  }
  label(svg, "", margin.left + at.inner.width / 2, height - 6, "middle", "record, in the order of execution");
  let free = 0;
  for (const start of data.regions) {
    const x = at.x(Math.max(start, data.time.first));
    if (x < margin.left || x > at.width - margin.right || x < free) continue;
    line(svg, "region", x, margin.top, x, bottom);
    free = x + 4;
  }
  return found.map((tick) => [at.x(tick), margin.top, at.x(tick), bottom]);
}

// Answers the lines of its grid.
function drawAddressAxis(svg, at) {
  const bottom = at.height - margin.bottom, lines = [];
  for (const area of data.areas) {
    const low = at.y(area.bottom), high = at.y(area.bottom + area.height), bytes = area.rows * area.row_bytes;
    if (low < margin.top || high > bottom) continue;
    const offset = (y) => ((low - y) / (low - high)) * bytes;
    const [from, to] = [Math.max(0, offset(bottom)), Math.min(bytes, offset(margin.top))];
    for (const tick of binaryTicks(from, to, Math.min(low, bottom) / 26 - Math.max(high, margin.top) / 26)) {
      const y = low - (tick / bytes) * (low - high);
      lines.push([margin.left, y, at.width - margin.right, y]);
      label(svg, "tick-y", margin.left - 7, y + 4, "end", `+${shortBytes(tick).replace(/^0 B$/, "0")}`);
    }
    label(svg, "code", margin.left + 3, Math.max(high - 5, margin.top + 11), "start",
          `${rangeText(BigInt(area.first), bytes)}, ${shortBytes(bytes)}`);
  }
  return lines;
}

function drawCells(context, at, style) {
  const colours = {};
  for (const kind of ["load", "store", "mixed"]) colours[kind] = style.getPropertyValue(`--${kind}`);
  const shown = pointedPlace >= 0 ? pointedPlace : keptPlace;
  let marks = 0;
  for (const cell of cells) {
    if (cell.x1 <= view.x0 || cell.x0 >= view.x1 || cell.y1 <= view.y0 || cell.y0 >= view.y1) continue;
    context.fillStyle = colours[kindOf(data.places[cell.place])];
    context.globalAlpha = shown < 0 ? strength(cell) : cell.place === shown ? 1 : 0.1;
    context.fillRect(at.x(cell.x0), at.y(cell.y1), Math.max(1.5, (cell.x1 - cell.x0) * at.perX),
                     Math.max(1.5, (cell.y1 - cell.y0) * at.perY));
    ++marks;
  }
  canvas.dataset.marks = marks;
}

function drawAddresses() {
  const at = scales(), ratio = window.devicePixelRatio || 1, style = getComputedStyle(document.documentElement);
  canvas.width = at.width * ratio;
  canvas.height = at.height * ratio;
  const context = canvas.getContext("2d");
  context.scale(ratio, ratio);
  context.beginPath();
  context.rect(margin.left, margin.top, at.inner.width, at.inner.height);
  context.clip();
  context.fillStyle = style.getPropertyValue("--band");
  for (const area of data.areas)
    context.fillRect(margin.left, at.y(area.bottom + area.height), at.inner.width, area.height * at.perY);
  const svg = plane.querySelector("svg");
  svg.replaceChildren();
  context.strokeStyle = style.getPropertyValue("--line");
  for (const [x1, y1, x2, y2] of [...drawAddressAxis(svg, at), ...drawTimeAxis(svg, at, at.height)]) {
    context.beginPath();
    context.moveTo(x1, y1);
    context.lineTo(x2, y2);
    context.stroke();
  }
  drawCells(context, at, style);
}

function drawFootprint() {
  const svg = document.querySelector("#footprint svg"), height = svg.parentNode.clientHeight, at = scales();
  const bottom = height - margin.bottom, {so_far, within, window: length} = data.footprint;
  const most = so_far[so_far.length - 1] * 1.05, y = (bytes) => bottom - (bytes / most) * (bottom - margin.top);
  svg.replaceChildren();
  for (const tick of binaryTicks(0, most, 5)) {
    line(svg, "grid", margin.left - 4, y(tick), at.width - margin.right, y(tick));
    label(svg, "", margin.left - 7, y(tick) + 4, "end", shortBytes(tick));
  }
  for (const [x1, y1, x2, y2] of drawTimeAxis(svg, at, height)) line(svg, "grid", x1, y1, x2, y2);
  const inView = (time) => at.x(Math.min(Math.max(time, view.x0), view.x1));
  const steps = (values) => values.map((bytes, i) => {
    const from = data.time.first + i * length, end = Math.min(from + length, data.time.end);
    return end < view.x0 || from > view.x1 ? "" : `L${inView(from)} ${y(bytes)}H${inView(end)}`;
  }).join("").replace("L", "M");
  addTo(svg, "path", {class: "so-far", d: steps(so_far)});
  addTo(svg, "path", {class: "within", d: steps(within)});
}

let isDue = false;
function draw() {
  if (isDue) return;
  isDue = true;
  requestAnimationFrame(() => {
    isDue = false;
    drawAddresses();
    drawFootprint();
  });
}

// Zoom and movement.

// Sets one side of the view, which stays within all that there is.
function setRange(low, high, from, to, least) {
  const length = Math.min(Math.max(to - from, least), all[high] - all[low]);
  const middle = (from + to) / 2;
  view[low] = Math.min(Math.max(middle - length / 2, all[low]), all[high] - length);
  view[high] = view[low] + length;
}
function setView(x0, x1, y0, y1) {
  setRange("x0", "x1", x0, x1, Math.min(4, all.x1 - all.x0));
  setRange("y0", "y1", y0, y1, 1e-3);
  hideTip();
  draw();
}
// Enlarges by a factor about a point of the plane.
function zoom(factor, time, share, inTimeAlone = false) {
  const y = inTimeAlone ? 1 : factor;
  setView(time - (time - view.x0) / factor, time + (view.x1 - time) / factor, share - (share - view.y0) / y,
          share + (view.y1 - share) / y);
}
const zoomMiddle = (factor) => zoom(factor, (view.x0 + view.x1) / 2, (view.y0 + view.y1) / 2);
const zoomIn = () => zoomMiddle(1.5), zoomOut = () => zoomMiddle(1 / 1.5);
const move = (times, shares) => setView(view.x0 + times, view.x1 + times, view.y0 + shares, view.y1 + shares);
const reset = () => setView(all.x0, all.x1, all.y0, all.y1);

function pointOf(event) {
  const box = plane.getBoundingClientRect();
  return {x: event.clientX - box.left, y: event.clientY - box.top};
}

const pointers = new Map();  // that are down, by number
function pinch() {
  const [a, b] = [...pointers.values()];
  return {x: (a.x + b.x) / 2, y: (a.y + b.y) / 2, distance: Math.hypot(a.x - b.x, a.y - b.y)};
}
plane.addEventListener("pointerdown", (event) => {
  pointers.set(event.pointerId, pointOf(event));
  plane.classList.add("moving");
});
window.addEventListener("pointermove", (event) => {
  const before = pointers.get(event.pointerId);
  if (!before) return;
  const now = pointOf(event), at = scales(), old = pointers.size === 2 ? pinch() : null;
  pointers.set(event.pointerId, now);
  if (old) {
    const {x, y, distance} = pinch();
    if (old.distance > 0) zoom(distance / old.distance, at.time(x), at.share(y));
  } else {
    move((before.x - now.x) / at.perX, (now.y - before.y) / at.perY);
  }
});
for (const end of ["pointerup", "pointercancel"]) {
  window.addEventListener(end, (event) => {
    pointers.delete(event.pointerId);
    plane.classList.toggle("moving", pointers.size > 0);
  });
}
plane.addEventListener("wheel", (event) => {
  if (document.activeElement !== plane && !event.ctrlKey) return;  // the page is scrolled
  event.preventDefault();
  const {x, y} = pointOf(event), at = scales();
  const turn = event.deltaY || event.deltaX;  // some browsers turn it with Shift
  zoom(2 ** (-Math.sign(turn) * Math.min(1, Math.abs(turn) / 200)), at.time(x), at.share(y), event.shiftKey);
}, {passive: false});
plane.addEventListener("dblclick", reset);
plane.addEventListener("keydown", (event) => {
  const [width, height] = [(view.x1 - view.x0) / 5, (view.y1 - view.y0) / 5];
  const keys = {
    "+": zoomIn, "=": zoomIn, "-": zoomOut, 0: reset,
    ArrowLeft: () => move(-width, 0), ArrowRight: () => move(width, 0),
    ArrowUp: () => move(0, height), ArrowDown: () => move(0, -height),
  };
  if (!keys[event.key] || event.ctrlKey || event.metaKey || event.altKey) return;
  event.preventDefault();
  keys[event.key]();
});
element("zoom-in").addEventListener("click", zoomIn);
element("zoom-out").addEventListener("click", zoomOut);
element("reset").addEventListener("click", reset);

// What is told of what the pointer is on.

function showTip(text, event) {
  tip.textContent = text;
  tip.hidden = false;
  const {width, height} = tip.getBoundingClientRect();
  tip.style.left = `${Math.max(8, Math.min(event.clientX + 14, window.innerWidth - width - 8))}px`;
  const below = event.clientY + 16;
  tip.style.top = `${below + height > window.innerHeight ? event.clientY - height - 12 : below}px`;
}
function hideTip() { tip.hidden = true; }

// The cell at or near a point; the last drawn comes first.
function cellAt({x, y}) {
  const at = scales(), reach = 6;
  let nearest = null, least = reach;
  for (const cell of cells) {
    const distance = Math.max(at.x(cell.x0) - x, x - at.x(cell.x1), at.y(cell.y1) - y, y - at.y(cell.y0), 0);
    if (distance <= least) [nearest, least] = [cell, distance];
  }
  return nearest;
}
function cellText(cell) {
  const {area} = cell, place = data.places[cell.place], end = Math.min(cell.x1, data.time.end) - 1;
  const kind = {load: "loads", store: "stores", mixed: "loads and stores"}[kindOf(place)];
  return [
    rangeText(BigInt(area.first) + BigInt(cell.row * area.row_bytes), cell.rows * area.row_bytes),
    end > cell.x0 ? `records ${cell.x0.toLocaleString("en")} to ${end.toLocaleString("en")}` : `record ${cell.x0}`,
    `${kind} of ${shortBytes((cell.bytes * cell.joined) / data.joined_rows)} by`,
    place.name + (place.source && `, ${place.source}`) + (place.pc && place.pc !== place.name ? `\npc ${place.pc}` : ""),
  ].join("\n");
}
plane.addEventListener("pointermove", (event) => {
  if (pointers.size > 0) return;
  const cell = cellAt(pointOf(event));
  if (cell) showTip(cellText(cell), event);
  else hideTip();
  pointAt(cell ? cell.place : -1, false);
});
plane.addEventListener("pointerleave", () => {
  hideTip();
  pointAt(-1);
});
for (const title of document.querySelectorAll(".histograms title")) {
  const text = title.textContent, bar = title.parentNode;
  title.remove();  // the browser's own tip would come on top
  bar.addEventListener("pointermove", (event) => showTip(text, event));
  bar.addEventListener("pointerleave", hideTip);
}

// The table of places.

const body = document.querySelector("tbody"), shownRows = 15;
function pointAt(index, isDrawn = true) {
  body.querySelector(".shown")?.classList.remove("shown");
  if (index >= 0) body.children[index].classList.add("shown");
  if (!isDrawn) return;
  pointedPlace = index;
  draw();
}
function keep(index) {
  body.querySelector(".kept")?.classList.remove("kept");
  keptPlace = keptPlace === index ? -1 : index;
  if (keptPlace >= 0) body.children[index].classList.add("kept");
  draw();
}
function addCell(row, text, kind = "number") {
  const cell = row.insertCell();
  cell.className = kind;
  cell.textContent = text;
  return cell;
}
function addBar(row, place, most) {
  const bar = addCell(row, "", "").appendChild(document.createElement("div"));
  bar.className = "bar";
  for (const kind of ["load", "store"]) {
    const accesses = place[`${kind}s`];
    if (accesses === 0) continue;
    const part = bar.appendChild(document.createElement("i"));
    part.className = kind;
    part.style.width = `${(70 * accesses) / most}%`;
    part.title = `${accesses} ${kind}s`;
  }
  bar.append(shortNumber(place.loads + place.stores));
}
const mostAccesses = Math.max(...data.places.map((each) => each.loads + each.stores));
data.places.forEach((place, index) => {
  const row = body.insertRow();
  row.tabIndex = 0;
  row.hidden = index >= shownRows;
  const name = addCell(row, place.name, "");
  name.title = place.pc;
  name.appendChild(document.createElement("small")).textContent = place.source;
  addBar(row, place, mostAccesses);
  addCell(row, place.share);
  addCell(row, shortBytes(place.bytes));
  addCell(row, shortBytes(place.footprint));
  addCell(row, place.stride === null ? "mixed" : (place.stride < 0 ? "−" : "+") + shortBytes(Math.abs(place.stride)));
  for (const [event, to] of [["pointerenter", index], ["pointerleave", -1], ["focus", index], ["blur", -1]])
    row.addEventListener(event, () => pointAt(to));
  row.addEventListener("click", () => keep(index));
  row.addEventListener("keydown", (event) => event.key === "Enter" && keep(index));
});
const more = element("more");
more.hidden = data.places.length <= shownRows;
more.textContent = `All ${data.places.length} places`;
more.addEventListener("click", () => {
  for (const row of body.children) row.hidden = false;
  more.hidden = true;
});

// Light and dark.

const dark = window.matchMedia("(prefers-color-scheme: dark)"), root = document.documentElement;
const isDark = () => (root.dataset.theme ? root.dataset.theme === "dark" : dark.matches);
function applyTheme() {
  element("theme").textContent = isDark() ? "Light" : "Dark";
  draw();
}
element("theme").addEventListener("click", () => {
  root.dataset.theme = isDark() ? "light" : "dark";
  applyTheme();
});
dark.addEventListener("change", applyTheme);
new ResizeObserver(draw).observe(plane);
applyTheme();
