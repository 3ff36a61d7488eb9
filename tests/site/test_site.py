"""The site of the guides and the headers' comments: every link leads somewhere, and a real browser shows it from files.

    test_site.py SITE NODE_MODULES SCREENSHOTS
"""

import html.parser
import pathlib
import re
import sys
import unittest
import urllib.parse

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "page"))

from browser import DESKTOP, PHONE, Page, browser  # noqa: E402

FIRST, GUIDE, HEADER = "index.html", "docs/architecture.html", "reference/library/pgmdev_flash_manager.html"
PAGES = [FIRST, "README.html", GUIDE, HEADER, "search.html?q=erase"]
# With the rules of the accessibility checker that may tell something else there: in the dark nothing but the colours differs.
LOOKS = {"light": ((DESKTOP, "light"), None), "dark": ((DESKTOP, "dark"), ["color-contrast"]), "phone": ((PHONE, "light"), None)}
ADDRESS = re.compile(r"https?://[a-z0-9-]+(\.[a-z0-9-]+)+(:\d+)?(/[^\s<>\"]*)?")


class References(html.parser.HTMLParser):
    """What a page refers to, and which anchors it has."""

    def __init__(self, file):
        super().__init__()
        self.links, self.loaded, self.anchors = [], [], set()
        self.feed(file.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        self.anchors |= {attributes[key] for key in ("id", "name") if key in attributes}
        if tag == "a" and "href" in attributes:
            self.links.append(attributes["href"])
        elif tag == "link" and attributes.get("rel") in ("stylesheet", "shortcut icon"):
            self.loaded.append(attributes["href"])
        elif tag in ("script", "img", "iframe", "source") and "src" in attributes:
            self.loaded.append(attributes["src"])


def setUpModule():
    axe = pathlib.Path(sys.argv[2]) / "axe-core" / "axe.min.js"
    if not axe.is_file():
        raise FileNotFoundError(f"{axe}: ./test fetches it, or `npm ci` with tests/page/package-lock.json")
    SiteTest.site = pathlib.Path(sys.argv[1]).resolve()
    SiteTest.screenshots = pathlib.Path(sys.argv[3])
    SiteTest.screenshots.mkdir(parents=True, exist_ok=True)
    SiteTest.pages = {file: References(file) for file in SiteTest.site.rglob("*.html")}
    SiteTest.driver = browser()
    SiteTest.page = Page(SiteTest.driver, axe.read_text(encoding="utf-8"))


def tearDownModule():
    SiteTest.driver.quit()


class SiteTest(unittest.TestCase):
    """All tests share one session of the browser."""

    def open(self, address, *look):
        self.page.look(*look)
        self.driver.get(f"{self.site.as_uri()}/{address}")

    def found(self):
        """The titles that a search lists, once it has ended."""
        return self.driver.execute_async_script(
            """const done = arguments[0];
            const ended = () => document.querySelector(".search-summary, #search-results p.search-summary");
            const look = () => ended() && /finished|did not match/.test(document.body.innerText)
                ? done([...document.querySelectorAll("#search-results li a")].map((each) => each.innerText))
                : setTimeout(look, 20);
            look();""")


class Links(SiteTest):
    def test_every_guide_and_header_has_a_page(self):
        guides = [*ROOT.glob("*.md"), *ROOT.glob("docs/*.md"), *ROOT.glob("data/*/README.md")]
        expected = [guide.relative_to(ROOT).with_suffix(".html") for guide in guides]
        for place, headers in (("library", "h"), ("c", "c/include"), ("host", "host/h")):
            expected += [pathlib.Path("reference", place, header.stem + ".html") for header in ROOT.glob(f"{headers}/*.h")]
        self.assertGreater(len(expected), 50)
        self.assertEqual([page for page in expected if self.site / page not in self.pages], [])

    def test_every_link_within_the_site_leads_to_a_page_and_a_place_on_it(self):
        lost, followed = [], 0
        for file, references in self.pages.items():
            for link in references.links:
                path, anchor = urllib.parse.urldefrag(link)
                if urllib.parse.urlsplit(link).scheme:
                    continue
                target = (file.parent / urllib.parse.unquote(path)).resolve() if path else file
                followed += 1
                if target not in self.pages and (target.suffix == ".html" or not target.is_file()):
                    lost.append(f"{file.name}: {link}")
                elif anchor and target in self.pages and urllib.parse.unquote(anchor) not in self.pages[target].anchors:
                    lost.append(f"{file.name}: {link}")
        self.assertGreater(followed, 1000)
        self.assertEqual(lost, [])

    def test_addresses_elsewhere_have_the_form_of_one(self):
        addresses = {link for page in self.pages.values() for link in page.links if urllib.parse.urlsplit(link).scheme}
        self.assertEqual([address for address in addresses if not ADDRESS.fullmatch(address)], [])

    def test_nothing_is_loaded_from_elsewhere(self):
        for file, references in self.pages.items():
            for address in references.loaded:
                target = file.parent / urllib.parse.urlsplit(address).path
                self.assertTrue(not urllib.parse.urlsplit(address).netloc and target.is_file(), f"{file}: {address}")
        for sheet in self.site.rglob("*.css"):
            self.assertNotRegex(sheet.read_text(encoding="utf-8"), r"@import|url\(['\"]?(https?:|/)", sheet)

    def test_it_tells_nothing_of_where_it_was_built(self):
        for file in self.site.rglob("*"):
            self.assertTrue(file.is_dir() or str(ROOT).encode() not in file.read_bytes(), file)


class InABrowser(SiteTest):
    def tearDown(self):
        self.assertEqual(self.page.complaints(), [])

    def test_everybody_can_use_it(self):
        for address in PAGES:
            for name, (look, rules) in LOOKS.items():
                self.open(address, *look)
                self.assertEqual(self.page.violations(rules), [], f"{address}, {name}")
                self.assertLessEqual(self.page.ask("document.documentElement.scrollWidth"), look[0][0], address)
                picture = f"{pathlib.Path(address.split('?')[0]).stem}-{name}.png"
                self.assertTrue(self.driver.save_screenshot(str(self.screenshots / picture)))

    def test_it_is_dark_where_the_system_is_and_by_a_button(self):
        background = lambda: self.page.ask("getComputedStyle(document.body).backgroundColor")  # noqa: E731
        self.open(GUIDE, DESKTOP, "light")
        light = background()
        self.open(GUIDE, DESKTOP, "dark")
        dark = background()
        self.assertNotEqual(dark, light)
        self.driver.execute_script("document.querySelector('.theme-toggle-content .theme-toggle').click()")
        self.assertEqual(background(), light)
        self.assertIn("Changed to light mode.", self.page.complaints()[0])
        self.driver.execute_script("localStorage.clear()")

    def test_a_guide_has_its_flowcharts(self):
        self.open(GUIDE)
        charts = self.page.ask("[...document.querySelectorAll('.flowchart')].map((each) => [each.ariaLabel, "
                               "each.querySelectorAll('.node').length])")
        written = re.findall(r"```mermaid\n(.*?)```", (ROOT / "docs" / "architecture.md").read_text(encoding="utf-8"), re.DOTALL)
        names = [set(re.findall(r"^ +(\w+)|(\w+)(?:\[[^]]*\])?$", text, re.MULTILINE)) - {("", "TD")} for text in written]
        self.assertEqual([nodes for _, nodes in charts], [len({"".join(name) for name in each}) for each in names])
        self.assertIn("tools/pgmdev: the command to pgm/pgmdev: the library", charts[0][0])

    def test_a_header_shows_its_classes_and_comments_once(self):
        self.open(HEADER)
        text = self.page.find("article").text
        self.assertIn("flash_id_database_mapping(bool silicon_id", text)
        self.assertIn("The first matching record wins.", text)
        self.assertNotIn("SHARES_THE_COMMENT", text)
        shared = self.page.ask(
            "[...document.querySelector('[id$=sfl_get_bulk_erase_timeE5DWORD]').parentElement.querySelectorAll('dt')].length")
        self.assertEqual(shared, 33)  # the members of a record, under one comment

    def test_the_search_finds(self):
        for word, page in (("erase", "A flash of your own"), ("lintian", "Contributing"),
                           ("get_opn_enum", "PGMDEV_MGR::get_opn_enum")):
            self.open(f"search.html?q={word}")
            self.assertTrue(any(page in title for title in self.found()), f"{word}: {self.found()}")
        self.open("search.html?q=nosuchwordatall")
        self.assertEqual(self.found(), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=0)
