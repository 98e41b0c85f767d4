// The lists of the project: what they hold, and how one is shown.

const listNames = ["symbols", "units", "types", "lists", "tasks", "messages"];
const listTitles = { symbols: "Symbols", units: "Units", types: "Types", lists: "Global lists",
                     tasks: "Tasks", messages: "Messages" };

// Columns are {title, cells, ordering, isNumber, isName, isMono, isLong, isHidden, isPageOnly}; a hidden one is
// exported only, one of the page only shown; `ordering` is what orders it if not its cells. `cellOf(row, column)` is what a cell shows if that is
// more than its text.
function listOf(name) {
  const columns = listColumns[name]();
  columns.forEach((column) => Object.assign(column, { isSorted: true }));
  return { name, columns, count: columns[0].cells.length, cellOf: cellsOfList[name] };
}

function cellsFrom(objects, member) {
  return objects.map((object) => object[member] ?? "");
}

// Of all that has a place.
const fileCount = once(() => new Set([symbols.file, ...[project.units, project.types, project.lists, project.tasks,
  report.messages].map((objects) => cellsFrom(objects, "file"))].flat().filter((file) => file !== "")).size);

function linesOf(objects) {
  return objects.map(({ line }) => line || "");
}

function placeColumns(objects) {
  return [{ title: "file", cells: cellsFrom(objects, "file"), isHidden: fileCount() < 2 },
          { title: "line", cells: linesOf(objects), isNumber: true }];
}

const listColumns = {
  symbols: () => [
    { title: "path", cells: symbols.path, isWhole: true },
    { title: "name", cells: symbols.name, isName: true },
    { title: "section", cells: symbols.section, isSmall: true },
    { title: "type", cells: symbols.type, isMono: true },
    { title: "address", cells: symbols.address, ordering: symbols.located, isMono: true },
    { title: "initial", cells: symbols.initial, isMono: true },
    { title: "comment", cells: symbols.comment, isLong: true, isHidden: isImage },
    { title: "file", cells: symbols.file, isHidden: fileCount() < 2 },
    { title: "line", cells: symbols.line, isNumber: true },
    { title: "column", cells: symbols.column, isNumber: true, isHidden: true },
  ],
  units: () => [
    { title: "name", cells: cellsFrom(project.units, "name"), isName: true },
    { title: "kind", cells: cellsFrom(project.units, "kind") },
    { title: "result", cells: cellsFrom(project.units, "result"), isMono: true },
    { title: "language", cells: cellsFrom(project.units, "language"), isHidden: isImage },
    { title: "variables", isNumber: true,
      cells: project.units.map((_, unit) => symbolsByOwner().get(unit)?.length ?? 0) },
    { title: "comment", cells: cellsFrom(project.units, "comment"), isLong: true, isHidden: isImage },
    ...placeColumns(project.units),
  ],
  types: () => [
    { title: "name", cells: cellsFrom(project.types, "name"), isName: true },
    { title: "definition", cells: project.types.map(definitionOf), isMono: true, isLong: true },
    { title: "initial", cells: cellsFrom(project.types, "initial"), isMono: true },
    { title: "uses", isNumber: true,
      cells: project.types.map(({ name }) => variablesOfType(name).length + otherUsesOf(name).length),
      isHidden: isImage },
    { title: "comment", cells: cellsFrom(project.types, "comment"), isLong: true },
    ...placeColumns(project.types),
  ],
  lists: () => [
    { title: "path", cells: cellsFrom(project.lists, "path") },
    { title: "name", cells: cellsFrom(project.lists, "name"), isName: true },
    { title: "variables", cells: cellsFrom(project.lists, "variables"), isNumber: true },
    { title: "comment", cells: cellsFrom(project.lists, "comment"), isLong: true },
    ...placeColumns(project.lists),
  ],
  tasks: () => [
    { title: "resource", cells: cellsFrom(project.tasks, "resource") },
    { title: "task", cells: cellsFrom(project.tasks, "task"), isName: true },
    { title: "priority", cells: project.tasks.map(({ priority }) =>
      (/^\d+$/.test(priority) ? Number(priority) : priority)), isNumber: true },
    { title: "interval", cells: cellsFrom(project.tasks, "interval"), isMono: true },
    { title: "event", cells: cellsFrom(project.tasks, "event"), isMono: true },
    { title: "programs", isLong: true, cells: project.tasks.map(({ programs }) =>
      programs.map(({ instance, program }) => `${instance}: ${program}`).join(", ")) },
    { title: "comment", cells: cellsFrom(project.tasks, "comment"), isLong: true },
    ...placeColumns(project.tasks),
  ],
  messages: () => [
    { title: "severity", cells: cellsFrom(report.messages, "severity") },
    { title: "object", cells: cellsFrom(report.messages, "object"), isName: true },
    { title: "message", isLong: true, cells: report.messages.map(({ text, more }) =>
      text + (more > 0 ? ` (and ${more} more)` : "")) },
    { title: "code", cells: cellsFrom(report.messages, "code") },
    { title: "check", cells: report.messages.map(checkOf) },
    { title: "by", cells: cellsFrom(report.messages, "by") },
    { title: "file", cells: cellsFrom(report.messages, "file"), isHidden: fileCount() < 2 },
    { title: "line", cells: linesOf(report.messages), isNumber: true },
    { title: "column", cells: report.messages.map(({ column }) => column || ""), isNumber: true },
  ],
};

