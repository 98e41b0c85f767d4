// What is told of a chosen row of the project, and of a chosen line of a table.

const mostLinks = 40;

function group(title, ...content) {
  return make("section", {}, make("h3", {}, title), content);
}

// Pairs of a title and what it says, those only that say something.
function facts(pairs) {
  return make("dl", { className: "cells" }, pairs
    .filter(([, value]) => value !== "" && value !== null && value !== undefined)
    .map(([title, value, isMono]) => [make("dt", {}, title), make("dd", { className: isMono ? "mono" : "" }, value)]));
}

function placeText({ file, line, column }) {
  return [file, ...(line > 0 ? [line, column] : [])].filter((part) => part).join(":");
}

// A list of links, the first of them only where there are many, with an address of all.
function linkList(items, toItem, all = null) {
  const rest = items.length - mostLinks;
  return [make("ul", {}, items.slice(0, mostLinks).map((item) => make("li", {}, toItem(item)))),
    all !== null && items.length > 1
      ? make("p", { className: "all" }, make("a", { href: all },
          rest > 0 ? `All ${formatNumber(items.length)}` : "As a table"))
      : rest > 0 ? make("p", { className: "all" }, `and ${formatNumber(rest)} more`) : null];
}

function counted(title, items, ...list) {
  return items.length === 0 ? null : group(`${title} (${formatNumber(items.length)})`,
    linkList(items, ...list));
}

// Variables or members as rows of name and type.
function variableList(rows) {
  return make("dl", { className: "variables" }, rows.map(([name, type, address, note]) => [
    make("dt", {}, name),
    make("dd", {}, make("code", {}, type),
      address ? make("code", { className: "at" }, " " + address) : null,
      note ? make("span", { className: "note" }, note) : null)]));
}

function messageList(list, row) {
  const found = report.messages.length > 0 ? messagesOf()[list].get(row) ?? [] : [];
  const rest = found.length - mostLinks;
  return found.length === 0 ? null : group("Messages", make("ul", { className: "messages" },
    found.slice(0, mostLinks).map((i) => make("li", {},
      make("span", { className: `flag ${report.messages[i].severity}` }),
      linkToRow("messages", i, report.messages[i].text)))),
    rest > 0 ? make("p", { className: "all" }, `and ${formatNumber(rest)} more`) : null);
}

const messageSources = { reader: "the reader of the project", checks: "the checks",
                         tables: "the tables: it was not entered" };

function symbolLinks(title, rows, all) {
  return counted(title, rows, (i) => linkToRow("symbols", i, wholeName(i)), all);
}

function otherUses(title, name) {
  return counted(title, otherUsesOf(name), ({ list, row, text }) => linkToRow(list, row, text));
}

