// What the page shows: the project as its engineer wrote it. The tables are read when they are looked at
// (tables.js). Of an image there are only these, and they tell what they can of the project.

const report = JSON.parse(document.getElementById("project-data").textContent);
const isImage = report.project === null;
const numberFormat = new Intl.NumberFormat("en");

function formatNumber(value) {
  return numberFormat.format(value);
}

function plural(count, one, many = one + "s") {
  return `${formatNumber(count)} ${count === 1 ? one : many}`;
}

// --- Elements -----------------------------------------------------------------------------------

// What a reader would not see, or what would turn around what stands beside it, as an escape.
const unseen = /[\p{Cc}\p{Cf}\p{Zl}\p{Zp}\p{Cn}]/gu;

function shown(text) {
  return /^[ -~]*$/.test(text) ? text : text.replace(unseen, (c) => {
    const code = c.codePointAt(0).toString(16).toUpperCase();
    return c === "\n" ? "\\n" : c === "\t" ? "\\t"
      : code.length > 4 ? `\\U${code.padStart(8, "0")}` : `\\u${code.padStart(4, "0")}`;
  });
}

// An element with properties, and children that are elements or texts. Names of the project become
// text nodes and nothing else.
function make(tag, properties, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(properties ?? {})) {
    if (name in element) {
      element[name] = value;
    } else {
      element.setAttribute(name, value);
    }
  }
  for (const child of children.flat(Infinity)) {
    if (child !== null && child !== undefined) {
      element.append(typeof child === "string" ? shown(child) : child);
    }
  }
  return element;
}

// --- The project --------------------------------------------------------------------------------

const project = isImage ? projectOfTables() : report.project;
const symbols = columnsOf(project.symbols);
symbols.count = symbols.name.length;
symbols.list = symbols.owner.map((owner) => (owner <= -2 ? project.lists[-2 - owner].name : ""));
// Addresses without what an access path leads to.
symbols.located = symbols.address.map((address, i) => (symbols.section[i].startsWith("VAR_ACCESS") ? "" : address));

// The cells of columns by their titles, from pieces of some thousand rows. A number in a column of
// texts is the place of one.
function columnsOf({ titles, pieces, texts }) {
  return Object.fromEntries(titles.map((title, i) => {
    const cells = pieces.flatMap((piece) => piece[i]);
    return [title, texts[i].length === 0 ? cells
      : cells.map((cell) => (typeof cell === "number" ? texts[i][cell] : cell))];
  }));
}

function lowerCase(text) {
  return text.toLowerCase();
}

// What is made when it is first asked for.
function once(work) {
  let result;
  return () => (result ??= work());
}

// Objects by name without regard to case; the first of a name.
function byName(objects) {
  const index = new Map();
  objects.forEach(({ name }, i) => {
    const key = lowerCase(name);
    index.set(key, index.get(key) ?? i);
  });
  return index;
}

const unitIndex = byName(project.units);
const typeIndex = byName(project.types);

// What the elements of an array are, or what a reference leads to: "STRING(8)" of "ARRAY [1..3] OF STRING(8)".
function innermostType(type) {
  const outer = /^\s*(?:ARRAY\s*\[[^\]]*\]\s*OF|(?:POINTER|REFERENCE)\s+TO|REF_TO)\s+/i.exec(type);
  return outer ? innermostType(type.slice(outer[0].length)) : type.trim();
}

// The name of that, without a length or range; of a structure without a name "STRUCT".
const namesOfTypes = new Map();

function typeName(type) {
  let name = namesOfTypes.get(type);
  if (name === undefined) {
    const innermost = innermostType(type);
    name = /^[^\s()[\]:;,]+/.exec(innermost)?.[0] ?? innermost;
    namesOfTypes.set(type, name);
  }
  return name;
}

// Lists of numbers by what they belong to.
function groupBy(count, keyOf) {
  const groups = new Map();
  for (let i = 0; i < count; ++i) {
    const key = keyOf(i);
    const group = groups.get(key);
    if (group) {
      group.push(i);
    } else {
      groups.set(key, [i]);
    }
  }
  return groups;
}

const symbolsByOwner = once(() => groupBy(symbols.count, (i) => symbols.owner[i]));
const symbolsByType = once(() => groupBy(symbols.count, (i) => lowerCase(typeName(symbols.type[i]))));
const symbolsByName = once(() => groupBy(symbols.count, (i) => nameKey(
  symbols.owner[i] >= 0 ? symbols.path[i] : "", symbols.name[i])));

// What has a type and is no variable, as {list, row, text}, by the name of the type.
const otherUsesByType = once(() => {
  const uses = new Map();
  const add = (type, use) => {
    const key = lowerCase(typeName(type));
    uses.has(key) ? uses.get(key).push(use) : uses.set(key, [use]);
  };
  project.types.forEach(({ name, definition, members }, row) => {
    members.forEach(([member, type]) => add(type, { list: "types", row, text: `${name}.${member}` }));
    add(definition, { list: "types", row, text: name });
  });
  project.units.forEach(({ name, result }, row) => add(result, { list: "units", row, text: name }));
  return uses;
});

function variablesOfType(name) {
  return symbolsByType().get(lowerCase(name)) ?? [];
}

function otherUsesOf(name) {
  return otherUsesByType().get(lowerCase(name)) ?? [];
}

