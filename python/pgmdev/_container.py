"""The parameter container as a file: whether the library can read it. It takes a damaged one for a missing one."""

from __future__ import annotations

import struct

from pgmdev import _pgmdev, settings
from pgmdev._errors import ContainerError

MAGIC = b"PGMDEV_FLASH_INI"
HEAD_SIZE = len(MAGIC) + 4
ENTRY_SIZE = 8
MOST_ENTRIES = 0x10000


def path() -> str:
    return settings.directories()["module_dir"] + "/pgm_flash.ini"


def _bytes() -> bytes:
    try:
        with open(path(), "rb") as file:
            return file.read()
    except FileNotFoundError:
        return b""  # nothing is lost with an empty file either


def _entries(data: bytes) -> list[tuple[int, int]]:
    """Offset and size of each block."""
    (count,) = struct.unpack_from("<I", data, len(MAGIC))
    numbers = struct.unpack_from(f"<{2 * count}I", data, HEAD_SIZE)
    return list(zip(numbers[::2], numbers[1::2]))


def _damage(data: bytes) -> str:
    """What is wrong; empty when nothing is."""
    if not data:
        return ""
    if not data.startswith(MAGIC):
        return "it is no parameter container"
    if len(data) < HEAD_SIZE:
        return f"it is cut after {len(data)} bytes"
    (count,) = struct.unpack_from("<I", data, len(MAGIC))
    end = HEAD_SIZE + ENTRY_SIZE * count
    if not 0 < count <= MOST_ENTRIES or len(data) < end:
        return f"its table of {count} blocks is cut"
    for block, (offset, size) in enumerate(_entries(data)):
        if (offset == 0) != (size == 0) or offset not in (0, end):
            return f"block {block} is not where it must be"
        end += size
    return "" if end == len(data) else f"its blocks end at {end}, the file at {len(data)} bytes"


def require_sound() -> bytes:
    data = _bytes()
    if damage := _damage(data):
        raise ContainerError(f"the parameter container is damaged, {damage}: {path()}")
    return data


def require_changeable() -> None:
    """Writing must not lose what this version does not write."""
    data = require_sound()
    if data and any(offset for offset, _ in _entries(data)[len(_pgmdev.BLOCK_NAMES) :]):
        raise ContainerError(f"the parameter container has blocks that this version would lose: {path()}")
