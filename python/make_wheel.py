"""Builds a wheel that is of use by itself: it brings the libraries and the databases.

    make_wheel.py PACKAGE LIBPGMDEV LIBPGMHOST INSTALLATION VERSION OUTPUT_DIRECTORY

It is made from files that are there already, by the build tools of Debian, and nothing is fetched.
"""

from __future__ import annotations

import pathlib
import shutil
import subprocess
import sys
import tempfile

PROJECT = """
[build-system]
requires = ["setuptools", "wheel"]
build-backend = "setuptools.build_meta"

[project]
name = "pgmdev"
version = "{version}"
description = "The device data of Tessary: serial flash, device names, parts, programming profiles, boot flash"
requires-python = ">=3.11"

[project.optional-dependencies]
frames = ["pandas"]

[tool.setuptools]
packages = ["pgmdev"]

[tool.setuptools.package-data]
pgmdev = ["**"]
"""

# An extension module that is there already makes the wheel one of this platform and this interpreter.
SETUP = """
from setuptools import Distribution, setup


class BuiltDistribution(Distribution):
    def has_ext_modules(self):
        return True


setup(distclass=BuiltDistribution)
"""

LICENCE = pathlib.Path("/usr/share/doc/pybind11-dev/copyright")  # of what is compiled into the extension module


def stage(project: pathlib.Path, package: str, libraries: list[str], installation: str, version: str) -> None:
    """The package as the wheel has it: the libraries in lib/, and their data as share/tessary above them."""
    (project / "pyproject.toml").write_text(PROJECT.format(version=version), encoding="utf-8")
    (project / "setup.py").write_text(SETUP, encoding="utf-8")
    staged = project / "pgmdev"
    shutil.copytree(package, staged, ignore=shutil.ignore_patterns("__pycache__"))
    (staged / "lib").mkdir()
    for library in libraries:
        shutil.copy(library, staged / "lib" / so_name(library))
    shutil.copytree(pathlib.Path(installation) / "devices" / "programmer", staged / "share/tessary/devices/programmer")
    shutil.copytree(pathlib.Path(installation) / "h", staged / "share/tessary/h")
    if LICENCE.is_file():
        (staged / "licences").mkdir()
        shutil.copy(LICENCE, staged / "licences" / "pybind11-dev.txt")


def so_name(library: str) -> str:
    """libpgmdev.so.1.0.0 is loaded as libpgmdev.so.1."""
    name, _, version = pathlib.Path(library).name.partition(".so.")
    return f"{name}.so.{version.split('.')[0]}"


def main() -> None:
    package, libpgmdev, libpgmhost, installation, version, output = sys.argv[1:]
    destination = pathlib.Path(output).resolve()
    with tempfile.TemporaryDirectory() as directory:
        project = pathlib.Path(directory)
        stage(project, package, [libpgmdev, libpgmhost], installation, version)
        subprocess.run(
            [sys.executable, "-m", "build", "--wheel", "--no-isolation", "--outdir", str(destination), directory],
            check=True,
            stdout=subprocess.DEVNULL,
        )
    for wheel in sorted(destination.glob(f"pgmdev-{version}-*.whl")):
        print(wheel)


if __name__ == "__main__":
    main()
