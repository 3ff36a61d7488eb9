"""Hard processor systems, and the flash devices that they boot from: the user's own, then the built-in ones."""

from __future__ import annotations

from dataclasses import replace

from pgmdev import _pgmdev
from pgmdev._values import Table
from pgmdev.records import HpsKind, NandFlash, SpiFlash

__all__ = ["HpsKind", "NandFlash", "SpiFlash", "current", "kinds", "nand", "reload", "set_current", "spi"]


def kinds() -> Table[HpsKind]:
    """All kinds of hard processor systems."""
    return Table(HpsKind(**values) for values in _pgmdev.hps_kinds())


def current() -> HpsKind | None:
    """The kind that the process has chosen."""
    values = _pgmdev.hps_current()
    return None if values is None else HpsKind(**values)


def set_current(kind: HpsKind | int | None) -> bool:
    """Chooses a kind, given as such or by its identification code. Without one of that code none is current, and the
    answer is False."""
    code = kind.id if isinstance(kind, HpsKind) else 0 if kind is None else kind
    return _pgmdev.hps_set_current(code)


def nand() -> Table[NandFlash]:
    """The NAND flash devices, the user's own first (`user`). The parameter container is read once."""
    entries, user_count = _pgmdev.hps_nand()
    return Table(replace(NandFlash(*values), user=index < user_count) for index, values in enumerate(entries))


def spi() -> Table[SpiFlash]:
    """The SPI flash devices, likewise."""
    entries, user_count = _pgmdev.hps_spi()
    return Table(replace(SpiFlash(*values), user=index < user_count) for index, values in enumerate(entries))


def reload() -> None:
    """Has the lists read the parameter container anew."""
    _pgmdev.hps_reload()
