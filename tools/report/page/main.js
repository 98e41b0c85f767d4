// Follows the address: shows the view that it names and the line in it.

let view = null;

// Goes to a place of the page; passing by leaves no trace in the history.
function go(hash, isPassing = false) {
  if (isPassing) {
    history.replaceState(null, "", hash);
    follow();
  } else {
    location.hash = hash;
  }
}

function follow() {
  const route = parseRoute(location.hash);
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
  const hasDetails = Boolean(route.table) || (isList && view.table.row >= 0);
  document.body.classList.toggle("with-details", hasDetails);
  document.body.classList.toggle("of-list", isList);
  if (route.table) {
    showDetails(route.table, row);
  } else if (hasDetails) {
    showDetailsOf(route.view, view.table.row);
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
  if (listNames.includes(view.name)) {
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
window.addEventListener("beforeprint", () => showWhole(true));
window.addEventListener("afterprint", () => showWhole(false));
window.addEventListener("hashchange", follow);
matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
  view = null;  // drawings have the old colours
  follow();
});
follow();
