// Which rows of a list are shown.

// A text with "*" or "?" must be like the whole of what it is compared with, any other be in it. What
// is compared is in lower case.
function matcherOf(text) {
  const wanted = lowerCase(text.trim());
  if (!/[*?]/.test(wanted)) {
    return (cell) => cell.includes(wanted);
  }
  const pattern = wanted.replace(/[.+^${}()|[\]\\]/g, "\\$&").replace(/\*/g, "[^]*").replace(/\?/g, "[^]");
  const whole = new RegExp(`^${pattern}$`);
  return (cell) => whole.test(cell);
}

// Each word of the text must be found: one that begins with "%" in the address, which begins with it,
// a pattern in one of the cells, any other anywhere.
class TextFilter {
  // `columns` are lists of cells, `addresses` one of them or null.
  constructor(columns, addresses) {
    this.columns = columns.map((cells) => once(() => cells.map((cell) => lowerCase(cellText(cell)))));
    this.addresses = addresses;
    this.whole = once(() => {
      const all = this.columns.map((column) => column());
      return all[0].map((_, i) => all.map((cells) => cells[i]).join("\n"));
    });
  }

  testOf(text) {
    const tests = text.split(/\s+/).filter((word) => word !== "").map((word) => this.testOfWord(word));
    return (i) => tests.every((test) => test(i));
  }

  testOfWord(word) {
    if (word.startsWith("%") && this.addresses) {
      const matches = matcherOf(word.endsWith("*") ? word : word + "*");
      return (i) => this.addresses[i] !== "" && matches(lowerCase(this.addresses[i]));
    }
    const matches = matcherOf(word);
    if (/[*?]/.test(word)) {
      return (i) => this.columns.some((column) => matches(column()[i]));
    }
    return (i) => matches(this.whole()[i]);
  }
}

// A cell of one of the columns that is the text, if there is one in any, or else is like it.
function cellTest(text, ...columns) {
  const wanted = lowerCase(text.trim());
  const lower = columns.map((cells) => cells.map(lowerCase));
  const matches = lower.some((cells) => cells.includes(wanted)) ? (cell) => cell === wanted : matcherOf(text);
  return (i) => lower.some((cells) => matches(cells[i]));
}

const typeNames = once(() => symbols.type.map(typeName));
const innermostTypes = once(() => symbols.type.map(innermostType));

// What the symbols can be filtered by, besides the text.
const symbolFilters = {
  of: (text) => {
    const owner = ownerOf(text);
    return (i) => symbols.owner[i] === owner;
  },
  unit: (text) => cellTest(text, symbols.path, symbols.list),
  type: (text) => cellTest(text, symbols.type, innermostTypes(), typeNames()),
  section: (text) => (i) => symbols.section[i] === text,
  only: (text) => (text === "messages" ? (i) => messagesOf().symbols.has(i)
    : (i) => symbols.located[i] !== ""),
};

// The unit or list of "units/3" or "lists/0", as symbols have it; null for no such text.
function ownerOf(text) {
  const [, list, row] = /^(units|lists)\/(\d+)$/.exec(text) ?? [];
  return list === undefined ? null : list === "units" ? Number(row) : -2 - Number(row);
}

const mostOptions = 1000;

function optionsOf(id, texts) {
  const distinct = [...new Set(texts)].filter((text) => text !== "").sort().slice(0, mostOptions);
  return make("datalist", { id }, distinct.map((text) => make("option", { value: text })));
}

// The controls. `onChange(settings)` is told what they say.
class FilterBar {
  constructor(list, settings, onChange) {
    this.onChange = () => onChange(this.settings());
    this.fields = {};
    this.of = settings.of ?? "";
    this.count = make("span", { className: "shown", role: "status" });
    const isOfSymbols = list.name === "symbols";
    this.element = make("div", { className: "filters", role: "search", "aria-label": "Filter" },
      this.input("text", isOfSymbols ? "Text, Name*, %Q*" : "Text, Name*", settings),
      isOfSymbols ? this.symbolFields(settings) : [],
      this.count,
      make("span", { className: "exports" },
        this.button("CSV", "What is shown, as lq symbols --csv writes it", () => exportCsv(list, false)),
        this.button("for spreadsheets", "The same with a byte order mark, and no cell is calculated",
          () => exportCsv(list, true))));
  }

  symbolFields(settings) {
    const sections = [...new Set(symbols.section)].sort();
    const only = [["", "all"], ["located", "located"],
                  ...(report.messages.length > 0 ? [["messages", "with messages"]] : [])];
    return [
      this.ownerButton(),
      this.input("unit", isImage ? "Unit" : "Unit or list", settings,
        optionsOf("units", [...symbols.path, ...symbols.list])),
      this.input("type", "Type", settings, optionsOf("types", typeNames())),
      this.select("section", [["", "all sections"], ...sections.map((text) => [text, text])], settings),
      this.select("only", only, settings),
    ];
  }

  button(text, title, work) {
    const button = make("button", { type: "button", title }, text);
    button.addEventListener("click", work);
    return button;
  }

  // Where a link led to the variables of one unit or list: its name, to be taken away. A name alone may
  // be that of several.
  ownerButton() {
    const [list, row] = this.of.split("/");
    const owner = ownerOf(this.of) === null ? undefined : project[list][row];
    const name = owner?.name || owner?.path || "(no name)";
    const button = this.of === "" ? null : this.button(`${name} ×`, "All symbols again", () => {
      this.of = "";
      button.remove();
      this.fields.text.focus();
      this.onChange();
    });
    return button;
  }

  keep(name, field, event, work) {
    this.fields[name] = field;
    field.setAttribute("data-filter", name);
    field.addEventListener(event, work);
    return field;
  }

  input(name, label, settings, options = null) {
    const field = make("input", { type: "text", placeholder: label, "aria-label": label,
                                  value: settings[name] ?? "", autocomplete: "off", spellcheck: false });
    if (options) {
      field.setAttribute("list", options.id);
    }
    let timer = 0;
    this.keep(name, field, "input", () => {
      clearTimeout(timer);
      timer = setTimeout(this.onChange, 120);
    });
    return [field, options];
  }

  select(name, options, settings) {
    const field = make("select", { "aria-label": name },
      options.map(([value, text]) => make("option", { value }, text)));
    field.value = settings[name] ?? "";
    return this.keep(name, field, "change", this.onChange);
  }

  settings() {
    return { of: this.of, ...Object.fromEntries(
      Object.entries(this.fields).map(([name, field]) => [name, field.value])) };
  }

  tell(count, all) {
    this.count.textContent = count === all ? formatNumber(all)
      : `${formatNumber(count)} of ${formatNumber(all)}`;
  }
}
