"use strict";
const data = JSON.parse(document.getElementById("data").textContent);
const stage = document.getElementById("stage");
const svg = stage.querySelector("svg");
const view = document.createElementNS("http://www.w3.org/2000/svg", "g");
const shapes = data.elements.map((element, i) => document.getElementById("n" + i) || document.getElementById("p" + i));
let x = 0, y = 0, scale = 1;

for (const name of ["width", "height", "viewBox"]) {
  svg.removeAttribute(name);
}
view.append(...svg.childNodes);
svg.append(view);
view.querySelectorAll("a").forEach(link => link.removeAttributeNS("http://www.w3.org/1999/xlink", "title"));
view.querySelector("g.graph > title")?.remove();
view.querySelectorAll("g.edge > title").forEach((title, i) => { title.textContent = data.connections[i].tooltip; });
shapes.forEach((shape, i) => {
  for (const each of [shape, document.getElementById("p" + i)]) {
    each?.querySelector("title")?.replaceChildren(data.elements[i].tooltip);
    each?.addEventListener("click", event => { if (!moved) { show(i); } event.stopPropagation(); });
  }
});

function place() {
  view.setAttribute("transform", `translate(${x} ${y}) scale(${scale})`);
}

// The point of the stage stays where it is.
function zoom(factor, left = stage.clientWidth / 2, top = stage.clientHeight / 2) {
  const next = Math.min(8, Math.max(0.01, scale * factor));
  x = left - (left - x) * next / scale;
  y = top - (top - y) * next / scale;
  scale = next;
  place();
}

// The box in coordinates of the view.
function boxOf(shape) {
  const box = shape.getBoundingClientRect(), origin = stage.getBoundingClientRect();
  return { left: (box.left - origin.left - x) / scale, top: (box.top - origin.top - y) / scale,
           width: box.width / scale, height: box.height / scale };
}

function centre(box) {
  x = stage.clientWidth / 2 - (box.left + box.width / 2) * scale;
  y = stage.clientHeight / 2 - (box.top + box.height / 2) * scale;
  place();
}

function fit(least) {
  const box = boxOf(view);
  scale = Math.max(least, Math.min(1.5, 0.95 * stage.clientWidth / box.width, 0.95 * stage.clientHeight / box.height));
  centre(box);
  const sink = shapes[data.elements.findIndex(element => element.sink)];
  if (sink && (box.width * scale > stage.clientWidth || box.height * scale > stage.clientHeight)) {
    const start = boxOf(sink), middle = x;
    centre(start);
    x = box.width * scale > stage.clientWidth ? 20 - start.left * scale : middle; // objects flow to the right
    place();
  }
}

function row(table, key, value) {
  const line = table.insertRow();
  const head = document.createElement("th");
  head.textContent = key;
  line.append(head);
  line.insertCell().textContent = value;
}

function show(i) {
  const element = data.elements[i], table = document.createElement("table"), title = document.createElement("h2");
  title.textContent = element.name || element.type;
  row(table, "type", element.type + (element.known ? "" : " (not known)"));
  row(table, "line", element.line || "no such element");
  row(table, "sink pads", element.sinkPads ?? "not known");
  row(table, "source pads", element.sourcePads ?? "not known");
  if (element.sink) { row(table, "runs", "the sink element"); }
  if (!element.reached) { row(table, "reached", "by no object from the sink element"); }
  for (const [key, value] of Object.entries(element.properties)) { row(table, key, value); }
  for (const edge of data.connections) {
    if (edge.from === i) { row(table, "source pad " + edge.fromPad, "to " + data.elements[edge.to].name + ", sink pad " + edge.toPad); }
    if (edge.to === i) { row(table, "sink pad " + edge.toPad, "from " + data.elements[edge.from].name + ", source pad " + edge.fromPad); }
  }
  document.getElementById("panel").replaceChildren(title, table);
  document.getElementById("panel").hidden = false;
}

const search = document.getElementById("search");
let hits = [], hit = 0;
function find() {
  const wanted = search.value.toLowerCase();
  hits = data.elements.flatMap((element, i) =>
    wanted && (element.name + " " + element.type).toLowerCase().includes(wanted) ? [i] : []);
  shapes.forEach((shape, i) => shape?.classList.toggle("hit", hits.includes(i)));
  document.getElementById("count").textContent = wanted ? hits.length + " found" : "";
  hit = 0;
  go();
}
function go() {
  const shape = shapes[hits[hit]];
  if (shape) {
    scale = Math.max(scale, 0.8);
    place();
    centre(boxOf(shape));
    show(hits[hit]);
  }
}
search.addEventListener("input", find);
search.addEventListener("keydown", event => {
  if (event.key === "Enter" && hits.length) { hit = (hit + 1) % hits.length; go(); }
});

let held = false, moved = false;
stage.addEventListener("pointerdown", event => { held = event.isPrimary; moved = false; });
window.addEventListener("pointerup", () => { held = false; });
window.addEventListener("pointermove", event => {
  if (held && event.isPrimary) {
    moved = moved || Math.abs(event.movementX) + Math.abs(event.movementY) > 2;
    x += event.movementX;
    y += event.movementY;
    place();
  }
});
stage.addEventListener("click", () => { if (!moved) { document.getElementById("panel").hidden = true; } });
stage.addEventListener("wheel", event => {
  const origin = stage.getBoundingClientRect();
  event.preventDefault();
  zoom(Math.exp(-event.deltaY / 500), event.clientX - origin.left, event.clientY - origin.top);
}, { passive: false });
document.getElementById("in").addEventListener("click", () => zoom(1.3));
document.getElementById("out").addEventListener("click", () => zoom(1 / 1.3));
document.getElementById("fit").addEventListener("click", () => fit(0.01));
document.addEventListener("keydown", event => {
  if (event.target === search) { return; }
  if (event.key === "+") { zoom(1.3); }
  if (event.key === "-") { zoom(1 / 1.3); }
  if (event.key === "0") { fit(0.01); }
});
fit(1);
if (location.hash.length > 1) { // page.html#NAME searches for the element
  search.value = decodeURIComponent(location.hash.slice(1));
  find();
}
