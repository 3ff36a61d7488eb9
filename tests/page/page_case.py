"""What all tests of the page share: one session of the browser, one page, one command."""

import pathlib
import tempfile
import time
import unittest

from browser import Command, Page, browser

ROOT = pathlib.Path(__file__).resolve().parents[2]


def without(answer, *keys):
    return {key: value for key, value in answer.items() if key not in keys}


class PageTest(unittest.TestCase):
    """Begins with the page as it is when it is opened; tests that only ask it for answers share it."""

    asks_only = False

    @staticmethod
    def start(program, node_modules, screenshots):
        """Before the first test of all."""
        axe = node_modules / "axe-core" / "axe.min.js"
        if not axe.is_file():
            raise FileNotFoundError(f"{axe}: ./test fetches it, or `npm ci` with tests/page/package-lock.json")
        screenshots.mkdir(parents=True, exist_ok=True)
        PageTest.program = program
        PageTest.screenshots = screenshots
        PageTest.scratch = tempfile.TemporaryDirectory()
        PageTest.command = Command(program)
        PageTest.file = PageTest.command.page(pathlib.Path(PageTest.scratch.name) / "page")
        PageTest.driver = browser()
        PageTest.page = Page(PageTest.driver, axe.read_text(encoding="utf-8"))

    @staticmethod
    def stop():
        PageTest.driver.quit()
        PageTest.scratch.cleanup()

    @classmethod
    def open_page(cls):
        cls.page.look()
        cls.page.load(cls.file)

    @classmethod
    def setUpClass(cls):
        if cls.asks_only:
            cls.open_page()

    def setUp(self):
        self.started = time.monotonic()
        if not self.asks_only:
            self.open_page()

    def tearDown(self):
        self.assertEqual(self.page.complaints(), [])
        print(f"{time.monotonic() - self.started:6.2f} s  {self.id().split('.')[-1]}")

    def search(self, text):
        box = self.page.find("#search")
        box.clear()
        box.send_keys(text)

    def chips(self):
        return self.page.texts("#chips-table tbody th a")
