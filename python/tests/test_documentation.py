"""What the documents show is what Python prints."""

from __future__ import annotations

import doctest
import pathlib

import pytest
from conftest import ROOT

import pgmdev

FLAGS = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE


def test_the_guide(module_dir: pathlib.Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(ROOT)
    guide = ROOT / "docs" / "python.md"
    # A block ends where its fence ends.
    text = guide.read_text(encoding="utf-8").replace("\n```\n", "\n\n```\n")
    examples = doctest.DocTestParser().get_doctest(text, {"module_dir": module_dir}, guide.name, str(guide), 0)
    assert len(examples.examples) > 40
    said: list[str] = []
    results = doctest.DocTestRunner(optionflags=FLAGS).run(examples, out=said.append)
    assert results.failed == 0, "".join(said)


@pytest.mark.parametrize("module", [pgmdev, pgmdev.flash, pgmdev.params])
def test_docstrings(module: object) -> None:
    results = doctest.testmod(module, optionflags=FLAGS)  # type: ignore[arg-type]
    assert results.failed == 0
