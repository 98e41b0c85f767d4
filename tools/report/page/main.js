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
  const key = route.table ? addressOf(route.table, -1, route.filter) : "#" + route.view;
  const row = route.table ? rowAt(route.table, route.position) : -1;
  if (view?.key !== key) {
    view = { key, ...open(route) };
    view.tableView?.start(row);
  } else {
    view.tableView?.choose(row);
  }
  document.body.classList.toggle("with-details", Boolean(route.table));
  showDetails(route.table, row);
}

function open(route) {
  const plainViews = {
    tasks: () => [make("h1", {}, "Tasks"), report.tasks ? tasksTable() : null],
    refused: () => [make("h1", {}, "Refused"), refusedTable()],
  };
  const tableView = route.table ? new TableView(route.table, route.filter, go) : null;
  const content = tableView ? tableView.content : (plainViews[route.view] ?? overview)();
  const name = route.table || route.view in plainViews ? route.view : "overview";
  const main = document.getElementById("content");
  main.className = tableView ? "of-table" : "";
  main.replaceChildren(...content.filter((part) => part !== null));
  main.scrollTop = 0;
  showViews(name);
  document.title = `${name} – ${report.input} – lq report`;
  return { tableView };
}

document.getElementById("input").textContent = report.input;
document.getElementById("skip").addEventListener("click", (event) => {
  event.preventDefault();  // the address is the view's
  document.getElementById("content").focus();
});
new Search((table, row) => go(addressOf(table, row)));
window.addEventListener("hashchange", follow);
matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
  view = null;  // drawings have the old colours
  follow();
});
follow();
