#!/usr/bin/env python3
"""Merges facts that public sources state of serial flash chips into the table.

    tools/flash_facts/merge.py [--write] [--only KIND,...] FACTS.csv...

says what would become of each fact: a new row, a row that only its name reaches, an alias, a change (a longer time), a
conflict (the table is kept), or left out. Nothing is written without --write. docs/adding-a-flash-chip.md explains the
columns and the decisions; rules.py and sources.py hold what the facts do not say."""

import argparse
import csv
import io
import pathlib
import sys

from decide import Merge
from evidence import Evidence
from facts import FactsError, read_facts
from flash_table import Table
from sources import key_of

KINDS = ["row", "by name", "alias", "change", "conflict", "left out"]


class Files:
    """The files of the table: read at once, written at once."""

    NAMES = ["pgm_flash.csv", "aliases.csv", "sources.csv", "left_out.csv"]

    def __init__(self, directory):
        self.paths = [directory / name for name in self.NAMES]
        table, *beside = self.paths
        self.table = Table(table.read_text(encoding="utf-8"))
        aliases, sources, left_out = [path.read_text(encoding="utf-8") if path.exists() else "" for path in beside]
        self.evidence = Evidence(sources)
        self.aliases = {line["alias"]: (line["device_name"], line["reason"]) for line in lines_of(aliases)}
        self.left_out = {(line["device_name"], line["identification"]): line["reason"] for line in lines_of(left_out)}

    def write(self):
        aliases = [[alias, name, reason] for alias, (name, reason) in sorted(self.aliases.items())]
        left_out = [[*chip, reason] for chip, reason in sorted(self.left_out.items())]
        texts = [
            self.table.text(),
            csv_text(["alias", "device_name", "reason"], aliases),
            self.evidence.text(self.table),
            csv_text(["device_name", "identification", "reason"], left_out),
        ]
        for path, text in zip(self.paths, texts):
            path.write_text(text, encoding="utf-8", newline="\n")


def lines_of(text):
    return csv.DictReader(io.StringIO(text))


def csv_text(columns, rows):
    out = io.StringIO()
    csv.writer(out, lineterminator="\n").writerows([columns] + rows)
    return out.getvalue()


def kinds_of(text):
    kinds = text.split(",")
    for kind in kinds:
        if kind not in KINDS:
            raise argparse.ArgumentTypeError("there is no kind %s; the kinds are %s" % (kind, ", ".join(KINDS)))
    return kinds


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    default = pathlib.Path(__file__).resolve().parents[2] / "data" / "flash"
    parser.add_argument("facts", nargs="+", metavar="FACTS.csv")
    parser.add_argument("--directory", type=pathlib.Path, default=default, help="of table, aliases and sources")
    parser.add_argument("--write", action="store_true", help="change the files, not only say how")
    parser.add_argument("--only", type=kinds_of, default=KINDS, help="the kinds to list")
    given = parser.parse_args()

    try:
        files = Files(given.directory)
        merge = Merge(files.table, files.aliases, files.evidence, files.left_out)
        for path in given.facts:
            for fact in read_facts(path):
                for source in fact.sources:
                    if key_of(source) is None:
                        raise FactsError("%s: the source \"%s\" is not in sources.py" % (fact.place, source))
                merge.take(fact)
    except (FactsError, OSError) as error:
        print("merge.py: %s" % error, file=sys.stderr)
        return 1

    for kind, text in merge.events:
        if kind in given.only:
            print("%-9s %s" % (kind, text))
    counts = ["%d %s" % (sum(1 for k, _ in merge.events if k == kind), kind) for kind in KINDS]
    print("%s; %s" % (", ".join(counts), "written" if given.write else "nothing written"))
    if given.write:
        files.write()
    return 0


if __name__ == "__main__":
    sys.exit(main())