function definitionOf({ definition, members }) {
  return members.length === 0 ? definition
    : `STRUCT ${members.map(([name, type]) => `${name} : ${type};`).join(" ")} END_STRUCT`;
}

function programsOf(task) {
  return task.programs.map(({ instance, program }, i) =>
    [i > 0 ? ", " : "", `${instance}: `, linkToName(program)]);
}

const mostInTitle = 10;

// The mark of what a message is about.
function flagOf(list, row) {
  const found = report.messages.length > 0 ? messagesOf()[list].get(row) : undefined;
  return found ? make("span", { className: `flag ${worstOf(found)}`, role: "img",
    "aria-label": plural(found.length, "message"),
    title: found.slice(0, mostInTitle).map((i) => report.messages[i].text).join("\n") }) : "";
}

function worstOf(messages) {
  const severities = messages.map((i) => report.messages[i].severity);
  return ["error", "warning"].find((severity) => severities.includes(severity)) ?? "note";
}

const cellsOfList = {
  symbols: (row, title) => (title === "type" ? typeText(symbols.type[row])
    : title === "path" && symbols.owner[row] >= 0 ? linkToRow("units", symbols.owner[row], symbols.path[row])
    : title === "name" ? [flagOf("symbols", row), symbols.name[row]] : null),
  units: (row, title) => (title === "result" ? typeText(project.units[row].result)
    : title === "variables" && symbolsByOwner().has(row)
      ? make("a", { href: addressOfRow("symbols", -1, { of: `units/${row}` }) },
          formatNumber(symbolsByOwner().get(row).length))
    : title === "name" ? [flagOf("units", row), project.units[row].name] : null),
  types: (row, title) => (title === "name" ? [flagOf("types", row), project.types[row].name] : null),
  lists: (row, title) => (title === "name" ? [flagOf("lists", row), project.lists[row].name] : null),
  tasks: (row, title) => (title === "programs" ? programsOf(project.tasks[row])
    : title === "task" ? [flagOf("tasks", row), project.tasks[row].task ?? noTask()] : null),
  messages: (row, title) => {
    const target = title === "object" ? messageTargets()[row] : null;
    return target ? linkToRow(target.list, target.row, report.messages[row].object)
      : title === "severity" ? [make("span", { className: `flag ${report.messages[row].severity}` }),
                                report.messages[row].severity] : null;
  },
};

