"""Serial flash: which one answered an identification read, and how it must be driven."""

from __future__ import annotations

import errno
import logging
import os
from collections.abc import Iterator, Sequence
from dataclasses import dataclass
from typing import overload

from pgmdev import _pgmdev, settings
from pgmdev._evidence import Support
from pgmdev._identification import (
    Ambiguity,
    Candidate,
    Chip,
    ComparedByte,
    Contradiction,
    Difference,
    Identification,
    Oddity,
    Risk,
    Standing,
    identification,
)
from pgmdev._sfdp import (
    DerivedRecord,
    Duration,
    EraseType,
    FastRead,
    FourByteInstructions,
    MapCommand,
    ParameterHeader,
    QuadEnable,
    Region,
    SectorMap,
    Sfdp,
    SfdpRefusedError,
    sfdp,
)
from pgmdev._user_flash import USER_FLASH_KEY, Implausible, UserFlash, decode, encode, implausible
from pgmdev._values import Once, Table, Value, bytes_of, name_of, path_bytes, path_text, pattern_of, upper
from pgmdev.records import Flash

__all__ = [
    "USER_FLASH_KEY",
    "Alias",
    "Ambiguity",
    "Candidate",
    "Chip",
    "ComparedByte",
    "Contradiction",
    "Database",
    "DerivedRecord",
    "Difference",
    "Duration",
    "EraseType",
    "FastRead",
    "Flash",
    "FourByteInstructions",
    "Identification",
    "Implausible",
    "MapCommand",
    "Oddity",
    "ParameterHeader",
    "QuadEnable",
    "Region",
    "Risk",
    "SectorMap",
    "Sfdp",
    "SfdpRefusedError",
    "Shown",
    "Standing",
    "Support",
    "UserFlash",
    "decode",
    "default",
    "encode",
    "find",
    "identify",
    "implausible",
    "load",
    "sfdp",
    "show",
    "suggest",
]

_log = logging.getLogger("pgmdev")


@dataclass(frozen=True, slots=True)
class Alias(Value):
    """A name that shares the record of another chip."""

    name: str
    device_name: str
    reason: str


@dataclass(frozen=True, slots=True)
class Shown(Value):
    """The record of a name."""

    index: int
    record: Flash
    alias: Alias | None = None
    """The further name that was asked for; None: it is the record's own."""
    evidence: tuple[Support, ...] = ()
    """What supports each group of members, where the database tells it."""


def _list_beside(place: str, list: str) -> bytes:
    """What stands beside a database; nothing where there is no such list. Pipes are refused: nobody may ever write them."""
    path = f"{place}.{list}"
    if os.path.exists(path) and not os.path.isfile(path) and not os.path.isdir(path):
        raise OSError(errno.EINVAL, "it is no regular file", path)
    try:
        with open(path, "rb") as file:
            return file.read()
    except FileNotFoundError:
        return b""


def _bytes_of_text(response: str) -> bytes:
    given = _pgmdev.bytes_of_response(" ".join(response.split()))
    if given is None:
        raise ValueError(f"{response[:40]!r} is not an identification response: expected pairs of hexadecimal digits")
    return given


