// Drives the graphing page in headless Chromium and checks it against the
// native evalg tool built from the same tree: the page's points and markers
// against the tool's JSON, its canvas against the tool's PNG, pixel for pixel.
//   EVALG_TOOL        the native tool            (default build/tools/evalg)
//   EVALG_VIEWER      the built page             (default build-web/viewer)
//   EVALG_REDRAW      the native timing program  (default build-web/native/redraw_timing)
//   CHROMIUM          the browser                (default /usr/bin/chromium)
'use strict';
const { test, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { execFileSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');
const puppeteer = require('puppeteer-core');
const { startServer } = require('../../viewer/serve.js');
const { readPng } = require('./png.js');

const root = path.resolve(__dirname, '../..');
const TOOL = process.env.EVALG_TOOL || path.join(root, 'build/tools/evalg');
const VIEWER = process.env.EVALG_VIEWER || path.join(root, 'build-web/viewer');
const REDRAW = process.env.EVALG_REDRAW || path.join(root, 'build-web/native/redraw_timing');
const CHROMIUM = process.env.CHROMIUM || '/usr/bin/chromium';
const DEFAULT = { xMin: -8, xMax: 8, yMin: -5, yMax: 5, columns: 161, rows: 101 };

let server, browser, base, scratch;

before(async () => {
  server = await startServer(VIEWER, 0);
  base = `http://127.0.0.1:${server.address().port}/index.html`;
  browser = await puppeteer.launch({ executablePath: CHROMIUM, headless: true,
    args: ['--no-sandbox', '--disable-gpu', '--disable-dev-shm-usage'] });
  scratch = fs.mkdtempSync(path.join(os.tmpdir(), 'evalg-viewer-'));
});

after(async () => {
  if (browser) await browser.close();
  if (server) server.close();
  if (scratch) fs.rmSync(scratch, { recursive: true, force: true });
});

function link(relations, w, scale) {
  const parts = relations.map((r) => 'r=' + encodeURIComponent(r));
  parts.push(`w=${w.xMin},${w.xMax},${w.yMin},${w.yMax}`, `s=${w.columns}x${w.rows}`, `p=${scale}`);
  return base + '#' + parts.join('&');
}

async function openPage(url) {
  const page = await browser.newPage();
  const errors = [];
  page.on('pageerror', (e) => errors.push(e.message));
  await page.setViewport({ width: 1400, height: 1000 });
  await page.goto(url);
  await page.evaluate(() => window.evalgViewer.ready);
  page.errors = errors;
  return page;
}

const viewState = (page) => page.evaluate(() => {
  const s = window.evalgViewer.state;
  window.evalgViewer.redraw();
  return { win: Object.assign({}, s.win), scale: s.scale,
    relations: s.relations.map((r) => ({ text: r.text, ok: r.ok, message: r.message.textContent })) };
});

// The canvas read back: one palette index per library pixel, after checking
// that each pixel is a uniform scale x scale block; -1 for a colour outside
// the palette or a mixed block.
async function canvasCells(page) {
  const text = await page.evaluate(() => {
    const { state, palette } = window.evalgViewer;
    const { columns: C, rows: R } = state.win, S = state.scale;
    const canvas = document.getElementById('graph');
    const data = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data;
    if (canvas.width !== C * S || canvas.height !== R * S) return 'size';
    const chars = new Array(C * R);
    for (let y = 0; y < R; ++y)
      for (let x = 0; x < C; ++x) {
        const at = (i, j) => 4 * ((y * S + j) * C * S + x * S + i);
        const o = at(0, 0);
        let index = palette.findIndex(([r, g, b]) => data[o] === r && data[o + 1] === g && data[o + 2] === b);
        for (let j = 0; j < S && index >= 0; ++j)
          for (let i = 0; i < S; ++i)
            if (data[at(i, j)] !== data[o] || data[at(i, j) + 1] !== data[o + 1] || data[at(i, j) + 2] !== data[o + 2]) index = -1;
        chars[y * C + x] = String.fromCharCode(65 + index);
      }
    return chars.join('');
  });
  assert.notEqual(text, 'size', 'the canvas is not the window times the scale');
  return Array.from(text, (c) => c.charCodeAt(0) - 65);
}

// The tool's twelve relation colours, then their undecided shades.
const CURVES = [[0x00, 0x77, 0x99], [0xff, 0x00, 0x00], [0x99, 0x44, 0xff], [0x88, 0x44, 0x44],
  [0x88, 0xaa, 0x88], [0xcc, 0x99, 0x55], [0x99, 0x33, 0xbb], [0xbb, 0x88, 0xff],
  [0x66, 0x00, 0xff], [0x33, 0xaa, 0xcc], [0x99, 0x33, 0x22], [0xbb, 0x66, 0x55]];
const PALETTE_CURVES = [...CURVES, ...CURVES.map((c) => c.map((v) => v + Math.floor((255 - v) * 11 / 20)))];
const FIRST_CURVE = 4;

function toolArgs(relations, w) {
  const args = ['plot'];
  relations.forEach((r, i) => { if (i > 0) args.push('--and'); args.push(...r.split(/\s+/)); });
  args.push(`--window=${w.xMin},${w.xMax},${w.yMin},${w.yMax}`, '--size', `${w.columns}x${w.rows}`);
  return args;
}

function toolJson(relations, w) {
  const file = path.join(scratch, 'plot.json');
  execFileSync(TOOL, [...toolArgs(relations, w), '-o', file]);
  return JSON.parse(fs.readFileSync(file, 'utf8'));
}

// The tool's picture at one image pixel per library pixel, as curve indices
// (-1 where no curve is drawn).
function toolCurveCells(relations, w) {
  const file = path.join(scratch, 'plot.png');
  // With the grid and axes, as the page draws them: a region's inside is
  // shaded under the grid, so the grid's pixels are part of the picture.
  execFileSync(TOOL, [...toolArgs(relations, w), '--scale', '1', '-o', file]);
  const png = readPng(fs.readFileSync(file));
  // Numbers go right of and under the window, a legend under those.
  assert.ok(png.width >= w.columns);
  assert.ok(png.height >= w.rows);
  const cells = new Array(w.columns * w.rows);
  for (let y = 0; y < w.rows; ++y)
    for (let x = 0; x < w.columns; ++x) {
      const [r, g, b] = png.rgb.subarray(3 * (y * png.width + x), 3 * (y * png.width + x) + 3);
      cells[y * w.columns + x] = PALETTE_CURVES.findIndex((c) => c[0] === r && c[1] === g && c[2] === b);
    }
  return cells;
}

// The pixels of row runs (a run from its FIRST_VISIBLE point to its
// LAST_VISIBLE one), each with whether it is proven.
function runPixels({ points, markers }) {
  const out = [];
  let from = -1;
  markers.forEach((m, i) => {
    if (m & 1) from = i;
    if (!(m & 2) || from < 0) return;
    for (let c = points[2 * from]; c <= points[2 * i]; ++c) out.push([c, points[2 * i + 1], !(markers[from] & 4)]);
    from = -1;
  });
  return out;
}

// Compares the page with the tool for the window the page shows now.
async function assertSameAsTool(page, what) {
  const view = await viewState(page);
  const w = view.win, relations = view.relations.map((r) => r.text);
  for (const r of view.relations) assert.ok(r.ok, `${what}: '${r.text}' was refused: ${r.message}`);
  const json = toolJson(relations, w);
  for (let i = 0; i < relations.length; ++i) {
    if (relations[i].startsWith('sampled')) continue; // drawn by the tool's own stretches, checked on the picture
    const drawn = await page.evaluate((k) => window.evalgViewer.drawnPoints(k), i);
    const { points, pixels } = json.relations[i];
    if (pixels) {
      // The tool lists a region's pixels one by one, with whether each is proven.
      assert.deepEqual(runPixels(drawn), pixels.map((p) => [p[0], p[1], Boolean(p[2])]),
        `${what}: pixels of '${relations[i]}'`);
      continue;
    }
    assert.deepEqual(drawn.points, points.flatMap((p) => [p[0], p[1]]), `${what}: points of '${relations[i]}'`);
    assert.deepEqual(drawn.markers, points.map((p) => p[2]), `${what}: markers of '${relations[i]}'`);
  }
  const canvas = await canvasCells(page);
  const expected = toolCurveCells(relations, w);
  let differ = 0, first = -1;
  for (let i = 0; i < expected.length; ++i) {
    const curve = canvas[i] >= FIRST_CURVE ? canvas[i] - FIRST_CURVE : canvas[i] < 0 ? -2 : -1;
    if (curve !== expected[i]) { ++differ; if (first < 0) first = i; }
  }
  assert.equal(differ, 0, `${what}: ${differ} pixels differ from the tool's picture, the first at column ` +
    `${first % w.columns}, row ${Math.floor(first / w.columns)} (window ${JSON.stringify(w)})`);
  return { canvas, expected };
}

// One relation of every kind the page draws without a file.
const EVERY_KIND = ['line m=0.5 h=-2 k=1', 'quadratic a=0.25 h=1 k=-4', 'vparabola h=-1 k=-3 a=0.5',
  'parabola h=-4 k=0.5 a=1', 'circle h=-1 k=0.5 r=3.5', 'ellipse h=1 a=6 b=3', 'hyperbola a=2 b=1.5',
  'vhyperbola h=1 k=-0.5 a=2 b=1.5', 'power a=0.5 h=1 k=-1 r=-1', 'exp b=0.5 r=0.5 k=-3',
  'log b=2 h=-7 k=-3 base=2', 'sin a=1.5 b=3 h=0.5', 'cos a=0.5 b=4 k=-0.5', "expr f=tan(x)/2",
  'sampled of=hyperbola a=1.5 b=2 k=0.5'];

test('every kind on the default window is drawn with exactly the tool\'s pixels', async () => {
  for (let i = 0; i < EVERY_KIND.length; i += 4) {
    const group = EVERY_KIND.slice(i, i + 4);
    const page = await openPage(link(group, DEFAULT, 4));
    const { expected } = await assertSameAsTool(page, group.join(' + '));
    assert.ok(expected.some((c) => c >= 0), 'the tool drew nothing: the comparison would prove nothing');
    assert.deepEqual(page.errors, []);
    await page.close();
  }
  // All at once on a full-HD window, one screen pixel each: colours repeat
  // after the twelfth relation, in the tool's order.
  const page = await openPage(link(EVERY_KIND, Object.assign({}, DEFAULT, { columns: 1920, rows: 1080 }), 1));
  await assertSameAsTool(page, 'every kind at 1920x1080');
  await page.close();
});

// A small seeded generator, so a failure names a case that can be rerun.
function generator(seed) {
  let s = seed >>> 0;
  const next = () => {
    s = (s + 0x6d2b79f5) >>> 0;
    let t = s;
    t = Math.imul(t ^ (t >>> 15), t | 1);
    t ^= t + Math.imul(t ^ (t >>> 7), t | 61);
    return ((t ^ (t >>> 14)) >>> 0) / 4294967296;
  };
  const number = (lo, hi) => +(lo + (hi - lo) * next()).toFixed(2);
  const pick = (list) => list[Math.floor(next() * list.length)];
  return { next, number, pick, int: (lo, hi) => lo + Math.floor(next() * (hi - lo + 1)) };
}

function randomRelation(g) {
  const n = () => g.number(-4, 4), pos = () => g.number(0.2, 4);
  switch (g.pick(['line', 'quadratic', 'vparabola', 'parabola', 'circle', 'ellipse', 'hyperbola', 'vhyperbola',
    'power', 'exp', 'log', 'sin', 'cos', 'expr', 'sampled'])) {
    case 'line': return `line m=${n()} h=${n()} k=${n()}`;
    case 'quadratic': return `quadratic a=${n()} h=${n()} k=${n()}`;
    case 'vparabola': return `vparabola h=${n()} k=${n()} a=${n()}`;
    case 'parabola': return `parabola h=${n()} k=${n()} a=${n()}`;
    case 'circle': return `circle h=${n()} k=${n()} r=${pos()}`;
    case 'ellipse': return `ellipse h=${n()} k=${n()} a=${pos()} b=${pos()}`;
    case 'hyperbola': return `hyperbola h=${n()} k=${n()} a=${pos()} b=${pos()}`;
    case 'vhyperbola': return `vhyperbola h=${n()} k=${n()} a=${pos()} b=${pos()}`;
    case 'power': return `power a=${n()} h=${n()} k=${n()} r=${g.int(-3, 4)} restriction=${g.int(0, 2)}`;
    case 'exp': return `exp b=${n()} r=${n()} k=${n()}`;
    case 'log': return `log a=${n()} b=${n()} h=${n()} k=${n()} base=${g.pick([2, 10, 0.5, 3])}`;
    case 'sin': return `sin a=${n()} b=${n()} h=${n()} k=${n()}`;
    case 'cos': return `cos a=${n()} b=${n()} h=${n()} k=${n()}`;
    case 'expr': return `expr f=${g.pick(['x^3-2x', 'sin(x)/x', '1/(x-1)', 'sqrt(4-x^2)', 'abs(x)-2', 'x^2/(x+2)', 'exp(-x^2)*3', 'tan(x)'])}`;
    default: return `sampled of=${g.pick(['circle', 'hyperbola', 'parabola', 'sin'])} k=${n()}`;
  }
}

test('seeded random relations and windows match the tool pixel for pixel', async () => {
  const g = generator(20261123);
  for (let round = 0; round < 12; ++round) {
    const relations = Array.from({ length: g.int(1, 3) }, () => randomRelation(g));
    const xMin = g.number(-12, 4), yMin = g.number(-8, 3);
    const w = { xMin, xMax: +(xMin + g.number(0.5, 30)).toFixed(2), yMin, yMax: +(yMin + g.number(0.5, 20)).toFixed(2),
      columns: g.int(20, 400), rows: g.int(20, 300) };
    const page = await openPage(link(relations, w, g.int(1, 3)));
    await assertSameAsTool(page, `round ${round}: ${relations.join(' + ')}`);
    await page.close();
  }
});

test('typing, dragging, wheel zoom, zoom box and reset redraw exactly the tool\'s pixels', async () => {
  const page = await openPage(link([], DEFAULT, 4));
  // Type two relations into the boxes, the second in a box of its own.
  const input = await page.$('#relations input[type=text]');
  await input.type('circle r=3');
  await page.click('#add');
  await page.keyboard.type('expr f=x^3/8-x');
  await assertSameAsTool(page, 'typed');

  const canvas = await page.$('#graph');
  const rect = await canvas.boundingBox();
  const cx = rect.x + rect.width / 2, cy = rect.y + rect.height / 2;
  // 40 screen pixels at scale 4 are 10 library pixels, 1.0 on the default
  // window; the picture follows the pointer, so the window moves against it.
  await page.mouse.move(cx, cy);
  await page.mouse.down();
  for (let i = 1; i <= 4; ++i) await page.mouse.move(cx + 10 * i, cy - 5 * i);
  await page.mouse.up();
  let view = await viewState(page);
  assert.ok(Math.abs(view.win.xMin - (-9)) < 1e-9 && Math.abs(view.win.xMax - 7) < 1e-9, JSON.stringify(view.win));
  assert.ok(Math.abs(view.win.yMin - (-5.5)) < 1e-9 && Math.abs(view.win.yMax - 4.5) < 1e-9, JSON.stringify(view.win));
  await assertSameAsTool(page, 'after a drag');

  // The zoom box: a rectangle dragged over the canvas becomes the window.
  await page.click('#zoombox');
  const before = (await viewState(page)).win;
  const corner = (u, v) => [rect.x + (u + 0.5) * 4, rect.y + (v + 0.5) * 4];
  await page.mouse.move(...corner(20, 10));
  await page.mouse.down();
  await page.mouse.move(...corner(60, 30));
  await page.mouse.move(...corner(100, 60));
  await page.mouse.up();
  view = await viewState(page);
  const sx = (before.xMax - before.xMin) / 160, sy = (before.yMax - before.yMin) / 100;
  assert.ok(Math.abs(view.win.xMin - (before.xMin + 20 * sx)) < 1e-9 * 16, JSON.stringify([before, view.win]));
  assert.ok(Math.abs(view.win.xMax - (before.xMin + 100 * sx)) < 1e-9 * 16);
  assert.ok(Math.abs(view.win.yMax - (before.yMax - 10 * sy)) < 1e-9 * 16);
  assert.ok(Math.abs(view.win.yMin - (before.yMax - 60 * sy)) < 1e-9 * 16);
  assert.equal(await page.$eval('#zoombox', (b) => b.getAttribute('aria-pressed')), 'false');
  await assertSameAsTool(page, 'after a zoom box');

  // Zooming in about the pointer keeps the point under it: the centre of
  // pixel (100, 30).
  await page.mouse.move(rect.x + (100 + 0.5) * 4, rect.y + (30 + 0.5) * 4);
  const u0 = (await viewState(page)).win;
  const x0 = u0.xMin + 100 * (u0.xMax - u0.xMin) / 160, y0 = u0.yMax - 30 * (u0.yMax - u0.yMin) / 100;
  await page.mouse.wheel({ deltaY: -200 });
  await page.waitForFunction((w) => window.evalgViewer.state.win.xMax - window.evalgViewer.state.win.xMin < w, {}, 15.9);
  view = await viewState(page);
  const w = view.win;
  assert.ok(w.xMax - w.xMin < 16 && w.yMax - w.yMin < 10, JSON.stringify(w));
  // Wheel events carry whole screen pixels, pointer moves fractions: the
  // point stays within one screen pixel, a quarter of a library pixel.
  assert.ok(Math.abs(w.xMin + 100 * (w.xMax - w.xMin) / 160 - x0) < (w.xMax - w.xMin) / 160 / 4, JSON.stringify(w));
  assert.ok(Math.abs(w.yMax - 30 * (w.yMax - w.yMin) / 100 - y0) < (w.yMax - w.yMin) / 100 / 4, JSON.stringify(w));
  await assertSameAsTool(page, 'after a wheel zoom');

  await page.click('#reset');
  view = await viewState(page);
  assert.deepEqual(view.win, DEFAULT);
  await assertSameAsTool(page, 'after reset');
  assert.deepEqual(page.errors, []);
  await page.close();
});

// Relations as a person types them: a closed form, regions and implicit
// curves, a polar and a parametric curve, with what the library chose.
const TYPED = [
  ['x^2 + y^2 = 9', 'circle \u00b7 CircleEvalC'],
  ['y < sin(x) and y > -2', 'implicit \u00b7 ImplicitRelationEvalC'],
  ['x^3 + y^3 = 3xy', 'implicit \u00b7 ImplicitRelationEvalC'],
  ['r = 1 + cos(\u03b8)', 'polar \u00b7 ParametricCurveEvalC'],
  ['(4cos(3t), 3sin(2t))', 'parametric \u00b7 ParametricCurveEvalC'],
  ['y = sin(x)/x', 'expr \u00b7 ArbitraryFunctionFloat64EvalC'],
];

test('typed relations are drawn with exactly the tool\'s pixels, regions filled', async () => {
  for (const [text, chosen] of TYPED) {
    const page = await openPage(link([], DEFAULT, 4));
    await (await page.$('#relations input[type=text]')).type(text);
    assert.equal(await page.$eval('#relations .chosen', (e) => e.textContent), chosen, text);
    const { expected } = await assertSameAsTool(page, `typed '${text}'`);
    assert.ok(expected.some((c) => c >= 0), `the tool drew nothing of '${text}'`);
    assert.deepEqual(page.errors, []);
    await page.close();
  }
  // A region is shaded: its inside on a checkerboard, still far more pixels
  // than a curve across the window.
  const page = await openPage(link(['y < sin(x) and y > -2'], DEFAULT, 1));
  const cells = await canvasCells(page);
  assert.ok(cells.filter((c) => c === FIRST_CURVE || c === FIRST_CURVE + 12).length > 161 * 10);
  // Trace over the region names a pixel of it and no y values; the table
  // says why it has no column.
  const rect = await (await page.$('#graph')).boundingBox();
  await page.mouse.move(rect.x + 80.5, rect.y + 60.5);
  const trace = await page.$eval('#trace', (e) => e.textContent);
  assert.match(trace, /nearest: y < sin\(x\) and y > -2 at pixel \(80, 60\), x = 0, y = -1$/);
  await page.click('#table-toggle');
  assert.match(await page.$eval('#table-note', (e) => e.textContent), /no y values.*y < sin\(x\) and y > -2/);
  assert.deepEqual(await page.$$eval('#table tr:first-child th', (t) => t.map((c) => c.textContent)), ['x']);
  assert.deepEqual(page.errors, []);
  await page.close();
});

test('two fingers spreading apart zoom about their midpoint', async () => {
  const page = await openPage(link(['circle r=2', 'sin a=2'], DEFAULT, 4));
  await page.setViewport({ width: 1400, height: 1000, hasTouch: true });
  const rect = await (await page.$('#graph')).boundingBox();
  const cdp = await page.createCDPSession();
  const at = (u, v) => ({ x: rect.x + (u + 0.5) * 4, y: rect.y + (v + 0.5) * 4 });
  const touch = (type, points) => cdp.send('Input.dispatchTouchEvent',
    { type, touchPoints: points.map((p, id) => Object.assign({ id }, p)) });
  // From 40 to 80 pixels apart about pixel (90, 40), the point (1, 1).
  await touch('touchStart', [at(70, 40), at(110, 40)]);
  for (let k = 1; k <= 5; ++k) await touch('touchMove', [at(70 - 4 * k, 40), at(110 + 4 * k, 40)]);
  await touch('touchEnd', []);
  const w = (await viewState(page)).win;
  const near = (a, b) => Math.abs(a - b) < 1e-12;
  assert.ok(near(w.xMin, 1 - 4.5) && near(w.xMax, 1 + 3.5) && near(w.yMin, 1 - 3) && near(w.yMax, 1 + 2), JSON.stringify(w));
  await assertSameAsTool(page, 'after a pinch');
  await page.close();
});

test('an invalid relation shows the parser\'s message beside its box and the others still draw', async () => {
  const cases = [
    ['circle r=abc', /circle r/],
    ['expr f=sin(', /does not parse/],
    ['quadratic q=2', /unknown parameter 'q'/],
    ['power r=1.5', /power r/],
    ['wiggle a=1', /unknown kind 'wiggle'/],
    // A typed relation that does not read: the library says where.
    ['x^2 + y^2 = ', /at character 12/],
    ['y < sin(x) and', /at character \d+/],
    ['(cos(t), sin(t)', /at character \d+/],
    ["expr f='x+1", /unmatched/],
    // Read without complaint, but the page has no files to draw it from.
    ['sketch file=points.json', /points file 'points.json': cannot read it/],
  ];
  const page = await openPage(link(['line m=1'], DEFAULT, 4));
  await page.click('#add');
  for (const [text, message] of cases) {
    const boxes = await page.$$('#relations input[type=text]');
    await boxes[1].click({ clickCount: 3 });
    await page.keyboard.press('Backspace');
    await boxes[1].type(text);
    await page.waitForFunction(() => document.querySelectorAll('#relations .message')[1].textContent !== '',
      { timeout: 2000 }).catch(() => {});
    const shown = await page.evaluate(() => document.querySelectorAll('#relations .message')[1].textContent);
    assert.match(shown, message, `'${text}' shows '${shown}'`);
    const cells = await canvasCells(page);
    assert.ok(cells.includes(FIRST_CURVE), `'${text}': the valid line is no longer drawn`);
  }
  assert.deepEqual(page.errors, []);
  await page.close();

  // A link with nothing drawable still shows the page and the message.
  const bad = await openPage(base + '#r=circle%20r%3D&w=1,0,2,3');
  const view = await viewState(bad);
  assert.deepEqual(view.win, DEFAULT);
  assert.match(view.relations[0].message, /circle r/);
  assert.match(await bad.$eval('#window-message', (e) => e.textContent), /window/);
  await bad.close();
});

test('a shared link restores the relations and the window exactly', async () => {
  const page = await openPage(link(['sin a=2 b=3', 'hyperbola a=2 b=1.5', 'sin(x)/x'], DEFAULT, 3));
  const rect = await (await page.$('#graph')).boundingBox();
  await page.mouse.move(rect.x + 200, rect.y + 100);
  await page.mouse.wheel({ deltaY: 137 });
  await page.mouse.down();
  await page.mouse.move(rect.x + 173, rect.y + 141);
  await page.mouse.up();
  const view = await viewState(page);
  await page.waitForFunction(() => location.hash.includes('r=sin(x)%2Fx') &&
    location.hash.includes(`w=${window.evalgViewer.state.win.xMin},`));
  const shared = await page.evaluate(() => location.href);
  const cells = await canvasCells(page);
  await page.close();

  const again = await openPage(shared);
  const restored = await viewState(again);
  assert.deepEqual(restored.win, view.win);
  assert.equal(restored.scale, 3);
  assert.deepEqual(restored.relations.map((r) => r.text), ['sin a=2 b=3', 'hyperbola a=2 b=1.5', 'sin(x)/x']);
  assert.deepEqual(await canvasCells(again), cells);
  await again.close();

  // Typed relations with θ, ² and ≤ come back as typed.
  const typed = ['r = 1 + cos(\u03b8)', 'x\u00b2 + y\u00b2 \u2264 4', 'y = x^2 - 3'];
  const first = await openPage(link([], DEFAULT, 4));
  for (const [i, text] of typed.entries()) {
    await first.click(i > 0 ? '#add' : '#relations input[type=text]');
    await first.keyboard.type(text);
  }
  const typedView = await viewState(first);
  assert.deepEqual(typedView.relations.map((r) => [r.text, r.ok]), typed.map((t) => [t, true]));
  await first.waitForFunction(() => location.hash.includes('r=y%20%3D%20x%5E2%20-%203'));
  const typedLink = await first.evaluate(() => location.href);
  const typedCells = await canvasCells(first);
  await first.close();
  const restoredTyped = await openPage(typedLink);
  const view2 = await viewState(restoredTyped);
  assert.deepEqual(view2.relations.map((r) => r.text), typedView.relations.map((r) => r.text));
  assert.ok(view2.relations.every((r) => r.ok));
  assert.deepEqual(await canvasCells(restoredTyped), typedCells);
  await assertSameAsTool(restoredTyped, 'a shared link of typed relations');
  await restoredTyped.close();
});

test('trace names the nearest drawn pixel and the table shows the relation\'s values', async () => {
  const page = await openPage(link(['quadratic a=1 h=1 k=-2', 'circle r=2'], DEFAULT, 4));
  // Narrow enough that the long trace line could push the graph onto a line
  // of its own, from under the pointer; it must not.
  await page.setViewport({ width: 1040, height: 800 });
  const rect = await (await page.$('#graph')).boundingBox();
  // Over (x, y) = (3, 2): the quadratic's pixel at column 110 is the nearest.
  await page.mouse.move(rect.x + (110 + 0.5) * 4, rect.y + (30 + 0.5) * 4 + 2);
  const trace = await page.$eval('#trace', (e) => e.textContent);
  assert.match(trace, /nearest: quadratic a=1 h=1 k=-2 at pixel \(110, \d+\), x = 3, y = [\d.]+; y values at x: 2$/);
  assert.deepEqual(await (await page.$('#graph')).boundingBox(), rect);

  await page.click('#table-toggle');
  const rows = await page.$$eval('#table tr', (trs) => trs.map((tr) => [...tr.cells].map((c) => c.textContent)));
  assert.deepEqual(rows[0], ['x', 'quadratic a=1 h=1 k=-2', 'circle r=2', 'second y']);
  assert.equal(rows.length, 22);
  for (const row of rows.slice(1)) {
    const x = Number(row[0]);
    assert.equal(Number(row[1]), (x - 1) * (x - 1) - 2, `quadratic at ${x}`);
    const s = Math.sqrt(4 - x * x);
    assert.deepEqual([row[2], row[3]], Number.isNaN(s) ? ['', ''] : s === 0 ? ['0', ''] : [String(+s.toPrecision(12)), String(+(-s).toPrecision(12))], `circle at ${x}`);
  }
  await page.close();
});

test('redraw time per kind, WebAssembly against native', async (t) => {
  const windows = [['161x101', DEFAULT, 4], ['1920x1080', Object.assign({}, DEFAULT, { columns: 1920, rows: 1080 }), 1]];
  const lines = ['| kind | window | native evaluation (us) | page evaluation (us) | ratio | whole page redraw (ms) |',
    '|---|---|---|---|---|---|'];
  const typedRows = [['typed circle', 'x^2 + y^2 = 9'], ['implicit', 'y < sin(x) and y > -2'],
    ['implicit curve', 'x^3 + y^3 = 3xy'], ['polar', 'r = 1 + cos(\u03b8)']];
  for (const relation of [...EVERY_KIND, ...typedRows.map((r) => r[1])]) {
    const typed = typedRows.find((r) => r[1] === relation);
    for (const [name, w, scale] of windows) {
      const args = [w.xMin, w.xMax, w.yMin, w.yMax, w.columns, w.rows].map(String);
      const native = Number(execFileSync(REDRAW, [...args, relation], { encoding: 'utf8' }).split(' ')[0]) / 1000;
      const page = await openPage(link([relation], w, scale));
      const wasm = await page.evaluate(() => window.evalgViewer.timeEvaluate(0)) * 1000;
      const whole = await page.evaluate(() => window.evalgViewer.timeRedraw());
      await page.close();
      assert.ok(native > 0 && wasm > 0);
      lines.push(`| ${typed ? `${typed[0]} (${relation})` : relation.split(' ')[0]} | ${name} | ${native.toFixed(1)} | ${wasm.toFixed(1)} | ` +
        `${(wasm / native).toFixed(2)}x | ${whole.toFixed(2)} |`);
    }
  }
  for (const line of lines) t.diagnostic(line);
  fs.writeFileSync(path.join(VIEWER, '..', 'redraw-timing.md'), lines.join('\n') + '\n');
});
