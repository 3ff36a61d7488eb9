"""sources.csv: for each row of the table and each group of its members, the class of evidence and the sources."""

import csv
import io

from sources import CLASSES, GROUPS, class_of, key_of

COLUMNS = ["device_name", "compared"] + list(GROUPS)


class Evidence:
    def __init__(self, text):
        self.keys = {}  # (device name, compared bytes) -> group -> list of keys
        for line in csv.DictReader(io.StringIO(text)):
            place = (line["device_name"], line["compared"])
            self.keys[place] = {group: split_cell(line[group]) for group in GROUPS}

    @staticmethod
    def place(row):
        return row.name, row.recognition()

    def of(self, row):
        return self.keys.setdefault(self.place(row), {group: [] for group in GROUPS})

    def add(self, row, group, source):
        """Notes that a source states what the row has; without effect if the source does not state such members."""
        line = key_of(source)
        if line is None:
            raise KeyError(source)
        keys = self.of(row)[group]
        if group in line[3].split() and line[0] not in keys:
            keys.append(line[0])
            return True
        return False

    def drop(self, row, group):
        self.of(row)[group].clear()

    def text(self, table):
        lines = [",".join(COLUMNS)]
        for row in table.rows:
            groups = self.of(row)
            cells = ["%s:%s" % (class_of(groups[g]), "+".join(groups[g])) if groups[g] else "family" for g in GROUPS]
            lines.append(",".join([row.name, row.recognition()] + cells))
        return "\n".join(lines) + "\n"

    def shares(self, table):
        """How many rows have each class, by group."""
        shares = {group: dict.fromkeys(CLASSES, 0) for group in GROUPS}
        for row in table.rows:
            for group, keys in self.of(row).items():
                shares[group][class_of(keys)] += 1
        return shares


def split_cell(cell):
    _, _, keys = cell.partition(":")
    return keys.split("+") if keys else []
