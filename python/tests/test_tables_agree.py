"""Every profile, boot flash and table answers as it does to the command."""

from __future__ import annotations

import pathlib
from typing import Any

import pytest
from conftest import ROOT, Command, own, without

from pgmdev import _pgmdev, flash, hps, profiles, tables

SOURCES: dict[tables.Kind, pathlib.Path] = {
    "flash": ROOT / "data" / "flash" / "pgm_flash.csv",
    "profile": ROOT / "data" / "dev_info" / "pgm_dev_info.csv",
}


def test_profiles(command: Command) -> None:
    rows = command.ask("profile", "list")
    assert [{"index": index, **record.asdict()} for index, record in enumerate(profiles.load())] == rows
    assert len(rows) == 78


def test_which_profile_governs(command: Command) -> None:
    ask = {"family": profiles.for_family, "device": profiles.for_device, "part": profiles.for_part}
    rows = command.ask("profile", "tables")
    assert len(rows) > 17000
    for row in rows:
        found = ask[row["table"]](row["number"])
        if row["number"] == 0:  # none
            assert found is None
            continue
        assert (found.index if found else None) == row["index"], row
        assert (found.key if found else None) == row["key"], row


@pytest.mark.parametrize(
    ("option", "ask", "name_of", "limit", "step"),
    [
        ("--family", profiles.for_family, _pgmdev.family_text, _pgmdev.FAMILY_MAX, 1),
        ("--device", profiles.for_device, _pgmdev.device_text, _pgmdev.DEVICE_MAX, 1),
        ("--part", profiles.for_part, _pgmdev.part_text, _pgmdev.PART_MAX, 11),
        ("--pcf", profiles.for_pcf, lambda number: f"{_pgmdev.dev_part_pcf(_pgmdev.device_text(number))}", 991, 1),
    ],
)
def test_why_a_profile_governs(
    command: Command, option: str, ask: Any, name_of: Any, limit: int, step: int
) -> None:
    names = [name for name in (name_of(number) for number in range(1, limit, step)) if name] + ["nothing"]
    for name, answer in zip(names, command.ask_each(names, "profile", "show", option)):
        found = ask(name)
        assert (found is not None) == answer["found"], name
        if found:
            assert {"index": found.index, "rule": found.rule, **found.record.asdict()} == own(answer), name


def test_boot_flash(command: Command) -> None:
    assert [each.asdict() for each in hps.nand()] == [without(row, "index") for row in command.ask("hps", "nand")]
    assert [each.asdict() for each in hps.spi()] == [without(row, "index") for row in command.ask("hps", "spi")]
    kinds = command.ask("hps", "kinds")
    assert [each.asdict() for each in hps.kinds()] == [without(row, "index", "user") for row in kinds]


def test_all_rows_of_a_database(command: Command) -> None:
    path = flash.default().path
    assert [record.asdict() for record in tables.dump(path)] == [
        without(row, "index") for row in command.ask("flash", "dump", path)
    ]
    path = profiles.default().path
    assert [record.asdict() for record in tables.dump(path, "profile")] == [
        without(row, "index") for row in command.ask("profile", "dump", path)
    ]


@pytest.mark.parametrize("kind", ["flash", "profile"])
def test_source_tables(command: Command, kind: tables.Kind, tmp_path: pathlib.Path) -> None:
    """A dump compiles to the same database; the faults of a spoilt one are those that the command tells."""
    database = (flash if kind == "flash" else profiles).default().path
    text = tables.dump_csv(database, kind)
    assert text == command.print(kind, "dump", "--csv", database)
    source, spoilt, output = (tmp_path / name for name in ("table.csv", "spoilt.csv", "table.pcf"))
    source.write_text(text, encoding="utf-8")
    compiled = tables.compile(source, output, kind)
    assert compiled.ok
    assert output.read_bytes() == pathlib.Path(database).read_bytes()
    assert command.ask(kind, "verify", str(output), str(source))["sound"]

    spoilt.write_text(text.replace("FALSE", "MAYBE", 2), encoding="utf-8")
    told = command.ask(kind, "check", str(spoilt))["faults"]
    assert len(told) > 1
    row = "device_name" if kind == "flash" else "row"
    found = tables.check(spoilt, kind)
    assert [fault.asdict() for fault in found.faults] == [
        {**without(fault, row), "row": fault[row]} for fault in told
    ]
    assert not found.ok


@pytest.mark.parametrize("kind", ["flash", "profile"])
def test_shipped_tables_compile(kind: tables.Kind) -> None:
    found = tables.check(SOURCES[kind], kind)
    assert found.ok
    assert list(found.records) == tables.dump((flash if kind == "flash" else profiles).default().path, kind)
