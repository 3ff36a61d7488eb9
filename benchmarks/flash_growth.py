#!/usr/bin/python3
"""How the command and its page grow with the flash table: a row of docs/scale.md for each number of rows.

    benchmarks/flash_growth.py COMMAND [ROWS...]

Times are those of the processor, user and system, so that what else runs counts little. The page is opened in the
browser that the tests use; without it (python3-selenium, chromium) its columns are empty.
"""

import csv
import pathlib
import random
import resource
import subprocess
import sys
import tempfile

import documents

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tests" / "page"))
ROWS = (1000, 10000, 50000)
QUESTIONS = 1000
LOADS = 5  # the best of them: the others waited for something else
PROFILES = "programmer/pgm_dev_info.pcf"
HEADINGS = ("rows", "`flash check`", "`flash compile`", "load, identify one", "each further one", "`page`", "its size",
            "first answer", "an identification", "a search")


def spent(arguments, text=None):
    """Seconds of the processor that a process takes."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    result = subprocess.run(list(map(str, arguments)), input=text, capture_output=True, text=True, check=False)
    if result.returncode not in (0, 1):
        raise RuntimeError(result.stderr[-1000:])
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def responses(table):
    """Those of some rows, over all of the table."""
    rows = [[cell.strip() for cell in line] for line in csv.reader(table.read_text().splitlines()[8:])]
    chosen = random.Random(1).choices(rows, k=QUESTIONS)
    return [f"{row[7][2:]}{row[5][2:] if row[6] == '1' else '00'}{row[3][2:]}{row[5][2:] if row[6] == '3' else ''}"
            for row in chosen]


def page_times(file):
    """Milliseconds from the beginning to the first answer, for an identification, and for a search."""
    try:
        from browser import Page, browser
    except ImportError:
        return ["", "", ""]
    driver = browser()
    try:
        page = Page(driver, "")
        ready = []
        for _ in range(LOADS):
            page.load(file)
            ready.append(page.ask("performance.getEntriesByName('ready')[0].startTime"))
        took = "(() => {{ const begin = performance.now(); {}; return performance.now() - begin; }})()"
        identified = page.ask(took.format("for (let i = 10; i < 30; ++i) { tessary.identify('EF40' + i); }")) / 20
        search = ("const box = document.getElementById('search'); box.value = '{}';"
                  " box.dispatchEvent(new Event('input'))")
        page.ask(took.format(search.format("a")))  # makes the texts that are searched
        searched = page.ask(took.format(search.format("64 mbit 1.8v")))
        return [f"{min(ready):.0f} ms", f"{identified:.1f} ms", f"{searched:.0f} ms"]
    finally:
        driver.quit()


def measure(command, rows, directory):
    subprocess.run([HERE / "generate_flash_table.py", str(rows), directory], check=True)
    table, database = directory / "pgm_flash.csv", directory / "programmer" / "pgm_flash.pcf"
    database.parent.mkdir()
    shipped = pathlib.Path(command).resolve().parent.parent / "share" / "tessary" / "devices"
    (directory / PROFILES).write_bytes((shipped / PROFILES).read_bytes())
    check = spent([command, "flash", "check", table])
    compiled = spent([command, "flash", "compile", table, database])
    here = [command, "--db-dir", directory]
    asked = responses(table)
    one = spent([*here, "flash", "identify", asked[0]])
    many = spent([*here, "--json", "flash", "identify", "-"], "\n".join(asked) + "\n")
    page = spent([*here, "page", directory / "page"])
    file = directory / "page" / "index.html"
    return [f"{rows:,}", f"{check:.2f} s", f"{compiled:.2f} s", f"{one * 1000:.0f} ms",
            f"{(many - one) / (QUESTIONS - 1) * 1000:.2f} ms", f"{page:.1f} s", f"{file.stat().st_size / 1e6:.1f} MB",
            *page_times(file)]


def growth_table(command, row_counts=ROWS):
    lines = []
    for rows in row_counts:
        with tempfile.TemporaryDirectory() as scratch:
            lines.append(measure(command, rows, pathlib.Path(scratch)))
    return documents.table(HEADINGS, ["--:"] * len(HEADINGS), lines)


if __name__ == "__main__":
    print(growth_table(sys.argv[1], map(int, sys.argv[2:] or ROWS)), end="")
