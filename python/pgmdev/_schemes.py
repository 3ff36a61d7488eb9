"""Which naming schemes a name belongs to, and which parts it stands for in them."""

from __future__ import annotations

from collections import defaultdict
from dataclasses import dataclass, replace
from typing import Callable

from pgmdev import _parts, _pgmdev, names
from pgmdev._parts import Part
from pgmdev._values import Once, name_of, upper


def _nowhere(name: str) -> bool:
    return False


# A scheme is how a part spells it. The grammar alone knows further names, whose parts the device library has dropped.
SCHEMES: dict[str, Callable[[str], bool]] = {
    "name": lambda name: bool(names.package_name(name, fallback=False)),
    "package_name": lambda name: bool(names.pgm_name(name, skip_package=True, fallback=False)),
    "pgm_name": lambda name: bool(names.pgm_part_pcf(name)),
    "device": lambda name: bool(names.dev_part_pcf(name)),
    "pgm_part_pcf": _nowhere,
    "dev_part_pcf": lambda name: bool(names.pcf_device(name)),
    "pgm_family_pcf": _nowhere,
    "dev_family_pcf": _nowhere,
    "family": _nowhere,
}
ALIAS = "alias"


@dataclass(frozen=True)
class Meaning:
    """What a name means; for an alias `name` is the part's own."""

    name: str
    schemes: tuple[str, ...]
    parts: tuple[Part, ...]

    def common(self, member: str) -> object:
        """A member that all parts have alike; None when they differ."""
        values = {getattr(part, member) for part in self.parts}
        return values.pop() if len(values) == 1 else None

    def spellings(self) -> names.Spellings:
        """What the grammar tells, and the name itself in each of its schemes."""
        known = names.spell(self.name)
        own = {each: self.name for each in self.schemes if not getattr(known, each, "-")}
        if not known.family and "family" not in own:
            own["family"] = str(self.common("family") or "")
        return replace(known, **own)


class Schemes:
    """The names of all parts, hidden ones, too."""

    def __init__(self) -> None:
        self._places: dict[str, dict[str, list[Part]]] = {scheme: defaultdict(list) for scheme in SCHEMES}
        for part in _parts.all_parts().values():
            for scheme, places in self._places.items():
                if spelling := getattr(part, scheme):
                    places[spelling].append(part)

    def has_parts(self, name: str) -> bool:
        """Whether a name in upper case stands for parts in any of the schemes."""
        return any(name in places for places in self._places.values())

    def meaning_of(self, name: str) -> Meaning:
        name = name_of(name)
        schemes = []
        parts: dict[int, Part] = {}
        for scheme, in_grammar in SCHEMES.items():
            found = self._places[scheme].get(name, [])
            parts.update((part.number, part) for part in found)
            if found or in_grammar(name):
                schemes.append(scheme)
        if not schemes:
            behind_alias = _pgmdev.part_text(_pgmdev.part_number(name))
            found = self._places["name"].get(upper(behind_alias), [])
            if found:
                return Meaning(found[0].name, (ALIAS,), tuple(found))
        return Meaning(name, tuple(schemes), tuple(parts[number] for number in sorted(parts)))


all_schemes = Once(Schemes)
