"""The table of serial flash chips: its rows as text cells, the walk that finds the row that answers, and writing it."""

import re

HEADER_LINES = 8
NAMES_LINE = 1


class Row(dict):
    """Cells by column name. What it compares does not change once it was asked for."""

    pairs = None

    @property
    def name(self):
        return self["device_name"]

    def number(self, column):
        return int(self[column], 0)

    def compared(self):
        """What the walk compares: (byte, position), capacity, type and maker; a type at 255 is not compared."""
        if self.pairs is None:
            columns = ("memory_id", "memory_type", "mfc_id")
            not_at_255 = ("memory_type", "mfc_id") if self.is_silicon() else ("memory_type",)
            pairs = [(column, (self.number(column), self.number(column + "_index"))) for column in columns]
            self.pairs = [pair for column, pair in pairs if pair[1] != 255 or column not in not_at_255]
        return self.pairs

    def is_silicon(self):
        return self["silicon_id"] == "TRUE"

    def recognition(self):
        """The compared bytes as README and sources.csv spell them: 18@2 BA@1 44@4."""
        text = " ".join("%02X@%d" % pair for pair in self.compared())
        return "silicon " + text if self.is_silicon() else text

    def compares_maker(self):
        """Whether the first byte of the response, or the one behind a continuation code, is among the compared."""
        positions = {position for _, position in self.compared()}
        return self.is_silicon() or 0 in positions

    def answers(self, response):
        """Whether the row agrees with a response; bytes that the chip did not send count as zero."""
        if self.is_silicon():
            return False
        return all(byte == (response[at] if at < len(response) else 0) for byte, at in self.compared())


class Table:
    """Lines of the source: header, then rows and blank lines between families and makers."""

    def __init__(self, text):
        lines = text.split("\n")
        filled = 0
        self.header = []
        self.entries = []  # a row, or None for a blank line
        self.columns = []
        for line in lines:
            if filled < HEADER_LINES:
                self.header.append(line)
                if line.strip():
                    if filled == NAMES_LINE:
                        self.columns = cells_of(line)
                        self.widths = column_widths(line)
                    filled += 1
                continue
            self.entries.append(Row(zip(self.columns, cells_of(line))) if line.strip() else None)
        while self.entries and self.entries[-1] is None:
            self.entries.pop()

    @property
    def rows(self):
        return [entry for entry in self.entries if entry is not None]

    def by_name(self, name):
        """The default row of a name, in any case."""
        for row in self.rows:
            if row.name.upper() == name.upper() and row["default_dev"] == "TRUE":
                return row
        return None

    def rows_named(self, name):
        return [row for row in self.rows if row.name.upper() == name.upper()]

    def answer(self, response):
        """The first enabled row that agrees; rows behind a switch are off unless somebody sets it."""
        for row in self.rows:
            if row["ini"] == "NONE" and row.answers(response):
                return row
        return None

    def insert_after(self, row, new):
        self.entries.insert(self.position(row) + 1, new)

    def insert_before(self, row, new):
        self.entries.insert(self.position(row), new)

    def position(self, row):
        return next(i for i, entry in enumerate(self.entries) if entry is row)

    def blocks(self):
        """The families: runs of rows without a blank line."""
        blocks, block = [], []
        for entry in self.entries + [None]:
            if entry is not None:
                block.append(entry)
            elif block:
                blocks.append(block)
                block = []
        return blocks

    def text(self):
        lines = self.header + [self.line(entry) if entry is not None else "" for entry in self.entries]
        return "\n".join(lines) + "\n"

    def line(self, row):
        cells = [row[column] for column in self.columns]
        padded = [(cell + ",").ljust(width) for cell, width in zip(cells, self.widths)]
        return "".join(padded[:-1]) + cells[-1]


def cells_of(line):
    return re.split(r"[\s,]+", line.strip())


def column_widths(names_line):
    """Where the columns start, taken from the line with their names, as widths with comma and blanks."""
    return [len(cell) for cell in re.findall(r"[^,]+,?\s*", names_line)]
