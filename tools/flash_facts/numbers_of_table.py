#!/usr/bin/env python3
"""The numbers of data/flash/README.md, computed from the files that it describes.

    tools/flash_facts/numbers_of_table.py [--write]

says whether the README has them, or, with --write, writes them there: between the two lines that mark the place."""

import argparse
import pathlib
import sys

from merge import Files
from sources import CLASSES, GROUPS, SOURCES

BEGIN = "<!-- computed by tools/flash_facts/numbers_of_table.py -->"
END = "<!-- end -->"


def own_response(row):
    response = bytearray(max(at for _, at in row.compared()) + 1)
    for byte, at in row.compared():
        response[at] = byte
    return bytes(response)


def beaten_rows(table):
    """Rows that only their name reaches: (row, the row that answers)."""
    beaten = []
    for row in table.rows:
        if not row.is_silicon() and row["ini"] == "NONE":
            answering = table.answer(own_response(row))
            if answering is not row and set(answering.compared()) <= set(row.compared()):
                beaten.append((row, answering))
    return beaten


def markdown_table(head, lines):
    rows = ["| %s |" % " | ".join(map(str, line)) for line in [head] + lines]
    return [rows[0], "|" + "---|" * len(head)] + rows[1:]


def block(files):
    table = files.table
    rows = table.rows
    identifications = {tuple(row.compared()) for row in rows if not row.is_silicon()}
    late = [row for row in rows if not row.compares_maker()]
    counts = [
        ("rows", len(rows)),
        ("chips with a row", len({row.name for row in rows})),
        ("further names, in `aliases.csv`", len(files.aliases)),
        ("makers", len({row["manufacturer_name"] for row in rows})),
        ("identifications: different bytes compared", len(identifications)),
        ("rows that leave out the maker", len(late)),
        ("rows that only their name reaches", len(beaten_rows(table))),
        ("listed chips that were not taken, in `left_out.csv`", len(files.left_out)),
    ]
    shares = files.evidence.shares(table)
    head = ["Evidence"] + list(GROUPS)
    lines = [[CLASSES[name]] + [shares[group][name] for group in GROUPS] for name in CLASSES]
    used = {key for groups in files.evidence.keys.values() for keys in groups.values() for key in keys}
    text = markdown_table(["", "Number"], [[name, number] for name, number in counts]) + [""]
    text += markdown_table(head, lines) + [""]
    text += markdown_table(["Key", "Source"], [["`%s`" % s[0], s[4]] for s in SOURCES if s[0] in used]) + [""]
    pairs = [[a.name, r.name, "`%s`" % a.recognition()] for r, a in beaten_rows(table)]
    text += markdown_table(["Answers", "Reached by name only", "Compared"], pairs)
    return "\n".join(text)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--write", action="store_true", help="write them into the README")
    default = pathlib.Path(__file__).resolve().parents[2] / "data" / "flash"
    parser.add_argument("--directory", type=pathlib.Path, default=default, help="of the table and its README")
    given = parser.parse_args()
    readme = given.directory / "README.md"
    text = readme.read_text(encoding="utf-8")
    before, begin, rest = text.partition(BEGIN)
    _, end, after = rest.partition(END)
    if not begin or not end:
        print("numbers_of_table.py: %s does not mark the place" % readme, file=sys.stderr)
        return 1
    right = before + BEGIN + "\n" + block(Files(given.directory)) + "\n" + END + after
    if given.write:
        readme.write_text(right, encoding="utf-8", newline="\n")
    elif text != right:
        print("numbers_of_table.py: %s has other numbers than its files: run with --write" % readme, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
