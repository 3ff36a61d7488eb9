"""A flash of the user's own, as one text for the configuration."""

from __future__ import annotations

import dataclasses
from collections.abc import Sequence
from dataclasses import dataclass
from typing import Any

from pgmdev import _pgmdev
from pgmdev._values import Table, Value
from pgmdev.records import Flash

USER_FLASH_KEY = _pgmdev.USER_FLASH_KEY
"""The configuration key that carries the text."""


@dataclass(frozen=True, slots=True)
class UserFlash(Value):
    """A description within such a text."""

    body: str
    """The values; empty when nothing decodes."""
    password: str
    password_valid: bool
    """Whether this build has signed the body."""
    plausible: bool
    """Whether all values are there, and a flash can have them."""
    record: Flash | None
    """None unless all values were accepted."""
    faults: tuple[str, ...]
    """Why the library does not take the flash, a sentence each; empty when it does."""


@dataclass(frozen=True, slots=True)
class Implausible(Value):
    """A member that is not that of a flash."""

    member: str
    found: str
    expected: str


def _values(record: Flash) -> tuple[Any, ...]:
    return tuple(getattr(record, field.name) for field in dataclasses.fields(record))


def decode(text: str) -> Table[UserFlash]:
    """What a text holds. There is at least one description; of several, the library takes the first one, or none."""
    found = Table[UserFlash](of=UserFlash)
    for body, password, valid, plausible, record, faults in _pgmdev.decode_user_flash(text):
        flash = Flash(*record) if record is not None else None
        found.append(UserFlash(body, password, valid, plausible, flash, tuple(faults)))
    return found


def encode(records: Flash | Sequence[Flash]) -> str:
    """The text that describes one to three flash devices, signed by this build."""
    flashes = [records] if isinstance(records, Flash) else list(records)
    text = _pgmdev.encode_user_flash([_values(flash) for flash in flashes])
    if not text:
        raise ValueError("a text describes one to three flash devices, whose names have neither @ # ; nor a zero byte")
    return text


def implausible(record: Flash) -> Table[Implausible]:
    """Every member for which the library would refuse a flash."""
    return Table((Implausible(*each) for each in _pgmdev.implausible(_values(record))), Implausible)
