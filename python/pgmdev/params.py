"""The parameter container: up to three blocks of typed values in `pgm_flash.ini` in the module directory.

Who writes what follows from what was read holds the lock meanwhile:

    with params.lock():
        data = params.read(params.Block.SFL_FLASH) or b""
        params.write(params.Block.SFL_FLASH, data + params.pack([(params.Type.BYTE, 7)]))
"""

from __future__ import annotations

import enum
import operator
import threading
from collections.abc import Iterable, Iterator, Sequence
from contextlib import contextmanager
from typing import Union

from pgmdev import _container, _pgmdev
from pgmdev._errors import ContainerBusyError, ContainerError
from pgmdev._values import bytes_of, fits

__all__ = ["Block", "Parameter", "Type", "lock", "pack", "path", "read", "remove", "text", "unpack", "write"]

Parameter = Union[str, bool, int]


class Block(enum.IntEnum):
    """The blocks of the container."""

    SFL_FLASH = 0
    """Serial configuration flash; the library does not interpret it."""
    HPS_SPI = 1
    """The user's SPI flash devices."""
    HPS_NAND = 2
    """The user's NAND flash devices."""

    @property
    def title(self) -> str:
        """The name for people."""
        return _pgmdev.BLOCK_NAMES[self]


class Type(enum.IntEnum):
    """The types of values; numbers are little-endian."""

    STRING = 1
    """Characters and a zero byte."""
    BOOL = 2
    """1 byte."""
    BYTE = 3
    """1 byte."""
    WORD = 4
    """2 bytes."""
    DWORD = 5
    """4 bytes."""
    QWORD = 6
    """8 bytes."""


BITS = {Type.BOOL: 1, Type.BYTE: 8, Type.WORD: 16, Type.DWORD: 32, Type.QWORD: 64}


def path() -> str:
    """Where the container is, or would be."""
    return _container.path()


def read(block: Block) -> bytes | None:
    """The bytes of a block; None: it is absent. A container that is damaged raises ContainerError."""
    _container.require_sound()
    return _pgmdev.read_block(Block(block))


def write(block: Block, data: bytes) -> None:
    """Replaces a block and keeps the others. Waits for other writers; a container that cannot be changed without loss
    raises ContainerError."""
    data = bytes_of(data)
    if not data:
        raise ValueError("a block has bytes; remove() takes it away")
    _replace(block, data)


def remove(block: Block) -> None:
    """Takes a block away and keeps the others."""
    _replace(block, b"")


def _replace(block: Block, data: bytes) -> None:
    with lock():
        _container.require_changeable()
        if not _pgmdev.write_block(Block(block), data):
            raise ContainerError(f"the parameter container cannot be written: {path()}")


@contextmanager
def lock() -> Iterator[None]:
    """Keeps other writers of the container out, threads and processes. A thread that has it may take it again. Another
    writer that has it for 10 seconds raises ContainerBusyError; so does having no descriptor left to ask with."""
    held = _pgmdev.ContainerLock()
    if not held.acquire():
        raise ContainerBusyError(f"another program is changing the parameter container: {path()}")
    owner = threading.get_ident()
    try:
        yield
    finally:
        if threading.get_ident() != owner:
            raise RuntimeError("the lock of the parameter container belongs to the thread that has taken it")
        held.release()


def pack(values: Iterable[tuple[Type, Parameter]]) -> bytes:
    """The bytes of values, one behind the other."""
    return b"".join(_pgmdev.value_bytes(type, _fitting(type, value)) for type, value in values)


def unpack(data: bytes, types: Sequence[Type], *, offset: int = 0) -> list[Parameter]:
    """The values of these types from an offset on. Data that do not hold all of them raise ValueError."""
    data = bytes_of(data)
    if not 0 <= offset <= len(data):
        raise ValueError(f"{offset} is no place in {len(data)} bytes")
    values: list[Parameter] = []
    position = offset
    for type in types:
        _require_type(type)
        found = _pgmdev.value_at(data, position, type)
        if found is None:
            raise ValueError(f"there is no whole {type.name} at {position} of {len(data)} bytes")
        value, position = found
        values.append(value)
    return values


def text(type: Type, value: Parameter, *, hexadecimal: bool = False) -> str:
    """A value for people: numbers in decimal, or with all hexadecimal digits of their type."""
    return _pgmdev.value_text(type, _fitting(type, value), hexadecimal)


def _require_type(type: Type) -> None:
    if not isinstance(type, Type):
        raise TypeError(f"a params.Type is expected, such as params.Type.BYTE, not {type!r}")


def _fitting(type: Type, value: Parameter) -> Parameter:
    _require_type(type)
    if type is Type.STRING:
        if not isinstance(value, str) or "\0" in value:
            raise ValueError(f"a STRING is a text without zero bytes, not {value!r}")
        return value
    if not hasattr(value, "__index__") or not fits(operator.index(value), BITS[type]):
        raise ValueError(f"{value!r} is no {type.name}")
    return operator.index(value)
