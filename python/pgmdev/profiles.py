"""Programming profiles: which one governs a family, a device or a part."""

from __future__ import annotations

import operator
import os
from collections.abc import Callable, Iterator, Sequence
from dataclasses import dataclass
from typing import Literal, overload

from pgmdev import _pgmdev, settings
from pgmdev._values import Once, Table, Value, fits, name_of, path_bytes, path_text, upper
from pgmdev.records import Profile

__all__ = [
    "Database",
    "Found",
    "Profile",
    "Rule",
    "default",
    "for_device",
    "for_family",
    "for_part",
    "for_pcf",
    "load",
]

Rule = Literal["family", "device", "part", "pcf", "generic"]
"""What a profile was found by; "generic": it stands in for a family's missing one."""

KEYS = ("family", "pcf", "device", "part")


@dataclass(frozen=True, slots=True)
class Found(Value):
    """A profile, and why it is this one."""

    index: int
    rule: Rule
    record: Profile

    @property
    def key(self) -> str:
        """What the profile is keyed by: "family KESTREL"."""
        return key_of(self.record)


def key_of(record: Profile) -> str:
    """What a profile is keyed by."""
    keys = ((name, getattr(record, name)) for name in KEYS)
    return next((f"{name} {value}" for name, value in keys if value not in (None, "")), "none")


def _number(given: str | int, number_of: Callable[[str], int]) -> int:
    """The number of something that is given by name or number; 0 for nothing."""
    if hasattr(given, "__index__"):  # those of data frames, too, which are no int
        number = operator.index(given)
        return number if fits(number, 31) else 0
    return number_of(name_of(given))


class Database(Sequence[Profile]):
    """The profiles of a database, in its order."""

    def __init__(self, path: str | os.PathLike[str]) -> None:
        self.path = path_text(path)
        read = _pgmdev.profile_from_database(path_bytes(path))
        self.records = Table((Profile(*values) for values in read["records"]), Profile)
        self._families: list[int | None] = read["family_table"]
        self._devices: list[int | None] = read["device_table"]
        self._parts: list[int | None] = read["part_table"]

    @overload
    def __getitem__(self, index: int) -> Profile: ...
    @overload
    def __getitem__(self, index: slice) -> Table[Profile]: ...
    def __getitem__(self, index: int | slice) -> Profile | Table[Profile]:
        return self.records[index]

    def __len__(self) -> int:
        return len(self.records)

    def __iter__(self) -> Iterator[Profile]:
        return iter(self.records)

    def __repr__(self) -> str:
        return f"<{len(self)} profiles of {self.path}>"

    def _look_up(self, table: list[int | None], number: int, family: int) -> Found | None:
        index = table[number] if 0 < number < len(table) else None
        if index is None or index >= len(self.records):
            return None
        return Found(index, self._rule(self.records[index], family), self.records[index])

    @staticmethod
    def _rule(record: Profile, family: int) -> Rule:
        if record.part is not None:
            return "part"
        if record.device is not None:
            return "device"
        if record.pcf:
            return "pcf"
        return "family" if record.family in (_pgmdev.family_text(family), family) else "generic"

    def for_family(self, family: str | int) -> Found | None:
        """The profile that governs a family, given by name or number."""
        number = _number(family, _pgmdev.family_number)
        return self._look_up(self._families, number, number)

    def for_device(self, device: str | int) -> Found | None:
        """The profile that governs a device, given by name or number."""
        number = _number(device, _pgmdev.device_number)
        return self._look_up(self._devices, number, _pgmdev.family_of_device(number))

    def for_part(self, part: str | int) -> Found | None:
        """The profile that governs a part, given by name, further name or number."""
        number = _number(part, _pgmdev.part_number)
        family = _pgmdev.family_of_device(_pgmdev.device_of_part(number))
        return self._look_up(self._parts, number, family)

    def for_pcf(self, name: str) -> Found | None:
        """The profile keyed by that programmer-file part name, or else that of the family of its devices."""
        wanted = name_of(name)
        for index, record in enumerate(self.records):
            if record.pcf and upper(record.pcf) == wanted:
                return Found(index, "pcf", record)
        device = _pgmdev.device_number(_pgmdev.pcf_device(wanted))
        return self.for_family(_pgmdev.family_of_device(device))


default = Once(lambda: Database(settings.directories()["db_dir"] + "/programmer/pgm_dev_info.pcf"))
"""The database of the device-database directory: loaded when it is first asked for."""
settings.depends_on_settings(default)


def load(path: str | os.PathLike[str] | None = None) -> Database:
    """Loads a database; without a path, the default one, which is loaded once. One that is missing or damaged raises
    InternalError."""
    return default() if path is None else Database(path)


def for_family(family: str | int) -> Found | None:
    """The profile that governs a family, in the default database."""
    return default().for_family(family)


def for_device(device: str | int) -> Found | None:
    """The profile that governs a device, in the default database."""
    return default().for_device(device)


def for_part(part: str | int) -> Found | None:
    """The profile that governs a part, in the default database."""
    return default().for_part(part)


def for_pcf(name: str) -> Found | None:
    """The profile that governs a programmer-file part name, in the default database."""
    return default().for_pcf(name)
