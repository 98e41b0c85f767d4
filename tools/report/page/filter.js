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

// A cell that is the text, if there is one, or else is like it.
function cellTest(text, cells) {
  const wanted = lowerCase(text.trim());
  const lower = once(() => cells.map(lowerCase));
  const isThere = once(() => lower().includes(wanted));
  const matches = matcherOf(text);
  return (i) => (isThere() ? lower()[i] === wanted : matches(lower()[i]));
}

const innermostTypes = once(() => symbols.type.map(innermostType));

// What the symbols can be filtered by, besides the text.
const symbolFilters = {
  unit: (text) => {
    const [path, list] = [cellTest(text, symbols.path), cellTest(text, symbols.list)];
    return (i) => path(i) || list(i);
  },
  type: (text) => {
    const [whole, innermost] = [cellTest(text, symbols.type), cellTest(text, innermostTypes())];
    return (i) => whole(i) || innermost(i);
  },
  section: (text) => (i) => symbols.section[i] === text,
  only: (text) => (text === "messages" ? (i) => messagesOf().symbols.has(i)
    : (i) => symbols.address[i] !== ""),
};

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
      this.input("unit", isImage ? "Unit" : "Unit or list", settings,
        optionsOf("units", [...symbols.path, ...symbols.list])),
      this.input("type", "Type", settings, optionsOf("types", innermostTypes())),
      this.select("section", [["", "all sections"], ...sections.map((text) => [text, text])], settings),
      this.select("only", only, settings),
    ];
  }

  button(text, title, work) {
    const button = make("button", { type: "button", title }, text);
    button.addEventListener("click", work);
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
    return Object.fromEntries(Object.entries(this.fields).map(([name, field]) => [name, field.value]));
  }

  tell(count, all) {
    this.count.textContent = count === all ? formatNumber(all)
      : `${formatNumber(count)} of ${formatNumber(all)}`;
  }
}
