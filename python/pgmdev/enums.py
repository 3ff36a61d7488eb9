"""The names of the programmer's enumerations."""

from __future__ import annotations

import enum

from pgmdev import _pgmdev
from pgmdev._values import fits

__all__ = ["EnumType", "name", "names", "value"]


class EnumType(enum.IntEnum):
    """The enumerations whose names are known."""

    BLOCK = 0
    """Device blocks and routing tiles."""
    SECTOR = 1
    """Sectors of a configuration flash."""
    OPTION_BIT = 2
    """Option bits."""
    SOF_SETTING = 3
    """Processor-subsystem settings, and what became of a configuration file."""


def name(type: EnumType, value: int) -> str | None:
    """The name of a value; None when it has none."""
    return _pgmdev.enum_name(type, value) if fits(value, 32) else None


def value(type: EnumType, name: str) -> int | None:
    """The value of a name, in any case; None when it is none. The empty name is that of 0."""
    return _pgmdev.enum_value(type, name)


def names(type: EnumType) -> dict[int, str]:
    """All names, by value."""
    known: dict[int, str] = {}
    while (found := _pgmdev.enum_name(type, len(known) + 1)) is not None:
        known[len(known) + 1] = found
    return known