function nameKey(unit, name) {
  return lowerCase(`${unit}\n${name}`);
}

function wholeName(i) {
  return (symbols.path[i] ? symbols.path[i] + "." : "") + symbols.name[i];
}

// The tasks that run a unit, as {task, program}.
function tasksThatRun(unit) {
  return project.tasks.flatMap((task) =>
    task.programs.filter((program) => lowerCase(program.program) === lowerCase(unit))
      .map((program) => ({ task, program })));
}

// The numbers of the units that the bodies of one call: functions by their names, function blocks by
// those of their instances.
function calledUnits(unit) {
  const called = project.units[unit].calls.map((callee) => {
    const [symbol] = symbolsByName().get(nameKey(project.units[unit].name, callee)) ?? [];
    const name = symbol === undefined ? callee : typeName(symbols.type[symbol]);
    return unitIndex.get(lowerCase(name));
  });
  return [...new Set(called)].filter((found) => found !== undefined);
}

const callers = once(() => {
  const index = project.units.map(() => []);
  project.units.forEach((_, unit) => calledUnits(unit).forEach((called) => index[called].push(unit)));
  return index;
});

// --- Messages -----------------------------------------------------------------------------------

function placeKey(file, line, column) {
  return `${file}\n${line}\n${column}`;
}

// What each message is about, as {list, row}. A message that does not say it is about the symbol that is
// declared there, or the unit that its object names; null for neither.
const messageTargets = once(() => {
  const places = new Map();
  const wanted = new Set(report.messages.map((m) => placeKey(m.file, m.line, m.column)));
  for (let i = 0; i < symbols.count && wanted.size > 0; ++i) {
    const key = placeKey(symbols.file[i], symbols.line[i], symbols.column[i]);
    if (wanted.has(key)) {
      places.set(key, i);
    }
  }
  return report.messages.map((message) => {
    if (message.target !== undefined) {
      return message.target;
    }
    const symbol = places.get(placeKey(message.file, message.line, message.column));
    if (symbol !== undefined) {
      return { list: "symbols", row: symbol };
    }
    const name = lowerCase(/\bpou\[(.*?)\]/.exec(message.object)?.[1] ?? message.object);
    const typeName = lowerCase(/\bdataType\[(.*?)\]/.exec(message.object)?.[1] ?? message.object);
    return unitIndex.has(name) ? { list: "units", row: unitIndex.get(name) }
      : typeIndex.has(typeName) ? { list: "types", row: typeIndex.get(typeName) } : null;
  });
});

// The name of the check that a message comes from; empty for none.
function checkOf({ code }) {
  return report.checks[code]?.name ?? "";
}

// The numbers of messages by the row that they are about.
const messagesOf = once(() => {
  const index = { symbols: new Map(), units: new Map(), types: new Map(), lists: new Map(), tasks: new Map() };
  messageTargets().forEach((target, i) => {
    if (target) {
      const rows = index[target.list];
      rows.has(target.row) ? rows.get(target.row).push(i) : rows.set(target.row, [i]);
    }
  });
  return index;
});

// --- Routes: what the part of the address behind '#' names --------------------------------------
//
// "symbols" is a list of the project, "symbols/12" a row of it, with "?text=%25Q*&sort=address" only
// what is filtered so, in that order. "tables/globals" is a table, "tables/globals/94" a line of it,
// "tables/globals/94?constants=15" the same with those lines only that lead to the line 15 of the
// constants.

function parseRoute(hash) {
  const table = /^#tables\/([a-z]+)(?:\/(\d+))?(?:\?([a-z]+)=(\d+))?$/.exec(hash);
  if (table && report.tables.some(({ name }) => name === table[1])) {
    loadTables();
    const target = tableNamed.get(table[3]);
    const targetRow = target ? rowAt(target, Number(table[4])) : -1;
    return {
      view: "tables",
      table: tableNamed.get(table[1]),
      position: table[2] === undefined ? -1 : Number(table[2]),
      filter: targetRow >= 0 ? { table: target, row: targetRow } : null,
    };
  }
  const list = /^#([a-z]+)(?:\/(\d+))?(?:\?(.*))?$/.exec(hash);
  return list === null ? { view: "project" } : {
    view: list[1],
    row: list[2] === undefined ? -1 : Number(list[2]),
    settings: Object.fromEntries(new URLSearchParams(list[3] ?? "")),
  };
}

function addressOfRow(list, row = -1, settings = {}) {
  const set = Object.entries(settings).filter(([, value]) => value !== "");
  const query = set.length > 0 ? "?" + new URLSearchParams(set) : "";
  return `#${list}${row >= 0 ? "/" + row : ""}${query}`;
}

function linkToRow(list, row, text) {
  return make("a", { href: addressOfRow(list, row) }, text);
}

// A name as the link to the unit or type that has it.
function linkToName(name, text = name) {
  const unit = unitIndex.get(lowerCase(name));
  const type = typeIndex.get(lowerCase(name));
  return unit !== undefined ? linkToRow("units", unit, text)
    : type !== undefined ? linkToRow("types", type, text) : text;
}

// A type's text with its name as a link.
function typeText(type) {
  const at = type.length - innermostType(type).length;
  const end = at + typeName(type).length;
  return [type.slice(0, at), linkToName(type.slice(at, end)), type.slice(end)];
}
