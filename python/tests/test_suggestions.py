"""What may have been meant by a misspelt name is what the command says."""

from __future__ import annotations

import pytest
from conftest import Command

from pgmdev import flash, names, parts


def misspelt(known: list[str], step: int) -> list[str]:
    """Every so many of the names, with a character left out, doubled, replaced, or swapped with the next one, or cut short."""
    found = []
    for count, name in enumerate(known[::step]):
        place = len(name) // 2
        left, here, right = name[:place], name[place], name[place + 1 :]
        swapped = left[:-1] + here + left[-1:] + right
        changes = [left + right, left + here + here + right, left + "!" + right, swapped, name[:4]]
        found.append(changes[count % len(changes)])
    return found


def test_of_flash(command: Command) -> None:
    asked = misspelt([record.device_name for record in flash.load()], 7) + ["w25q64vj", "W25Q", "nothing like it"]
    some = 0
    for name, answer in zip(asked, command.ask_each(asked, "flash", "show")):
        if not answer["found"]:
            assert flash.suggest(name) == answer["candidates"], name
            assert flash.load().suggest(name) == flash.suggest(name)
            some += bool(answer["candidates"])
    assert some > 80
    assert flash.suggest(" w25q64vj\n")[0] == "W25Q64JV"
    assert flash.suggest("nothing like it") == []


def known_names() -> list[str]:
    known = [part.name for part in parts.find(hidden=True)][::60]
    known += [part.package_name for part in parts.find()][::90]
    return known + [device.name for device in parts.devices()][::9] + [family.name for family in parts.families()]


def test_of_names(command: Command) -> None:
    asked = [*misspelt(known_names(), 1), "KES50C66", "nothing like it"]
    some = 0
    for name, answer in zip(asked, command.ask_each(asked, "name", "show")):
        if not answer["found"]:
            assert names.suggest(name) == answer["candidates"], name
            some += bool(answer["candidates"])
    assert some > 100


def test_of_parts(command: Command) -> None:
    asked = [*misspelt(known_names(), 1), "KESTRELL", "nothing like it"]
    some = 0
    for name, answer in zip(asked, command.ask_each(asked, "part", "info")):
        if not answer["found"]:
            assert parts.suggest(name) == answer["candidates"], name
            some += bool(answer["candidates"])
    assert some > 100
    assert parts.suggest("kestrell") == ["KESTREL"]


def test_what_fails_meanwhile_is_raised(monkeypatch: pytest.MonkeyPatch) -> None:
    from pgmdev import _schemes

    def fail(self: _schemes.Schemes, name: str) -> bool:
        raise KeyError(name)

    monkeypatch.setattr(_schemes.Schemes, "has_parts", fail)
    with pytest.raises(KeyError):
        parts.suggest("KESTRELL")
