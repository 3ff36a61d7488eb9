"""What a serial flash says of itself: the Serial Flash Discoverable Parameters (JEDEC standard JESD216)."""

from __future__ import annotations

from collections.abc import Callable
from dataclasses import dataclass
from typing import Any

from pgmdev import _pgmdev
from pgmdev._values import Value, bytes_of
from pgmdev.records import Flash


class SfdpRefusedError(ValueError):
    """A dump is no SFDP area, or its basic table cannot be read: what stands where."""

    __module__ = "pgmdev.flash"

    def __init__(self, offset: int, field: str, found: str, expected: str, message: str) -> None:
        super().__init__(offset, field, found, expected, message)
        self.offset = offset
        self.field = field
        self.found = found
        self.expected = expected
        self.message = message

    def __str__(self) -> str:
        return self.message


@dataclass(frozen=True, slots=True)
class Duration(Value):
    """How long an operation takes, in the unit that the member's name says."""

    typical: int
    longest: int


@dataclass(frozen=True, slots=True)
class FastRead(Value):
    """A way of reading."""

    mode: str
    """Lines for opcode, address and data: "1-4-4"."""
    opcode: int
    mode_clocks: int
    wait_clocks: int


@dataclass(frozen=True, slots=True)
class EraseType(Value):
    """An erase type."""

    number: int
    bytes: int
    opcode: int
    ms: Duration | None
    """None: the table does not tell."""
    opcode_4byte: int | None
    """That takes 4-byte addresses in any mode."""


@dataclass(frozen=True, slots=True)
class QuadEnable(Value):
    """How the four data lines are switched on."""

    code: int
    meaning: str


@dataclass(frozen=True, slots=True)
class ParameterHeader(Value):
    """Where a table is."""

    id: int
    name: str
    major: int
    minor: int
    dwords: int
    offset: int


@dataclass(frozen=True, slots=True)
class FourByteInstructions(Value):
    """The 4-Byte Address Instruction Table."""

    dword1: int
    dword2: int
    support: tuple[str, ...]
    erase_opcodes: tuple[tuple[int, int], ...]
    """Erase type and opcode."""


@dataclass(frozen=True, slots=True)
class MapCommand(Value):
    """A read that tells which sector map is in use."""

    opcode: int
    address_bytes: int | None
    """None: as many as the chip is set to, as for the clocks."""
    address: int
    wait_clocks: int | None
    mask: int


@dataclass(frozen=True, slots=True)
class Region(Value):
    """A range of sectors that are alike."""

    offset: int
    bytes: int
    erase_types: tuple[int, ...]


@dataclass(frozen=True, slots=True)
class SectorMap(Value):
    """A layout of the sectors."""

    id: int
    regions: tuple[Region, ...]


@dataclass(frozen=True, slots=True)
class DerivedRecord(Value):
    """The record that follows from a flash's own words."""

    record: Flash | None
    """None: there is an obstacle."""
    assumed: tuple[tuple[str, str], ...]
    """Members that nothing tells, and what was taken for them."""
    obstacle: str
    """Why there is no record: a clause for people."""


@dataclass(frozen=True, slots=True)
class Sfdp(Value):
    """What a flash says of itself. None stands for what its tables are too short to tell."""

    major: int
    minor: int
    standard: str
    """"JESD216", "JESD216A" ..., by the minor revision."""
    access_protocol: int
    basic_dwords: int
    density_bits: int | None
    address_bytes: str
    """"3", "3 or 4", "4", "reserved"."""
    erase_4k_uniform: bool
    erase_4k_opcode: int | None
    write_granularity_bytes: int
    dtr: bool
    fast_reads: tuple[FastRead, ...]
    erase_types: tuple[EraseType, ...]
    page_bytes: int
    page_bytes_known: bool
    page_program_us: Duration | None
    first_byte_us: Duration | None
    next_byte_us: Duration | None
    chip_erase_ms: Duration | None
    """Of one die."""
    status_polling: tuple[str, ...] | None
    quad_enable: QuadEnable | None
    soft_reset: tuple[str, ...] | None
    enter_4byte: tuple[str, ...] | None
    exit_4byte: tuple[str, ...] | None
    headers: tuple[ParameterHeader, ...]
    four_byte_instructions: FourByteInstructions | None
    map_commands: tuple[MapCommand, ...]
    sector_maps: tuple[SectorMap, ...]
    hybrid: bool
    """Whether a map has more than one region."""
    warnings: tuple[str, ...]
    """What was odd, and how it was taken."""
    dump: bytes
    """The bytes that were read."""

    @property
    def size_bytes(self) -> int | None:
        """The capacity."""
        return None if self.density_bits is None else self.density_bits // 8

    def record(self, identification: bytes = b"") -> DerivedRecord:
        """The record of a flash that says this, and answers `identification` to an identification read."""
        values, assumed, obstacle = _pgmdev.derive_record(self.dump, bytes_of(identification))
        return DerivedRecord(None if obstacle else Flash(*values), tuple(assumed), obstacle)


def _duration(times: tuple[int, int] | None) -> Duration | None:
    return None if times is None else Duration(*times)


def _erase_type(number: int, size: int, opcode: int, ms: tuple[int, int] | None, opcode_4byte: int | None) -> EraseType:
    return EraseType(number, size, opcode, _duration(ms), opcode_4byte)


def _four_byte(dword1: int, dword2: int, support: list[str], opcodes: dict[int, int]) -> FourByteInstructions:
    return FourByteInstructions(dword1, dword2, tuple(support), tuple(opcodes.items()))


def _sector_map(id: int, regions: list[tuple[int, int, list[int]]]) -> SectorMap:
    return SectorMap(id, tuple(Region(offset, size, tuple(types)) for offset, size, types in regions))


def sfdp(dump: bytes) -> Sfdp:
    """Reads the bytes that a flash answers to the opcode 5Ah from address 0. What cannot be read raises
    SfdpRefusedError."""
    dump = bytes_of(dump)
    values: dict[str, Any] = _pgmdev.read_sfdp(dump)
    if "refusal" in values:
        raise SfdpRefusedError(*values["refusal"])
    several: dict[str, Callable[..., Value]] = {
        "fast_reads": FastRead,
        "erase_types": _erase_type,
        "headers": ParameterHeader,
        "map_commands": MapCommand,
        "sector_maps": _sector_map,
    }
    for name, make in several.items():
        values[name] = tuple(make(*each) for each in values[name])
    for name in ("page_program_us", "first_byte_us", "next_byte_us", "chip_erase_ms"):
        values[name] = _duration(values[name])
    one: dict[str, Callable[..., Value]] = {"quad_enable": QuadEnable, "four_byte_instructions": _four_byte}
    for name, make in one.items():
        values[name] = None if values[name] is None else make(*values[name])
    for name in ("status_polling", "soft_reset", "enter_4byte", "exit_4byte", "warnings"):
        values[name] = None if values[name] is None else tuple(values[name])
    return Sfdp(**values, dump=dump)
