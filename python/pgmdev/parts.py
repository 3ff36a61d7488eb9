"""Parts: what is known of them, their ordering codes, and parts by less specific names."""

from __future__ import annotations

from dataclasses import dataclass

from pgmdev import _parts, _pgmdev, _schemes, profiles
from pgmdev._parts import ANY, Part
from pgmdev._values import Table, Value, fits, name_of, pattern_of
from pgmdev.names import Spellings

__all__ = [
    "Device",
    "Family",
    "Governing",
    "Part",
    "PartInfo",
    "all_from_pcf",
    "complete",
    "devices",
    "families",
    "find",
    "from_device",
    "from_hash",
    "from_pcf",
    "opn",
    "opn_hash",
    "opn_index",
    "show",
    "suggest",
]


@dataclass(frozen=True, slots=True)
class Device(Value):
    """A device. An empty text stands for a name that it has not."""

    name: str
    number: int
    """Of the device library."""
    family: str
    dev_part_pcf: str
    """Programmer-file part."""
    dev_family_pcf: str
    """Programmer-file family."""


@dataclass(frozen=True, slots=True)
class Family(Value):
    """A family."""

    name: str
    number: int
    """Of the device library."""
    pcf_family_pcf: str
    """Programmer-file family; empty: it has none."""


@dataclass(frozen=True, slots=True)
class Governing(Value):
    """Which profile governs something."""

    index: int
    rule: profiles.Rule
    key: str


@dataclass(frozen=True, slots=True)
class PartInfo(Value):
    """What a name stands for."""

    schemes: tuple[str, ...]
    """The schemes that the name belongs to, the most specific first."""
    spellings: Spellings
    part: Part | None
    """The part of that name; None: it is the name of something else."""
    device: str
    """The device of all the parts; empty when they have none in common."""
    opn_index: int | None
    opn_hash: int | None
    package: str | None
    """What all the parts have alike; None when they differ, as for what follows."""
    pins: int | None
    speed: int | None
    temperature: str | None
    profile: Governing | None
    """Of the part, or of the device or family that all the parts share."""
    parts: tuple[str, ...]
    """All parts that the name stands for, by number, hidden ones, too."""


def find(
    pattern: str = "*",
    *,
    family: str = ANY,
    device: str = ANY,
    package: str = ANY,
    pins: int | str = ANY,
    speed: int | str = ANY,
    temperature: str = ANY,
    orderable: bool = False,
    production: bool = False,
    hidden: bool = False,
) -> Table[Part]:
    """The parts that pass all filters and whose names fit the pattern, in any case: `*` stands for any characters, `?`
    for any one. Hidden parts are left out unless `hidden`."""
    numbers = _parts.numbers(
        family=name_of(family),
        device=name_of(device),
        package=name_of(package),
        pins=name_of(str(pins)),
        speed=name_of(str(speed)),
        temperature=name_of(temperature),
        orderable=orderable,
        production=production,
        hidden=hidden,
    )
    parts = _parts.all_parts()
    wanted = pattern_of(pattern)
    return Table((parts[number] for number in numbers if wanted(parts[number].name)), Part)


def devices(pattern: str = "*") -> Table[Device]:
    """The devices of the device library whose names fit the pattern, also those without parts."""
    wanted = pattern_of(pattern)
    found = Table[Device](of=Device)
    for number in range(1, _pgmdev.DEVICE_GENERIC):
        name = _pgmdev.device_text(number)
        if name and wanted(name):
            family = _pgmdev.family_text(_pgmdev.family_of_device(number))
            found.append(Device(name, number, family, *_pgmdev.dev_pcfs(name)))
    return found


def families(pattern: str = "*") -> Table[Family]:
    """The families of the device library whose names fit the pattern."""
    wanted = pattern_of(pattern)
    known = ((_pgmdev.family_text(number), number) for number in range(1, _pgmdev.FAMILY_GENERIC))
    found = (Family(name, number, _pgmdev.pcf_family_pcf(name)) for name, number in known if name and wanted(name))
    return Table(found, Family)


def _governing(info: _schemes.Meaning, part: Part | None) -> Governing | None:
    database = profiles.default()
    device, family = info.common("device"), info.common("family")
    if part is not None:
        found = database.for_part(part.number)
    elif device:
        found = database.for_device(str(device))
    else:
        found = database.for_family(str(family)) if family else None
    return Governing(found.index, found.rule, found.key) if found else None


def show(name: str) -> PartInfo | None:
    """Everything about a part, or whatever else a name stands for, and all its parts; None: nothing is known of it."""
    meaning = _schemes.all_schemes().meaning_of(name)
    if not meaning.schemes:
        return None
    part = next((each for each in meaning.parts if each.name == meaning.name), None)
    return PartInfo(
        schemes=meaning.schemes,
        spellings=meaning.spellings(),
        part=part,
        device=str(meaning.common("device") or ""),
        opn_index=opn_index(part.name) if part else None,
        opn_hash=opn_hash(part.name) if part else None,
        package=meaning.common("package"),  # type: ignore[arg-type]
        pins=meaning.common("pins"),  # type: ignore[arg-type]
        speed=meaning.common("speed"),  # type: ignore[arg-type]
        temperature=meaning.common("temperature"),  # type: ignore[arg-type]
        profile=_governing(meaning, part),
        parts=tuple(each.name for each in meaning.parts),
    )


def suggest(name: str) -> list[str]:
    """What may have been meant by a name that `show` does not know: names of parts, and of what parts belong to, that differ
    from it by few characters added, left out, replaced or swapped. Five at most, the most similar one first."""
    return _pgmdev.part_suggestions(name_of(name), _schemes.all_schemes().has_parts)


def from_device(name: str) -> str | None:
    """The first part of a device, an orderable one in production rather than others; one of its hidden parts when it
    has no others. None: there is no such device, or it has no parts."""
    if not _pgmdev.is_device(_pgmdev.device_number(name_of(name))):
        return None
    part = _pgmdev.part_from_device(name_of(name))
    if not part:
        hidden = _parts.numbers(device=name_of(name))
        part = _pgmdev.part_name(hidden[0]) if hidden else ""
    return part or None


def from_pcf(name: str) -> str | None:
    """The first part whose own name is a programming name of that programmer-file part. Most parts have longer names:
    see `all_from_pcf`."""
    return (_pgmdev.part_from_pcf(name_of(name)) or None) if name_of(name) else None


def all_from_pcf(name: str) -> Table[str]:
    """All parts whose programming name has that programmer-file part name, hidden ones, too."""
    wanted = name_of(name)
    return Table(part.name for part in _parts.all_parts().values() if wanted and part.pgm_part_pcf == wanted)


def complete(name: str) -> str | None:
    """The first part that a full, package or programming name denotes, or an alias."""
    name = name_of(name)
    return _pgmdev.possible_full_name(name) or _pgmdev.part_text(_pgmdev.part_number(name)) or None


def opn(index: int) -> str | None:
    """The part that an ordering-code index stands for."""
    return (_pgmdev.opn(index) or None) if fits(index, 32) else None


def opn_index(name: str) -> int | None:
    """The first ordering-code index of a part."""
    return _pgmdev.opn_index(name_of(name))


def opn_hash(name: str) -> int | None:
    """The 48-bit hash of a part's name; None when there is no such part."""
    return _pgmdev.opn_hash(name_of(name))


def from_hash(hash: int) -> str | None:
    """The first part whose name has that hash."""
    return (_pgmdev.opn_from_hash(hash) or None) if fits(hash, 64) else None
