// The graphing page: relations typed into boxes are read and drawn by the
// evalg library compiled to WebAssembly (evalg.js); this file only moves the
// window, lays the library's pixels onto the canvas and keeps the address in
// step with the view.
'use strict';

(function () {
  const FIRST_VISIBLE = 0x01, LAST_VISIBLE = 0x02;
  // evalg_form's bits: the drawing is row runs of pixels; there are y values.
  const PIXEL_RUNS = 1, HAS_Y = 2;
  const DEFAULT_WINDOW = { xMin: -8, xMax: 8, yMin: -5, yMax: 5, columns: 161, rows: 101 };
  const DEFAULT_SCALE = 4;
  // Cell colours: background, grid, axes, then the relations' colours (the
  // evalg tool's palette, so the page and its pictures agree).
  const BACKGROUND = 0, GRID = 1, AXIS = 2, FIRST_CURVE = 4;
  // The tool's palette (tools/Image.cpp): the fixed colours, twelve relation
  // colours, then each of those lightened for undecided pixels.
  const CURVES = [[0x00, 0x77, 0x99], [0xff, 0x00, 0x00], [0x99, 0x44, 0xff], [0x88, 0x44, 0x44],
    [0x88, 0xaa, 0x88], [0xcc, 0x99, 0x55], [0x99, 0x33, 0xbb], [0xbb, 0x88, 0xff],
    [0x66, 0x00, 0xff], [0x33, 0xaa, 0xcc], [0x99, 0x33, 0x22], [0xbb, 0x66, 0x55]];
  const lighten = (c) => c + Math.floor((255 - c) * 11 / 20);
  const PALETTE = [[255, 255, 255], [228, 228, 228], [120, 120, 120], [20, 20, 20], ...CURVES,
    ...CURVES.map((c) => c.map(lighten))];
  const CURVE_COLOURS = CURVES.length, UNDECIDED = 4;
  // The palette as the canvas's 32-bit pixels, in the machine's byte order.
  const LITTLE_ENDIAN = new Uint8Array(new Uint32Array([1]).buffer)[0] === 1;
  const PACKED = Uint32Array.from(PALETTE, ([r, g, b]) => LITTLE_ENDIAN ? ((255 << 24) | (b << 16) | (g << 8) | r) >>> 0
    : ((r << 24) | (g << 16) | (b << 8) | 255) >>> 0);
  const MAX_SLOTS = 64;
  const TABLE_ROWS = 21;

  const $ = (id) => document.getElementById(id);
  const canvas = $('graph'), box = $('box'), canvasBox = $('canvas-box');
  const ctx = canvas.getContext('2d');
  const traceDot = document.createElement('div');
  traceDot.id = 'trace-dot';
  traceDot.style.cssText = 'position:absolute;border:2px solid #000;box-shadow:0 0 0 2px #fff;border-radius:50%;' +
    'pointer-events:none;display:none;box-sizing:border-box';
  canvasBox.appendChild(traceDot);

  let M = null, api = null;
  const state = {
    win: Object.assign({}, DEFAULT_WINDOW),
    scale: DEFAULT_SCALE,
    relations: [], // { text, on, slot, ok, colour, row elements, count }
    zoomBox: false,
    table: false,
  };
  let cells = new Uint8Array(0), image = null, lastRedrawMs = 0;

  // ---- the binding -------------------------------------------------------
  function bind(module) {
    M = module;
    api = {
      set: M.cwrap('evalg_set', 'number', ['number', 'string']),
      clear: M._evalg_clear,
      chosen: (slot) => M.UTF8ToString(M._evalg_chosen(slot)),
      form: M._evalg_form,
      message: () => M.UTF8ToString(M._evalg_message()),
      draw: M._evalg_draw,
      points: M._evalg_points,
      markers: M._evalg_markers,
      valuesAt: M._evalg_values_at,
      table: M._evalg_table,
      grid: M._evalg_grid,
      numbers: M._evalg_numbers,
    };
  }
  // Views straight into the module's memory: the library's arrays are read
  // where they lie. Memory can grow, so a view is made afresh for each use.
  const int32View = (ptr, n) => new Int32Array(M.HEAP32.buffer, ptr, n);
  const uint8View = (ptr, n) => new Uint8Array(M.HEAPU8.buffer, ptr, n);
  const float64View = (ptr, n) => new Float64Array(M.HEAPF64.buffer, ptr, n);

  function freeSlot() {
    for (let s = 0; s < MAX_SLOTS; ++s)
      if (!state.relations.some((r) => r.slot === s)) return s;
    return -1;
  }

  // ---- drawing -----------------------------------------------------------
  const xStep = (w) => (w.xMax - w.xMin) / (w.columns - 1 || 1);
  const yStep = (w) => (w.yMax - w.yMin) / (w.rows - 1 || 1);

  // A straight pixel line between two cells, only the cells inside the grid.
  function line(x0, y0, x1, y1, colour, C, R) {
    const dx = Math.abs(x1 - x0), dy = -Math.abs(y1 - y0);
    const sx = x0 < x1 ? 1 : -1, sy = y0 < y1 ? 1 : -1;
    let err = dx + dy, x = x0, y = y0;
    for (;;) {
      if (x >= 0 && y >= 0 && x < C && y < R) cells[y * C + x] = colour;
      if (x === x1 && y === y1) break;
      const e2 = 2 * err;
      if (e2 >= dy) { err += dy; x += sx; }
      if (e2 <= dx) { err += dx; y += sy; }
    }
  }

  // Joins consecutive points, except after a LAST_VISIBLE point and before a
  // FIRST_VISIBLE one. A point more than one pixel outside the grid is not
  // drawn and ends the stretch; one pixel outside is where a span clamped to
  // the edge ends, and the line to it is clipped.
  // Undecided points, and segments between two of them, in the light shade;
  // an undecided point stays light where a decided segment ends on it.
  function drawPoints(points, markers, count, colour, C, R) {
    const light = colour + CURVE_COLOURS;
    let joined = false, px = 0, py = 0, pm = 0;
    let pending = [];
    const lightenStroke = () => {
      for (let k = 0; k < pending.length; k += 2) line(pending[k], pending[k + 1], pending[k], pending[k + 1], light, C, R);
      pending = [];
    };
    for (let i = 0; i < count; ++i) {
      const x = points[2 * i], y = points[2 * i + 1], m = markers[i];
      if (x < -1 || x > C || y < -1 || y > R) { joined = false; lightenStroke(); continue; }
      if (joined && !(pm & LAST_VISIBLE) && !(m & FIRST_VISIBLE)) {
        line(px, py, x, y, (pm & m & UNDECIDED) ? light : colour, C, R);
      } else {
        lightenStroke();
        line(x, y, x, y, (m & UNDECIDED) ? light : colour, C, R);
      }
      if (m & UNDECIDED) pending.push(x, y);
      joined = true; px = x; py = y; pm = m;
    }
    lightenStroke();
  }

  // A region or an implicit curve, as the tool's pictures draw it: each run,
  // from its FIRST_VISIBLE point to its LAST_VISIBLE one on a row, marked in
  // a mask (1 decided, 2 undecided). A pixel whose four neighbours are marked
  // too (or lie beyond the window) is inside: shaded on a checkerboard under
  // the grid, so what lies beneath shows through, two regions in turn. Every
  // other pixel is the edge, drawn solid over the grid.
  function runMask(points, markers, count, C, R) {
    const mask = new Uint8Array(C * R);
    let from = -1;
    for (let i = 0; i < count; ++i) {
      const m = markers[i];
      if (m & FIRST_VISIBLE) from = i;
      if (!(m & LAST_VISIBLE) || from < 0) continue;
      const row = points[2 * i + 1];
      if (row >= 0 && row < R) {
        const c0 = Math.max(0, Math.min(points[2 * from], points[2 * i]));
        const c1 = Math.min(C - 1, Math.max(points[2 * from], points[2 * i]));
        if (c0 <= c1) mask.fill((markers[from] & UNDECIDED) ? 2 : 1, row * C + c0, row * C + c1 + 1);
      }
      from = -1;
    }
    return mask;
  }

  function insideRun(mask, x, y, C, R) {
    const at = (u, v) => u < 0 || v < 0 || u >= C || v >= R || mask[v * C + u] !== 0;
    return at(x - 1, y) && at(x + 1, y) && at(x, y - 1) && at(x, y + 1);
  }

  function drawRuns(mask, colour, inside, offset, C, R) {
    const light = colour + CURVE_COLOURS;
    for (let y = 0; y < R; ++y)
      for (let x = 0; x < C; ++x) {
        const m = mask[y * C + x];
        if (!m || insideRun(mask, x, y, C, R) !== inside) continue;
        if (inside && (x + y + offset) % 2 !== 0) continue;
        cells[y * C + x] = m === 2 ? light : colour;
      }
  }

  function drawGrid(w) {
    const n = api.grid(w.xMin, w.xMax, w.yMin, w.yMax, w.columns, w.rows);
    if (n <= 0) return;
    const nums = float64View(api.numbers(), 2 + 3 * n);
    const vertical = nums[0];
    // Grid first and axes after, so an axis is never cut by a grid line.
    for (const axes of [0, 1])
      for (let i = 0; i < n; ++i) {
        const pixel = nums[2 + 3 * i], axis = nums[4 + 3 * i];
        if (axis !== axes) continue;
        const colour = axes ? AXIS : GRID;
        if (i < vertical) line(pixel, 0, pixel, w.rows - 1, colour, w.columns, w.rows);
        else line(0, pixel, w.columns - 1, pixel, colour, w.columns, w.rows);
      }
  }

  // Evaluates every shown relation on the window and paints the canvas, each
  // library pixel as a scale x scale block.
  function redraw() {
    if (!api) return;
    const t0 = performance.now();
    const w = state.win, S = state.scale, C = w.columns, R = w.rows;
    if (cells.length !== C * R) cells = new Uint8Array(C * R);
    else cells.fill(BACKGROUND);
    let total = 0;
    const shown = [];
    state.relations.forEach((r) => {
      r.count = 0;
      if (!r.ok || !r.on) return;
      r.count = api.draw(r.slot, w.xMin, w.xMax, w.yMin, w.yMax, C, R);
      if (r.count < 0) { r.count = 0; r.message.textContent = api.message(); }
      if (r.count <= 0) return;
      total += r.count;
      const points = int32View(api.points(r.slot), 2 * r.count), markers = uint8View(api.markers(r.slot), r.count);
      const mask = r.runs ? runMask(points, markers, r.count, C, R) : null;
      shown.push({ r, mask });
      // Regions' insides first, under the grid.
      if (mask) drawRuns(mask, FIRST_CURVE + r.colour, true, r.colour % 2, C, R);
    });
    drawGrid(w);
    for (const { r, mask } of shown) {
      if (mask) drawRuns(mask, FIRST_CURVE + r.colour, false, 0, C, R);
      else drawPoints(int32View(api.points(r.slot), 2 * r.count), uint8View(api.markers(r.slot), r.count), r.count,
        FIRST_CURVE + r.colour, C, R);
    }
    if (canvas.width !== C * S || canvas.height !== R * S || !image) {
      canvas.width = C * S;
      canvas.height = R * S;
      image = ctx.createImageData(C * S, R * S);
    }
    const out = new Uint32Array(image.data.buffer);
    const width = C * S;
    if (S === 1) {
      for (let i = 0; i < C * R; ++i) out[i] = PACKED[cells[i]];
    } else {
      for (let y = 0; y < R; ++y) {
        const rowStart = y * S * width;
        for (let x = 0, o = rowStart; x < C; ++x, o += S) {
          const v = PACKED[cells[y * C + x]];
          for (let i = 0; i < S; ++i) out[o + i] = v;
        }
        for (let j = 1; j < S; ++j) out.copyWithin(rowStart + j * width, rowStart, rowStart + width);
      }
    }
    ctx.putImageData(image, 0, 0);
    lastRedrawMs = performance.now() - t0;
    $('status').textContent = `${C}x${R} pixels, ${total} points, redrawn in ${lastRedrawMs.toFixed(2)} ms`;
    showWindow();
    scheduleAddress();
  }

  let frame = 0;
  function requestRedraw() {
    if (!frame) frame = requestAnimationFrame(() => { frame = 0; redraw(); });
  }

  // ---- relations ---------------------------------------------------------
  function readRelation(r) {
    if (r.slot >= 0) api.clear(r.slot);
    r.ok = false;
    r.runs = r.hasY = false;
    r.chosen.textContent = '';
    if (r.text.trim() === '') { r.message.textContent = ''; return; }
    if (r.slot < 0) { r.message.textContent = 'too many relations'; return; }
    r.ok = api.set(r.slot, r.text) === 1;
    r.message.textContent = r.ok ? '' : api.message();
    if (!r.ok) return;
    const form = api.form(r.slot);
    r.runs = (form & PIXEL_RUNS) !== 0;
    r.hasY = (form & HAS_Y) !== 0;
    r.chosen.textContent = api.chosen(r.slot);
  }

  function addRelation(text, on) {
    const used = new Set(state.relations.map((r) => r.colour));
    // The first colour not in use; past the last, they repeat in order.
    let colour = 0;
    while (used.has(colour) && colour < CURVE_COLOURS) ++colour;
    if (colour === CURVE_COLOURS) colour = state.relations.length % CURVE_COLOURS;
    const r = { text, on: on !== false, slot: freeSlot(), ok: false, runs: false, hasY: false, colour, count: 0 };
    const row = document.createElement('div');
    row.className = 'relation';
    const [red, green, blue] = PALETTE[FIRST_CURVE + colour];
    row.innerHTML = `<input type="checkbox" title="show"><span class="swatch" style="background:rgb(${red},${green},${blue})"></span>` +
      '<input type="text" spellcheck="false" autocomplete="off"><button type="button" title="remove">×</button>' +
      '<p class="message"></p><p class="chosen" title="what draws it: the kind and the library evaluator"></p>';
    const [toggle, , input, remove, message, chosen] = row.children;
    toggle.checked = r.on;
    input.value = text;
    Object.assign(r, { row, input, message, chosen });
    toggle.addEventListener('change', () => { r.on = toggle.checked; changed(); });
    input.addEventListener('input', () => { r.text = input.value; readRelation(r); changed(); });
    remove.addEventListener('click', () => {
      if (r.slot >= 0) api.clear(r.slot);
      state.relations.splice(state.relations.indexOf(r), 1);
      row.remove();
      changed();
    });
    $('relations').appendChild(row);
    state.relations.push(r);
    readRelation(r);
    return r;
  }

  function setRelations(texts) {
    for (const r of state.relations) { if (r.slot >= 0) api.clear(r.slot); r.row.remove(); }
    state.relations = [];
    for (const t of texts) addRelation(t);
    if (texts.length === 0) addRelation('');
  }

  function changed() {
    requestRedraw();
    if (state.table) fillTable();
  }

  // ---- the window --------------------------------------------------------
  // A canvas the browser can hold: Chromium refuses sides above 32767 and
  // areas of a few hundred million pixels; 16384 a side and 32 million
  // pixels leave room for every screen.
  const MAX_SIDE = 16384, MAX_AREA = 32 * 1024 * 1024;
  const fits = (w, scale) => w.columns * scale <= MAX_SIDE && w.rows * scale <= MAX_SIDE &&
    w.columns * w.rows * scale * scale <= MAX_AREA;

  // A window the library takes, at a size the canvas can show: finite,
  // ordered, and wide enough that its pixel centres are distinct doubles.
  function usable(w, scale = state.scale) {
    const ok = (lo, hi, n) => Number.isFinite(lo) && Number.isFinite(hi) && lo < hi && Number.isFinite(hi - lo) &&
      (hi - lo) / n > 4 * Number.EPSILON * Math.max(Math.abs(lo), Math.abs(hi), Number.MIN_VALUE);
    return ok(w.xMin, w.xMax, w.columns) && ok(w.yMin, w.yMax, w.rows) &&
      Number.isInteger(w.columns) && Number.isInteger(w.rows) &&
      w.columns >= 1 && w.rows >= 1 && w.columns <= 32767 && w.rows <= 32767 && fits(w, scale);
  }

  function setWindow(w) {
    if (!usable(w)) return false;
    state.win = w;
    requestRedraw();
    return true;
  }

  const fmt = (v) => String(+v.toPrecision(12));

  function showWindow() {
    const w = state.win;
    for (const [id, v] of [['xmin', w.xMin], ['xmax', w.xMax], ['ymin', w.yMin], ['ymax', w.yMax]])
      if (document.activeElement !== $(id)) $(id).value = fmt(v);
    if (document.activeElement !== $('size')) $('size').value = `${w.columns}x${w.rows}`;
    $('scale').value = String(state.scale);
  }

  function windowFromForm() {
    const num = (id) => ($(id).value.trim() === '' ? NaN : Number($(id).value));
    const size = /^\s*(\d+)\s*[xX]\s*(\d+)\s*$/.exec($('size').value);
    const w = { xMin: num('xmin'), xMax: num('xmax'), yMin: num('ymin'), yMax: num('ymax'),
      columns: size ? +size[1] : NaN, rows: size ? +size[2] : NaN };
    const message = $('window-message');
    if (!setWindow(w))
      message.textContent = 'the window needs numbers with xmin < xmax and ymin < ymax, and pixels MxN from 1x1 ' +
        `to at most ${MAX_SIDE} screen pixels a side (pixels times scale)`;
    else
      message.textContent = '';
  }

  // Grid coordinates (column, row as fractions, pixel centres on whole
  // numbers) and mathematical coordinates of a pointer position.
  function gridAt(event) {
    const rect = canvas.getBoundingClientRect();
    const S = state.scale;
    return { u: (event.clientX - rect.left) / S - 0.5, v: (event.clientY - rect.top) / S - 0.5 };
  }
  const mathX = (w, u) => w.xMin + u * xStep(w);
  const mathY = (w, v) => w.yMax - v * yStep(w);

  // The window scaled by f about the grid point (u, v), from the window w.
  function zoomed(w, u, v, f) {
    const x = mathX(w, u), y = mathY(w, v);
    return Object.assign({}, w, { xMin: x - (x - w.xMin) * f, xMax: x + (w.xMax - x) * f,
      yMin: y - (y - w.yMin) * f, yMax: y + (w.yMax - y) * f });
  }
  function panned(w, du, dv) {
    const dx = du * xStep(w), dy = dv * yStep(w);
    return Object.assign({}, w, { xMin: w.xMin - dx, xMax: w.xMax - dx, yMin: w.yMin + dy, yMax: w.yMax + dy });
  }

  // ---- pointer: pan, pinch, zoom box, trace ------------------------------
  const pointers = new Map();
  let gesture = null;

  canvasBox.addEventListener('pointerdown', (e) => {
    canvasBox.setPointerCapture(e.pointerId);
    pointers.set(e.pointerId, gridAt(e));
    const start = Object.assign({}, state.win);
    if (state.zoomBox && pointers.size === 1) {
      gesture = { kind: 'box', from: gridAt(e), start };
    } else if (pointers.size === 1) {
      gesture = { kind: 'pan', from: gridAt(e), start };
      canvasBox.classList.add('dragging');
    } else if (pointers.size === 2) {
      const [a, b] = [...pointers.values()];
      gesture = { kind: 'pinch', start, mid: { u: (a.u + b.u) / 2, v: (a.v + b.v) / 2 },
        distance: Math.hypot(a.u - b.u, a.v - b.v) || 1 };
      box.style.display = 'none';
    }
  });

  canvasBox.addEventListener('pointermove', (e) => {
    const here = gridAt(e);
    if (pointers.has(e.pointerId)) pointers.set(e.pointerId, here);
    if (!gesture) { trace(here); return; }
    if (gesture.kind === 'pan') {
      setWindow(panned(gesture.start, here.u - gesture.from.u, here.v - gesture.from.v));
    } else if (gesture.kind === 'pinch' && pointers.size >= 2) {
      const [a, b] = [...pointers.values()];
      const distance = Math.hypot(a.u - b.u, a.v - b.v) || 1;
      const mid = { u: (a.u + b.u) / 2, v: (a.v + b.v) / 2 };
      const w = zoomed(gesture.start, gesture.mid.u, gesture.mid.v, gesture.distance / distance);
      setWindow(panned(w, mid.u - gesture.mid.u, mid.v - gesture.mid.v));
    } else if (gesture.kind === 'box') {
      const S = state.scale, f = gesture.from;
      Object.assign(box.style, { display: 'block', left: `${(Math.min(f.u, here.u) + 0.5) * S}px`,
        top: `${(Math.min(f.v, here.v) + 0.5) * S}px`, width: `${Math.abs(here.u - f.u) * S}px`,
        height: `${Math.abs(here.v - f.v) * S}px` });
    }
  });

  function endPointer(e) {
    if (!pointers.has(e.pointerId)) return;
    const here = gridAt(e);
    pointers.delete(e.pointerId);
    if (gesture && gesture.kind === 'box') {
      box.style.display = 'none';
      const f = gesture.from, w = gesture.start;
      // A box narrower than two pixels is taken as a click, not a zoom.
      if (Math.abs(here.u - f.u) >= 2 && Math.abs(here.v - f.v) >= 2) {
        const zoomedIn = Object.assign({}, w, { xMin: mathX(w, Math.min(f.u, here.u)), xMax: mathX(w, Math.max(f.u, here.u)),
          yMin: mathY(w, Math.max(f.v, here.v)), yMax: mathY(w, Math.min(f.v, here.v)) });
        if (setWindow(zoomedIn)) setZoomBox(false);
      }
    }
    if (pointers.size === 1 && gesture && gesture.kind === 'pinch') {
      // The finger left on the glass carries on panning from here.
      gesture = { kind: 'pan', from: [...pointers.values()][0], start: Object.assign({}, state.win) };
    } else if (pointers.size === 0) {
      gesture = null;
      canvasBox.classList.remove('dragging');
    }
  }
  canvasBox.addEventListener('pointerup', endPointer);
  canvasBox.addEventListener('pointercancel', endPointer);
  canvasBox.addEventListener('pointerleave', () => { if (!gesture) { traceDot.style.display = 'none'; } });

  canvasBox.addEventListener('wheel', (e) => {
    e.preventDefault();
    const lines = e.deltaMode === 1 ? 16 : e.deltaMode === 2 ? 400 : 1;
    const f = Math.exp(Math.max(-5, Math.min(5, e.deltaY * lines * 0.002)));
    const at = gridAt(e);
    setWindow(zoomed(state.win, at.u, at.v, f));
  }, { passive: false });

  // The coordinates under the pointer and the nearest pixel the library drew,
  // with its relation's values at that pixel's x.
  function trace(at) {
    const w = state.win;
    let best = null;
    for (const r of state.relations) {
      if (!r.ok || !r.on || r.count <= 0) continue;
      const pts = int32View(api.points(r.slot), 2 * r.count);
      const marks = r.runs ? uint8View(api.markers(r.slot), r.count) : null;
      let from = 0;
      for (let i = 0; i < r.count; ++i) {
        let c = pts[2 * i];
        const row = pts[2 * i + 1];
        if (marks) {
          // A run's nearest pixel lies anywhere between its ends.
          if (marks[i] & FIRST_VISIBLE) from = i;
          if (!(marks[i] & LAST_VISIBLE)) continue;
          const lo = Math.min(pts[2 * from], c), hi = Math.max(pts[2 * from], c);
          c = Math.max(lo, Math.min(hi, Math.round(at.u)));
        }
        if (c < 0 || row < 0 || c >= w.columns || row >= w.rows) continue;
        const d = (c - at.u) * (c - at.u) + (row - at.v) * (row - at.v);
        if (!best || d < best.d) best = { d, c, row, r };
      }
    }
    let text = `x = ${fmt(mathX(w, at.u))}, y = ${fmt(mathY(w, at.v))}`;
    if (best) {
      const x = mathX(w, best.c);
      text += `   nearest: ${best.r.text} at pixel (${best.c}, ${best.row}), x = ${fmt(x)}, y = ${fmt(mathY(w, best.row))}`;
      if (best.r.hasY) {
        const n = api.valuesAt(best.r.slot, x);
        text += `; y values at x: ${n > 0 ? [...float64View(api.numbers(), n)].map(fmt).join(', ') : 'none'}`;
      }
      const S = state.scale, size = Math.max(3 * S, 11);
      Object.assign(traceDot.style, { display: 'block', width: `${size}px`, height: `${size}px`,
        left: `${best.c * S + S / 2 - size / 2}px`, top: `${best.row * S + S / 2 - size / 2}px` });
    } else {
      traceDot.style.display = 'none';
    }
    $('trace').textContent = text;
  }

  // ---- table -------------------------------------------------------------
  function fillTable() {
    const from = Number($('table-from').value), step = Number($('table-step').value);
    const table = $('table');
    table.textContent = '';
    if (!Number.isFinite(from) || !Number.isFinite(step)) return;
    const shown = state.relations.filter((r) => r.ok && r.on && r.hasY);
    const without = state.relations.filter((r) => r.ok && r.on && !r.hasY).map((r) => r.text);
    $('table-note').textContent = without.length === 0 ? '' :
      `not in the table, having no y values as functions of x: ${without.join('; ')}`;
    const columns = shown.map((r) => {
      const n = api.table(r.slot, from, step, TABLE_ROWS);
      const nums = n > 0 ? [...float64View(api.numbers(), 3 * n)] : [];
      const rows = [];
      for (let i = 0; i < n; ++i) rows.push([nums[3 * i], nums[3 * i + 1], nums[3 * i + 2]]);
      return { r, rows, second: rows.some((row) => !Number.isNaN(row[2])) };
    });
    const head = table.insertRow();
    const th = (text, colour) => {
      const cell = document.createElement('th');
      cell.textContent = text;
      if (colour !== undefined) cell.style.color = `rgb(${PALETTE[FIRST_CURVE + colour].join(',')})`;
      head.appendChild(cell);
    };
    th('x');
    for (const col of columns) { th(col.r.text, col.r.colour); if (col.second) th('second y', col.r.colour); }
    for (let i = 0; i < TABLE_ROWS; ++i) {
      const row = table.insertRow();
      row.insertCell().textContent = fmt(from + i * step);
      for (const col of columns) {
        const values = col.rows[i] || [NaN, NaN, NaN];
        row.insertCell().textContent = Number.isNaN(values[1]) ? '' : fmt(values[1]);
        if (col.second) row.insertCell().textContent = Number.isNaN(values[2]) ? '' : fmt(values[2]);
      }
    }
  }

  // ---- the address -------------------------------------------------------
  // #r=<relation>&r=...&w=xmin,xmax,ymin,ymax, and the size and scale when
  // they differ from the handheld's.
  function address() {
    const w = state.win;
    const parts = state.relations.filter((r) => r.text.trim() !== '').map((r) => 'r=' + encodeURIComponent(r.text));
    parts.push(`w=${w.xMin},${w.xMax},${w.yMin},${w.yMax}`);
    if (w.columns !== DEFAULT_WINDOW.columns || w.rows !== DEFAULT_WINDOW.rows) parts.push(`s=${w.columns}x${w.rows}`);
    if (state.scale !== DEFAULT_SCALE) parts.push(`p=${state.scale}`);
    return '#' + parts.join('&');
  }
  let addressTimer = 0;
  function scheduleAddress() {
    // Browsers throttle history updates made on every mouse move.
    clearTimeout(addressTimer);
    addressTimer = setTimeout(() => {
      const a = address();
      if (location.hash !== a) history.replaceState(null, '', a);
    }, 150);
  }

  function readAddress() {
    const texts = [];
    const w = Object.assign({}, DEFAULT_WINDOW);
    let scale = DEFAULT_SCALE;
    let message = '';
    for (const part of location.hash.replace(/^#/, '').split('&')) {
      if (!part) continue;
      const eq = part.indexOf('=');
      const key = eq < 0 ? part : part.slice(0, eq);
      let value;
      try { value = decodeURIComponent(eq < 0 ? '' : part.slice(eq + 1)); } catch (err) { message = `the link's ${key} is not readable`; continue; }
      if (key === 'r') texts.push(value);
      else if (key === 'w') {
        const v = value.split(',').map(Number);
        if (v.length === 4 && v.every(Number.isFinite)) [w.xMin, w.xMax, w.yMin, w.yMax] = v;
        else message = `the link's window '${value}' is not xmin,xmax,ymin,ymax`;
      } else if (key === 's') {
        const m = /^(\d+)x(\d+)$/.exec(value);
        if (m) { w.columns = +m[1]; w.rows = +m[2]; } else message = `the link's size '${value}' is not MxN`;
      } else if (key === 'p') {
        const p = Number(value);
        if (Number.isInteger(p) && p >= 1 && p <= 16) scale = p; else message = `the link's scale '${value}' is not 1 to 16`;
      }
    }
    state.scale = scale;
    if (!usable(w, scale)) {
      message = message || 'the link\'s window is not one the library can draw; showing the default window';
      Object.assign(w, DEFAULT_WINDOW);
    }
    state.win = w;
    $('window-message').textContent = message;
    if (texts.length === 0 && location.hash === '') texts.push('x^2 + y^2 = 9', 'y < sin(x) and y > -2', 'quadratic a=0.25 h=1 k=-4');
    setRelations(texts);
    changed();
  }

  // ---- controls ----------------------------------------------------------
  function setZoomBox(on) {
    state.zoomBox = on;
    $('zoombox').setAttribute('aria-pressed', String(on));
    canvasBox.classList.toggle('zoombox', on);
  }
  $('zoombox').addEventListener('click', () => setZoomBox(!state.zoomBox));
  $('reset').addEventListener('click', () => {
    setWindow(Object.assign({}, state.win, { xMin: DEFAULT_WINDOW.xMin, xMax: DEFAULT_WINDOW.xMax,
      yMin: DEFAULT_WINDOW.yMin, yMax: DEFAULT_WINDOW.yMax }));
    $('window-message').textContent = '';
  });
  $('add').addEventListener('click', () => { addRelation('').input.focus(); });
  $('table-toggle').addEventListener('click', () => {
    state.table = !state.table;
    $('table-toggle').setAttribute('aria-pressed', String(state.table));
    $('table-panel').hidden = !state.table;
    if (state.table) fillTable();
  });
  $('copy-link').addEventListener('click', () => {
    const link = location.href.split('#')[0] + address();
    if (navigator.clipboard) navigator.clipboard.writeText(link).catch(() => {});
    history.replaceState(null, '', address());
  });
  for (const id of ['xmin', 'xmax', 'ymin', 'ymax', 'size']) $(id).addEventListener('change', windowFromForm);
  $('scale').addEventListener('change', () => {
    const scale = Number($('scale').value);
    if (usable(state.win, scale)) state.scale = scale;
    requestRedraw();
  });
  for (const id of ['table-from', 'table-step']) $(id).addEventListener('input', fillTable);
  window.addEventListener('hashchange', () => { if (location.hash !== address()) readAddress(); });
  window.addEventListener('keydown', (e) => { if (e.key === 'Escape') setZoomBox(false); });

  // ---- start, and what the browser tests look at -------------------------
  const ready = createEvalg().then((module) => {
    bind(module);
    readAddress();
    redraw();
  }).catch((err) => {
    $('window-message').textContent = 'the graphing module did not load: ' + err;
    throw err;
  });

  window.evalgViewer = {
    ready,
    state,
    redraw,
    // Milliseconds per whole redraw (evaluation and canvas), and per
    // evaluation of one relation alone, the best of three runs of at least
    // 0.1 s each.
    timeRedraw: () => bestOf(() => redraw()),
    timeEvaluate: (index) => {
      const r = state.relations[index], w = state.win;
      return bestOf(() => api.draw(r.slot, w.xMin, w.xMax, w.yMin, w.yMax, w.columns, w.rows));
    },
    // The library's points and markers of a relation's last drawing.
    drawnPoints: (index) => {
      const r = state.relations[index];
      if (!r.ok || r.count <= 0) return { points: [], markers: [] };
      return { points: [...int32View(api.points(r.slot), 2 * r.count)], markers: [...uint8View(api.markers(r.slot), r.count)] };
    },
    palette: PALETTE,
    firstCurveColour: FIRST_CURVE,
  };

  function bestOf(run) {
    let best = Infinity;
    for (let k = 0; k < 3; ++k) {
      let n = 0;
      const start = performance.now();
      let now = start;
      do { run(); ++n; now = performance.now(); } while (now - start < 100);
      best = Math.min(best, (now - start) / n);
    }
    return best;
  }
})();
