"""What supports the records of a flash database: for each group of members a class of evidence, and the sources."""

from __future__ import annotations

from dataclasses import dataclass

from pgmdev._values import Value


@dataclass(frozen=True, slots=True)
class Support(Value):
    """The evidence of one group of members."""

    group: str
    """Such as "times"."""
    evidence: str
    """The class, in words."""
    sources: tuple[str, ...]
