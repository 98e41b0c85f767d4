// What fills the middle of the page, and the list of views beside it.

function showViews(current) {
  const entry = (view, title, count) => {
    const link = make("a", { href: "#" + view }, make("span", {}, title),
      count === null ? null : make("span", { className: "count" }, formatNumber(count)));
    if (view === current) {
      link.setAttribute("aria-current", "page");
    }
    return make("li", {}, link);
  };
  document.getElementById("views").replaceChildren(
    make("ul", {}, entry("overview", "Overview", null),
      report.tasks ? entry("tasks", "Tasks", report.tasks.filter((task) => task.task).length) : null,
      report.refused.length > 0 ? entry("refused", "Refused", report.refused.length) : null),
    make("h2", {}, "Tables"),
    make("ul", {}, tables.map((table) => entry(table.name, table.name, table.rows.length))));
}

function columnHeads(titles, numbers = []) {
  return make("thead", {}, make("tr", {}, titles.map((title) =>
    make("th", { scope: "col", className: numbers.includes(title) ? "number" : "" }, title))));
}

function plainTable(titles, numbers, rows) {
  return make("div", { className: "plain" },
    make("table", {}, columnHeads(titles, numbers), make("tbody", {}, rows.map((cells) =>
      make("tr", {}, cells.map((cell, i) =>
        make("td", { className: numbers.includes(titles[i]) ? "number" : "" }, cell ?? "")))))));
}

// --- Overview, tasks, refused -------------------------------------------------------------------

function overview() {
  const lines = tables.reduce((sum, table) => sum + table.rows.length, 0);
  const bytes = tables.reduce((sum, table) => sum + table.bytes, 0);
  const rows = tables.map((table) => {
    return [make("a", { href: addressOf(table) }, table.name), formatNumber(table.rows.length),
      formatNumber(table.bytes), formatNumber(table.user * table.rows.length),
      formatNumber(blockCount(table)), table.index ? formatNumber(longestRun(table.index)) : "–",
      make("div", { className: "strip-place" }, stripOf(table))];
  });
  return [
    make("header", { className: "title" }, make("h1", {}, "Overview"),
      make("dl", { className: "facts" }, [["lines", lines], ["bytes", bytes],
      ["units", tableNamed.get("units").rows.length], ["globals", tableNamed.get("globals").rows.length],
      ["components", tableNamed.get("components").rows.length], ["refused", report.refused.length]]
      .map(([title, count]) => make("div", {}, make("dt", {}, title), make("dd", {}, formatNumber(count)))))),
    make("section", {},
      make("div", { className: "titled" }, make("h2", {}, "Tables"), legend()),
      plainTable(["table", "lines", "bytes", "user bytes", "blocks", "longest run", "file"],
                 ["lines", "bytes", "user bytes", "blocks", "longest run"], rows)),
    report.tasks ? make("section", {}, make("h2", {}, "Tasks"), tasksTable()) : null,
  ];
}

function tasksTable() {
  if (report.tasks.length === 0) {
    return make("p", { className: "empty" }, "The project has no tasks.");
  }
  const units = tableNamed.get("units");
  const programs = (task) => make("ul", { className: "programs" }, task.programs.map((program) => {
    const row = program.unit >= 0 ? rowAt(units, program.unit) : -1;
    return make("li", {}, `${program.instance}: `,
      row >= 0 ? linkTo(units, row, program.program) : program.program);
  }));
  return plainTable(["resource", "task", "priority", "interval", "event", "programs", "comment"],
    ["priority"],
    report.tasks.map((task) => [task.resource, task.task ?? make("em", {}, "no task"), task.priority,
      make("code", {}, task.interval), task.event, programs(task), task.comment]));
}

function refusedTable() {
  return plainTable(["line", "column", "list", "name", "type", "reason"], ["line", "column"],
    report.refused.map((refusal) => [String(refusal.line), String(refusal.column), refusal.list,
      refusal.name, make("code", {}, refusal.type), refusal.reason]));
}

// --- A table ------------------------------------------------------------------------------------

const monospaced = ["type", "address", "initial", "text", "value"];

function isMonospaced(column, i) {
  return i === 0 || monospaced.includes(column.title);
}

// A cell's text, as the link that belongs to it. A type with two links has one on its array and one
// on the type's name; of a qualified name the unit's part is the link.
function cellContent(table, row, column) {
  const text = cellText(table.rows[row][column]);
  const links = linksOf(table, row).filter((link) => link.columnIndex === column);
  const anchor = (link, part) => make("a", { href: addressOf(link.table, link.row), tabIndex: -1 }, part);
  if (links.length === 0 || text === "") {
    return [text];
  }
  const cut = links.length > 1 ? text.lastIndexOf(" OF ") + 4 : text.indexOf(".");
  if (links.length > 1 && cut > 3) {
    return [anchor(links[0], text.slice(0, cut).trimEnd()), " ", anchor(links[1], text.slice(cut))];
  }
  if (column === table.nameColumn && cut > 0) {
    return [anchor(links[0], text.slice(0, cut)), text.slice(cut)];
  }
  return [anchor(links[0], text)];
}

