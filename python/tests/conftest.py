"""What the tests share. They are given PGMDEV_COMMAND, the command; the package comes by PYTHONPATH."""

from __future__ import annotations

import json
import os
import pathlib
import subprocess
import sys
from collections.abc import Iterable, Iterator
from typing import Any

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
DUMPS = ROOT / "tests" / "data" / "sfdp"

# Tests are not to see how the machine they run on is configured, nor is the command.
for variable in [name for name in os.environ if name.startswith(("TESSARY_", "PGM_", "PGMDEV_ENABLE"))]:
    del os.environ[variable]
os.environ["TESSARY_CONFIG_FILE"] = "tests-have-no-configuration-file"
os.environ["TESSARY_SYSTEM_ROOT"] = "/proc/tests-have-no-such-directory"
os.environ["XDG_STATE_HOME"] = "/proc/tests-have-no-such-directory"
sys.path.insert(0, str(ROOT / "tests" / "page"))

import pgmdev  # noqa: E402


class Command:
    """The command pgmdev, as a program asks it."""

    def __init__(self, program: str) -> None:
        self.program = program

    def ask(self, *arguments: str) -> Any:
        """One document, whatever the exit code."""
        return json.loads(self._run(arguments, None))

    def ask_each(self, questions: Iterable[str], *arguments: str) -> list[dict[str, Any]]:
        """An answer for each question, by one run."""
        given = "".join(f"{question}\n" for question in questions)
        return [json.loads(line) for line in self._run((*arguments, "-"), given).splitlines()]

    def print(self, *arguments: str) -> str:
        """What it says to people."""
        return subprocess.run([self.program, *arguments], capture_output=True, text=True, check=True).stdout

    def _run(self, arguments: tuple[str, ...], given: str | None) -> str:
        run = subprocess.run([self.program, "--json", *arguments], input=given, capture_output=True, text=True)
        assert run.returncode in (0, 1, 3), run.stderr
        return run.stdout


@pytest.fixture(scope="session")
def command() -> Command:
    return Command(os.environ["PGMDEV_COMMAND"])


@pytest.fixture
def module_dir(tmp_path: pathlib.Path) -> Iterator[pathlib.Path]:
    """A directory of its own for the parameter container."""
    pgmdev.configure(module_dir=tmp_path)
    yield tmp_path
    pgmdev.configure(module_dir="")


def without(answer: dict[str, Any], *keys: str) -> dict[str, Any]:
    return {key: value for key, value in answer.items() if key not in keys}


def own(answer: dict[str, Any]) -> dict[str, Any]:
    """An answer of the command without what a question and a failed search bring."""
    return without(answer, "query", "found", "candidates")
