// The search by name, in all tables, as one types.

const mostFound = 200;

// What can be found: name in lower case, table and row; first of all the tables that are asked for
// most.
function searchEntries() {
  const entries = [];
  const first = ["units", "globals", "components"].map((name) => tableNamed.get(name));
  for (const table of new Set([...first, ...tables])) {
    for (let row = 0; row < table.rows.length; ++row) {
      const name = table.rows[row][table.nameColumn];
      if (table.name !== "debug" && name) {
        entries.push({ key: name.toLowerCase(), table, row });
      }
    }
  }
  return entries;
}

// Names that begin with the text before those that hold it, whole ones first of all; among equals
// the order of the tables.
function find(entries, text) {
  const wanted = text.trim().toLowerCase();
  const ranks = [[], [], []];
  for (const entry of wanted === "" ? [] : entries) {
    const at = entry.key.indexOf(wanted);
    if (at >= 0) {
      ranks[at > 0 ? 2 : entry.key.length > wanted.length ? 1 : 0].push(entry);
    }
  }
  return ranks.flat();
}

// What tells lines of one name apart.
function describe(table, row) {
  const cells = table.rows[row];
  const cell = (title) => cells[table.columns.findIndex((column) => column.title === title)] ?? "";
  return [cell("unit"), cell("kind"), cell("type") !== nameOf(table, row) ? cell("type") : ""]
    .filter((text) => text !== "").join(" · ");
}

class Search {
  constructor(open) {
    this.open = open;
    this.input = document.getElementById("search");
    this.panel = document.getElementById("found-panel");
    this.list = document.getElementById("found");
    this.count = document.getElementById("found-count");
    this.found = [];
    this.active = -1;
    this.input.addEventListener("input", () => this.update());
    this.input.addEventListener("focus", () => this.update());
    this.input.addEventListener("keydown", (event) => this.handleKey(event));
    this.input.addEventListener("blur", () => this.close());
    this.list.addEventListener("mousedown", (event) => event.preventDefault());  // keeps the focus
    this.list.addEventListener("click", (event) => {
      const option = event.target.closest("[role=option]");
      if (option) {
        this.take([...this.list.children].indexOf(option));
      }
    });
    document.addEventListener("keydown", (event) => {
      if (event.key === "/" && !event.target.closest("input, textarea")) {
        event.preventDefault();
        this.input.select();
        this.input.focus();
      }
    });
  }

  update() {
    this.entries ??= searchEntries();
    const text = this.input.value;
    const all = find(this.entries, text);
    this.found = all.slice(0, mostFound);
    this.list.replaceChildren(...this.found.map((entry, i) => this.option(entry, i)));
    this.count.textContent = all.length === 0 ? `Nothing is called “${text.trim()}”.`
      : all.length > mostFound
        ? `${plural(all.length, "line")}, the first ${mostFound} of them above.`
        : `${plural(all.length, "line")}.`;
    this.panel.hidden = text.trim() === "";
    this.input.setAttribute("aria-expanded", !this.panel.hidden);
    this.activate(this.found.length > 0 ? 0 : -1);
  }

  option({ key, table, row }, i) {
    const name = nameOf(table, row);
    const wanted = this.input.value.trim();
    const at = key.indexOf(wanted.toLowerCase());
    return make("li", { role: "option", id: `found-${i}` },
      make("span", { className: "name" }, name.slice(0, at),
        make("mark", {}, name.slice(at, at + wanted.length)), name.slice(at + wanted.length)),
      make("span", { className: "what" }, describe(table, row)),
      make("span", { className: "where" }, table.name),
      make("span", { className: "pos" }, String(positionOf(table, row))));
  }

  activate(i) {
    this.list.children[this.active]?.setAttribute("aria-selected", "false");
    this.active = i;
    const option = this.list.children[i];
    option?.setAttribute("aria-selected", "true");
    option?.scrollIntoView({ block: "nearest" });
    this.input.setAttribute("aria-activedescendant", option ? option.id : "");
  }

  handleKey(event) {
    const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    if (step && this.found.length > 0) {
      this.activate((this.active + step + this.found.length) % this.found.length);
    } else if (event.key === "Enter") {
      this.take(this.active);
    } else if (event.key === "Escape") {
      this.input.value = "";
      this.close();
    } else {
      return;
    }
    event.preventDefault();
  }

  take(i) {
    const entry = this.found[i];
    if (entry) {
      this.close();
      this.input.blur();
      this.open(entry.table, entry.row);
    }
  }

  close() {
    this.panel.hidden = true;
    this.input.setAttribute("aria-expanded", "false");
  }
}

