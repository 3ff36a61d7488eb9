"""Every name answers as it does to the command."""

from __future__ import annotations

from typing import Any

import pytest
from conftest import Command, own, without

import pgmdev
from pgmdev import _pgmdev, enums, names, parts

UNKNOWN = ["KES75F196", "nothing", "*", "Ä", "  kes50c6\t"]
SPELLINGS = ("name", "package_name", "pgm_name", "pgm_part_pcf", "pgm_family_pcf", "device", "dev_part_pcf",
             "dev_family_pcf", "family")  # fmt: skip


@pytest.fixture(scope="module")
def every_name() -> list[str]:
    """Of parts, packages, devices, families and programmer files."""
    known = {getattr(part, spelling) for part in parts.find(hidden=True) for spelling in SPELLINGS}
    known.update(_pgmdev.device_text(number) for number in range(1, _pgmdev.DEVICE_MAX))
    known.update(_pgmdev.family_text(number) for number in range(1, _pgmdev.FAMILY_MAX))
    return sorted(known - {""}) + UNKNOWN


def test_spellings(command: Command, every_name: list[str]) -> None:
    answers = command.ask_each(every_name, "name", "show")
    assert len(answers) == len(every_name) > 20000
    for name, answer in zip(every_name, answers):
        found = names.show(name)
        assert (found is not None) == answer["found"], name
        if found is not None:
            assert found.asdict() == own(answer)


def info_of(name: str) -> dict[str, Any] | None:
    info = parts.show(name)
    if info is None:
        return None
    flat = {"scheme": info.schemes[0], **info.asdict(), **info.spellings.asdict()}
    of_the_part = {key: getattr(info.part, key, None) for key in ("number", "orderable", "production", "hidden")}
    return {**without(flat, "spellings", "part"), **of_the_part}


def test_everything_about_a_name(command: Command, every_name: list[str]) -> None:
    """All that stand for several parts, and of the parts, which are many and alike, one in ten."""
    single = {part.name for part in parts.find(hidden=True)}
    asked = [name for name in every_name if name not in single] + sorted(single)[::10]
    assert len(asked) > 5000
    for name, answer in zip(asked, command.ask_each(asked, "part", "info")):
        assert info_of(name) == (own(answer) if answer["found"] else None), name


def test_lists_of_parts(command: Command) -> None:
    rows = command.ask("part", "list", "--hidden")
    found = parts.find(hidden=True)
    assert len(found) == len(rows)
    for part, row in zip(found, rows):
        assert without(part.asdict(), "pgm_family_pcf", "dev_part_pcf", "dev_family_pcf") == row


@pytest.mark.parametrize(
    ("filters", "options"),
    [
        ({"pattern": "kes7?f*"}, ["kes7?f*"]),
        ({"family": "Kestrel", "speed": 6, "orderable": True}, ["--family=Kestrel", "--speed=6", "--orderable"]),
        ({"package": "fbga", "pins": 169, "production": True}, ["--package=fbga", "--pins=169", "--production"]),
        ({"device": "KES75", "temperature": "industrial"}, ["--device=KES75", "--temperature=industrial"]),
        ({"family": " kestrel\n", "pins": " 169"}, ["--family= kestrel\n", "--pins= 169"]),
    ],
)
def test_filters_of_parts(command: Command, filters: dict[str, Any], options: list[str]) -> None:
    expected = [row["name"] for row in command.ask("part", "list", *options)]
    assert [part.name for part in parts.find(**filters)] == expected
    assert expected


def test_devices_and_families(command: Command) -> None:
    """The command also counts the parts of each."""
    rows = command.ask("device", "list", "--hidden")
    assert [each.asdict() for each in parts.devices()] == [without(row, "parts") for row in rows]
    rows = command.ask("family", "list", "--hidden")
    assert [each.asdict() for each in parts.families()] == [without(row, "devices", "parts") for row in rows]
    assert [each.name for each in parts.families("k*l")] == ["KESTREL"]
    found = [each.name for each in parts.devices("kes?5")]
    assert "KES75" in found
    assert all(len(name) == 5 for name in found)


