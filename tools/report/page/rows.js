// A table of rows of equal height, of which only those in sight have elements.

const rowHeight = 24;  // as in the style
const overscan = 8;    // rows beyond each edge

class RowList {
  // `renderRow(i)` makes the element of a row. `onMove(i)` is told which row the keys lead to, `onOpen()`
  // that the chosen one is wanted, and `onResize(width)` how much room there is.
  constructor({ label, head, renderRow, onMove, onOpen, onResize }) {
    this.renderRow = renderRow;
    this.onMove = onMove;
    this.onOpen = onOpen;
    this.count = 0;
    this.chosen = -1;
    this.isWhole = false;
    this.elements = new Map();  // of the rows that are drawn
    this.body = make("tbody");
    this.grid = make("table", { tabIndex: 0, role: "grid", "aria-label": label }, head, this.body);
    this.element = make("div", { className: "rows" }, this.grid);
    this.element.addEventListener("scroll", () => this.draw(), { passive: true });
    this.grid.addEventListener("keydown", (event) => this.handleKey(event));
    new ResizeObserver(() => {
      onResize(this.element.clientWidth);
      this.draw();
    }).observe(this.element);
  }

  show(count, chosen) {
    this.count = count;
    this.grid.setAttribute("aria-rowcount", count + 1);
    this.elements.clear();
    this.drawn = null;
    this.choose(chosen);
  }

  // On paper all rows stand behind each other.
  showWhole(isWhole) {
    this.isWhole = isWhole;
    this.draw();
  }

  choose(row) {
    this.elements.get(this.chosen)?.setAttribute("aria-selected", "false");
    this.chosen = row;
    this.elements.get(row)?.setAttribute("aria-selected", "true");
    this.reveal(row);
    this.draw();
    const element = this.elements.get(row);
    if (element) {
      this.grid.setAttribute("aria-activedescendant", element.id);
    } else {
      this.grid.removeAttribute("aria-activedescendant");
    }
  }

  // Scrolls as little as possible, or puts a row from afar into the middle.
  reveal(row) {
    const seen = this.element.clientHeight - rowHeight;  // the head stays on top
    const top = row * rowHeight;
    const from = this.element.scrollTop;
    if (row < 0 || seen <= 0 || (top >= from && top + rowHeight <= from + seen)) {
      return;
    }
    const isFar = top < from - 2 * rowHeight || top > from + seen + 2 * rowHeight;
    this.element.scrollTop = isFar ? top - seen / 2 : top < from ? top : top + rowHeight - seen;
  }

  draw() {
    const first = this.isWhole ? 0
      : Math.max(0, Math.floor(this.element.scrollTop / rowHeight) - overscan);
    const most = this.isWhole ? this.count
      : Math.ceil(this.element.clientHeight / rowHeight) + 2 * overscan;
    const end = Math.min(this.count, first + most);
    if (this.drawn === `${first} ${end}`) {
      return;
    }
    this.drawn = `${first} ${end}`;
    const elements = new Map();
    for (let i = first; i < end; ++i) {
      elements.set(i, this.elements.get(i) ?? this.makeRow(i));
    }
    this.elements = elements;
    const rows = document.createDocumentFragment();
    rows.append(this.space(first));
    elements.forEach((element) => rows.append(element));
    rows.append(this.space(this.count - end));
    this.body.replaceChildren(rows);
  }

  makeRow(i) {
    const row = this.renderRow(i);
    row.id = `row-${i}`;
    row.setAttribute("aria-rowindex", i + 2);
    row.setAttribute("aria-selected", i === this.chosen);
    return row;
  }

  space(count) {
    const cell = make("td");
    cell.style.height = `${count * rowHeight}px`;
    return make("tr", { className: "space", role: "presentation", hidden: count === 0 }, cell);
  }

  handleKey(event) {
    const page = Math.max(1, Math.floor(this.element.clientHeight / rowHeight) - 2);
    const steps = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page,
                    Home: -this.count, End: this.count };
    if (event.target !== this.grid) {
      return;  // a button of the head, a link
    }
    if (event.key === "Enter" && this.chosen >= 0) {
      this.onOpen();
    } else if (event.key in steps && !event.ctrlKey && !event.altKey && !event.metaKey) {
      const row = Math.min(this.count - 1, Math.max(0, this.chosen + steps[event.key]));
      if (this.count > 0) {
        this.onMove(row);
      }
    } else {
      return;
    }
    event.preventDefault();
  }
}

