"""Where the library looks for its files, and what is configured: for this process, before anything else is asked."""

from __future__ import annotations

import os
from typing import Any, Mapping

from pgmdev import _pgmdev
from pgmdev._values import Once, path_bytes

__all__ = ["configure", "directories", "get", "versions"]

_depending: list[Once[Any]] = []


def depends_on_settings(once: Once[Any]) -> None:
    """What was made with other settings is forgotten when they change."""
    _depending.append(once)


def configure(
    *,
    install_dir: str | os.PathLike[str] | None = None,
    db_dir: str | os.PathLike[str] | None = None,
    module_dir: str | os.PathLike[str] | None = None,
    settings: Mapping[str, str | None] | None = None,
) -> None:
    """Sets directories and configuration values; what is not named stays as it is.

    An empty directory returns to what the environment and the installation say, None to what configuration files say.
    Databases that were loaded by default, and the lists of boot flash, are read anew when they are asked for again.
    """
    try:
        for name, path in (("install_dir", install_dir), ("db_dir", db_dir), ("module_dir", module_dir)):
            if path is not None:
                _pgmdev.set_directory(name, path_bytes(os.path.abspath(path)) if os.fspath(path) else b"")
        for key, value in (settings or {}).items():
            if value is None:
                _pgmdev.clear_setting(key)
            else:
                _pgmdev.set_setting(key, value)
    finally:  # what was set before something is refused counts
        for once in _depending:
            once.forget()
        _pgmdev.hps_reload()


def directories() -> dict[str, str]:
    """The directories in use: `install_dir`, `db_dir`, `module_dir`."""
    return _pgmdev.directories()


def get(key: str) -> str:
    """A configuration value; empty when there is none."""
    return _pgmdev.get_setting(key)


def versions() -> dict[str, Any]:
    """The versions of the library, its catalog, and the files that it reads."""
    return _pgmdev.versions()
