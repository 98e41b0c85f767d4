// The search by name as one types: in the project, or in the tables where these are looked at.

const mostFound = 200;

// What can be found: name in lower case, what tells it apart, where it is and its address.
function projectEntries() {
  const of = (list, names, whatOf) => names.map((name, row) =>
    ({ name, key: lowerCase(name), where: listTitles[list], whatOf: () => whatOf(row),
       addressOf: () => addressOfRow(list, row) }));
  return [
    ...of("units", project.units.map(({ name }) => name), (row) => project.units[row].kind),
    ...of("types", project.types.map(({ name }) => name), (row) => definitionOf(project.types[row])),
    ...of("lists", project.lists.map(({ name }) => name), (row) => project.lists[row].path),
    ...of("tasks", project.tasks.map(({ task }) => task ?? ""), (row) => project.tasks[row].resource),
    ...of("symbols", symbols.name, (row) =>
      [symbols.path[row], symbols.type[row], symbols.address[row]].filter((text) => text !== "").join(" · ")),
  ].filter(({ key }) => key !== "");
}

function tableEntries() {
  const entries = [];
  const first = ["units", "globals", "components"].map((name) => tableNamed.get(name));
  for (const table of new Set([...first, ...tables])) {
    for (let row = 0; row < table.rows.length; ++row) {
      const name = table.rows[row][table.nameColumn];
      if (table.name !== "debug" && name) {
        entries.push({ name, key: lowerCase(name), where: table.name, whatOf: () => describe(table, row),
                       addressOf: () => addressOf(table, row) });
      }
    }
  }
  return entries;
}

// What tells lines of one name apart.
function describe(table, row) {
  const cell = (title) => table.rows[row][columnOf(table, title)] ?? "";
  return [cell("unit"), cell("kind"), cell("type") !== nameOf(table, row) ? cell("type") : ""]
    .filter((text) => text !== "").join(" · ");
}

// Names that begin with the text before those that hold it, whole ones first of all; among equals
// in their order.
function find(entries, text) {
  const wanted = lowerCase(text.trim());
  const ranks = [[], [], []];
  for (const entry of wanted === "" ? [] : entries) {
    const at = entry.key.indexOf(wanted);
    if (at >= 0) {
      ranks[at > 0 ? 2 : entry.key.length > wanted.length ? 1 : 0].push(entry);
    }
  }
  return ranks.flat();
}

class Search {
  constructor(open) {
    this.open = open;
    this.inProject = once(projectEntries);
    this.inTables = once(tableEntries);
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
    const text = this.input.value;
    const all = find(view.name.startsWith("tables") ? this.inTables() : this.inProject(), text);
    this.found = all.slice(0, mostFound);
    this.list.replaceChildren(...this.found.map((entry, i) => this.option(entry, i)));
    this.count.textContent = all.length === 0 ? `Nothing is called “${text.trim()}”.`
      : all.length > mostFound
        ? `${plural(all.length, "name")}, the first ${mostFound} of them above.`
        : `${plural(all.length, "name")}.`;
    this.panel.hidden = text.trim() === "";
    this.input.setAttribute("aria-expanded", !this.panel.hidden);
    this.activate(this.found.length > 0 ? 0 : -1);
  }

  option({ name, key, whatOf, where }, i) {
    const wanted = this.input.value.trim();
    const at = key.indexOf(wanted.toLowerCase());
    return make("li", { role: "option", id: `found-${i}` },
      make("span", { className: "name" }, name.slice(0, at),
        make("mark", {}, name.slice(at, at + wanted.length)), name.slice(at + wanted.length)),
      make("span", { className: "what" }, whatOf()),
      make("span", { className: "where" }, where));
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
      this.open(entry.addressOf());
    }
  }

  close() {
    this.panel.hidden = true;
    this.input.setAttribute("aria-expanded", "false");
  }
}

