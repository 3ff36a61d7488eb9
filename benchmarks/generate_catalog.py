#!/usr/bin/env python3
"""Writes a device catalog of any number of names, to measure how things grow.

    benchmarks/generate_catalog.py NAMES DIRECTORY

The rules are those of the shipped catalog, again and again: further rounds have programming names of their own, and all
parts have numbers of their own. Devices and families, whose numbers are limited, stay as they are, so that each device has
more parts. For fewer names than the shipped catalog has, rules are left out evenly. As in the shipped catalog about one
part in five has an ordering code. The same number gives the same catalog.
"""

import pathlib
import shutil
import sys

SHIPPED = pathlib.Path(__file__).resolve().parent.parent / "data" / "catalog"
COPIED = ("families.txt", "packages.txt", "grades.txt")
NO_NUMBER = "-"
ENTRIES_PER_PART = 1.16  # of the list of ordering codes, as shipped


def alternatives(cell):
    return cell.count(",") + 1


def names_of(cells):
    """How many names a line with parts stands for. Patterns have braces at their ends, or none."""
    return alternatives(cells[2]) * alternatives(cells[3]) * alternatives(cells[4])


def of_round(pattern, number):
    """The pattern with names of that round's own: no shipped name has an underscore."""
    stem, brace, rest = pattern.partition("{")
    return f"{stem}_{number}{brace}{rest}" if number else pattern


def coded_names(cells):
    """Those parts of a line that have ordering codes: the first name in the first package, in all grades."""
    stem, _, endings = cells[2].partition("{")
    package = cells[3].split(",")[0]
    silent = [code for code in [package, *cells[4].split(",")] if code.startswith("(")]
    return f"{stem}{endings.rstrip('}').split(',')[0]}{package}{{{cells[4]}}}" if not silent else ""


class Writer:
    """The lines of two files, with numbers given in order."""

    def __init__(self, wanted):
        self.wanted, self.names, self.next_number = wanted, 0, 1
        self.devices, self.codes = [], []

    def add_parts(self, cells, round_number):
        if self.names >= self.wanted:
            return
        cells = [cells[0], cells[1], of_round(cells[2], round_number), *cells[3:]]
        if cells[1] != NO_NUMBER:
            cells[1] = str(self.next_number)
            self.next_number += names_of(cells)
            codes = coded_names(cells)
            if codes and len(self.devices) % 2:
                self.codes.append(f"{cells[1]} {codes}")
        self.names += names_of(cells)
        self.devices.append("  " + " ".join(cells))


def main():
    wanted, directory = int(sys.argv[1]), pathlib.Path(sys.argv[2])
    directory.mkdir(parents=True, exist_ok=True)
    for name in COPIED:
        shutil.copy(SHIPPED / name, directory)
    rows = [line.split("#")[0].split() for line in (SHIPPED / "devices.txt").read_text().splitlines()]
    rows = [cells for cells in rows if cells]
    shipped = sum(names_of(cells) for cells in rows if cells[0] == "parts")
    rounds = -(-wanted // shipped)
    writer = Writer(wanted)
    taken = 0.0
    for cells in rows:
        if cells[0] == "device":
            writer.devices.append(" ".join(cells))
        elif cells[0] == "parts":
            taken += wanted / shipped
            for round_number in range(rounds):
                if taken >= 1:
                    writer.add_parts(cells, round_number)
                    taken -= 1
    (directory / "devices.txt").write_text("\n".join(writer.devices) + "\n")
    entries = int(writer.next_number * ENTRIES_PER_PART)
    (directory / "ordering-codes.txt").write_text("\n".join([f"entries {entries}", *writer.codes]) + "\n")
    print(f"{writer.names} names, {writer.next_number - 1} parts")


if __name__ == "__main__":
    main()
