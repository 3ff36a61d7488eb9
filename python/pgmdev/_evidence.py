"""What supports the records of a flash database: for each group of members a class of evidence, and the sources."""

from __future__ import annotations

from dataclasses import dataclass

from pgmdev._csv_lines import read_csv_lines
from pgmdev._values import Value
from pgmdev.records import Flash

CLASSES = {
    "datasheet": "datasheet maximum",
    "sfdp": "chip's own SFDP",
    "two": "two independent public sources",
    "one": "one public source",
    "family": "family rule",
}
NOT_COMPARED = 255


@dataclass(frozen=True, slots=True)
class Support(Value):
    """The evidence of one group of members."""

    group: str
    """Such as "times"."""
    evidence: str
    """The class, in words."""
    sources: tuple[str, ...]


class Evidence:
    """The list beside a database; empty where there is none."""

    def __init__(self, path: str) -> None:
        names, lines = read_csv_lines(path)
        self._groups = names[2:]
        self._cells = {(cells[0], cells[1]): cells[2:] for cells in lines if len(cells) > 2}

    def of(self, record: Flash) -> tuple[Support, ...]:
        cells = self._cells.get(_key(record), [])
        return tuple(_support(group, cell) for group, cell in zip(self._groups, cells))


def _key(record: Flash) -> tuple[str, str]:
    compared = ["silicon"] if record.silicon_id else []
    for value, position in (
        (record.memory_id, record.memory_id_index),
        (record.memory_type, record.memory_type_index),
        (record.mfc_id, record.mfc_id_index),
    ):
        if position != NOT_COMPARED:
            compared.append(f"{value:02X}@{position}")
    return record.device_name, " ".join(compared)


def _support(group: str, cell: str) -> Support:
    word, _, sources = cell.partition(":")
    return Support(group, CLASSES.get(word, ""), tuple(sources.split("+")) if sources else ())