const detailsOf = {
  symbols: (row) => {
    const cell = (title) => symbols[title][row];
    const type = typeName(cell("type"));
    const typeRow = typeIndex.get(lowerCase(type));
    const members = typeRow === undefined ? [] : project.types[typeRow].members;
    const owner = cell("owner");
    return [
      make("p", { className: "kicker" }, cell("section")),
      make("h2", {}, cell("name")),
      messageList("symbols", row),
      facts([["type", make("span", {}, typeText(cell("type"))), true], ["address", cell("address"), true],
             ["initial", cell("initial"), true], ["comment", cell("comment")],
             [owner >= 0 ? "unit" : "path", owner >= 0 ? linkToRow("units", owner, cell("path")) : cell("path")],
             ["list", owner <= -2 && cell("list") ? linkToRow("lists", -2 - owner, cell("list")) : ""],
             ["declared", isImage ? "" : placeText({ file: cell("file"), line: cell("line"), column: cell("column") })],
             ["source line", isImage && cell("line") > 0 ? cell("line") : ""]]),
      members.length === 0 ? null : group(`Members of ${type}`, variableList(members)),
      make("p", { className: "inside" }, make("a", { href: `#line/${row}` }, "Inside the tables")),
    ];
  },
  units: (row) => {
    const unit = project.units[row];
    const own = symbolsByOwner().get(row) ?? [];
    const sections = groupBy(own.length, (i) => symbols.section[own[i]]);
    const unitLink = (i) => linkToRow("units", i, project.units[i].name);
    return [
      make("p", { className: "kicker" }, unit.kind, make("span", {}, unit.language)),
      make("h2", {}, unit.name),
      messageList("units", row),
      facts([["comment", unit.comment], ["result", unit.result ? make("span", {}, typeText(unit.result)) : "", true],
             ["declared", placeText(unit)]]),
      counted("Run by", tasksThatRun(unit.name), ({ task, program }) => [
        make("a", { href: addressOfRow("tasks", project.tasks.indexOf(task)) }, task.task ?? "no task"),
        make("span", { className: "what" }, `as ${program.instance}`)]),
      ...[...sections].map(([section, rows]) => group(`${section} (${formatNumber(rows.length)})`,
        variableList(rows.slice(0, mostLinks).map((i) => own[i]).map((i) =>
          [linkToRow("symbols", i, symbols.name[i]), symbols.type[i], symbols.address[i], symbols.comment[i]])),
        rows.length > mostLinks ? make("p", { className: "all" }, make("a", { href: addressOfRow("symbols", -1,
          { of: `units/${row}`, section }) }, `All ${formatNumber(rows.length)}`)) : null)),
      counted("Calls", calledUnits(row), unitLink),
      counted("Called by", callers()[row], unitLink),
      symbolLinks("Instances", variablesOfType(unit.name), addressOfRow("symbols", -1, { type: unit.name })),
      otherUses("Instances in types", unit.name),
    ];
  },
  types: (row) => {
    const type = project.types[row];
    return [
      make("p", { className: "kicker" }, "data type"),
      make("h2", {}, type.name),
      messageList("types", row),
      facts([["comment", type.comment], ["definition", type.members.length > 0 ? "" : type.definition, true],
             ["initial", type.initial, true], ["declared", placeText(type)]]),
      type.members.length === 0 ? null : group(`Members (${formatNumber(type.members.length)})`,
        variableList(type.members.map(([name, of, address, initial, comment]) =>
          [name, of + (initial ? ` := ${initial}` : ""), address, comment]))),
      symbolLinks("Variables", variablesOfType(type.name), addressOfRow("symbols", -1, { type: type.name })),
      otherUses("In types and results", type.name),
    ];
  },
  lists: (row) => {
    const list = project.lists[row];
    return [
      make("p", { className: "kicker" }, "global list"),
      make("h2", {}, list.name || "(no name)"),
      messageList("lists", row),
      facts([["comment", list.comment], ["path", list.path], ["declared", placeText(list)]]),
      symbolLinks("Variables", symbolsByOwner().get(-2 - row) ?? [],
        addressOfRow("symbols", -1, { of: `lists/${row}` })),
    ];
  },
  tasks: (row) => {
    const task = project.tasks[row];
    return [
      make("p", { className: "kicker" }, "task"),
      make("h2", {}, task.task ?? "no task"),
      messageList("tasks", row),
      facts([["comment", task.comment], ["resource", task.resource], ["priority", task.priority],
             ["interval", task.interval, true], ["event", task.event, true], ["declared", placeText(task)]]),
      counted("Instances", task.programs, ({ instance, program, comment }) =>
        [make("span", {}, `${instance}: `, linkToName(program)), make("span", { className: "what" }, comment)]),
    ];
  },
  messages: (row) => {
    const message = report.messages[row];
    const check = report.checks[message.code];
    const target = messageTargets()[row];
    return [
      make("p", { className: "kicker" }, make("span", {},
        make("span", { className: `flag ${message.severity}` }), message.severity)),
      make("p", { className: "said" }, message.text),
      facts([["place", placeText(message)], ["object", target ? linkToRow(target.list, target.row, message.object) : message.object],
             ["check", check ? `${message.code} ${check.name}` : ""], ["rule", check?.rule], ["reason", check?.reason],
             ["by", messageSources[message.by]],
             ["further places", message.more > 0 ? formatNumber(message.more) : ""],
             ...(message.related ?? []).map((related) => [placeText(related), related.text])]),
    ];
  },
};

