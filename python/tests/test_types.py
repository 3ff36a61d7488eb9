"""Types are told, and told truly."""

from __future__ import annotations

import os
import pathlib
import subprocess
import sys

import pytest
from conftest import ROOT

import pgmdev

PACKAGES = pathlib.Path(pgmdev.__file__).parents[1]
PYTHON = ROOT / "python"


def run(tmp_path: pathlib.Path, *arguments: str) -> None:
    """mypy finds the package and what the tests share by its own variable; its cache is that of the build."""
    environment = {**os.environ, "MYPYPATH": f"{PACKAGES}:{PYTHON / 'tests'}"}
    environment.setdefault("MYPY_CACHE_DIR", str(tmp_path))
    done = subprocess.run(
        [sys.executable, "-m", *arguments], cwd=tmp_path, env=environment, capture_output=True, text=True
    )
    assert done.returncode == 0, done.stdout + done.stderr


def test_package_tests_and_examples(tmp_path: pathlib.Path) -> None:
    checked = [*(PYTHON / "tests").glob("*.py"), *PYTHON.glob("*.py"), *(ROOT / "examples").glob("*.py")]
    checked += (PACKAGES / "pgmdev").glob("*.py")
    run(tmp_path, "mypy", "--config-file", str(PYTHON / "mypy.ini"), *map(str, checked))


def test_stubs_of_the_bindings(tmp_path: pathlib.Path) -> None:
    """Everything that the extension module has is in its stub, and the other way round."""
    run(tmp_path, "mypy.stubtest", "pgmdev._pgmdev", "--concise", "--allowlist", str(PYTHON / "stubtest_allowed.txt"))


def test_the_package_says_that_it_is_typed() -> None:
    assert (PACKAGES / "pgmdev" / "py.typed").is_file()
    if not (PACKAGES / "pgmdev" / "_pgmdev.pyi").is_file():
        pytest.fail("the stub of the extension module is missing")
