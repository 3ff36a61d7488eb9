"""The spellings of device names, and how to get from one to another.

Names are given in any case, and with white space around them. A name that is not known gives an empty text.
"""

from __future__ import annotations

import dataclasses
from dataclasses import dataclass

from pgmdev import _pgmdev
from pgmdev._values import Value, name_of

__all__ = [
    "Spellings",
    "dev_family_pcf",
    "dev_part_pcf",
    "dev_pcfs",
    "family",
    "package_name",
    "pcf_device",
    "pcf_family_pcf",
    "pgm_family_pcf",
    "pgm_name",
    "pgm_part_pcf",
    "pgm_pcfs",
    "show",
    "suggest",
    "use_full_name",
    "use_package_name",
]


@dataclass(frozen=True, slots=True)
class Spellings(Value):
    """Every spelling of a name; an empty text for what the name has not."""

    name: str
    package_name: str = ""
    """Without the speed grade."""
    pgm_name: str = ""
    """Programming name: without the package."""
    pgm_part_pcf: str = ""
    """Programmer-file part of the programming name."""
    pgm_family_pcf: str = ""
    """Programmer-file family of the programming name."""
    dev_part_pcf: str = ""
    """Programmer-file part of the device."""
    dev_family_pcf: str = ""
    """Programmer-file family of the device."""
    pcf_family_pcf: str = ""
    """Programmer-file family of the family."""
    family: str = ""
    pcf_device: str = ""
    """Device of the programmer-file part."""
    use_full_name: bool = False
    """Whether the full name serves for all."""
    use_package_name: bool = False
    """Whether the package name serves for programming."""
    possible_full_name: str = ""
    """The first full name that this name stands for."""

    def is_known(self) -> bool:
        """Whether anything is known of the name besides the name itself."""
        members = (getattr(self, field.name) for field in dataclasses.fields(self)[1:])
        return any(isinstance(member, str) and member for member in members)


def spell(name: str) -> Spellings:
    """What the grammar tells, of a name that is known or not."""
    name = name_of(name)
    package = package_name(name, fallback=False)
    if not package and pgm_name(name, skip_package=True, fallback=False):
        package = name
    programming = pgm_name(name, fallback=False)
    if not programming and pgm_part_pcf(name):
        programming = name
    pgm_part, pgm_family = pgm_pcfs(name)
    dev_part, dev_family = dev_pcfs(name)
    return Spellings(
        name=name,
        package_name=package,
        pgm_name=programming,
        pgm_part_pcf=pgm_part,
        pgm_family_pcf=pgm_family,
        dev_part_pcf=dev_part,
        dev_family_pcf=dev_family,
        pcf_family_pcf=pcf_family_pcf(name),
        family=family(name) or family(programming),
        pcf_device=pcf_device(name),
        use_full_name=use_full_name(name),
        use_package_name=use_package_name(name),
        possible_full_name=_pgmdev.possible_full_name(name),
    )


def show(name: str) -> Spellings | None:
    """Every spelling of a name; None when nothing is known of it.

    What the grammar does not convert, families, programmer families, devices without a programmer file and aliases, is
    its own spelling in each of its schemes.
    """
    from pgmdev import _schemes

    spellings = spell(name)
    if spellings.is_known():
        return spellings
    meaning = _schemes.all_schemes().meaning_of(name)
    return meaning.spellings() if meaning.schemes else None


def suggest(name: str) -> list[str]:
    """What may have been meant by a name that `show` does not know: names of parts, packages, programming, programmer-file
    parts and devices that differ from it by few characters added, left out, replaced or swapped. Five at most, the most
    similar one first."""
    return _pgmdev.name_suggestions(name_of(name))


def pgm_part_pcf(name: str) -> str:
    """The programmer-file part name of a programming name."""
    return _pgmdev.pgm_part_pcf(name)


def pgm_family_pcf(name: str) -> str:
    """The programmer-file family name of a programming name."""
    return _pgmdev.pgm_family_pcf(name)


def dev_part_pcf(name: str) -> str:
    """The programmer-file part name of a device of the device library."""
    return _pgmdev.dev_part_pcf(name)


def dev_family_pcf(name: str) -> str:
    """The programmer-file family name of a device of the device library."""
    return _pgmdev.dev_family_pcf(name)


def pcf_family_pcf(name: str) -> str:
    """The programmer-file family name of a family-level device name."""
    return _pgmdev.pcf_family_pcf(name)


def family(name: str) -> str:
    """The family of a programmer-file part name, a programming name or a device of the device library."""
    return _pgmdev.family(name)


def pcf_device(name: str) -> str:
    """The first device of the device library that has that programmer-file part name."""
    return _pgmdev.pcf_device(name)


def package_name(name: str, *, fallback: bool = True) -> str:
    """The package name of a full name; of any other name, that name itself, unless there is no fallback."""
    return _pgmdev.package_name(name, not fallback)


def pgm_name(name: str, *, skip_package: bool = False, fallback: bool = True) -> str:
    """The programming name of a package name or, unless that is skipped, of a full name; of any other name, that name
    itself, unless there is no fallback."""
    return _pgmdev.pgm_name(name, skip_package, not fallback)


def dev_pcfs(name: str) -> tuple[str, str]:
    """Programmer-file part and family name of a device of the device library."""
    return _pgmdev.dev_pcfs(name)


def pgm_pcfs(name: str) -> tuple[str, str]:
    """Programmer-file part and family name of a full name, package name or programming name."""
    return _pgmdev.pgm_pcfs(name)


def use_full_name(name: str) -> bool:
    """Whether a full name is the package name and the programming name, too."""
    return _pgmdev.use_full_name(name)


def use_package_name(name: str) -> bool:
    """Whether the package name, of a full name or the name itself, is the programming name, too."""
    return _pgmdev.use_package_name(name)
