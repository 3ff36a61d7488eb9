"""What the documents show is what Python prints."""

from __future__ import annotations

import doctest
import pathlib

import pytest
from conftest import ROOT

import pgmdev

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
