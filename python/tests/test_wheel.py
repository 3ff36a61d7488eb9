"""The wheel, in an environment of its own that has nothing else: PGMDEV_WHEELS is the directory where it was built."""

from __future__ import annotations

import json
import os
import pathlib
import subprocess
import sys
import zipfile

import pytest

import pgmdev

PROGRAM = """
import json, pgmdev
shown = pgmdev.flash.show("W25Q64FV")
print(json.dumps({
    "file": pgmdev.__file__,
    "chip": pgmdev.flash.identify("EF4017").record.device_name,
    "alias": shown.alias.reason,
    "ambiguities": len(pgmdev.flash.identify("012018").ambiguities),
    "profile": pgmdev.profiles.for_part("HERNX55Q240C8").key,
    "name": pgmdev.names.show("KES50C6").family,
    "directories": pgmdev.settings.directories(),
}))
"""


@pytest.fixture(scope="module")
def wheel() -> pathlib.Path:
    (wheel,) = pathlib.Path(os.environ["PGMDEV_WHEELS"]).glob(f"pgmdev-{pgmdev.__version__}-*.whl")
    return wheel


def test_what_is_in_it(wheel: pathlib.Path) -> None:
    assert wheel.name.startswith("pgmdev-")
    interpreter = f"cp3{sys.version_info.minor}"
    assert wheel.name.endswith(f"-{interpreter}-{interpreter}-linux_{os.uname().machine}.whl")
    with zipfile.ZipFile(wheel) as archive:
        names = set(archive.namelist())
    for name in ("__init__.py", "py.typed", "_pgmdev.pyi", "records.py", "lib/libpgmdev.so.1", "lib/libpgmhost.so.1",
                 "share/tessary/devices/programmer/pgm_flash.pcf", "share/tessary/h/pgm_parts.txt"):  # fmt: skip
        assert f"pgmdev/{name}" in names
    assert not [name for name in names if "__pycache__" in name or "/tests/" in name]


def test_it_is_of_use_by_itself(wheel: pathlib.Path, tmp_path: pathlib.Path) -> None:
    environment = {"PATH": "/usr/bin:/bin", "TESSARY_CONFIG_FILE": "none", "HOME": str(tmp_path)}
    fresh = tmp_path / "environment"
    python = fresh / "bin" / "python"
    subprocess.run([sys.executable, "-m", "venv", "--without-pip", fresh], env=environment, check=True)
    subprocess.run(
        [sys.executable, "-m", "pip", "--python", python, "install", "--quiet", "--no-index", "--no-deps",
         "--no-compile", "--disable-pip-version-check", "--root-user-action=ignore", wheel],
        env=environment, check=True,
    )  # fmt: skip
    run = subprocess.run([python, "-B", "-c", PROGRAM], env=environment, cwd=tmp_path, capture_output=True, text=True)
    assert run.returncode == 0, run.stderr
    said = json.loads(run.stdout)
    package = pathlib.Path(said["file"]).parent
    assert fresh in package.parents
    assert said["chip"] == "W25Q64JV"
    assert said["alias"] == "answers EF4017 as W25Q64JV does"
    assert said["ambiguities"] > 0
    assert said["profile"] == "pcf HER_NX55"
    assert said["name"] == "KESTREL"
    assert said["directories"]["db_dir"] == str(package / "share/tessary/devices")
