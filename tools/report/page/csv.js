// What a list shows, as comma-separated values: a line of titles, lines that end in CR LF, quotes where
// a cell has a delimiter, a quotation mark or an end of line.

// What a spreadsheet would calculate; the full-width signs count where Japanese is written. A signed
// number is none.
function isFormula(text) {
  return /^[=+\-@\t\r\n\uFF1D\uFF0B\uFF0D\uFF20]/.test(text) && !/^[+-][\d.]+(?:[eE][+-]?\d+)?$/.test(text);
}

function csvCell(value, isHarmless) {
  const text = cellText(value);
  const cell = isHarmless && isFormula(text) ? "'" + text : text;
  return /[",\r\n]/.test(cell) ? `"${cell.replaceAll('"', '""')}"` : cell;
}

function csvOf(list, rows, isHarmless) {
  const columns = list.columns.filter((column) => !column.isPageOnly);
  const lines = [columns.map((column) => column.title).join(",")];
  for (const row of rows) {
    lines.push(columns.map((column) => csvCell(column.cells[row], isHarmless)).join(","));
  }
  return (isHarmless ? "\uFEFF" : "") + lines.join("\r\n") + "\r\n";
}

function exportCsv(list, isHarmless) {
  const text = csvOf(list, list.shownRows, isHarmless);
  const link = make("a", { href: URL.createObjectURL(new Blob([text], { type: "text/csv" })),
                           download: `${report.files[0].replace(/\.[^.]*$/, "")}-${list.name}.csv` });
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10_000);
}
