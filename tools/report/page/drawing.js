// The drawings: a table's file with its blocks and lines, and the chains of its index.

const stripeBytes = 1024;  // a block is drawn in stripes, one below the other
const stripeHeight = 9;
const stripeGap = 2;
const blockGap = 8;
const nodeGap = 14;  // in front of the first block of a node
const partKinds = ["head", "key", "name", "data", "user"];
const gutter = 76;   // for the blocks' numbers

const stripesOfBlock = report.blockSize / stripeBytes;
const blockHeight = stripesOfBlock * (stripeHeight + stripeGap) + blockGap;

// The block of the end is there even when no byte lies in it.
function blockCount(table) {
  return Math.floor(table.bytes / report.blockSize) + 1;
}

function blockTop(block) {
  return block * blockHeight + (Math.floor(block / report.nodeBlocks) + 1) * nodeGap;
}

function stripeTop(byte) {
  const block = Math.floor(byte / report.blockSize);
  const stripe = Math.floor((byte % report.blockSize) / stripeBytes);
  return blockTop(block) + stripe * (stripeHeight + stripeGap);
}

// The block of a height, which may lie in the gap behind it.
function blockAt(table, y) {
  const nodeHeight = report.nodeBlocks * blockHeight + nodeGap;
  const node = Math.floor(y / nodeHeight);
  const inNode = Math.max(0, Math.floor((y - node * nodeHeight - nodeGap) / blockHeight));
  const block = node * report.nodeBlocks + Math.min(inNode, report.nodeBlocks - 1);
  return Math.max(0, Math.min(blockCount(table) - 1, block));
}

function color(name) {
  return getComputedStyle(document.documentElement).getPropertyValue(`--${name}`);
}

// Makes a canvas as large as its place and returns its context, in pixels of the style.
function prepare(canvas, width, height) {
  const scale = window.devicePixelRatio || 1;
  canvas.width = Math.round(width * scale);
  canvas.height = Math.round(height * scale);
  canvas.style.width = `${width}px`;
  canvas.style.height = `${height}px`;
  const context = canvas.getContext("2d");
  context.setTransform(scale, 0, 0, scale, 0, 0);
  return context;
}

class FileDrawing {
  // Of a set of `shown` rows the others are drawn faintly; null for all.
  constructor(table, shown, onPick) {
    this.table = table;
    this.shown = shown;
    this.onPick = onPick;
    this.chosen = -1;
    this.canvas = make("canvas", { role: "img", "aria-label": this.summary() });
    this.sheet = make("div", { className: "sheet" }, this.canvas);
    this.scroller = make("div", { className: "file", tabIndex: 0, role: "group",
                                  "aria-label": "Drawing of the file" }, this.sheet);
    this.note = make("p", { className: "note" });
    this.element = make("figure", {},
      make("figcaption", {}, make("h2", {}, "File"), legend(), this.note),
      this.scroller);
    this.scroller.addEventListener("scroll", () => this.draw(), { passive: true });
    this.canvas.addEventListener("mousemove", (event) => this.describe(this.rowOf(event)));
    this.canvas.addEventListener("mouseleave", () => this.describe(this.chosen));
    this.canvas.addEventListener("click", (event) => {
      const row = this.rowOf(event);
      if (row >= 0) {
        onPick(row);
      }
    });
    new ResizeObserver(() => this.draw()).observe(this.scroller);
  }

  summary() {
    const { table } = this;
    return `${plural(table.bytes, "byte")} in ${plural(blockCount(table), "block")} of ` +
      `${formatNumber(report.blockSize)}, ${plural(table.rows.length, "line")}`;
  }

  choose(row) {
    this.chosen = row;
    this.describe(row);
    this.draw();
    this.reveal(row >= 0 ? row : this.firstShown());
  }

  firstShown() {
    return this.shown ? (this.shown.values().next().value ?? -1) : -1;
  }

  reveal(row) {
    const top = row >= 0 ? stripeTop(positionOf(this.table, row)) : 0;
    const { scrollTop, clientHeight } = this.scroller;
    if (row >= 0 && (top < scrollTop || top + stripeHeight > scrollTop + clientHeight)) {
      this.scroller.scrollTop = top - clientHeight / 2;
    }
  }

  describe(row) {
    const { table } = this;
    this.note.textContent = row < 0 ? this.summary()
      : `${positionOf(table, row)}  ${nameOf(table, row)}  ` +
        partsOf(table, row).map((part) => `${part.title} ${part.bytes}`).join(", ");
  }