class Database(Sequence[Flash]):
    """The records of a database, in its order: the user's own flash first, without rows whose switch is off."""

    def __init__(self, path: str | os.PathLike[str]) -> None:
        self.path = path_text(path)
        self._database = _pgmdev.FlashDatabase(path_bytes(path))
        self._place = os.path.abspath(self.path)  # for what is read later, whatever the current directory is then
        self.records = Table((Flash(*values) for values in self._database.records()), Flash)
        self._by_name: dict[str, int] = {}
        for index, record in enumerate(self.records):
            if record.default_dev:
                self._by_name.setdefault(upper(record.device_name), index)
        self._alias_list = _pgmdev.FlashAliases(_list_beside(self._place, "aliases.csv"))
        self._aliases: dict[str, Alias] = {}
        for cells in self._alias_list.all():
            self._aliases.setdefault(upper(cells[0]), Alias(*cells))
        self._evidence = Once(lambda: _pgmdev.FlashEvidence(_list_beside(self._place, "sources.csv")))
        for fault in self._database.notes_faults():
            _log.warning("%s", fault)

    @overload
    def __getitem__(self, index: int) -> Flash: ...
    @overload
    def __getitem__(self, index: slice) -> Table[Flash]: ...
    def __getitem__(self, index: int | slice) -> Flash | Table[Flash]:
        return self.records[index]

    def __len__(self) -> int:
        return len(self.records)

    def __iter__(self) -> Iterator[Flash]:
        return iter(self.records)

    def __repr__(self) -> str:
        return f"<{len(self)} flash records of {self.path}>"

    def __reduce__(self) -> tuple[type[Database], tuple[str]]:
        """Another process loads it anew."""
        return type(self), (self._place,)

    def show(self, name: str) -> Shown | None:
        """The default record of a device name, in any case, which may be a further name; None: there is none."""
        alias = None
        index = self._by_name.get(name_of(name))
        if index is None:
            alias = self._aliases.get(name_of(name))
            index = self._by_name.get(upper(alias.device_name)) if alias else None
        if index is None:
            return None
        record = self.records[index]
        evidence = self._evidence().of(self._database, index)
        return Shown(index, record, alias, tuple(Support(group, words, tuple(keys)) for group, words, keys in evidence))

    def suggest(self, name: str) -> list[str]:
        """What may have been meant by a name that `show` does not know, further names too: first those that begin with it,
        then those that differ from it by few characters, then those that it begins with. Eight at most."""
        return self._alias_list.suggestions(self._database, name_of(name))

    def find(self, pattern: str = "*", *, maker: str = "*", voltage: str = "*") -> Table[Flash]:
        """The records whose names, makers and voltages fit the patterns, in any case: `*` stands for any characters, `?`
        for any one."""
        wanted = pattern_of(pattern), pattern_of(maker), pattern_of(voltage)

        def fits(record: Flash) -> bool:
            texts = record.device_name, record.manufacturer_name, record.asc_voltage
            return all(fits_wanted(text) for fits_wanted, text in zip(wanted, texts))

        return Table((record for record in self.records if fits(record)), Flash)

    def identify(self, response: bytes | str, *, silicon_id: bool = False) -> Identification:
        """Which flash answered: `response` is what it sent, as bytes or as text ("EF4017", "EF:40:17", "0xEF 0x40
        0x17"), with `silicon_id` a one-byte electronic signature."""
        given = _bytes_of_text(response) if isinstance(response, str) else bytes_of(response)
        if not 0 < len(given) <= 256:
            raise ValueError(f"a response has 1 to 256 bytes, not {len(given)}")
        values = self._database.identify(given, silicon_id)
        return identification(given, silicon_id, values, self.records, self._by_name)


default = Once(lambda: Database(settings.directories()["db_dir"] + "/programmer/pgm_flash.pcf"))
"""The database of the device-database directory: loaded when it is first asked for."""
settings.depends_on_settings(default)


def load(path: str | os.PathLike[str] | None = None) -> Database:
    """Loads a database; without a path, the default one, which is loaded once. One that is missing or damaged raises
    InternalError."""
    return default() if path is None else Database(path)


def identify(response: bytes | str, *, silicon_id: bool = False) -> Identification:
    """Which flash of the default database answered."""
    return default().identify(response, silicon_id=silicon_id)


def find(pattern: str = "*", *, maker: str = "*", voltage: str = "*") -> Table[Flash]:
    """The records of the default database whose names, makers and voltages fit the patterns."""
    return default().find(pattern, maker=maker, voltage=voltage)


def show(name: str) -> Shown | None:
    """The default record of a device name in the default database; None: there is none."""
    return default().show(name)


def suggest(name: str) -> list[str]:
    """What may have been meant by a name that is not in the default database: see Database.suggest."""
    return default().suggest(name)
