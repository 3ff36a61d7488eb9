#!/usr/bin/env python3
"""Writes a flash source table of any number of rows, with the lists beside it, to measure how things grow.

    benchmarks/generate_flash_table.py ROWS DIRECTORY

The rows are those of the shipped table, again and again, with names and identifications of their own: most compare
three bytes of their own, some the bytes of an earlier row (which they never win against), some a further byte. The same
number gives the same table.
"""

import pathlib
import random
import sys

SHIPPED = pathlib.Path(__file__).resolve().parent.parent / "data" / "flash"
HEADER_LINES = 8
NAME, MEMORY_ID, TYPE, TYPE_INDEX, MAKER, DEFAULT = 1, 3, 5, 6, 7, 10
SILICON_ID = 2


def cells_of(line):
    return [cell.strip() for cell in line.split(",") if cell.strip()]


def compared(cells):
    parts = [(cells[place], cells[place + 1]) for place in (MEMORY_ID, TYPE, MAKER)]
    return " ".join(f"{int(value, 16):02X}@{index}" for value, index in parts if index != "255")


def generated_row(template, number, chance, identifications):
    cells = list(template)
    cells[NAME] = f"GEN{number:06d}"
    cells[DEFAULT] = "TRUE"
    kind = chance.random()
    if identifications and kind < 0.05:  # as an earlier row answers
        cells[MEMORY_ID], cells[TYPE], cells[MAKER] = chance.choice(identifications)
    else:
        cells[MEMORY_ID], cells[TYPE], cells[MAKER] = (f"0x{chance.randint(1, 254):02X}" for _ in range(3))
        identifications.append((cells[MEMORY_ID], cells[TYPE], cells[MAKER]))
    cells[MEMORY_ID + 1], cells[MAKER + 1] = "2", "0"
    cells[TYPE_INDEX] = "3" if kind > 0.98 else "1"
    return cells


def main():
    rows, directory = int(sys.argv[1]), pathlib.Path(sys.argv[2])
    directory.mkdir(parents=True, exist_ok=True)
    lines = (SHIPPED / "pgm_flash.csv").read_text().splitlines()
    templates = [cells_of(line) for line in lines[HEADER_LINES:] if line.strip()]
    templates = [cells for cells in templates if cells[SILICON_ID] == "FALSE" and cells[11] == "NONE"]
    chance = random.Random(rows)
    identifications = []
    made = [generated_row(templates[number % len(templates)], number, chance, identifications)
            for number in range(rows)]
    table = lines[:HEADER_LINES] + [", ".join(cells) for cells in made]
    (directory / "pgm_flash.csv").write_text("\n".join(table) + "\n")
    evidence = ["device_name,compared,identification,geometry,voltage,opcodes,protection,times"]
    evidence += [f"{cells[NAME]},{compared(cells)},one:generated,family,family,family,family,family" for cells in made]
    (directory / "sources.csv").write_text("\n".join(evidence) + "\n")
    aliases = ["alias,device_name,reason"] + [f"ALSO{n:06d},{made[n][NAME]},ordering code" for n in range(0, rows, 2)]
    (directory / "aliases.csv").write_text("\n".join(aliases) + "\n")


if __name__ == "__main__":
    main()
