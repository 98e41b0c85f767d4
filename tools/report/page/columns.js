// Columns: what they are called, how wide they are, in which order they put rows.

// Columns are {title, isNumber, isName, isWhole, isMono, isLong}.

function cellText(value) {
  return value === true ? "yes" : value === false ? "no" : value === null ? "" : String(value);
}

function columnHeads(titles, numbers = []) {
  return make("thead", {}, make("tr", {}, titles.map((title) =>
    make("th", { scope: "col", className: numbers.includes(title) ? "number" : "" }, title))));
}

function plainTable(titles, numbers, rows) {
  return make("div", { className: "plain" },
    make("table", {}, columnHeads(titles, numbers), make("tbody", {}, rows.map((cells) =>
      make("tr", {}, cells.map((cell, i) =>
        make("td", { className: numbers.includes(titles[i]) ? "number" : "" }, cell ?? "")))))));
}

const widest = 300;

// The widths of columns in pixels: what the title needs, and what the longest text would.
// `eachCell(column, take)` hands out the texts.
function columnWidths(columns, eachCell) {
  const context = make("canvas").getContext("2d");
  const size = color("size");
  const widthOf = (text, font) => {
    context.font = font;
    return context.measureText(text).width + 22;
  };
  return columns.map((column, i) => {
    let longest = "";
    eachCell(i, (text) => {
      longest = text.length > longest.length ? text : longest;
    });
    const family = color(column.isMono ? "mono" : "sans");
    const edge = i === 0 ? 10 : 0;
    const least = widthOf(column.isSorted ? `${column.title} \u2191` : column.title,
      `${column.isSorted ? "620 " : ""}${size} ${color("sans")}`) + edge;
    const wanted = widthOf(longest.slice(0, 100), `${column.isName ? "600 " : ""}${size} ${family}`);
    return { least, wanted: Math.max(least, Math.min(wanted + edge, column.isLong ? 2 * widest : widest)) };
  });
}

// Numbers are whole, and so are names if they are not long; the others share what these leave, by what
// they want beyond the least.
function fitColumns(columns, widths, available) {
  const isWhole = (i) => columns[i].isNumber || columns[i].isName || columns[i].isWhole;
  const least = (i) => (isWhole(i) ? Math.min(widths[i].wanted, 220) : widths[i].least);
  const sum = (amount) => widths.reduce((total, _, i) => total + amount(i), 0);
  const beyond = (i) => (columns[i].isNumber ? 0 : widths[i].wanted - least(i) + 1);
  const share = Math.max(0, available - sum(least)) / Math.max(1, sum(beyond));
  return widths.map((_, i) => least(i) + beyond(i) * share);
}

// --- Orders -------------------------------------------------------------------------------------

// A text by which addresses are in the order of their places: %I before %Q before %M, then by size, a bit's
// if none is written, then number by number, a longer one behind a shorter; incomplete ones behind them.
function addressKey(address) {
  const parts = /^%([IQM])([XBWDL]?)(\d+(?:\.\d+)*)$/i.exec(address);
  if (!parts) {
    return address === "" ? "" : "9" + address;
  }
  const rank = (letters, letter) => String(letters.indexOf(letter.toUpperCase()));
  const numbers = parts[3].split(".").map((number) => number.replace(/^0+/, ""));
  return rank("IQM", parts[1]) + rank("XBWDL", parts[2] || "X") +
    numbers.map((number) => String(number.length).padStart(9, "0") + number).join(".");
}

function sortKeys(title, cells) {
  return title === "address" ? cells.map(addressKey)
    : cells.map((cell) => (typeof cell === "string" ? lowerCase(cell) : cell));
}

// The numbers of all rows by the cells of a column. What is empty comes last, what is equal stays as
// it was.
function orderBy(title, cells, isDescending) {
  const keys = sortKeys(title, cells);
  const sign = isDescending ? -1 : 1;
  return Uint32Array.from(keys.keys()).sort((a, b) => {
    const [left, right] = [keys[a], keys[b]];
    if (left === right) {
      return a - b;
    }
    return left === "" ? 1 : right === "" ? -1 : left < right ? -sign : sign;
  });
}
