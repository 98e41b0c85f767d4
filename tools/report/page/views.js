// What fills the middle of the page, and the list of views beside it.

function countOf(view) {
  return view === "symbols" ? symbols.count : view === "messages" ? report.messages.length
    : project[view].length;
}

// An image has no lists, no tasks, and nothing was said of it.
function isThere(view) {
  return !isImage || ["symbols", "units", "types"].includes(view);
}

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
    make("ul", {}, entry("project", isImage ? "Image" : "Project", null),
      listNames.filter(isThere).map((view) => entry(view, listTitles[view], countOf(view)))),
    make("ul", { className: "apart" }, entry("tables", "Inside the tables", null),
      !current.startsWith("tables") ? null : report.tables.map(({ name, lines }) =>
        entry(`tables/${name}`, name, lines))));
}

// --- The project --------------------------------------------------------------------------------

const mostOnFirstView = 25;
const mostMessages = 8;

// The first rows of a list, or all of them.
function sectionOf(name, titles, toCells, isWhole, most = mostOnFirstView) {
  const count = countOf(name);
  if (count === 0) {
    return null;
  }
  const rows = Array.from({ length: isWhole ? count : Math.min(count, most) },
    (_, row) => toCells(row));
  return make("section", {},
    make("h2", {}, linkToRow(name, -1, listTitles[name]),
      make("span", { className: "count" }, formatNumber(count))),
    plainTable(titles, ["variables", "priority"], rows),
    rows.length < count ? make("p", { className: "all" },
      linkToRow(name, -1, `All ${formatNumber(count)}`)) : null);
}

const noTask = () => make("em", {}, "no task");

function taskSection(isWhole) {
  const titles = ["task", "resource", "priority", "interval", "event", "programs", "comment"];
  return sectionOf("tasks", titles, (row) => {
    const task = project.tasks[row];
    return [[flagOf("tasks", row), task.task === null ? noTask() : linkToRow("tasks", row, task.task)], task.resource,
      task.priority, make("code", {}, task.interval), make("code", {}, task.event),
      programsOf(task), task.comment];
  }, isWhole);
}

function unitSection(isWhole) {
  const titles = ["name", "kind", "variables", ...(isImage ? [] : ["language", "comment"])];
  return sectionOf("units", titles, (row) => {
    const unit = project.units[row];
    const cells = [[flagOf("units", row), linkToRow("units", row, unit.name)],
      [unit.kind, unit.result ? [" : ", make("code", {}, typeText(unit.result))] : ""],
      formatNumber(symbolsByOwner().get(row)?.length ?? 0), unit.language, unit.comment];
    return cells.slice(0, titles.length);
  }, isWhole);
}

function typeSection(isWhole) {
  const membersText = ({ members, definition }) => (members.length === 0
    ? make("code", {}, definition)
    : members.map(([name, type], i) =>
        [i > 0 ? ", " : "", name, " ", make("code", {}, typeText(type))]));
  return sectionOf("types", ["name", "members", "comment"], (row) => {
    const type = project.types[row];
    return [[flagOf("types", row), linkToRow("types", row, type.name)],
      make("div", { className: "members" }, membersText(type)), type.comment];
  }, isWhole);
}

function listSection(isWhole) {
  return sectionOf("lists", ["name", "path", "variables", "comment"], (row) => {
    const list = project.lists[row];
    return [[flagOf("lists", row), linkToRow("lists", row, list.name || "(no name)")], list.path,
      formatNumber(list.variables), list.comment];
  }, isWhole);
}

function messageSection(isWhole) {
  const isOfMany = fileCount() > 1;
  return sectionOf("messages", [isOfMany ? "place" : "line", "object", "message"], (row) => {
    const message = report.messages[row];
    const target = messageTargets()[row];
    return [[make("span", { className: `flag ${message.severity}` }),
             linkToRow("messages", row, isOfMany ? placeText(message)
               : message.line > 0 ? String(message.line) : message.severity)],
      target ? linkToRow(target.list, target.row, message.object) : message.object, message.text];
  }, isWhole, mostMessages);
}

function news() {
  const count = report.messages.length;
  const errors = report.messages.filter(({ severity }) => severity === "error").length;
  return make("p", { className: "news" }, isImage
    ? "An image of tables keeps no comments, no tasks and no members of types, and of a type with a " +
      "name only what it is."
    : count === 0 ? "Nothing was reported, and all declarations are in the tables."
      : [linkToRow("messages", -1, plural(count, "message")),
         errors > 0 ? ` on the project, of which ${plural(errors, "is an error", "are errors")}.`
           : " on the project."]);
}

function projectView(isWhole = false) {
  const located = symbols.located.reduce((sum, address) => sum + (address !== "" ? 1 : 0), 0);
  const counts = [["symbols", symbols.count, "symbols"],
    ["located", located, "symbols?only=located"],
    ...["units", "types", "lists", "tasks"].filter(isThere).map((view) =>
      [lowerCase(listTitles[view]), countOf(view), view])];
  return [
    make("header", { className: "title" }, make("h1", {}, project.name || report.files[0]),
      make("dl", { className: "facts" }, counts.map(([title, count, view]) => make("div", {},
        make("dt", {}, count === 1 ? title.replace(/s$/, "") : title),
        make("dd", {}, make("a", { href: "#" + view }, formatNumber(count))))))),
    news(),
    messageSection(isWhole),
    unitSection(isWhole),
    ...(isImage ? [] : [typeSection, listSection, taskSection].map((section) => section(isWhole))),
  ];
}

