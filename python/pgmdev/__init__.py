"""The device data of Tessary: serial flash, device names, parts, programming profiles, boot flash.

    >>> import pgmdev
    >>> pgmdev.flash.identify("EF4017").record.device_name
    'W25Q64JV'

Answers are frozen values; what is not found is None, and faults of tables are values. What the library reports as an
internal error is raised as InternalError. Its debug messages go to the logger "pgmdev". Everything may be asked from
several threads, in the main interpreter of a process.
"""

from __future__ import annotations

import atexit
import logging

from pgmdev import _pgmdev
from pgmdev._errors import ContainerBusyError, ContainerError, InternalError

__all__ = [
    "ContainerBusyError",
    "ContainerError",
    "InternalError",
    "configure",
    "enums",
    "flash",
    "hps",
    "names",
    "params",
    "parts",
    "profiles",
    "records",
    "settings",
    "tables",
    "versions",
]

if not _pgmdev.in_main_interpreter():
    # The reporters of the library are those of the process, and call back into the interpreter that has set them.
    raise ImportError("pgmdev works in the main interpreter of a process, not in a second one")

_log = logging.getLogger("pgmdev")


def _tell(level: int, text: str) -> None:
    _log.debug("%s", text, extra={"pgmdev_level": level})


_pgmdev.listen(_tell)
atexit.register(_pgmdev.listen, None)

from pgmdev import enums, flash, hps, names, params, parts, profiles, records, settings, tables  # noqa: E402
from pgmdev.settings import configure, versions  # noqa: E402

__version__: str = versions()["library"]
