"""Pages of a database in a real browser: test_page.py COMMAND CHROMIUM CHROMEDRIVER."""

import json
import random
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from urllib.parse import quote

from selenium import webdriver
from selenium.common.exceptions import NoSuchElementException, StaleElementReferenceException
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select, WebDriverWait

CHROMIUM, CHROMEDRIVER = sys.argv.pop(2), sys.argv.pop(2)
ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/cli"))
from support import COMMAND, description, head, keys, write  # noqa: E402  takes the first argument

SAMPLE = ROOT / "examples/materials"
LARGEST_SAMPLE = 150_000
HOSTILE = "</script><script>document.title=1</script>"
IMAGE = "<img src=x onerror=document.title=1>"
RANDOM = random.Random(1)
LONG = [(float(x), RANDOM.uniform(-1e-7, 1e9)) for x in range(1000)]  # too many digits for plain text

# What a user would not write, and what does not fit: hostile names, numbers of 17 digits, a broken value.
ODD = {
    "density.prd": description(1, HOSTILE, "<b>", "Ct", "S"),
    "heat.prd": description(2, "Heat", "J", "CtT", "S"),
    "default.lst": "", "strings.lst": "",
    "S1/S1.mtd": keys(ID=1, Name=HOSTILE, Mixture=0, Composition="", Comment="<!--", Formula="<i>", Aliases=IMAGE),
    "S1/P1/P1.phd": keys(ID=1, Name="a/b <s>", Aggreg=1),
    "S1/P1/1.prh": head(1, 2, data="1.dat") + f"Source={IMAGE}\n",
    "S1/P1/1.dat": "".join(f"{x!r} {y!r}\n" for x, y in LONG),
    "S1/P1/2.prh": head(2, 2, data="2.dat"), "S1/P1/2.dat": "1 2\n3 x\n",
    "S2/S2.mtd": keys(ID=2, Name="Twin", Mixture=1, Composition="1:0.25;9:0.75", Comment=""),
    "S2/P1/P1.phd": keys(ID=1, Name="Solid", Aggreg=1),
    "S2/P1/1.prh": head(2, 4, data="1.dat"), "S2/P1/1.dat": "P=2\n1 5\n2 inf\n3 4\nP=1\n1 -4\n",
    "S3/S3.mtd": keys(ID=3, Name="Twin", Mixture=0, Composition="", Comment=""),
    "S3/P1/P1.phd": keys(ID=1, Name="Solid", Aggreg=1),
}

# A place, the same for the command, what is typed, and units chosen in the page and asked of the command.
IN_OTHER_UNITS = [("Temperature", "°C", "T=degC"), ("Pressure, stress", "MPa", "P=MPa"), ("Density", "g/cm³", "g/cm3")]
POINTS = [
    ("Copper/Solid/Thermal conductivity", ["Copper", "--phase", "Solid", "k"], {"T": "350"}, []),
    ("Copper/Solid/Thermal conductivity", ["Copper", "--phase", "Solid", "k"], {"T": "400"}, []),
    ("Copper/Solid/k", ["Copper", "--phase", "Solid", "k"], {"T": "76.85"}, IN_OTHER_UNITS[:1]),
    ("Water/Liquid/Density", ["Water:Liquid", "Density"], {"P": "2.3e6", "T": "333.3"}, []),
    ("Water/Liquid/Density", ["Water:Liquid", "Density"], {"P": "1e6", "T": "333.3"}, []),
    ("Water/Liquid/Density", ["Water:Liquid", "Density"], {"P": "17", "T": "61.7"}, IN_OTHER_UNITS),
    ("Graphite//Thermal strain", ["Graphite", "Thermal strain"],
     {"reference temperature": "333", "temperature": "417.5"}, []),
]
OUTSIDE = [
    ("Copper/Solid/k", {"T": "99.9"}, "100 K to 1200 K"),
    ("Water/Liquid/Density", {"P": "99999", "T": "300"}, "100\u202f000 Pa to 50\u202f000\u202f000 Pa"),
    ("Water/Liquid/Density", {"P": "2e5", "T": "361"}, "280 K to 360 K (P = 100\u202f000 Pa)"),
    ("Copper/Solid/k", {"T": "3oo"}, "not a number"),
]
# What is typed, the materials that are listed in this order.
SEARCHES = [
    ("copper", ["Copper"]), ("медь", ["Copper"]), ("cu", ["Copper", "Bronze, 89 % Cu and 11 % Sn", "Zinc"]),
    ("7440-50-8", ["Copper"]), ("H₂O", ["Water"]), ("r718", ["Water"]), ("sigma", ["Water"]),
    ("железо", ["Iron"]), ("nothing such", []),
]