  rowOf(event) {
    const { table } = this;
    const box = this.canvas.getBoundingClientRect();
    const y = event.clientY - box.top + this.scroller.scrollTop;
    const block = blockAt(table, y);
    const stripe = Math.floor((y - blockTop(block)) / (stripeHeight + stripeGap));
    const inStripe = Math.floor((event.clientX - box.left - gutter) / this.scale);
    if (stripe < 0 || stripe >= stripesOfBlock || inStripe < 0 || inStripe >= stripeBytes) {
      return -1;
    }
    const byte = block * report.blockSize + stripe * stripeBytes + inStripe;
    return byte < table.end ? lastRowUpTo(table, byte) : -1;
  }

  draw() {
    const { table, scroller } = this;
    const width = scroller.clientWidth;
    const whole = blockTop(blockCount(table) - 1) + blockHeight;
    this.sheet.style.height = `${whole}px`;
    const height = Math.min(whole, scroller.clientHeight);
    if (width <= gutter || height <= 0) {
      return;
    }
    this.scale = (width - gutter - 1) / stripeBytes;
    const context = prepare(this.canvas, width, height);
    const top = scroller.scrollTop;
    context.translate(0, -top);
    const first = blockAt(table, top);
    const last = blockAt(table, top + height);
    for (let block = first; block <= last; ++block) {
      this.drawBlock(context, block);
    }
    this.drawLines(context, first * report.blockSize, (last + 1) * report.blockSize);
  }

  drawBlock(context, block) {
    const top = blockTop(block);
    context.font = `11px ${color("mono")}`;
    if (block % report.nodeBlocks === 0) {
      context.fillStyle = color("dim");
      context.fillText(`node ${block / report.nodeBlocks}`, 0, top - 4);
      context.fillStyle = color("rule");
      context.fillRect(gutter, top - 8, stripeBytes * this.scale, 1);
    }
    context.fillStyle = color("dim");
    context.fillText(`block ${block}`, 0, top + 9);
    context.fillStyle = color("free");
    for (let stripe = 0; stripe < stripesOfBlock; ++stripe) {
      context.fillRect(gutter, top + stripe * (stripeHeight + stripeGap),
                       stripeBytes * this.scale, stripeHeight);
    }
  }

  drawLines(context, from, to) {
    const { table } = this;
    const colors = Object.fromEntries(
      partKinds.map((kind) => [kind, color(kind)]));
    for (let row = Math.max(0, lastRowUpTo(table, from)); row < table.rows.length; ++row) {
      let at = positionOf(table, row);
      if (at >= to) {
        break;
      }
      context.globalAlpha = !this.shown || this.shown.has(row) ? 1 : 0.3;
      for (const part of partsOf(table, row)) {
        context.fillStyle = colors[part.kind];
        this.eachStripe(at, at + part.bytes, (x, y, width) =>
          context.fillRect(x, y, width, stripeHeight));
        at += part.bytes;
      }
    }
    context.globalAlpha = 1;
    if (table.end < table.bytes) {
      context.fillStyle = color("bad");
      this.eachStripe(Math.max(from, table.end), Math.min(to, table.bytes), (x, y, width) =>
        context.fillRect(x, y, width, stripeHeight));
    }
    if (this.chosen >= 0) {
      const start = positionOf(table, this.chosen);
      context.strokeStyle = color("ink");
      context.lineWidth = 2;
      this.eachStripe(start, start + sizeOf(table, this.chosen), (x, y, width) =>
        context.strokeRect(x - 1, y - 1, width + 2, stripeHeight + 2));
    }
  }

  eachStripe(from, to, paint) {
    while (from < to) {
      const end = Math.min(to, (Math.floor(from / stripeBytes) + 1) * stripeBytes);
      paint(gutter + (from % stripeBytes) * this.scale, stripeTop(from), (end - from) * this.scale);
      from = end;
    }
  }
}

function legend() {
  const kinds = [["head", "length"], ["key", "key"], ["name", "name"], ["data", "own data"],
                 ["user", "user area"], ["free", "free"]];
  return make("ul", { className: "legend", "aria-label": "Colours" },
    kinds.map(([kind, title]) => make("li", {}, make("i", { className: `fill-${kind}` }), title)));
}

// --- The index ----------------------------------------------------------------------------------
//
// Entries lie in slots. Neighbouring slots that hold some are a run: what a search may walk through.

const slotsHeight = 44;

function longestRun(index) {
  return index.entries.reduce((most, entries) => Math.max(most, entries), 0);
}