// --- Inside the tables --------------------------------------------------------------------------

function tablesView() {
  loadTables();
  const lines = tables.reduce((sum, table) => sum + table.rows.length, 0);
  const bytes = tables.reduce((sum, table) => sum + table.bytes, 0);
  const rows = tables.map((table) => {
    return [make("a", { href: addressOf(table) }, table.name), formatNumber(table.rows.length),
      formatNumber(table.bytes), formatNumber(table.user * table.rows.length),
      formatNumber(blockCount(table)), table.index ? formatNumber(longestRun(table.index)) : "–",
      make("div", { className: "strip-place" }, stripOf(table))];
  });
  return [
    make("header", { className: "title" }, make("h1", {}, "Inside the tables"),
      make("dl", { className: "facts" }, [["lines", lines], ["bytes", bytes],
      ["units", tableNamed.get("units").rows.length], ["globals", tableNamed.get("globals").rows.length],
      ["components", tableNamed.get("components").rows.length]]
      .map(([title, count]) => make("div", {}, make("dt", {}, title), make("dd", {}, formatNumber(count)))))),
    make("section", {},
      make("div", { className: "titled" }, make("h2", {}, "Tables"), legend()),
      plainTable(["table", "lines", "bytes", "user bytes", "blocks", "longest run", "file"],
                 ["lines", "bytes", "user bytes", "blocks", "longest run"], rows)),
  ];
}

// --- A table ------------------------------------------------------------------------------------

const monospaced = ["type", "address", "initial", "text", "value"];

// The columns of a table as those of a list are described.
function columnsOfTable(table) {
  return table.columns.map((column, i) =>
    ({ ...column, isMono: i === 0 || monospaced.includes(column.title) }));
}

// A cell's text, as the link that belongs to it. A type with two links has one on its array and one
// on the type's name; of a qualified name the unit's part is the link.
function cellContent(table, row, column) {
  const text = cellText(table.rows[row][column]);
  const links = linksOf(table, row).filter((link) => link.columnIndex === column);
  const anchor = (link, part) => make("a", { href: addressOf(link.table, link.row) }, part);
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

// Shows one table; stays while others of its lines are chosen.
class TableView {
  constructor(table, filter, go) {
    this.table = table;
    this.filter = filter;
    this.go = go;
    this.columns = columnsOfTable(table);
    this.shown = filter ? this.filteredRows() : null;  // null: all
    this.rowList = new RowList({
      label: `Lines of the table ${table.name}`,
      head: this.head(),
      renderRow: (i) => this.renderRow(this.rowOf(i)),
      onMove: (i) => this.pick(this.rowOf(i), true),
      widthsIn: (width) => fitColumns(this.columns, this.widths, width),
      onOpen: () => document.getElementById("details").focus(),
    });
    this.rowList.body.addEventListener("click", (event) => {
      const row = event.target.closest("tr[data-row]");
      if (row && !event.target.closest("a")) {
        this.pick(Number(row.dataset.row), false);
      }
    });
    this.file = new FileDrawing(table, this.shown ? new Set(this.shown) : null, (row) => this.pick(row, false));
    const hasIndex = table.index && table.rows.length > 0;
    this.content = [
      make("header", { className: "title" }, make("h1", {}, table.name), this.filterNote(),
        table.end < table.bytes
          ? make("p", { className: "damage" }, `The line at ${table.end} is damaged.`) : null),
      make("div", { className: hasIndex ? "drawings of-two" : "drawings" }, this.file.element,
        hasIndex ? new IndexDrawing(table).element : null),
      table.rows.length > 0 ? this.rowList.element
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
    this.rowList.choose(this.shown ? this.shown.indexOf(row) : row);
    this.file.choose(row);
  }

  start(row) {
    this.rowList.show(this.shown ? this.shown.length : this.table.rows.length, -1);
    this.choose(row);
  }

  pick(row, isPassing) {
    this.go(addressOf(this.table, row, this.filter), isPassing);
  }

  head() {
    const head = columnHeads(this.table.columns.map((column) => column.title),
      this.table.columns.filter((column) => column.isNumber).map((column) => column.title));
    this.widths = columnWidths(this.columns, (i, take) =>
      this.table.rows.forEach((cells) => take(cellText(cells[i]))));
    return head;
  }

  renderRow(row) {
    const { table } = this;
    return make("tr", { "data-row": row }, this.columns.map((column, i) => {
      const classes = [column.isNumber ? "number" : "", i === 0 ? "pos" : "",
                       column.isName ? "name" : "",
                       column.isMono ? "mono" : "",
                       column.title === "scope" ? "scope" : ""];
      const text = cellText(table.rows[row][i]);
      return make("td", { className: classes.join(" ").trim(), title: text.length > 12 ? shown(text) : "" },
        cellContent(table, row, i));
    }));
  }
}

