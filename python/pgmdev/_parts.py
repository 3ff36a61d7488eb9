"""All parts of the device library, with what it and the grammar tell of each."""

from __future__ import annotations

from dataclasses import dataclass

from pgmdev import _pgmdev
from pgmdev._values import Once, Value

ANY = "ANY"


@dataclass(frozen=True, slots=True)
class Part(Value):
    """A part. Names are in upper case; an empty text stands for one that it has not."""

    name: str
    number: int
    """Of the device library."""
    device: str
    family: str
    package_name: str
    """Without the speed grade."""
    pgm_name: str
    """Programming name: without the package."""
    pgm_part_pcf: str
    """Programmer-file part."""
    pgm_family_pcf: str
    """Programmer-file family."""
    dev_part_pcf: str
    """Programmer-file part of the device."""
    dev_family_pcf: str
    """Programmer-file family of the device."""
    orderable: bool
    """Whether it has an ordering code."""
    production: bool
    """Whether it is in production."""
    hidden: bool
    """Whether lists leave it out unless they are asked for hidden parts."""
    package: str | None
    """Type of the package, such as "FBGA"; None: not known, as for what follows."""
    pins: int | None
    speed: int | None
    """Speed grade; 1 is the fastest."""
    temperature: str | None
    """Range, such as "INDUSTRIAL"."""


def numbers(
    *,
    family: str = ANY,
    device: str = ANY,
    package: str = ANY,
    pins: str = ANY,
    speed: str = ANY,
    temperature: str = ANY,
    orderable: bool = False,
    production: bool = False,
    hidden: bool = True,
) -> list[int]:
    """The parts that pass all filters, ascending; "ANY" does not restrict."""
    return _pgmdev.part_numbers(family, device, package, pins, speed, temperature, orderable, production, hidden)


def _number(text: str) -> int | None:
    return int(text) if text.isdecimal() else None


def _characteristics() -> list[dict[int, str]]:
    """Package, pins, speed and temperature by part: the device library tells which parts have each value."""
    packages, pins, speeds, temperatures = _pgmdev.part_values()
    return [
        {part: value for value in packages for part in numbers(package=value)},
        {part: value for value in pins for part in numbers(pins=value)},
        {part: value for value in speeds for part in numbers(speed=value)},
        {part: value for value in temperatures for part in numbers(temperature=value)},
    ]


def _make() -> dict[int, Part]:
    shown, orderable, production = (
        set(numbers(hidden=False)),
        set(numbers(orderable=True)),
        set(numbers(production=True)),
    )
    package, pins, speed, temperature = _characteristics()
    parts = {}
    for number in numbers():
        name = _pgmdev.part_text(number)
        device_number = _pgmdev.device_of_part(number)
        device = _pgmdev.device_text(device_number)
        pgm_part, pgm_family = _pgmdev.pgm_pcfs(name)
        dev_part, dev_family = _pgmdev.dev_pcfs(device)
        parts[number] = Part(
            name=name,
            number=number,
            device=device,
            family=_pgmdev.family_text(_pgmdev.family_of_device(device_number)),
            package_name=_pgmdev.package_name(name, True),
            pgm_name=_pgmdev.pgm_name(name, False, True),
            pgm_part_pcf=pgm_part,
            pgm_family_pcf=pgm_family,
            dev_part_pcf=dev_part,
            dev_family_pcf=dev_family,
            orderable=number in orderable,
            production=number in production,
            hidden=number not in shown,
            package=package.get(number),
            pins=_number(pins.get(number, "")),
            speed=_number(speed.get(number, "")),
            temperature=temperature.get(number),
        )
    return parts


all_parts = Once(_make)