// Shows one list, filtered and ordered as the settings say; stays while others of its rows are chosen.
class ListView {
  constructor(name, settings, go) {
    this.list = listOf(name);
    this.go = go;
    this.settings = settings;
    this.row = -1;
    this.orderOf = null;  // what the order is by
    this.columns = this.list.columns.filter((column) => !column.isHidden);
    this.textFilter = new TextFilter(this.columns.map((column) => column.cells),
      name === "symbols" ? symbols.address : null);
    this.rowList = new RowList({
      label: listTitles[name],
      head: this.head(),
      renderRow: (i) => this.renderRow(this.list.shownRows[i]),
      onMove: (i) => this.pick(this.list.shownRows[i], true),
      widthsIn: (width) => fitColumns(this.columns, this.widths, width),
      onOpen: () => document.getElementById("details").focus(),
    });
    this.rowList.body.addEventListener("click", (event) => {
      const row = event.target.closest("tr[data-row]");
      if (row && !event.target.closest("a")) {
        this.pick(Number(row.dataset.row), false);
      }
    });
    this.filters = new FilterBar(this.list, settings, (changed) => this.change(changed));
    this.nothing = make("p", { className: "empty" }, this.list.count === 0 ? "There are none."
      : "Nothing passes the filter.");
    this.content = [
      make("header", { className: "title" }, make("h1", {}, listTitles[name])),
      this.list.count > 0 ? this.filters.element : "", this.nothing, this.rowList.element,
    ];
  }

  start(row) {
    this.update();
    this.choose(row);
  }

  choose(row) {
    this.row = row < this.list.count ? row : -1;
    this.rowList.choose(this.list.shownRows.indexOf(this.row));
  }

  pick(row, isPassing) {
    this.go(addressOfRow(this.list.name, row, this.settings), isPassing);
  }

  // Other settings: the address tells them, and the view stays.
  change(changed) {
    this.settings = { ...this.settings, ...changed };
    keepAddress(addressOfRow(this.list.name, this.row, this.settings));
    this.update();
    this.rowList.choose(this.list.shownRows.indexOf(this.row));
  }

  update() {
    const { list, settings } = this;
    const title = (settings.sort ?? "").replace(/^-/, "");
    const sorted = list.columns.find((column) => column.title === title);
    const isDescending = sorted !== undefined && settings.sort.startsWith("-");
    if (this.orderOf !== settings.sort) {
      this.order = sorted ? orderBy(title, sorted.ordering ?? sorted.cells, isDescending) : Uint32Array.from({ length: list.count }, (_, i) => i);
      this.orderOf = settings.sort;
    }
    const tests = [];
    if (settings.text) {
      tests.push(this.textFilter.testOf(settings.text));
    }
    for (const [filter, testOf] of Object.entries(list.name === "symbols" ? symbolFilters : {})) {
      if (settings[filter]) {
        tests.push(testOf(settings[filter]));
      }
    }
    list.shownRows = tests.length === 0 ? this.order
      : this.order.filter((row) => tests.every((test) => test(row)));
    this.filters.tell(list.shownRows.length, list.count);
    this.nothing.hidden = list.shownRows.length > 0;
    this.rowList.element.hidden = list.count === 0;
    this.heads.forEach((head, i) => {
      const isSorted = this.columns[i].title === title;
      head.setAttribute("aria-sort", !isSorted ? "none" : isDescending ? "descending" : "ascending");
    });
    this.rowList.element.scrollTop = 0;
    this.rowList.show(list.shownRows.length, -1);
  }

  head() {
    this.heads = this.columns.map((column) => {
      const button = make("button", { type: "button" }, column.title);
      button.addEventListener("click", () => this.sortBy(column.title));
      return make("th", { scope: "col", className: column.isNumber ? "sorts number" : "sorts" }, button);
    });
    this.widths = columnWidths(this.columns, (i, take) => {
      const { cells } = this.columns[i];
      for (let row = 0; row < cells.length; ++row) {
        take(cellText(cells[row]));
      }
    });
    return make("thead", {}, make("tr", {}, this.heads));
  }

  // Ascending, descending, as in the project.
  sortBy(title) {
    const { sort } = this.settings;
    this.change({ sort: sort === title ? `-${title}` : sort === `-${title}` ? "" : title });
  }

  renderRow(row) {
    return make("tr", { "data-row": row }, this.columns.map((column) => {
      const text = cellText(column.cells[row]);
      const classes = [column.isNumber ? "number" : "", column.isName ? "name" : "",
                       column.isMono ? "mono" : "", column.isSmall ? "scope" : ""];
      return make("td", { className: classes.join(" ").trim(), title: text.length > 12 ? shown(text) : "" },
        this.list.cellOf(row, column.title) ?? text);
    }));
  }
}