def run(*arguments):
    return subprocess.run([COMMAND, *map(str, arguments)], capture_output=True, encoding="utf-8", timeout=120, check=False)


def value_from_command(arguments, typed, units):
    at = ",".join(f"{name}={number}" for name, number in typed.items())
    options = [option for _, _, unit in units for option in ("--units", unit)]
    done = run("get", SAMPLE, *arguments, "--at", at, *options, "--json")
    row = json.loads(done.stdout)["rows"][0]
    return row[len(typed):]


class Page(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.scratch = Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.scratch, ignore_errors=True)
        write(cls.scratch / "odd", ODD)
        cls.pages = {"sample": cls.make("sample", SAMPLE), "odd": cls.make("odd", cls.scratch / "odd")}
        options = webdriver.ChromeOptions()
        options.binary_location = CHROMIUM
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                         "--window-size=1200,900", f"--user-data-dir={cls.scratch}/profile"):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        service = webdriver.chrome.service.Service(CHROMEDRIVER)
        cls.browser = webdriver.Chrome(service=service, options=options)
        cls.addClassCleanup(cls.browser.quit)
        cls.browser.get("about:blank")
        cls.browser.get_log("performance")  # what the browser itself did at its start

    @classmethod
    def make(cls, name, database, *options):
        file = cls.scratch / f"{name}.html"
        done = run("page", database, "-o", file, *options)
        return {"file": file, "status": done.returncode, "messages": done.stderr}

    def tearDown(self):
        messages = [entry["message"] for entry in self.browser.get_log("browser")]
        self.assertEqual([], messages)
        events = [json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance")]
        asked = {event["params"]["request"]["url"] for event in events if event["method"] == "Network.requestWillBeSent"}
        self.assertEqual(set(), {url for url in asked if not url.startswith("file://") or not url.endswith(".html")})

    def open(self, page, place=""):
        self.browser.get("about:blank")
        self.browser.get(self.pages[page]["file"].as_uri() + "#" + quote(place, safe="/?=&:,"))

    def find(self, selector, inside=None):
        return (inside or self.browser).find_element(By.CSS_SELECTOR, selector)

    def all(self, selector, inside=None):
        return (inside or self.browser).find_elements(By.CSS_SELECTOR, selector)

    def texts(self, selector, inside=None):
        return [found.text for found in self.all(selector, inside)]

    def wait(self, condition):
        in_between = [StaleElementReferenceException, NoSuchElementException]
        WebDriverWait(self.browser, 20, 0.05, in_between).until(lambda _: condition())

    def title(self):
        return self.find("main h2").text

    def numbers(self, selector, inside=None):
        return [float(found.get_attribute("value")) for found in self.all(f"{selector} data", inside)]

    def choose_units(self, units):
        menu = self.find("details.menu")
        self.browser.execute_script("arguments[0].open = true", menu)
        for quantity, label, _ in units:
            Select(self.find(f'select[aria-label="{quantity}"]')).select_by_visible_text(label)
        self.browser.execute_script("arguments[0].open = false", menu)

    def type_point(self, card, typed):
        for name, number in typed.items():
            label = next(label for label in self.all(".point label", card) if label.text.startswith(f"{name} ="))
            self.find("input", label).send_keys(Keys.CONTROL, "a")
            self.find("input", label).send_keys(number)

    def test_every_number_of_the_sample_is_there(self):
        self.assertEqual((0, ""), (self.pages["sample"]["status"], self.pages["sample"]["messages"]))
        self.assertLessEqual(self.pages["sample"]["file"].stat().st_size, LARGEST_SAMPLE)
        rows = json.loads(run("export", SAMPLE, "--json").stdout)
        self.open("sample")
        names = list(dict.fromkeys(row["substance"] for row in rows))
        self.assertEqual(names, [text for text in self.browser.execute_script(
            "return [...document.querySelectorAll('nav li a')].map(a => a.firstChild.textContent)")])
        for number, name in enumerate(names):
            self.all("nav li a")[number].click()
            self.wait(lambda name=name: self.title() == name)
            shown = self.browser.execute_script(
                "return [...document.querySelectorAll('.numbers tr td:not(:first-child) data, .constants data')]"
                ".map(d => Number(d.value))")
            self.assertEqual(sorted(row["value"] for row in rows if row["substance"] == name and row["value"] is not None), sorted(shown), name)

    def test_points_are_those_of_the_command(self):
        for place, arguments, typed, units in POINTS:
            with self.subTest(place, typed=typed):
                self.open("sample", place)
                self.choose_units(units)
                card = self.find(".card.target")
                self.type_point(card, typed)
                self.assertEqual(value_from_command(arguments, typed, units), self.numbers("output", card))
        for place, typed, expected in OUTSIDE:
            with self.subTest(place, typed=typed):
                self.open("sample", place)
                self.type_point(self.find(".card.target"), typed)
                self.assertIn(expected, self.find(".card.target output .refused").text)

    def test_search_and_filters(self):
        self.open("sample")
        field = self.find("#search")
        for typed, expected in SEARCHES:
            field.send_keys(Keys.ESCAPE)
            field.send_keys(typed)
            listed = self.browser.execute_script(
                "return [...document.querySelectorAll('nav li a')].map(a => a.firstChild.textContent)")
            self.assertEqual(expected, listed, typed)
        field.send_keys(Keys.ESCAPE)
        Select(self.find('select[aria-label="State"]')).select_by_visible_text("gas")
        Select(self.find('select[aria-label="Has property"]')).select_by_visible_text("Dynamic viscosity")
        self.assertEqual(["Water H2O", "Air"], [text.replace("\n", "") for text in self.texts("nav li a")])

    def test_keys_and_history(self):
        self.open("sample")
        self.find("body").send_keys("/")
        self.browser.switch_to.active_element.send_keys("alumin", Keys.ARROW_DOWN)
        self.assertEqual(("Aluminium", "#Aluminium"), (self.title(), self.browser.execute_script("return location.hash")))
        self.browser.switch_to.active_element.send_keys(Keys.ARROW_UP)
        self.assertEqual("search", self.browser.switch_to.active_element.get_attribute("id"))
        self.browser.switch_to.active_element.send_keys(Keys.ESCAPE)
        self.all("nav li a")[-2].click()
        self.wait(lambda: self.title().startswith("Bronze"))
        self.find(".composition a").click()
        self.wait(lambda: self.title() == "Copper")
        self.browser.back()
        self.wait(lambda: self.title().startswith("Bronze"))
        self.browser.forward()
        self.wait(lambda: self.title() == "Copper")

    def test_comparison_in_another_language_and_units(self):
        for material in ("Copper", "Iron"):
            self.open("sample", f"{material}/Solid/Thermal conductivity") if material == "Copper" else \
                self.browser.execute_script("location.hash = 'Iron/Solid/Thermal conductivity'")
            self.wait(lambda material=material: self.title() == material)
            self.find(".card.target .toggle").click()
        self.browser.execute_script("location.hash = 'Graphite/Natural graphite'")
        self.wait(lambda: self.title() == "Graphite")
        self.find("#owner-1-1 .toggle").click()
        self.find(".tools a.button").click()
        self.wait(lambda: self.title() == "Comparison")
        self.wait(lambda: self.all(".u-legend"))
        self.assertEqual(["temperature, K", "Copper, Solid", "Iron, Solid"]
                         + [f"Graphite, Natural graphite, {axis}, constant" for axis in "xyz"], self.texts(".u-legend .u-label"))
        self.choose_units(IN_OTHER_UNITS[:1])
        self.type_point(self.find("main"), {"T": "76.85"})
        self.assertEqual([397, 87.5, 250, 250, 80][:1] + value_from_command(["Iron:Solid", "k"], {"T": "350"}, [])
                         + [250, 250, 80], self.numbers(".at-point"))
        self.find(".languages [lang=ru]").click()
        self.assertEqual(("Сравнение", "ru"), (self.title(), self.find("html").get_attribute("lang")))
        self.wait(lambda: self.texts(".u-legend .u-label")[:1] == ["температура, °C"])
        self.assertEqual("Медь, Твёрдая фаза", self.texts(".compared a")[0])
        self.all(".compared button")[1].click()
        self.assertEqual(2, len(self.all(".compared tbody tr")))
        self.browser.refresh()
        self.assertEqual(2, len(self.all(".compared tbody tr")))  # the address holds what is pinned
        self.open("sample", "?compare=Tin/Solid/Density&Air/Gas/Hardness")
        self.assertEqual((["Tin, Solid"], ["Nothing here is called “Air/Gas/Hardness”."]),
                         (self.texts(".compared th a"), self.texts("main .notice")))
        self.open("sample", "Unobtainium")
        self.assertEqual(["Nothing here is called “Unobtainium”."], self.texts("main .notice"))

    def test_charts(self):
        """A curve for each first argument and each component, logarithmic axes."""
        for page, place, curves in (("sample", "Water/Liquid/Density", 6), ("sample", "Graphite//Thermal strain", 9),
                                    ("odd", "2/Solid/Heat", 2)):
            self.open(page, place)
            self.wait(lambda: self.all(".card.target .u-legend"))
            labels = self.texts(".card.target .u-legend .u-label")[1:]
            self.assertEqual(curves, len(labels), place)
            for button in self.all(".card.target .chart-buttons button"):
                button.click()
            self.assertTrue(self.find(".card.target canvas").get_attribute("aria-label"))
        self.type_point(self.find(".card.target"), {"P": "1", "T": "1.5"})
        self.assertIn("does not rise", self.find(".card.target .refused").text)

    def test_hostile_names_do_nothing(self):
        self.assertEqual(1, self.pages["odd"]["status"])
        self.assertIn("is left out", self.pages["odd"]["messages"])
        self.open("odd")
        self.assertIn(HOSTILE, self.texts("nav li a")[0])
        self.all("nav li a")[0].click()
        self.wait(lambda: self.title() == HOSTILE)
        self.assertEqual([HOSTILE + " – odd"], [self.browser.title])
        self.assertEqual([], self.all("img, b, i, s"))
        self.assertIn("cannot be read", self.find("main .notice").text)
        self.assertIn("(S1/P1/2.dat)", self.find("main .notice").text)
        self.find(".numbers-box button").click()
        self.assertEqual([number for row in LONG for number in row], self.numbers(".numbers"))
        self.browser.refresh()
        self.assertEqual(HOSTILE, self.title())  # also as an address
        self.all("nav li a")[1].click()
        self.wait(lambda: self.title() == "Twin")
        self.assertEqual("#2", self.browser.execute_script("return location.hash"))  # two have the name
        self.assertEqual([HOSTILE, "9 (missing)"], self.texts(".composition th[scope=row]"))

    def test_the_page_cannot_ask_for_anything(self):
        self.open("sample")
        blocked = self.browser.execute_async_script("""
            const done = arguments[0], blocked = [];
            document.addEventListener("securitypolicyviolation", (event) => {
                blocked.push(event.effectiveDirective);
                if (blocked.length === 4) done(blocked.sort());
            });
            new Image().src = "http://127.0.0.1:9/image";
            fetch("http://127.0.0.1:9/data").catch(() => {});
            const script = document.createElement("script");
            script.textContent = "document.title = 'taken'";
            document.body.append(script);
            document.body.setAttribute("style", "color: red");""")
        self.assertEqual(["connect-src", "img-src", "script-src-elem", "style-src-attr"], blocked)
        self.assertNotEqual("taken", self.browser.title)
        for kind in ("browser", "performance"):
            self.browser.get_log(kind)  # tells of these

    def test_rows_left_out_are_told(self):
        self.pages["cut"] = self.make("cut", self.scratch / "odd", "--rows", 999, "--lang", "ru")
        self.assertIn("qmdb: tables of more than 999 rows are left out: 1, with 1000 rows together\n",
                      self.pages["cut"]["messages"])
        self.open("cut", "1")
        self.assertIn("1000", self.texts("main .notice")[0])
        self.assertEqual("ru", self.find("html").get_attribute("lang"))


if __name__ == "__main__":
    unittest.main()
