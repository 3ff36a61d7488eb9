"""Source tables and packed databases, for those who maintain them. Faults of tables are values, not exceptions."""

from __future__ import annotations

import contextlib
import hashlib
import os
import stat
import tempfile
import warnings
from dataclasses import dataclass
from typing import Any, Literal, TypeVar, overload

from pgmdev import _pgmdev
from pgmdev._values import Table, Value, path_bytes, path_text
from pgmdev.records import Flash, Profile

__all__ = ["Check", "Fault", "Kind", "check", "compile", "dump", "dump_csv"]

Kind = Literal["flash", "profile"]

_T = TypeVar("_T")


def _of_kind(kind: Kind, flash: _T, profile: _T) -> _T:
    """Which of the two goes with tables of that kind."""
    if kind not in ("flash", "profile"):
        raise ValueError(f"a table is of the kind 'flash' or 'profile', not {kind!r}")
    return flash if kind == "flash" else profile


@dataclass(frozen=True, slots=True)
class Fault(Value):
    """Something wrong, or remarkable, in a source table."""

    severity: Literal["fault", "warning"]
    """A warning works, but is probably not what was meant."""
    line: int
    """From 1; 0: the table as a whole."""
    column: int
    """First character of the cell in its line, from 1; 0: the line as a whole."""
    row: str
    """What the row is about: its device name, its key."""
    member: str
    cell: str
    """Text of the cell."""
    condition: str
    """Internal error that compiling or loading reports for it."""
    expected: str
    """What would be accepted, or what is remarkable."""

    @property
    def text(self) -> str:
        """One line for people, without the file."""
        place = f"{self.line}:{self.column}: " if self.line else ""
        what = " ".join(each for each in (self.row, self.member, repr(self.cell) if self.cell else "") if each)
        return f"{place}{self.severity}: {what + ': ' if what else ''}{self.expected}"


@dataclass(frozen=True, slots=True)
class Check(Value):
    """What a source table holds, and what is wrong with it."""

    records: tuple[Flash, ...] | tuple[Profile, ...]
    """In row order; none when the table has a fault in its format."""
    payload_size: int
    faults: tuple[Fault, ...]
    """In line order, warnings among them."""

    @property
    def ok(self) -> bool:
        """Whether the table compiles: there are warnings at most."""
        return all(fault.severity == "warning" for fault in self.faults)


def _records(kind: Kind, rows: list[tuple[Any, ...]]) -> Table[Any]:
    if kind == "flash":
        return Table((Flash(*row) for row in rows), Flash)
    return Table((Profile(*row) for row in rows), Profile)


def check(csv: str | os.PathLike[str], kind: Kind = "flash") -> Check:
    """Everything that is wrong with a source table, at once. A file that cannot be read is a fault."""
    read = _of_kind(kind, _pgmdev.flash_from_source, _pgmdev.profile_from_source)
    values = read(path_bytes(csv))
    faults = tuple(Fault(*fault) for fault in values["faults"])
    return Check(tuple(_records(kind, values["records"])), values["payload_size"], faults)


def compile(csv: str | os.PathLike[str], pcf: str | os.PathLike[str], kind: Kind = "flash") -> Check:
    """Compiles a source table into a packed database, which replaces an older one in one step. With faults (see
    `Check.ok`) nothing is written.

    Only a missing or empty file, or a database of the same kind, is replaced; anything else raises FileExistsError. A
    source that is no regular file raises ValueError.
    What the database was compiled from is told beside it, in a file of its name with `.info` behind it, which fits the
    database that is there also when this is interrupted. Where that text cannot be brought up to date with the database
    in its place, this warns (UserWarning).
    """
    try:
        source = _source(csv)
    except OSError:
        found = check(csv, kind)
        if found.ok:
            raise
        return found
    compile_table = _of_kind(kind, _pgmdev.compile_flash, _pgmdev.compile_profile)
    with tempfile.TemporaryDirectory() as scratch:
        # What is checked is also what is told and compiled, whoever saves the table meanwhile.
        copy = os.path.join(scratch, "source")
        with open(copy, "xb") as file:
            file.write(source)
        found = check(copy, kind)
        if not found.ok:
            return found
        _require_replaceable(csv, pcf, kind)
        trial = os.path.join(scratch, "database")  # for its digest, which the text tells before the database is there
        compile_table(path_bytes(copy), path_bytes(trial))
        origin = {
            "database": _told_name(pcf),
            "database_sha256": _digest(trial),
            "source": _told_name(csv),
            "source_sha256": _digest(copy),
            "records": len(found.records),
            "payload_size": found.payload_size,
            "compiled_by": "pgmdev " + _pgmdev.versions()["library"],
        }
        replaced = {"replaces_sha256": _digest(pcf)} if os.path.exists(pcf) else {}
        _tell(pcf, origin | replaced)
        compile_table(path_bytes(copy), path_bytes(pcf))
    try:
        _tell(pcf, origin)
    except OSError as error:
        warnings.warn(f"the database is in its place, and the text that is there fits it: {error}", stacklevel=2)
    return found


def _source(csv: str | os.PathLike[str]) -> bytes:
    """A pipe may have no end, and nobody could compile again what came from it."""
    if os.path.exists(csv) and not os.path.isfile(csv):
        raise ValueError(f"it is no regular file: {path_text(csv)}")
    with open(csv, "rb") as file:
        return file.read()


def _require_replaceable(csv: str | os.PathLike[str], pcf: str | os.PathLike[str], kind: Kind) -> None:
    try:
        is_file = stat.S_ISREG(os.stat(pcf).st_mode)
    except FileNotFoundError:
        return
    if is_file and not os.path.samefile(csv, pcf):
        with open(pcf, "rb") as file:
            if file.read(8) in (b"", _of_kind(kind, b"PGMIO_FM", b"PGMIO_DM")):
                return
    raise FileExistsError(f"it is no {kind} database, and is not replaced: {path_text(pcf)}")


def _digest(path: str | os.PathLike[str]) -> str:
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def _told_name(path: str | os.PathLike[str]) -> str:
    """As the command tells it: within one line."""
    return _pgmdev.printable(os.path.basename(path_bytes(path)))


def _tell(pcf: str | os.PathLike[str], origin: dict[str, str | int]) -> None:
    """Replaces the text beside a database."""
    path = path_text(pcf) + ".info"
    try:
        with open(path + ".new", "w", encoding="utf-8", newline="\n") as file:
            file.writelines(f"{key} = {value}\n" for key, value in origin.items())
        os.replace(path + ".new", path)
    except BaseException:
        with contextlib.suppress(OSError):
            os.unlink(path + ".new")
        raise


@overload
def dump(pcf: str | os.PathLike[str], kind: Literal["flash"] = "flash") -> Table[Flash]: ...
@overload
def dump(pcf: str | os.PathLike[str], kind: Literal["profile"]) -> Table[Profile]: ...
def dump(pcf: str | os.PathLike[str], kind: Kind = "flash") -> Table[Any]:
    """All records of a packed database, whatever switch enables them. A damaged one raises InternalError."""
    read = _of_kind(kind, _pgmdev.flash_from_database, _pgmdev.profile_from_database)
    return _records(kind, read(path_bytes(pcf))["records"])


def dump_csv(pcf: str | os.PathLike[str], kind: Kind = "flash") -> str:
    """The records as a source table that compiles to the same database. Records that cannot be one raise ValueError."""
    write = _of_kind(kind, _pgmdev.flash_source_text, _pgmdev.profile_source_text)
    text, obstacle = write(path_bytes(pcf))
    if obstacle:
        raise ValueError(obstacle)
    return text
