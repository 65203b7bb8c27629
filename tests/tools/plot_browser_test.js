// What plot_browser_test.sh runs at the end of a page of plots: uses the page as its reader would, and notes what is to
// be seen. The names that it does not define are the page's.
(async () => {
  if (window !== window.top) return;  // in the narrow copy, below
  const note = (text) => seen.push(text);
  const drawn = () => new Promise((done) => setTimeout(done, 50));
  const texts = (selector) => [...document.querySelectorAll(selector)].map((each) => each.textContent);
  const marks = () => Number(canvas.dataset.marks);
  const axis = (id) => [...document.querySelectorAll(`#${id} .tick-x`)].map((each) => each.getAttribute("x") + each.textContent);
  const ticksNow = () => axis("addresses").join();
  const eventAt = ({x, y}, more) => {
    const box = plane.getBoundingClientRect();
    return {clientX: box.left + x, clientY: box.top + y, bubbles: true, cancelable: true, ...more};
  };
  // Where a cell of a record is drawn.
  const cellOf = (record, of = cells.find((cell) => cell.x0 === record)) =>
    ({x: scales().x(of.x0 + 0.5), y: scales().y((of.y0 + of.y1) / 2)});
  const pixel = document.createElement("canvas").getContext("2d", {willReadFrequently: true});
  const colourAt = ({x, y}) => {
    const ratio = window.devicePixelRatio;
    pixel.clearRect(0, 0, 1, 1);
    pixel.drawImage(canvas, -Math.floor(x * ratio), -Math.floor(y * ratio));
    return pixel.getImageData(0, 0, 1, 1).data.slice(0, 3).join();
  };
  const load = 1, store = 2;  // the first records of their kind

  try {
    await drawn();
    note(`title: ${document.title}`);
    note(`marks: ${marks()}`);
    note(`areas: ${texts("#plane .code").join("; ")}`);
    note(`ticks: ${texts("#plane .tick-x").join(" ")}`);
    note(`regions: ${texts("#plane .region").length}`);
    note(`rows: ${document.querySelectorAll("tbody tr").length}`);
    note(`width: ${document.documentElement.scrollWidth <= window.innerWidth ? "fits" : "is scrolled"}`);

    const before = {marks: marks(), ticks: ticksNow()};
    let last = before;
    const change = async (what) => {
      await drawn();
      const now = {marks: marks(), ticks: ticksNow()};
      note(`${what}: ${now.marks < last.marks ? "fewer marks" : "no fewer marks"}, ` +
           `${now.ticks !== last.ticks ? "other ticks" : "the same ticks"}`);
      last = now;
    };
    element("zoom-in").click();
    await change("zoomed by the button");
    const middle = {x: plane.clientWidth / 2, y: plane.clientHeight / 4};
    plane.dispatchEvent(new WheelEvent("wheel", eventAt(middle, {deltaY: -200})));
    await drawn();
    note(`wheel without focus: ${ticksNow() === last.ticks ? "nothing" : "other ticks"}`);
    plane.focus();
    plane.dispatchEvent(new WheelEvent("wheel", eventAt(middle, {deltaY: -200})));
    await change("zoomed by the wheel");
    const shown = {...view};
    plane.dispatchEvent(new KeyboardEvent("keydown", {key: "ArrowLeft", bubbles: true, cancelable: true}));
    await drawn();
    note(`moved by a key: ${view.x0 < shown.x0 && view.y0 === shown.y0 ? "to the left" : "not"}`);
    const x0 = view.x0;
    plane.dispatchEvent(new PointerEvent("pointerdown", eventAt(middle, {pointerId: 1})));
    plane.dispatchEvent(new PointerEvent("pointermove", eventAt({x: middle.x - 50, y: middle.y}, {pointerId: 1})));
    plane.dispatchEvent(new PointerEvent("pointerup", eventAt(middle, {pointerId: 1})));
    await drawn();
    note(`dragged: ${view.x0 > x0 ? "to the right" : "not"}`);
    note(`footprint: ${axis("footprint").join() === ticksNow() ? "has the same ticks" : "has other ticks"}`);
    plane.dispatchEvent(new MouseEvent("dblclick", eventAt(middle)));
    await drawn();
    note(`reset: ${marks() === before.marks && ticksNow() === before.ticks ? "all as before" : "not as before"}`);

    plane.dispatchEvent(new PointerEvent("pointermove", eventAt(cellOf(load))));
    note(`tip: ${tip.hidden ? "none" : tip.textContent.replaceAll("\n", "|")}`);
    note(`row of the tip: ${texts("tbody tr.shown td:first-child")}`);
    const box = tip.getBoundingClientRect();
    note(`tip: ${box.left >= 0 && box.right <= window.innerWidth && box.bottom <= window.innerHeight ? "in" : "out of"} the window`);
    plane.dispatchEvent(new PointerEvent("pointerleave"));
    note(`tip: ${tip.hidden ? "none" : "still there"}`);
    const bars = [...document.querySelectorAll(".histograms svg")].map((chart) =>
      [...chart.querySelectorAll("rect.load, rect.mixed")].reduce((a, b) => (b.height.baseVal.value > a.height.baseVal.value ? b : a)));
    for (const bar of bars) {
      bar.dispatchEvent(new PointerEvent("pointermove", {clientX: 5, clientY: 5}));
      note(`bar: ${tip.textContent}`);
    }

    await drawn();
    const colours = {load: colourAt(cellOf(load)), store: colourAt(cellOf(store))};
    note(`colours: loads ${colours.load}, stores ${colours.store}`);
    const row = [...body.children].find((each) => each.textContent.includes("0x400004"));
    row.dispatchEvent(new PointerEvent("pointerenter"));
    await drawn();
    note(`a place alone: loads ${colourAt(cellOf(load)) === colours.load ? "as before" : "fainter"}, ` +
         `stores ${colourAt(cellOf(store)) === colours.store ? "as before" : "fainter"}`);
    row.click();
    row.dispatchEvent(new PointerEvent("pointerleave"));
    await drawn();
    note(`kept: loads ${colourAt(cellOf(load)) === colours.load ? "as before" : "fainter"}`);
    row.click();
    note(`page: ${getComputedStyle(document.body).backgroundColor}`);
    element("theme").click();
    await drawn();
    note(`page after a click: ${getComputedStyle(document.body).backgroundColor}, loads ${colourAt(cellOf(load))}`);

    const narrow = document.createElement("iframe");
    narrow.style.cssText = "width: 360px; height: 800px";
    narrow.srcdoc = `<!doctype html>${document.documentElement.outerHTML}`;
    const loaded = new Promise((done) => { narrow.onload = done; });
    document.body.append(narrow);
    await loaded;
    const {scrollWidth, clientWidth} = narrow.contentDocument.documentElement;
    note(`on a phone: ${scrollWidth <= clientWidth ? "fits" : `${scrollWidth} wide of ${clientWidth}`}`);
    narrow.remove();
  } catch (error) {
    note(`error: ${error}`);
  }
  element("seen").textContent = `\n${seen.join("\n")}\n`;
})();
