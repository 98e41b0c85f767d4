// The tables with their rows, and the links between lines.
//
// A row is the list of its cells, the first of which is its position. Long texts that rows share come
// once: a number in a column of texts is the place of one. A link of a table holds, row by
// row, the position that it leads to in another table, or -1.

let tables = null;  // until they are looked at
let tableNamed = new Map();

function loadTables() {
  if (tables) {
    return;
  }
  const data = JSON.parse(document.getElementById("tables-data").textContent);
  tables = data.tables;
  tableNamed = new Map(tables.map((table) => [table.name, table]));
  for (const table of tables) {
    table.columns.forEach((column, i) => {
      for (const row of column.isNumber ? [] : table.rows) {
        row[i] = typeof row[i] === "number" ? data.texts[row[i]] : row[i];
      }
    });
    table.nameColumn = table.columns.findIndex((column) => column.isName);
    for (const link of table.links) {
      link.from = table;
      link.to = tables[link.table];
      link.columnIndex = columnOf(table, link.column);
    }
  }
}

function columnOf(table, title) {
  return table.columns.findIndex((column) => column.title === title);
}

// The row of the line at a position; -1 for none.
function rowAt(table, position) {
  const row = lastRowUpTo(table, position);
  return row >= 0 && table.rows[row][0] === position ? row : -1;
}

// The last row that begins at a position or before it; -1 for none.
function lastRowUpTo(table, position) {
  let first = 0;
  let end = table.rows.length;
  while (first < end) {
    const middle = (first + end) >> 1;
    if (table.rows[middle][0] <= position) {
      first = middle + 1;
    } else {
      end = middle;
    }
  }
  return first - 1;
}

function positionOf(table, row) {
  return table.rows[row][0];
}

function nameOf(table, row) {
  const name = table.rows[row][table.nameColumn];
  return name === null || name === "" ? "(none)" : name;
}

// The bytes of a line by what they are.
function partsOf(table, row) {
  const start = positionOf(table, row);
  const end = row + 1 < table.rows.length ? positionOf(table, row + 1) : table.end;
  const room = Math.max(0, end - start - 4 - table.key - table.user);
  const name = Math.min(table.nameBytes[row], room);
  return [
    { title: "length", kind: "head", bytes: 4 },
    { title: "key", kind: "key", bytes: table.key },
    { title: "name", kind: "name", bytes: name },
    { title: "own data", kind: "data", bytes: room - name },
    { title: "user area", kind: "user", bytes: table.user },
  ].filter((part) => part.bytes > 0);
}

function sizeOf(table, row) {
  return partsOf(table, row).reduce((sum, part) => sum + part.bytes, 0);
}

// Where the links of a row lead, those only that lead to a line.
function linksOf(table, row) {
  return table.links
    .map((link) => ({ title: link.title, columnIndex: link.columnIndex, table: link.to,
                      row: rowAt(link.to, link.at[row]) }))
    .filter((link) => link.row >= 0);
}

// The rows whose links lead to a line: a list of {link, rows}.
function linksTo(target, row) {
  const position = positionOf(target, row);
  return tables
    .flatMap((table) => table.links)
    .filter((link) => link.to === target)
    .map((link) => ({ link, rows: rowsByTarget(link).get(position) ?? [] }))
    .filter((group) => group.rows.length > 0);
}

function rowsByTarget(link) {
  if (!link.byTarget) {
    link.byTarget = new Map();
    link.at.forEach((position, row) => {
      const rows = link.byTarget.get(position);
      if (rows) {
        rows.push(row);
      } else {
        link.byTarget.set(position, [row]);
      }
    });
  }
  return link.byTarget;
}

function addressOf(table, row = -1, filter = null) {
  const line = row >= 0 ? "/" + positionOf(table, row) : "";
  const only = filter ? `?${filter.table.name}=${positionOf(filter.table, filter.row)}` : "";
  return "#tables/" + table.name + line + only;
}

function linkTo(table, row, text = nameOf(table, row)) {
  return make("a", { href: addressOf(table, row) }, text);
}

// The line that a symbol was entered as, as an address; that of all tables for none. A name may stand
// for several: the line of the source tells which.
function lineOfSymbol(symbol) {
  loadTables();
  const isGlobal = symbols.owner[symbol] < 0;
  const table = tableNamed.get(isGlobal ? "globals" : "components");
  const [unit, line] = ["unit", "line"].map((title) => columnOf(table, title));
  const name = lowerCase(symbols.name[symbol]);
  const path = lowerCase(symbols.path[symbol]);
  const row = table.rows.findIndex((cells) => lowerCase(cells[table.nameColumn] ?? "") === name &&
    (isGlobal || lowerCase(cells[unit] ?? "") === path) && cells[line] === symbols.line[symbol]);
  return row >= 0 ? addressOf(table, row) : "#tables";
}

// The symbol that a line of globals or components is about; undefined for none.
function symbolOfLine(table, row) {
  const cells = table.rows[row];
  const unit = table.name === "components" ? cells[columnOf(table, "unit")] : "";
  const found = ["components", "globals"].includes(table.name)
    ? symbolsByName().get(nameKey(unit ?? "", nameOf(table, row))) : undefined;
  return found?.[0];
}

// What the tables tell of the project that they were made of, in the form of its data.
function projectOfTables() {
  loadTables();
  const [units, globals, components, names] =
    ["units", "globals", "components", "names"].map((name) => tableNamed.get(name));
  const cell = (table, row, title) => table.rows[row][columnOf(table, title)] ?? "";
  const indexes = (table) => table.rows.map((_, row) => row);
  const unitNames = new Map(indexes(units).map((row) => [nameOf(units, row), row]));
  const lines = [...indexes(components).map((row) => [components, row]),
                 ...indexes(globals).map((row) => [globals, row])];
  const texts = (title) => lines.map(([table, row]) => String(cell(table, row, title)));
  const nothing = lines.map(() => "");
  const path = lines.map(([table, row]) => (table === components ? cell(table, row, "unit") : ""));
  const columns = {
    path, name: texts("name"), section: texts("scope"), type: texts("type"), address: texts("address"),
    initial: texts("initial"), comment: nothing, file: nothing,
    line: lines.map(([table, row]) => cell(table, row, "line") || 0), column: lines.map(() => 0),
    owner: lines.map(([table], i) => (table === components ? unitNames.get(path[i]) ?? -1 : -2)),
  };
  return {
    name: "",
    units: indexes(units).map((row) => ({
      name: nameOf(units, row), kind: cell(units, row, "kind"), result: "", language: "", comment: "",
      file: "", line: cell(units, row, "line") || 0, calls: [] })),
    types: [...new Set(indexes(names).map((row) => nameOf(names, row)))]
      .filter((name) => !unitNames.has(name) && !report.standardBlocks.includes(name.toUpperCase()))
      .map((name) => ({ name, definition: "", initial: "", comment: "", file: "", line: 0, members: [] })),
    lists: [{ name: "", path: "", comment: "", variables: globals.rows.length, file: "", line: 0 }],
    tasks: [],
    symbols: { titles: Object.keys(columns), pieces: [Object.values(columns)],
               texts: Object.keys(columns).map(() => []) },
  };
}
