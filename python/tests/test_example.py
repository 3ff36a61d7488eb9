"""The examples run, and show what they say."""

from __future__ import annotations

import os
import pathlib
import subprocess
import sys

from conftest import ROOT

from pgmdev import flash


def test_chips(tmp_path: pathlib.Path) -> None:
    picture = tmp_path / "chips.png"
    run = subprocess.run(
        [sys.executable, "-B", ROOT / "examples" / "chips.py", picture],
        env={**os.environ, "MPLBACKEND": "agg", "MPLCONFIGDIR": str(tmp_path)},
        capture_output=True,
        text=True,
    )
    assert run.returncode == 0, run.stderr
    lines = run.stdout.splitlines()
    assert lines[-1] == f"written: {picture}"
    capacities = {record.device_bit_size for record in flash.load() if record.default_dev}
    assert len(lines) == len(capacities) + 1
    data = picture.read_bytes()
    assert data.startswith(b"\x89PNG\r\n")
    width, height = (int.from_bytes(data[place : place + 4], "big") for place in (16, 20))
    assert (width, height) == (900, 600)
    assert len(data) > 20000
