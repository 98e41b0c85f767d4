// The chosen line: its bytes, its cells, and what is linked with it.

const mostLinks = 40;

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

function cellText(value) {
  return value === true ? "yes" : value === false ? "no" : value === null ? "" : String(value);
}

function group(title, ...content) {
  return make("section", {}, make("h3", {}, title), content);
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

function taskLinks(table, row) {
  const runs = table.name === "units" ? tasksThatRun(positionOf(table, row)) : [];
  return runs.length === 0 ? null : group("Run by",
    make("ul", {}, runs.map(({ task, program }) => make("li", {},
      make("a", { href: "#tasks" }, task.task ?? "no task"),
      make("span", { className: "what" }, `as ${program.instance}`)))));
}

function showDetails(table, row) {
  const aside = document.getElementById("details");
  if (!table || row < 0) {
    aside.replaceChildren(make("p", { className: "empty" },
      table ? "Choose a line to see its bytes and what is linked with it." : ""));
    return;
  }
  const size = sizeOf(table, row);
  const filter = { table, row };
  aside.replaceChildren(...[
    make("p", { className: "kicker" }, table.name,
      make("span", { className: "pos" }, `${positionOf(table, row)} – ${positionOf(table, row) + size - 1}`)),
    make("h2", {}, nameOf(table, row)),
    group(`${plural(size, "byte")}`, layoutBar(table, row)),
    cellsOf(table, row),
    forwardLinks(table, row),
    taskLinks(table, row),
    ...linksTo(table, row).map(({ link, rows }) => group(
      link.title === "unit" && link.from.name === "components" ? `Components (${formatNumber(rows.length)})`
        : `${link.from.name}: ${link.title} (${formatNumber(rows.length)})`,
      lineList(link.from, rows, filter))),
  ].filter((part) => part !== null));
  aside.scrollTop = 0;
}