def test_parts_by_less_specific_names(command: Command) -> None:
    all_parts = parts.find(hidden=True)
    devices = [_pgmdev.device_text(number) for number in range(1, _pgmdev.DEVICE_MAX)] + ["NONE"]
    for device, answer in zip(devices, command.ask_each(devices, "part", "from-device")):
        assert parts.from_device(device) == answer["part"]
    pcfs = sorted({part.pgm_part_pcf for part in all_parts} - {""}) + ["NONE", "nothing"]
    for pcf, answer in zip(pcfs, command.ask_each(pcfs, "part", "from-pcf", "--all")):
        assert parts.from_pcf(pcf) == answer["part"]
        assert parts.all_from_pcf(pcf) == answer.get("parts", [])
    packages = sorted({part.package_name for part in all_parts} - {""}) + UNKNOWN
    for package, answer in zip(packages, command.ask_each(packages, "part", "complete")):
        assert parts.complete(package) == answer["part"]


def test_ordering_codes(command: Command) -> None:
    all_parts = [part.name for part in parts.find(hidden=True)]
    answers = command.ask_each(all_parts, "opn", "index")
    for name, answer in zip(all_parts, answers):
        assert parts.opn_index(name) == answer["index"]
        assert parts.opn_hash(name) == answer["hash"]
    hashes = [str(answer["hash"]) for answer in answers[::5]] + ["1"]
    for text, answer in zip(hashes, command.ask_each(hashes, "opn", "from-hash")):
        assert parts.from_hash(int(text)) == answer["name"]
    indexes = [str(index) for index in range(0, 20000, 7)] + ["4294967295"]
    for text, answer in zip(indexes, command.ask_each(indexes, "opn", "name")):
        assert parts.opn(int(text)) == answer["name"]


@pytest.mark.parametrize("type", list(enums.EnumType))
def test_enumerators(command: Command, type: enums.EnumType) -> None:
    rows = command.ask("enum", "list", type.name.lower().replace("_", "-"))
    assert enums.names(type) == {row["value"]: row["name"] for row in rows}
    for row in rows:
        assert enums.name(type, row["value"]) == row["name"]
        assert enums.value(type, row["name"].lower()) == row["value"]
    assert enums.name(type, 0) is None
    assert enums.value(type, "") == 0
    assert enums.value(type, "no such enumerator") is None


def test_conversions_take_any_case() -> None:
    assert names.package_name(" kes50c6 ") == "KES50"
    assert names.package_name("unknown") == "UNKNOWN"
    assert names.package_name("unknown", fallback=False) == ""
    assert names.pgm_name("KES75F169C4") == "KES75"
    assert names.pgm_name("KES75F169C4", skip_package=True, fallback=False) == ""
    assert names.pgm_pcfs("KES75") == (names.pgm_part_pcf("KES75"), names.pgm_family_pcf("KES75"))
    assert names.pgm_pcfs("KES75") == ("KES_100", "KESTREL_PCF")
    assert names.family("KES_100") == "KESTREL"
    assert names.use_package_name("KES50")
    assert not names.use_full_name("KES50C6")
    device = names.pcf_device("KES_100")
    assert names.dev_pcfs(device) == (names.dev_part_pcf(device), names.dev_family_pcf(device))
    assert names.dev_part_pcf(device) == "KES_100"
    assert names.pcf_family_pcf("KESTREL") == "KESTREL_PCF"


def test_versions(command: Command) -> None:
    told = command.ask("--version")
    assert pgmdev.__version__ == told["library"]
    assert pgmdev.versions()["catalog"] == told["catalog"]
    assert pgmdev.versions()["flash_stamp"] == told["formats"]["flash_database"]["stamp"]
    assert pgmdev.versions()["profile_stamp"] == told["formats"]["profile_database"]["stamp"]
