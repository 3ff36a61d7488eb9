"""What answers are made of: frozen values, and lists of them."""

from __future__ import annotations

import dataclasses
import operator
import os
import threading
from collections.abc import Iterable
from typing import Any, Callable, Generic, List, SupportsIndex, TypeVar, overload

from pgmdev import _pgmdev

WHITE_SPACE = " \t\n\r\v\f"

T = TypeVar("T")


class Value:
    """A frozen answer: it compares, hashes and pickles."""

    __slots__ = ()

    def asdict(self) -> dict[str, Any]:
        """The members by name; values within are dictionaries, too."""
        return {field.name: _plain(getattr(self, field.name)) for field in dataclasses.fields(self)}


def _plain(value: Any) -> Any:
    if isinstance(value, Value):
        return value.asdict()
    if isinstance(value, tuple):
        return [_plain(each) for each in value]
    return value


class Table(List[T]):
    """A list of values."""

    _of: type[T] | None = None

    def __init__(self, values: Iterable[T] = (), of: type[T] | None = None) -> None:
        """`of`: what they are, for a list of none."""
        super().__init__(values)
        self._of = of

    @overload
    def __getitem__(self, index: SupportsIndex) -> T: ...
    @overload
    def __getitem__(self, index: slice) -> Table[T]: ...
    def __getitem__(self, index: SupportsIndex | slice) -> T | Table[T]:
        found = super().__getitem__(index)
        return Table(found, self._of) if isinstance(index, slice) else found  # type: ignore[arg-type, return-value]

    def to_frame(self) -> Any:
        """A pandas.DataFrame with a column for each member. Needs pandas."""
        import pandas

        rows = [row.asdict() if isinstance(row, Value) else row for row in self]
        if not rows and self._of is not None:
            return pandas.DataFrame(columns=[field.name for field in dataclasses.fields(self._of)])
        return pandas.DataFrame(rows)


class Once(Generic[T]):
    """Something that is made when it is first asked for, once, whatever thread asks. Who asks while making it, such as a
    handler of debug messages, makes one, too, rather than waiting for itself; the first that is made counts."""

    def __init__(self, make: Callable[[], T]) -> None:
        self._make = make
        self._lock = threading.RLock()
        self._made: list[T] = []

    def __call__(self) -> T:
        made = self._made
        if not made:
            with self._lock:
                made = self._made
                if not made:
                    made.append(self._make())
        return made[0]

    def forget(self) -> None:
        """What was made stays with those who have it; the next question makes it anew."""
        with self._lock:
            self._made = []


def upper(text: str) -> str:
    """As the library compares names: only ASCII letters have a case."""
    return text.upper() if text.isascii() else "".join(each.upper() if each.isascii() else each for each in text)


def name_of(text: str) -> str:
    """A name as the library knows it: without white space around it, in upper case."""
    if isinstance(text, (bytes, bytearray)):
        raise TypeError(f"a name is a text, not the bytes {bytes(text[:40])!r}")
    name = upper(text.strip(WHITE_SPACE))
    if "\0" in name:
        raise ValueError("embedded null character in a name")
    if not name.isascii():
        name.encode("utf-8", "surrogateescape")  # raises where half a character is none of a file's bytes
    return name


def pattern_of(text: str) -> Callable[[str], bool]:
    """Whether names fit the pattern, in any case: `*` stands for any characters, `?` for any one."""
    wanted = name_of(text)
    return lambda name: _pgmdev.fits_pattern(name, wanted)


def bytes_of(data: Any) -> bytes:
    """What is given as bytes. What counts is none: bytes(3) would be three zeros."""
    if isinstance(data, str):
        raise TypeError(f"bytes are expected, not the text {data[:20]!r}; bytes.fromhex reads hexadecimal digits")
    try:
        operator.index(data)
    except TypeError:  # an array of bytes, too, whose type has __index__ for those of a single number
        return bytes(data)
    raise TypeError(f"bytes are expected, not the number {data!r}")


def fits(number: int, bits: int) -> bool:
    """Whether the library knows such numbers at all. What has another one does not exist."""
    return 0 <= number < 1 << bits


def path_bytes(path: str | os.PathLike[str]) -> bytes:
    return os.fsencode(path)


def path_text(path: str | os.PathLike[str]) -> str:
    return os.fsdecode(path)
