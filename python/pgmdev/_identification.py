"""What a response says."""

from __future__ import annotations

from collections.abc import Mapping, Sequence
from dataclasses import dataclass
from typing import Any, Literal

from pgmdev._values import Value, upper
from pgmdev.records import Flash

Standing = Literal["taken", "alike", "open", "passed_over", "ruled_out"]
"""Of a candidate. "taken": it is the answer; "alike": no byte speaks for the one rather than for the other; "open": a
byte that it compares was not given; "passed_over": the answer compares more of the response; "ruled_out": another
identification of it is known."""

Risk = Literal["data", "voltage", "protection", "flow", "time", "none"]
"""What a mistake endangers, the worst first."""


@dataclass(frozen=True, slots=True)
class ComparedByte(Value):
    """One byte of the response that a record compares."""

    position: int
    expected: int
    given: bool
    """Whether the response has this byte, and it agrees."""


@dataclass(frozen=True, slots=True)
class Difference(Value):
    """A member in which a candidate differs from the record that is taken."""

    member: str
    risk: Risk
    taken: str
    """The value of the record that is taken, with its unit."""
    other: str
    harm: str
    """What happens when the candidate is driven like the record that is taken: a clause."""


@dataclass(frozen=True, slots=True)
class Candidate(Value):
    """A record that the response admits."""

    index: int
    record: Flash
    standing: Standing
    compared: tuple[ComparedByte, ...]
    differences: tuple[Difference, ...]
    """The worst first."""

    @property
    def risk(self) -> Risk:
        """What taking this one for the answer endangers."""
        return self.differences[0].risk if self.differences else "none"


@dataclass(frozen=True, slots=True)
class Chip(Value):
    """A chip that an ambiguity names."""

    device_name: str
    in_table: bool


@dataclass(frozen=True, slots=True)
class Ambiguity(Value):
    """Several chips are known to give this response."""

    chips: tuple[Chip, ...]
    telling_byte: int | None
    """Position of the byte that tells them apart; None: none does."""
    told_apart_by: str
    risk: Risk
    harm: str


@dataclass(frozen=True, slots=True)
class Contradiction(Value):
    """A byte that the chip of the record does not give."""

    position: int
    found: int
    expected: str
    """Two hexadecimal digits; "?" is any, "[0-3]" one of these."""


@dataclass(frozen=True, slots=True)
class Oddity(Value):
    """What is odd about a response."""

    kind: Literal[
        "idle", "stuck", "continuation", "late", "first_byte_missing", "shifted", "reversed", "repeated"
    ]  # fmt: skip
    text: str
    index: int | None
    """The record that was probably meant."""
    is_fault: bool
    """Whether no chip answers this."""


@dataclass(frozen=True, slots=True)
class Identification(Value):
    """Which flash answered, and how sure that is."""

    response: bytes
    silicon_id: bool
    index: int | None
    record: Flash | None
    """The record by which the flash is driven; None: no record has these bytes."""
    sure: bool
    """Whether no other device gives this response, as far as the table and its notes know."""
    telling: int
    """How many of the bytes tell something."""
    missing_bytes: tuple[int, ...]
    """Positions of bytes that were not given and would tell candidates apart."""
    candidates: tuple[Candidate, ...]
    """Every record that the bytes admit, in the order of the database."""
    ambiguities: tuple[Ambiguity, ...]
    contradictions: tuple[Contradiction, ...]
    fitting: tuple[str, ...]
    """With contradictions, names of chips whose whole identification this may be."""
    oddity: Oddity | None
    nearest: tuple[int, ...]
    """Without a record, indexes of those that it may be."""

    @property
    def given(self) -> int:
        """How many bytes the response has."""
        return len(self.response)

    @property
    def doubtful(self) -> bool:
        """Whether no chip answers like this, or not the one of the record."""
        return bool(self.contradictions) or (self.oddity is not None and self.oddity.is_fault)


def _candidate(values: tuple[Any, ...], records: Sequence[Flash]) -> Candidate:
    index, standing, compared, differences = values
    return Candidate(
        index,
        records[index],
        standing,
        tuple(ComparedByte(*each) for each in compared),
        tuple(Difference(*each) for each in differences),
    )


def identification(
    response: bytes,
    silicon_id: bool,
    values: Mapping[str, Any],
    records: Sequence[Flash],
    by_name: Mapping[str, int],
) -> Identification:
    """The answer that the library has given as values."""

    def ambiguity(chips: list[str], *rest: Any) -> Ambiguity:
        return Ambiguity(tuple(Chip(chip, upper(chip) in by_name) for chip in chips), *rest)

    index = values["index"]
    candidates = tuple(_candidate(each, records) for each in values["candidates"])
    possible = tuple(each.index for each in candidates if each.standing == "open")
    return Identification(
        response=response,
        silicon_id=silicon_id,
        index=index,
        record=None if index is None else records[index],
        sure=values["sure"],
        telling=values["telling"],
        missing_bytes=tuple(values["missing_bytes"]),
        candidates=() if index is None else candidates,
        ambiguities=tuple(ambiguity(*each) for each in values["ambiguities"]),
        contradictions=tuple(Contradiction(*each) for each in values["contradictions"]),
        fitting=tuple(name for name in values["fitting"] if upper(name) in by_name),
        oddity=Oddity(*values["oddity"]) if values["oddity"] else None,
        nearest=() if index is not None else possible or tuple(values["nearest"]),
    )
