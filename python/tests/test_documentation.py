"""What the documents show is what Python prints."""

from __future__ import annotations

import dataclasses
import doctest
import pathlib
import pydoc

import pytest
from conftest import ROOT

import pgmdev
from pgmdev import records

FLAGS = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE


@pytest.mark.parametrize(("name", "least"), [("docs/python.md", 90), ("README.md", 3)])
def test_guides(name: str, least: int, module_dir: pathlib.Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(ROOT)
    guide = ROOT / name
    # A block ends where its fence ends.
    text = guide.read_text(encoding="utf-8").replace("\n```\n", "\n\n```\n")
    examples = doctest.DocTestParser().get_doctest(text, {"module_dir": module_dir}, guide.name, str(guide), 0)
    assert len(examples.examples) >= least
    said: list[str] = []
    results = doctest.DocTestRunner(optionflags=FLAGS).run(examples, out=said.append)
    assert results.failed == 0, "".join(said)


@pytest.mark.parametrize("module", [pgmdev, pgmdev.flash, pgmdev.params])
def test_docstrings(module: object) -> None:
    results = doctest.testmod(module, optionflags=FLAGS)  # type: ignore[arg-type]
    assert results.failed == 0


@pytest.mark.parametrize("name", records.__all__)
def test_help_lists_the_members(name: str) -> None:
    record = getattr(records, name)
    lines = pydoc.plain(pydoc.render_doc(record)).splitlines()
    for field in dataclasses.fields(record):
        assert any(line.startswith(f" |  {field.name}: ") for line in lines), field.name


def test_help_tells_the_units() -> None:
    text = pydoc.plain(pydoc.render_doc(pgmdev.flash.Flash))
    for told in (
        "device_bit_size: Capacity in bits.",
        "device_sector_byte: Sector size in bytes.",
        "bulk_erase_time: Longest erase of the whole device, in seconds [s].",
        "program_utime: Longest program operation, in microseconds [us].",
    ):
        assert f" |  {told}\n" in text
