// Follows the address: shows the view that it names and the line in it.

let view = null;

// The address of what is shown. Browsers refuse one that changes with every repeat of a held key: theirs
// is told at once, and then when some time has passed.
let address = location.hash;
let isTold = true;
let addressTimer = 0;
const addressRest = 400;

function keepAddress(hash) {
  address = hash;
  isTold = false;
  if (addressTimer === 0) {
    tellAddress();
  }
}

function tellAddress() {
  if (!isTold) {
    isTold = true;
    history.replaceState(null, "", address);
    addressTimer = setTimeout(() => {
      addressTimer = 0;
      tellAddress();
    }, addressRest);
  }
}

// Goes to a place of the page; passing by leaves no trace in the history.
function go(hash, isPassing = false) {
  if (isPassing) {
    keepAddress(hash);
    follow();
    return;
  }
  tellAddress();
  if (location.hash === hash) {
    arrive();
  } else {
    location.hash = hash;
  }
}

// The browser's address is another one.
function arrive() {
  address = location.hash;
  isTold = true;
  follow();
  if (document.activeElement === document.body) {  // what had the focus may be gone
    (view.table?.rowList.grid ?? document.getElementById("content")).focus({ preventScroll: true });
  }
}

function follow() {
  const route = parseRoute(address);
  if (route.view === "line" && route.row >= 0 && route.row < symbols.count) {
    go(lineOfSymbol(route.row), true);
    return;
  }
  const isList = listNames.includes(route.view) && isThere(route.view);
  const key = route.table ? addressOf(route.table, -1, route.filter)
    : isList ? addressOfRow(route.view, -1, route.settings) : "#" + route.view;
  const row = route.table ? rowAt(route.table, route.position) : isList ? route.row : -1;
  if (view?.key() === key) {
    view.table?.choose(row);
  } else {
    view = open(route, key, isList);
    view.table?.start(row);
  }
  const hasDetails = view.table?.row >= 0;
  document.body.classList.toggle("with-details", hasDetails);
  if (hasDetails) {
    isList ? showDetailsOf(route.view, view.table.row) : showDetails(route.table, view.table.row);
  }
}

function open(route, key, isList) {
  const list = isList ? new ListView(route.view, route.settings, go) : null;
  const table = route.table ? new TableView(route.table, route.filter, go) : list;
  const name = route.table ? `tables/${route.table.name}`
    : isList || route.view === "tables" ? route.view : "project";
  fill(table ? table.content : name === "tables" ? tablesView() : projectView(), table !== null);
  showViews(name);
  document.title = `${route.table?.name ?? name} – ${report.files[0]} – lq report`;
  // A filter that is typed changes the address, not the view.
  return { table, name, key: () => (list ? addressOfRow(route.view, -1, list.settings) : key) };
}

function fill(content, isTable) {
  const main = document.getElementById("content");
  main.className = isTable ? "of-table" : "";
  main.replaceChildren(...content.filter((part) => part !== null));
  main.scrollTop = 0;
}

// On paper a view is whole.
function showWhole(isWhole) {
  if (view.table) {
    view.table.rowList.showWhole(isWhole);
  } else if (view.name === "project") {
    fill(projectView(isWhole), false);
  }
}

// Nothing is chosen any more.
function close() {
  if (view.table) {
    view.table.pick(-1, true);
    view.table.rowList.grid.focus();
  }
}

document.getElementById("input").textContent = shown([...report.files, ...report.libraries].join(", "));
document.getElementById("skip").addEventListener("click", (event) => {
  event.preventDefault();  // the address is the view's
  document.getElementById("content").focus();
});
new Search(go);
document.getElementById("close").addEventListener("click", close);
document.addEventListener("keydown", (event) => {
  if (event.key === "Escape" && !event.target.closest("input, select")) {
    close();
  }
});
document.addEventListener("click", tellAddress, { capture: true });  // before a link has its own
window.addEventListener("pagehide", tellAddress);
window.addEventListener("hashchange", arrive);

let isPrinting = false;
const darkScheme = matchMedia("(prefers-color-scheme: dark)");
let isDrawnDark = darkScheme.matches;

function setPrinting(isBegun) {
  isPrinting = isBegun;
  showWhole(isBegun);
}

// Drawings have the colours of their time. Paper is light, and what is printed stays as it is.
function changeColors() {
  if (!isPrinting && isDrawnDark !== darkScheme.matches) {
    isDrawnDark = darkScheme.matches;
    if (view.name.startsWith("tables")) {
      view = null;
      follow();
    }
  }
}

window.addEventListener("beforeprint", () => setPrinting(true));
window.addEventListener("afterprint", () => setPrinting(false));
darkScheme.addEventListener("change", changeColors);
follow();
