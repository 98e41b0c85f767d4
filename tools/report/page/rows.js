// A table of rows of equal height, of which only those in sight have elements.

const rowHeight = 24;  // as in the style
const overscan = 8;    // rows beyond each edge
const paperWidth = 900;  // what a page of paper holds, in pixels of the screen's larger letters

class RowList {
  // `renderRow(i)` makes the element of a row. `onMove(i)` is told which row the keys lead to, `onOpen()`
  // that the chosen one is wanted; `widthsIn(width)` shares out the room among the columns.
  constructor({ label, head, renderRow, onMove, onOpen, widthsIn }) {
    this.renderRow = renderRow;
    this.onMove = onMove;
    this.onOpen = onOpen;
    this.widthsIn = widthsIn;
    this.heads = [...head.rows[0].cells];
    this.count = 0;
    this.chosen = -1;
    this.isWhole = false;
    this.elements = new Map();  // of the rows that are drawn
    [this.above, this.below] = [space(), space()];
    this.body = make("tbody", {}, this.above, this.below);
    this.grid = make("table", { tabIndex: 0, role: "grid", "aria-label": label }, head, this.body);
    this.element = make("div", { className: "rows" }, this.grid);
    this.element.addEventListener("scroll", () => this.draw(), { passive: true });
    this.grid.addEventListener("keydown", (event) => this.handleKey(event));
    new ResizeObserver(() => {
      this.fit();
      this.draw();
    }).observe(this.element);
  }

  show(count, chosen) {
    this.count = count;
    this.grid.setAttribute("aria-rowcount", count + 1);
    this.elements.clear();
    this.body.replaceChildren(this.above, this.below);
    this.drawn = null;
    this.choose(chosen);
  }

  // On paper all rows stand behind each other.
  showWhole(isWhole) {
    this.isWhole = isWhole;
    this.fit();
    this.draw();
  }

  // On paper the columns have parts of its width, which nobody tells.
  fit() {
    const widths = this.widthsIn(this.isWhole ? paperWidth : this.element.clientWidth);
    const sum = widths.reduce((total, width) => total + width, 0);
    widths.forEach((width, i) => {
      this.heads[i].style.width = this.isWhole ? `${(100 * width) / sum}%` : `${width}px`;
    });
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
    for (const [i, element] of this.elements) {
      if (i < first || i >= end) {
        this.remove(i, element);
      }
    }
    setSpace(this.above, first);
    setSpace(this.below, this.count - end);
    let next = this.above.nextSibling;  // rows that stay keep their places, and the focus
    const elements = new Map();
    for (let i = first; i < end; ++i) {
      const element = this.elements.get(i) ?? this.makeRow(i);
      elements.set(i, element);
      if (element === next) {
        next = next.nextSibling;
      } else {
        this.body.insertBefore(element, next);
      }
    }
    this.elements = elements;
  }

  remove(i, element) {
    if (element.contains(document.activeElement)) {
      this.grid.focus({ preventScroll: true });
    }
    element.remove();
    this.elements.delete(i);
  }

  // The keyboard stops once at all rows; where their links lead is told of the chosen one, too.
  makeRow(i) {
    const row = this.renderRow(i);
    row.id = `row-${i}`;
    row.setAttribute("aria-rowindex", i + 2);
    row.setAttribute("aria-selected", i === this.chosen);
    row.querySelectorAll("a").forEach((link) => { link.tabIndex = -1; });
    return row;
  }

  handleKey(event) {
    const page = Math.max(1, Math.floor(this.element.clientHeight / rowHeight) - 2);
    const steps = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page,
                    Home: -this.count, End: this.count };
    const isInRows = this.body.contains(event.target);
    if (event.target !== this.grid && !(isInRows && event.key !== "Enter")) {
      return;  // a button of the head, a link that is followed
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

// What stands for the rows above or below those that are drawn.
function space() {
  return make("tr", { className: "space", role: "presentation", hidden: true }, make("td"));
}

function setSpace(row, count) {
  row.hidden = count === 0;
  row.firstChild.style.height = `${count * rowHeight}px`;
}
