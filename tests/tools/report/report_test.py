"""Opens pages of `lq report` in a browser: report_test.py LQ EXAMPLES CHROMIUM CHROMEDRIVER.

Exits with 77, which ctest counts as skipped, where there is no browser to drive.
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

lq, examples, chromium, chromedriver = sys.argv[1:]
here = pathlib.Path(__file__).parent
try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
except ImportError:
    sys.exit(77)
if not (pathlib.Path(chromium).exists() and pathlib.Path(chromedriver).exists()):
    sys.exit(77)

PLANT = examples + "/plant/plant.xml"
OPTIONS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--disable-sync",
           "--disable-dev-shm-usage", "--window-size=1400,1800"]
SYMBOLS = 20000

# A link of a table: the member of `show --json` that shows what it leads to, and where that is.
RESOLVED = [
    ("globals", "address", "addresses", "address"),
    ("globals", "initial", "constants", "text"),
    ("components", "address", "addresses", "address"),
    ("components", "initial", "constants", "text"),
    ("components", "unit", "units", "name"),
    ("debug", "unit", "units", "name"),
]


def large_project():
    names = (f"Motor{i}_Speed" if i % 2 else f"Tank_Level_{i}" for i in range(SYMBOLS))
    variables = "".join(f"<variable name='{name}'><type><INT/></type><initialValue>"
                        f"<simpleValue value='{i % 500}'/></initialValue></variable>\n"
                        for i, name in enumerate(names))
    frame = (here / "hostile.xml").read_text().split("<variable name=\"&lt;/script")
    return frame[0] + variables + "</globalVars></configuration></configurations></instances></project>"


class ReportTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        options = webdriver.ChromeOptions()
        options.binary_location = chromium
        for option in OPTIONS + [f"--user-data-dir={cls.folder.name}/profile"]:
            options.add_argument(option)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        cls.browser = webdriver.Chrome(service=Service(chromedriver), options=options)

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()
        cls.folder.cleanup()

    def tearDown(self):
        self.assertEqual(self.browser.get_log("browser"), [], "the console has messages")

    def open_report(self, project, status=0):
        page = f"{self.folder.name}/{self.id()}.html"
        run = subprocess.run([lq, "report", project, "-o", page], capture_output=True)
        self.assertEqual(run.returncode, status, run.stderr)
        self.browser.get("file://" + page)

    def go(self, route):
        self.browser.execute_script("location.hash = arguments[0]", route)
        # The page follows in an event of its own.
        self.browser.execute_async_script("setTimeout(arguments[0], 0)")

    def all(self, selector):
        return self.browser.find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def texts(self, selector):
        return [element.text for element in self.all(selector)]

    def route(self):
        return self.browser.execute_script("return decodeURIComponent(location.hash)")

    def show(self, *arguments):
        return json.loads(subprocess.check_output([lq, "show", *arguments, "--json"]))["tables"]

    def links_in_rows(self, table):
        """Of the rows that are drawn: position, and links by column titles."""
        self.go("#" + table)
        return self.browser.execute_script("""
            const titles = [...document.querySelectorAll(".rows th")].map((cell) => cell.textContent);
            return [...document.querySelectorAll("tr[data-row]")].map((row) => [row.cells[0].textContent,
              Object.fromEntries([...row.cells].map((cell, i) =>
                [titles[i], [...cell.querySelectorAll("a")].map((link) => link.getAttribute("href"))]))]);
            """)

    def test_links_lead_where_positions_point(self):
        self.open_report(PLANT)
        tables = self.show(PLANT)
        by_position = {name: {str(row["pos"]): row for row in rows} for name, rows in tables.items()}
        for table, member, target, shown in RESOLVED:
            drawn = dict(self.links_in_rows(table))
            self.assertGreater(len(drawn), 2, table)
            for position, links in drawn.items():
                value = by_position[table][position][member]
                where = f"{table} {position} {member}"
                if value is None:
                    self.assertEqual(links[member], [], where)
                    continue
                self.assertEqual(len(links[member]), 1, where)
                name, at = links[member][0].removeprefix("#").split("/")
                self.assertEqual((name, by_position[target][at][shown]), (target, value), where)

    def test_types_and_externals(self):
        self.open_report(PLANT)
        tables = self.show(PLANT)
        position = {(table, row[member]): str(row["pos"]) for table, member in
                    [("globals", "name"), ("names", "name"), ("arrays", "type"), ("units", "name")]
                    for row in tables[table]}
        rows = {row["name"]: str(row["pos"]) for row in tables["globals"]}
        globals_ = dict(self.links_in_rows("globals"))
        array = "#arrays/" + position["arrays", "ARRAY [1..8] OF REAL"]
        self.assertEqual(globals_[rows["Pressures"]]["type"], [array])
        self.assertEqual(globals_[rows["Active"]]["type"], ["#names/" + position["names", "Recipe"]])
        self.assertEqual(globals_[rows["Recipes"]]["type"],
                         ["#arrays/" + position["arrays", "ARRAY [1..5] OF STRUCTURE"],
                          "#names/" + position["names", "Recipe"]])
        components = dict(self.links_in_rows("components"))
        external = next(row for row in tables["components"] if row["name"] == "EmergencyStop")
        self.assertEqual(components[str(external["pos"])]["scope"], ["#globals/" + rows["EmergencyStop"]])
        # The section of a unit: from its details to its components, and no others.
        dosing = position["units", "Dosing"]
        self.go("#units/" + dosing)
        section = next(link for link in self.all("aside .all a")
                       if link.get_attribute("href").endswith(f"#components?units={dosing}"))
        section.click()
        self.go(self.route())
        expected = [row["name"] for row in tables["components"] if row["unit"] == "Dosing"]
        self.assertEqual(self.texts("tr[data-row] td.name"), expected)

    def test_search_and_keys(self):
        self.open_report(PLANT)
        self.one("body").send_keys("/")
        search = self.browser.switch_to.active_element
        search.send_keys("BATCHC")
        found = self.texts("#found li .name")
        self.assertEqual(set(found), {"BatchCount"})
        search.send_keys(Keys.BACKSPACE * 6 + "nothing like it")
        self.assertEqual(self.texts("#found li"), [])
        self.assertIn("Nothing is called", self.one("#found-count").text)
        search.send_keys(Keys.BACKSPACE * 15 + "pressures" + Keys.ENTER)
        pressures = self.show(PLANT, "--find", "Pressures")["globals"][0]["pos"]
        self.assertEqual(self.route(), f"#globals/{pressures}")
        self.assertEqual(self.one("aside h2").text, "Pressures")
        self.one(".rows table").send_keys(Keys.ARROW_DOWN)
        self.assertEqual(self.one("aside h2").text, "Grid")
        self.assertEqual(self.one("tr[aria-selected=true] td.name").text, "Grid")

    def test_tasks(self):
        self.open_report(PLANT)
        self.go("#tasks")
        rows = [row.text.split() for row in self.all("main tbody tr")]
        self.assertEqual([row[1] for row in rows], ["Cyclic", "OnStart", "no"])
        self.assertIn("MixerA: Mixing", self.one("main tbody tr").text)
        self.one("main tbody a").click()
        self.go(self.route())
        self.assertEqual(self.one("aside h2").text, "Mixing")

    def test_an_image_has_no_tasks(self):
        image = f"{self.folder.name}/plant.lqt"
        subprocess.run([lq, "translate", PLANT, "-o", image], check=True, capture_output=True)
        self.open_report(image)
        self.assertNotIn("Tasks", self.texts("nav a span"))
        self.go("#globals")
        self.assertGreater(len(self.links_in_rows("globals")), 10)

    def test_names_stay_text(self):
        self.open_report(here / "hostile.xml", status=1)
        for route in ["#overview", "#tasks", "#refused", "#units/0", "#components/0"]:
            self.go(route)
            self.assertEqual(self.all("img"), [], route)
            self.assertNotEqual(self.browser.title, "broken", route)
        self.go("#constants")
        constant = self.all(".rows td.name")[-1].get_property("textContent")
        self.assertEqual(constant, "'<!--<script>\u2028\u2029</script>'")
        self.go("#refused")
        self.assertIn("</script><img src=x onerror=alert(1)>", self.one("main tbody").text)

    def test_stays_quick(self):
        project = pathlib.Path(self.folder.name, "large.xml")
        project.write_text(large_project())
        self.open_report(project)
        self.go("#globals")
        self.assertEqual(self.one(".rows table").get_attribute("aria-rowcount"), str(SYMBOLS + 1))
        times = self.browser.execute_async_script("""
            const done = arguments[0];
            const clock = (work) => { const from = performance.now(); work(); return performance.now() - from; };
            const search = document.getElementById("search");
            const rows = document.querySelector(".rows");
            const times = {
              load: performance.getEntriesByType("navigation")[0].domContentLoadedEventEnd,
              search: Math.max(...["t", "ta", "tank_level_1999"].map((text) => clock(() => {
                search.value = text;
                search.dispatchEvent(new Event("input"));
              }))),
            };
            const from = performance.now();
            rows.scrollTop = rows.scrollHeight;
            requestAnimationFrame(() => requestAnimationFrame(() => {
              times.scroll = performance.now() - from;
              times.elements = document.querySelectorAll("*").length;
              times.last = rows.querySelector("tbody tr:nth-last-child(2) .name").textContent;
              done(times);
            }));
            """)
        print(times, file=sys.stderr)
        self.assertEqual(times["last"], f"Motor{SYMBOLS - 1}_Speed")
        self.assertLess(times["elements"], 3000)
        # Of a machine that has much else to do.
        self.assertLess(times["load"], 5000)
        self.assertLess(times["search"], 1000)
        self.assertLess(times["scroll"], 1000)


unittest.main(argv=[sys.argv[0]])
