// Writes easing.json and paths.json: values of eased keys and of positions along paths, worked out by
// two programs that have nothing to do with this project. Only needed to make the files anew:
//   npm install bezier-easing@3.2.0 lottie-web@5.13.0 jsdom@29.1.1
//   node make_references.mjs
import { writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { JSDOM } from "jsdom";

// A linear congruential generator, so that the same files come out each time.
let state = 20261121;
function random() {
  state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
  return state / 2 ** 32;
}
const rounded = (value, digits) => Number(value.toFixed(digits));

const require = createRequire(import.meta.url);
const bezier = require("bezier-easing");
const easings = [];
for (let i = 0; i < 60; ++i) {
  const [x1, y1, x2, y2] = [random(), random() * 3 - 1, random(), random() * 3 - 1].map((v) => rounded(v, 3));
  const ease = bezier(x1, y1, x2, y2);
  const samples = [];
  for (let step = 0; step <= 16; ++step) samples.push(ease(step / 16));
  easings.push({ x1, y1, x2, y2, samples });
}
writeFileSync("easing.json", JSON.stringify(easings, null, 0).replaceAll("},{", "},\n{") + "\n");

// lottie-web reads positions only with a document at hand, which draws nothing here.
const dom = new JSDOM("<!DOCTYPE html><div id='stage'></div>", { pretendToBeVisual: true });
globalThis.window = dom.window;
globalThis.document = dom.window.document;
Object.defineProperty(globalThis, "navigator", { value: dom.window.navigator, configurable: true });
dom.window.HTMLCanvasElement.prototype.getContext = () => ({ fillRect() {}, fillStyle: "" });
const lottie = require("lottie-web");

const number = (range) => rounded((random() - 0.5) * range, 1);
const position = () => [number(1000) + 500, number(1000) + 500];
const handle = () => ({ x: rounded(random(), 3), y: rounded(random(), 3) });
const paths = [];
for (let i = 0; i < 30; ++i) {
  const last = 40;
  const keys = [0, 12, 25].map((t) => ({ t, s: position(), o: handle(), i: handle(), to: [number(400), number(400)], ti: [number(400), number(400)] }));
  if (i % 3 === 2) {
    keys[1].h = 1;
    delete keys[1].to;  // Of a key that holds, that program would travel along the path.
    delete keys[1].ti;
  }
  if (i % 3 === 1) keys.forEach((key) => { delete key.to; delete key.ti; });
  keys.push({ t: last, s: position() });
  const animation = lottie.loadAnimation({
    container: document.getElementById("stage"), renderer: "svg", loop: false, autoplay: false,
    animationData: { v: "5.7.0", fr: 25, ip: 0, op: 60, w: 1000, h: 1000, assets: [],
      layers: [{ ty: 4, nm: "a", ind: 1, ip: 0, op: 60, st: 0, shapes: [],
        ks: { o: { a: 0, k: 100 }, r: { a: 0, k: 0 }, a: { a: 0, k: [0, 0] }, s: { a: 0, k: [100, 100] },
          p: { a: 1, k: structuredClone(keys) } } }] } });
  const samples = [];
  for (let frame = 0; frame <= last + 5; ++frame) {
    animation.goToAndStop(frame, true);
    const value = animation.renderer.elements[0].finalTransform.mProp.p.v;
    samples.push([rounded(value[0], 6), rounded(value[1], 6)]);
  }
  animation.destroy();
  paths.push({ keys, samples });
}
writeFileSync("paths.json", JSON.stringify(paths, null, 0).replaceAll("},{\"keys\"", "},\n{\"keys\"") + "\n");
