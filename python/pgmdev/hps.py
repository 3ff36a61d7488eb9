"""Hard processor systems, and the flash devices that they boot from: the user's own, then the built-in ones.

The user's own stand in the parameter container, from where the lists are read when they are first asked for, and changed:

    like = hps.spi()[26]
    hps.add(dataclasses.replace(like, device_name="QSPI_256", silicon_id=0x1940C8, device_bit_size=1 << 28))
"""

from __future__ import annotations

from collections.abc import Callable, Iterator
from contextlib import contextmanager
from dataclasses import dataclass, fields, replace
from typing import Any, Generic, TypeVar

from pgmdev import _container, _pgmdev, params
from pgmdev._errors import ContainerError
from pgmdev._values import Table, fits
from pgmdev.records import HpsKind, NandFlash, SpiFlash

__all__ = [
    "HpsKind",
    "NandFlash",
    "SpiFlash",
    "add",
    "current",
    "edit",
    "kinds",
    "nand",
    "reload",
    "remove",
    "set_current",
    "spi",
]

F = TypeVar("F", NandFlash, SpiFlash)


@dataclass(frozen=True)
class _List(Generic[F]):
    """One of the two lists."""

    record: type[F]
    block: params.Block
    entries: Callable[[], tuple[list[tuple[Any, ...]], int]]
    fault: Callable[[tuple[Any, ...]], str]
    block_of: Callable[[list[tuple[Any, ...]]], bytes]

    def read(self) -> Table[F]:
        entries, user_count = self.entries()
        records = (replace(self.record(*values), user=index < user_count) for index, values in enumerate(entries))
        return Table(records, self.record)


_NAND = _List(NandFlash, params.Block.HPS_NAND, _pgmdev.hps_nand, _pgmdev.hps_nand_fault, _pgmdev.hps_nand_block)
_SPI = _List(SpiFlash, params.Block.HPS_SPI, _pgmdev.hps_spi, _pgmdev.hps_spi_fault, _pgmdev.hps_spi_block)
_LISTS: dict[type, _List[Any]] = {NandFlash: _NAND, SpiFlash: _SPI}


def kinds() -> Table[HpsKind]:
    """All kinds of hard processor systems."""
    return Table((HpsKind(**values) for values in _pgmdev.hps_kinds()), HpsKind)


def current() -> HpsKind | None:
    """The kind that the process has chosen."""
    values = _pgmdev.hps_current()
    return None if values is None else HpsKind(**values)


def set_current(kind: HpsKind | int | None) -> bool:
    """Chooses a kind, given as such or by its identification code. Without one of that code none is current, and the
    answer is False."""
    code = kind.id if isinstance(kind, HpsKind) else 0 if kind is None else kind
    return _pgmdev.hps_set_current(code if fits(code, 32) else 0)


def nand() -> Table[NandFlash]:
    """The NAND flash devices, the user's own first (`user`). The parameter container is read once."""
    return _NAND.read()


def spi() -> Table[SpiFlash]:
    """The SPI flash devices, likewise."""
    return _SPI.read()


def reload() -> None:
    """Has the lists read the parameter container anew."""
    _pgmdev.hps_reload()


def add(flash: NandFlash | SpiFlash, *, before: NandFlash | SpiFlash | None = None) -> None:
    """Adds a flash to the user's own, behind them or before one of them. A value that no boot flash can have raises
    ValueError; a container that cannot be changed without loss raises ContainerError."""
    added = _plausible(flash)
    with _own_like(flash) as own:
        own.insert(len(own) if before is None else _place(own, before), added)


def edit(flash: F, changed: F) -> None:
    """Puts another flash into the place of one of the user's own. Of one that is none of these raises ValueError; what
    else `add` refuses is refused as there."""
    if type(flash) is not type(changed):
        raise TypeError(f"{type(changed).__name__} cannot take the place of {type(flash).__name__}")
    added = _plausible(changed)
    with _own_like(flash) as own:
        own[_place(own, flash)] = added


def remove(flash: NandFlash | SpiFlash) -> None:
    """Takes a flash away from the user's own; of one that is none of these raises ValueError."""
    with _own_like(flash) as own:
        del own[_place(own, flash)]


def _values(flash: NandFlash | SpiFlash) -> tuple[Any, ...]:
    """As the library keeps them: it does not keep whose flash it is."""
    return tuple(getattr(flash, field.name) for field in fields(flash) if field.name != "user")


def _plausible(flash: NandFlash | SpiFlash) -> NandFlash | SpiFlash:
    if fault := _list_of(flash).fault(_values(flash)):
        raise ValueError(fault)
    return replace(flash, user=True)


def _place(own: list[Any], flash: NandFlash | SpiFlash) -> int:
    try:
        return own.index(replace(flash, user=True))
    except ValueError:
        raise ValueError(f"it is none of the user's own: {flash}") from None


def _list_of(flash: NandFlash | SpiFlash) -> _List[Any]:
    if type(flash) not in _LISTS:
        raise TypeError(f"a NandFlash or a SpiFlash is expected, not {flash!r}")
    return _LISTS[type(flash)]


@contextmanager
def _own_like(flash: NandFlash | SpiFlash) -> Iterator[list[Any]]:
    """The user's own flash devices of that type, for changing: they are written afterwards."""
    known = _list_of(flash)
    with params.lock():
        _container.require_changeable()
        reload()
        own = [each for each in known.read() if each.user]
        block = params.read(known.block)
        if block is not None and block != known.block_of([_values(each) for each in own]):
            raise ContainerError(
                f"the block {known.block.title} holds more than this version reads, and would lose: {params.path()}"
            )
        yield own
        if own:
            params.write(known.block, known.block_of([_values(each) for each in own]))
        else:
            params.remove(known.block)
        reload()