function showDetailsOf(list, row) {
  document.getElementById("details").replaceChildren(
    ...detailsOf[list](row).filter((part) => part !== null));
  document.getElementById("details").scrollTop = 0;
}

// --- A line of a table --------------------------------------------------------------------------

function lineList(table, rows, filter) {
  const items = rows.slice(0, mostLinks).map((row) => {
    const unit = table.columns.findIndex((column) => column.title === "unit");
    const prefix = unit >= 0 && filter.table.name !== "units" ? table.rows[row][unit] : null;
    return make("li", {}, make("span", {}, prefix ? `${prefix}.` : "", linkTo(table, row)),
      make("span", { className: "pos" }, String(positionOf(table, row))));
  });
  const rest = rows.length - items.length;
  const all = rows.length > 1
    ? make("p", { className: "all" }, make("a", { href: addressOf(table, -1, filter) },
        rest > 0 ? `All ${plural(rows.length, "line")}` : "As a table"))
    : null;
  return [make("ul", {}, items), all];
}

function layoutBar(table, row) {
  const parts = partsOf(table, row);
  return make("div", { className: "layout" },
    make("div", { className: "bar-of-parts", "aria-hidden": "true" }, parts.map((part) => {
      const piece = make("i", { className: `fill-${part.kind}` });
      piece.style.flexGrow = part.bytes;
      return piece;
    })),
    make("dl", {}, parts.map((part) => make("div", {},
      make("dt", {}, make("i", { className: `fill-${part.kind}` }), part.title),
      make("dd", {}, String(part.bytes))))));
}

function cellsOf(table, row) {
  const rows = [];
  table.columns.forEach((column, i) => {
    const value = table.rows[row][i];
    if (i > 0 && !column.isName && value !== null) {
      rows.push(make("dt", {}, column.title === "line" ? "source line" : column.title),
        make("dd", { className: column.isNumber ? "number" : "" }, cellText(value)));
    }
  });
  return make("dl", { className: "cells" }, rows);
}

function forwardLinks(table, row) {
  const links = linksOf(table, row);
  return links.length === 0 ? null : group("Leads to",
    make("dl", { className: "links" }, links.map((link) => [
      make("dt", {}, link.title),
      make("dd", {}, linkTo(link.table, link.row),
        make("span", { className: "pos" }, String(positionOf(link.table, link.row)))),
    ])));
}

function projectLink(table, row) {
  const symbol = symbolOfLine(table, row);
  const unit = table.name === "units" ? unitIndex.get(lowerCase(nameOf(table, row))) : undefined;
  return symbol !== undefined ? group("Declared as", linkToRow("symbols", symbol, wholeName(symbol)))
    : unit !== undefined ? group("Declared as", linkToRow("units", unit, project.units[unit].name)) : null;
}

function showDetails(table, row) {
  const aside = document.getElementById("details");
  const size = sizeOf(table, row);
  const filter = { table, row };
  aside.replaceChildren(...[
    make("p", { className: "kicker" }, table.name,
      make("span", { className: "pos" }, `${positionOf(table, row)} – ${positionOf(table, row) + size - 1}`)),
    make("h2", {}, nameOf(table, row)),
    group(`${plural(size, "byte")}`, layoutBar(table, row)),
    cellsOf(table, row),
    forwardLinks(table, row),
    projectLink(table, row),
    ...linksTo(table, row).map(({ link, rows }) => group(
      link.title === "unit" && link.from.name === "components" ? `Components (${formatNumber(rows.length)})`
        : `${link.from.name}: ${link.title} (${formatNumber(rows.length)})`,
      lineList(link.from, rows, filter))),
  ].filter((part) => part !== null));
  aside.scrollTop = 0;
}

