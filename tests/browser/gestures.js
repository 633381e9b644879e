// Added to a page of "fwpipe graph" by graph.sh: what a person does with the pointer, the wheel, the buttons and the keys.
// Each fault is listed in the element "faults" of the document.
const faults = [];
function expect(holds, what) {
  if (!holds) { faults.push(what); }
}
function drag(right, down) {
  stage.dispatchEvent(new PointerEvent("pointerdown", { isPrimary: true, bubbles: true }));
  const event = new PointerEvent("pointermove", { isPrimary: true, bubbles: true, movementX: right, movementY: down });
  stage.dispatchEvent(event);
  stage.dispatchEvent(new PointerEvent("pointerup", { isPrimary: true, bubbles: true }));
}
function near(one, other) { return Math.abs(one - other) < 0.01; }

let before = [x, y, scale];
drag(30, -40);
expect(near(x, before[0] + 30) && near(y, before[1] - 40) && scale === before[2], "dragging does not move the drawing");
expect(view.getAttribute("transform").startsWith(`translate(${x} ${y})`), "the drawing is not where it was moved to");
stage.dispatchEvent(new MouseEvent("click", { bubbles: true }));

before = [x, y, scale];
const area = stage.getBoundingClientRect();
stage.dispatchEvent(new WheelEvent("wheel", { deltaY: -200, clientX: area.left + 300, clientY: area.top + 200, cancelable: true }));
expect(scale > before[2], "the wheel does not enlarge the drawing");
expect(near((300 - x) / scale, (300 - before[0]) / before[2]) && near((200 - y) / scale, (200 - before[1]) / before[2]),
       "the point below the pointer moves");
const large = scale;
document.getElementById("out").click();
expect(scale < large, "the button - does not zoom out");
document.dispatchEvent(new KeyboardEvent("keydown", { key: "+" }));
expect(near(scale, large), "the key + does not undo the button -");
document.getElementById("fit").click();
const whole = view.getBoundingClientRect();
expect(whole.left >= area.left - 1 && whole.right <= area.right + 1 && whole.top >= area.top - 1 && whole.bottom <= area.bottom + 1,
       "the button Fit does not show everything");

const panel = document.getElementById("panel");
stage.dispatchEvent(new PointerEvent("pointerdown", { isPrimary: true, bubbles: true }));
stage.dispatchEvent(new PointerEvent("pointerup", { isPrimary: true, bubbles: true }));
shapes[1].dispatchEvent(new MouseEvent("click", { bubbles: true }));
for (const text of ["element1", "ETee", "from element0, source pad 0", "source pads"]) {
  expect(!panel.hidden && panel.textContent.includes(text), "a click on element1 does not show: " + text);
}
stage.dispatchEvent(new MouseEvent("click", { bubbles: true }));
expect(panel.hidden, "a click beside the elements does not close the panel");
drag(30, 0);
shapes[1].dispatchEvent(new MouseEvent("click", { bubbles: true }));
expect(panel.hidden, "the end of a drag counts as a click");

search.value = "etee";
search.dispatchEvent(new Event("input"));
const first = panel.querySelector("h2")?.textContent;
search.dispatchEvent(new KeyboardEvent("keydown", { key: "Enter" }));
expect(first === "element1" && panel.querySelector("h2")?.textContent === "element2", "Enter does not show the next element found");
expect(document.getElementById("count").textContent === data.elements.length - 1 + " found", "the search does not count");

const list = document.createElement("p");
list.id = "faults";
list.textContent = faults.length ? faults.join("; ") : "none";
document.body.append(list);
