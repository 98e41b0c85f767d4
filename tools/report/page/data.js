// The data: tables with their rows, and the links between lines.
//
// A row is the list of its cells, the first of which is its position. Long texts that rows share come
// once: a number in a column of texts is the place of one. A link of a table holds, row by
// row, the position that it leads to in another table, or -1.

const report = JSON.parse(document.getElementById("data").textContent);
const tables = report.tables;
const tableNamed = new Map(tables.map((table) => [table.name, table]));
const numberFormat = new Intl.NumberFormat("en");

for (const table of tables) {
  table.columns.forEach((column, i) => {
    for (const row of column.isNumber ? [] : table.rows) {
      row[i] = typeof row[i] === "number" ? report.texts[row[i]] : row[i];
    }
  });
  table.nameColumn = table.columns.findIndex((column) => column.isName);
  for (const link of table.links) {
    link.from = table;
    link.to = tables[link.table];
    link.columnIndex = table.columns.findIndex((column) => column.title === link.column);
  }
}

function formatNumber(value) {
  return numberFormat.format(value);
}

function plural(count, one, many = one + "s") {
  return `${formatNumber(count)} ${count === 1 ? one : many}`;
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

// The tasks that run a unit, as {task, program}.
function tasksThatRun(unitPosition) {
  return (report.tasks ?? []).flatMap((task) =>
    task.programs
      .filter((program) => program.unit === unitPosition)
      .map((program) => ({ task, program })));
}

// --- Routes: what the part of the address behind '#' names --------------------------------------
//
// "globals" is a table, "globals/94" a line of it, "globals/94?constants=15" the same with those lines
// only that lead to the line 15 of the constants. Any other word is a view of its own.

function parseRoute(hash) {
  const match = /^#([a-z]+)(?:\/(\d+))?(?:\?([a-z]+)=(\d+))?$/.exec(hash);
  if (!match) {
    return { view: "overview" };
  }
  const target = tableNamed.get(match[3]);
  const targetRow = target ? rowAt(target, Number(match[4])) : -1;
  return {
    view: match[1],
    table: tableNamed.get(match[1]),
    position: match[2] === undefined ? -1 : Number(match[2]),
    filter: targetRow >= 0 ? { table: target, row: targetRow } : null,
  };
}

function addressOf(table, row = -1, filter = null) {
  const line = row >= 0 ? "/" + positionOf(table, row) : "";
  const only = filter ? `?${filter.table.name}=${positionOf(filter.table, filter.row)}` : "";
  return "#" + table.name + line + only;
}

// --- Elements -----------------------------------------------------------------------------------

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
  element.append(...children.flat(Infinity).filter((child) => child !== null && child !== undefined));
  return element;
}

function linkTo(table, row, text = nameOf(table, row)) {
  return make("a", { href: addressOf(table, row) }, text);
}