// Runs by how many entries they hold, in classes that double: 1, 2, 3-4, 5-8 ...
function runClasses(index) {
  const classes = [];
  for (const entries of index.entries) {
    const number = Math.ceil(Math.log2(entries));
    classes[number] ??= { runs: 0, entries: 0 };
    classes[number].runs += 1;
    classes[number].entries += entries;
  }
  return Array.from(classes, (entry, number) => {
    const first = number === 0 ? 1 : 2 ** (number - 1) + 1;
    const last = 2 ** number;
    return entry && { title: first === last ? `${last}` : `${first}–${last}`, ...entry };
  }).filter(Boolean);
}

class IndexDrawing {
  constructor(table) {
    this.index = table.index;
    const used = this.index.slots.reduce((sum, slots) => sum + slots, 0);
    const text = `${formatNumber(used)} of ${plural(this.index.size, "slot")} used, ` +
      `longest run ${formatNumber(longestRun(this.index))}`;
    this.canvas = make("canvas", { role: "img", "aria-label": `Used slots along the index: ${text}` });
    this.place = make("div", { className: "slots" }, this.canvas);
    this.element = make("figure", { className: "index" },
      make("figcaption", {}, make("h2", {}, "Index"), make("p", { className: "note" }, text)),
      this.place,
      make("p", { className: "scale", "aria-hidden": "true" },
        make("span", {}, "slot 0"), make("span", {}, String(this.index.size - 1))),
      this.classesTable());
    new ResizeObserver(() => this.draw()).observe(this.place);
  }

  classesTable() {
    const classes = runClasses(this.index);
    const most = Math.max(1, ...classes.map((entry) => entry.entries));
    return make("table", { className: "classes" },
      make("thead", {}, make("tr", {}, ["length", "runs", "lines"].map((title) =>
        make("th", { scope: "col" }, title)), make("td", {}))),
      make("tbody", {}, classes.map((entry) => {
        const bar = make("i", { className: "fill-name" });
        bar.style.width = `${(100 * entry.entries) / most}%`;
        return make("tr", {}, make("th", { scope: "row" }, entry.title),
          make("td", {}, formatNumber(entry.runs)), make("td", {}, formatNumber(entry.entries)),
          make("td", { className: "gauge" }, bar));
      })));
  }

  // A row of cells, the slots. Where a column of pixels stands for many of them, what it shows is the
  // share that is used.
  draw() {
    const width = this.place.clientWidth;
    if (width <= 0) {
      return;
    }
    const { size, starts, slots } = this.index;
    const used = new Float64Array(width);  // in columns
    starts.forEach((start, i) => {
      const end = ((start + slots[i]) / size) * width;
      for (let at = (start / size) * width; at < end - 1e-6;) {
        const next = Math.min(end, Math.floor(at + 1e-6) + 1);
        used[Math.min(width - 1, Math.floor(at + 1e-6))] += next - at;
        at = next;
      }
    });
    const context = prepare(this.canvas, width, slotsHeight);
    context.fillStyle = color("free");
    context.fillRect(0, 0, width, slotsHeight);
    context.fillStyle = color("name");
    used.forEach((share, x) => {
      context.fillRect(x, slotsHeight * (1 - share), 1, slotsHeight * share);
    });
  }
}

// A table's whole file in one strip. Every column of pixels shows what its bytes are: the share of a
// kind is its share of the height.
function stripOf(table) {
  const height = 12;
  const canvas = make("canvas", { className: "strip", "aria-hidden": "true" });
  const draw = () => {
    const width = canvas.parentElement?.clientWidth ?? 0;
    const context = prepare(canvas, width, height);
    const perColumn = (blockCount(table) * report.blockSize) / Math.max(1, width);
    context.fillStyle = color("free");
    context.fillRect(0, 0, width, height);
    const counts = countKinds(table, width, perColumn);
    const tops = new Float64Array(width);
    partKinds.forEach((kind, k) => {
      context.fillStyle = color(kind);
      for (let x = 0; x < width; ++x) {
        const share = (height * counts[k][x]) / perColumn;
        context.fillRect(x, tops[x], 1, share);
        tops[x] += share;
      }
    });
  };
  requestAnimationFrame(draw);
  return canvas;
}

// The bytes of every kind of part in each column of `perColumn` bytes.
function countKinds(table, width, perColumn) {
  const counts = partKinds.map(() => new Float64Array(width));
  for (let row = 0; row < table.rows.length; ++row) {
    let at = positionOf(table, row);
    for (const part of partsOf(table, row)) {
      const count = counts[partKinds.indexOf(part.kind)];
      const end = at + part.bytes;
      while (at < end) {
        const column = Math.floor(at / perColumn);
        const next = Math.min(end, Math.max((column + 1) * perColumn, at + 1e-6));
        count[column] += next - at;
        at = next;
      }
    }
  }
  return counts;
}

