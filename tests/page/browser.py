"""A page of the command in a real browser without a window, and what tests ask of it."""

import json
import os
import pathlib
import subprocess
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.ui import WebDriverWait

DESKTOP = (1200, 900)
PHONE = (390, 844)
TIMEOUT_S = 120


class Browser(webdriver.Chrome):
    """With a home of its own, so that nothing stays in the user's, nor beside it in the directory for temporary files."""

    def __init__(self, options):
        self.home = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        places = dict.fromkeys(("HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"), self.home.name)
        super().__init__(service=Service("/usr/bin/chromedriver", env={**os.environ, **places}), options=options)

    def quit(self):
        super().quit()
        self.home.cleanup()


def browser():
    options = Options()
    # A test may run as root, where the browser's own sandbox does not start; it opens only files of the tests.
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--hide-scrollbars",
                     "--disable-ipc-flooding-protection"):  # which slows down whoever follows many links
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    driver = Browser(options)
    driver.set_script_timeout(TIMEOUT_S)
    return driver


class Command:
    """The command with one directory of databases."""

    def __init__(self, program, databases=None):
        self.start = [str(program)] + (["--db-dir", str(databases)] if databases else [])

    def run(self, *arguments, text=None):
        return subprocess.run([*self.start, *map(str, arguments)], input=text, capture_output=True, text=True,
                              check=False)

    def json(self, *arguments):
        return json.loads(self.run("--json", *arguments).stdout)

    def lines(self, *arguments, questions):
        """The answers to a batch."""
        output = self.run("--json", *arguments, "-", text="\n".join(questions) + "\n").stdout
        return [json.loads(line) for line in output.splitlines()]

    def page(self, directory):
        """Writes the page, and returns where it is."""
        answer = self.json("page", directory)
        return pathlib.Path(answer["files"][0]["path"])


class Page:
    """The page in the one session of the tests."""

    def __init__(self, driver, axe):
        self.driver = driver
        self.axe = axe

    def load(self, file):
        self.driver.get(file.resolve().as_uri())

    def open(self, address):
        """Goes to an address of the page, and waits until it is shown."""
        self.driver.execute_async_script(
            """const [address, done] = arguments;
            if (location.hash === address) { done(); return; }
            addEventListener("hashchange", () => done(), { once: true });
            location.hash = address;""", address)

    def ask(self, script, *arguments):
        """What an expression of the page's own language gives, as JSON has it."""
        return json.loads(self.driver.execute_script(f"return JSON.stringify({script})", *arguments))

    def wait_for(self, script):
        """Until an expression of the page's own language is true: the browser follows a link only after the key for it."""
        WebDriverWait(self.driver, TIMEOUT_S, poll_frequency=0.02).until(lambda _: self.ask(script), script)

    def find(self, selector):
        return self.driver.find_element("css selector", selector)

    def texts(self, selector):
        return self.ask("[...document.querySelectorAll(arguments[0])].map((each) => each.innerText)", selector)

    def look(self, size=DESKTOP, scheme="light", media=""):
        """A width, a colour scheme, a medium."""
        width, height = size
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": size == PHONE})
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "media": media, "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def violations(self, only=None):
        """What the accessibility checker finds in what is shown, by all rules or some: rule and place of each."""
        options = {"resultTypes": ["violations"], "preload": False}  # it would fetch style sheets
        if only:
            options["runOnly"] = {"type": "rule", "values": only}
        if not self.ask("window.axe !== undefined"):  # it is long
            self.driver.execute_script(self.axe)
        return self.driver.execute_async_script(
            """const [options, done] = arguments;
            axe.run(document, options).then(({ violations }) => done(violations.flatMap(
                ({ id, nodes }) => nodes.map((node) => `${id}: ${node.target} ${node.failureSummary}`))));""", options)

    def complaints(self):
        """What the browser itself has to say, such as of what the page's policy refuses."""
        return [entry["message"] for entry in self.driver.get_log("browser")]