// The widths of columns in pixels: what the title needs, and what the longest text would.
function columnWidths(table) {
  const context = make("canvas").getContext("2d");
  const widthOf = (text, font) => {
    context.font = font;
    return context.measureText(text).width + 26;
  };
  return table.columns.map((column, i) => {
    let longest = "";
    for (const row of table.rows) {
      const text = cellText(row[i]);
      longest = text.length > longest.length ? text : longest;
    }
    const family = color(isMonospaced(column, i) ? "mono" : "sans");
    const least = widthOf(column.title, `13.5px ${color("sans")}`) + (i === 0 ? 10 : 0);
    const wanted = widthOf(longest, `${column.isName ? "600 " : ""}13.5px ${family}`);
    return { least, wanted: Math.max(least, Math.min(wanted + (i === 0 ? 10 : 0), 280)) };
  });
}

// Numbers are whole, and so are names if they are not long; the others share what these leave, by what
// they want beyond the least.
function fitColumns(table, widths, available) {
  const isWhole = (i) => table.columns[i].isNumber || table.columns[i].isName;
  const least = (i) => (isWhole(i) ? Math.min(widths[i].wanted, 220) : widths[i].least);
  const sum = (amount) => widths.reduce((total, _, i) => total + amount(i), 0);
  const beyond = (i) => (table.columns[i].isNumber ? 0 : widths[i].wanted - least(i) + 1);
  const share = Math.max(0, available - sum(least)) / Math.max(1, sum(beyond));
  return widths.map((_, i) => least(i) + beyond(i) * share);
}

// Shows one table; stays while others of its lines are chosen.
class TableView {
  constructor(table, filter, go) {
    this.table = table;
    this.filter = filter;
    this.go = go;
    this.shown = filter ? this.filteredRows() : null;  // null: all
    this.list = new RowList({
      label: `Lines of the table ${table.name}`,
      head: this.head(),
      renderRow: (i) => this.renderRow(this.rowOf(i)),
      onMove: (i) => this.pick(this.rowOf(i), true),
      onResize: (width) => this.fit(width),
      onOpen: () => document.getElementById("details").focus(),
    });
    this.list.body.addEventListener("click", (event) => {
      const row = event.target.closest("tr[data-row]");
      if (row && !event.target.closest("a")) {
        this.pick(Number(row.dataset.row), false);
      }
    });
    this.file = new FileDrawing(table, this.shown ? new Set(this.shown) : null, (row) => this.pick(row, false));
    this.content = [
      make("header", { className: "title" }, make("h1", {}, table.name), this.filterNote(),
        table.end < table.bytes
          ? make("p", { className: "damage" }, `The line at ${table.end} is damaged.`) : null),
      make("div", { className: "drawings" }, this.file.element,
        table.index && table.rows.length > 0 ? new IndexDrawing(table).element : null),
      table.rows.length > 0 ? this.list.element
        : make("p", { className: "empty" }, "The table is empty."),
    ];
  }

  filteredRows() {
    return linksTo(this.filter.table, this.filter.row)
      .filter(({ link }) => link.from === this.table)
      .flatMap(({ rows }) => rows)
      .sort((a, b) => a - b);
  }

  filterNote() {
    const { filter, table } = this;
    return filter === null ? null : make("p", { className: "filter" },
      `${plural(this.shown.length, "line")} of `, linkTo(filter.table, filter.row),
      make("span", { className: "what" }, ` in ${filter.table.name}`),
      make("a", { className: "clear", href: addressOf(table) }, "Show all"));
  }

  rowOf(i) {
    return this.shown ? this.shown[i] : i;
  }

  choose(row) {
    this.row = row;
    this.list.choose(this.shown ? this.shown.indexOf(row) : row);
    this.file.choose(row);
  }

  start(row) {
    this.list.show(this.shown ? this.shown.length : this.table.rows.length, -1);
    this.choose(row);
  }

  pick(row, isPassing) {
    this.go(addressOf(this.table, row, this.filter), isPassing);
  }

  head() {
    const head = columnHeads(this.table.columns.map((column) => column.title),
      this.table.columns.filter((column) => column.isNumber).map((column) => column.title));
    this.widths = columnWidths(this.table);
    this.heads = [...head.rows[0].cells];
    return head;
  }

  fit(available) {
    fitColumns(this.table, this.widths, available).forEach((width, i) => {
      this.heads[i].style.width = `${width}px`;
    });
  }

  renderRow(row) {
    const { table } = this;
    return make("tr", { "data-row": row }, table.columns.map((column, i) => {
      const classes = [column.isNumber ? "number" : "", i === 0 ? "pos" : "",
                       column.isName ? "name" : "",
                       isMonospaced(column, i) ? "mono" : "",
                       column.title === "scope" ? "scope" : ""];
      const text = cellText(table.rows[row][i]);
      return make("td", { className: classes.join(" ").trim(), title: text.length > 12 ? text : "" },
        cellContent(table, row, i));
    }));
  }
}

