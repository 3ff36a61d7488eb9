"""What the package consists of."""

from __future__ import annotations

import pathlib

from conftest import ROOT

import pgmdev


def test_modules_are_those_of_the_sources() -> None:
    """One whose source has another name by now could still be imported, and would be installed."""
    built = pathlib.Path(pgmdev.__file__).parent
    for kind in ("*.py", "*.pyi"):
        sources = {source.name for source in (ROOT / "python" / "pgmdev").glob(kind)}
        made = {"records.py"} if kind == "*.py" else set()
        assert {module.name for module in built.glob(kind)} == sources | made
