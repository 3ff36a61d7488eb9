"""Documents with parts that are written from measurements."""

import datetime
import pathlib
import platform
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent


def replace_part(document, part, text):
    """Puts the text between the marks of a part of a document below docs/."""
    path = ROOT / "docs" / document
    begin, end = f"<!-- measured: {part} -->\n", f"<!-- end of {part} -->\n"
    before, mark, rest = path.read_text().partition(begin)
    old, end_mark, after = rest.partition(end)
    if not mark or not end_mark:
        raise RuntimeError(f"{path}: has no part {part}")
    path.write_text(f"{before}{begin}{text}{end}{after}")


def write_plot(name, plot):
    directory = ROOT / "docs" / "performance"
    directory.mkdir(exist_ok=True)
    (directory / f"{name}.svg").write_text(plot)


def table(headings, alignments, rows):
    lines = [headings, alignments, *rows]
    return "".join(f"| {' | '.join(cells)} |\n" if cells is not alignments else f"|{'|'.join(cells)}|\n"
                   for cells in lines)


def where_and_when():
    """The machine, its load and the date, as a sentence."""
    processor = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())
    cores = len(re.findall(r"^processor", pathlib.Path("/proc/cpuinfo").read_text(), re.MULTILINE))
    name = re.search(r'PRETTY_NAME="(.*)"', pathlib.Path("/etc/os-release").read_text())
    load = pathlib.Path("/proc/loadavg").read_text().split()[0]
    date = datetime.date.today()
    return (f"Measured on {date.day} {date:%B %Y}: {cores} cores of {processor[1] if processor else platform.machine()}, "
            f"{name[1] if name else platform.system()}, load {load}.")
