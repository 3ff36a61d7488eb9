"""Small tables beside a database, as the command reads them."""

from __future__ import annotations

from pgmdev._values import WHITE_SPACE


def read_csv_lines(path: str) -> tuple[list[str], list[list[str]]]:
    """The names of the columns, and the lines that have as many cells; nothing where there is no such file."""
    try:
        with open(path, encoding="utf-8", errors="surrogateescape", newline="\n") as file:
            lines = [line.rstrip("\r\n") for line in file]
    except FileNotFoundError:
        return [], []
    rows = [[cell.strip(WHITE_SPACE) for cell in line.split(",")] for line in lines if line.strip(WHITE_SPACE)]
    names = rows[0] if rows else []
    return names, [row for row in rows[1:] if len(row) == len(names)]
